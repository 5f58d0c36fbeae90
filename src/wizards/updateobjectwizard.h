#ifndef UPDATEOBJECTWIZARD_H
#define UPDATEOBJECTWIZARD_H

#include "changesummarywizardpage.h"
#include "nvdialogs_export.h"
#include "objectsprogresswizardpage.h"

#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QVariant>

class DeleteListWizardPage;
class QAbstractItemModel;
class QAbstractItemView;
class StyledItemDelegate;
namespace nivaro {
class ObjectTreeProxy;
}

/** Sends one save task per object with the same parameter values. */
class NVDIALOGS_EXPORT UpdateProgressWizardPage : public ObjectsProgressWizardPage
{
    Q_OBJECT
public:
    explicit UpdateProgressWizardPage(QWidget *parent = nullptr);

    void addUpdateParameter(const QString &name, const QVariant &value);
    void updateNext() { sendNextObject(); }

public Q_SLOTS:
    void updated(unsigned int uid) { reply(uid); }
};

/** Applies the same parameter values to many objects, listing them first. */
class NVDIALOGS_EXPORT UpdateObjectWizard : public PageListWizard
{
    Q_OBJECT
public:
    explicit UpdateObjectWizard(QWidget *parent = nullptr);

    void setUids(const QList<unsigned int> &uids);
    void addUpdateParameter(const QString &name, const QVariant &value);

    QAbstractItemModel *model() const;
    nivaro::ObjectTreeProxy *proxy() const;
    void setItemDelegate(StyledItemDelegate *delegate, QAbstractItemView *view = nullptr);

    UpdateProgressWizardPage *progressPage() const { return m_progressPage; }

    // Shows what the run will change, object by object, on a page between
    // the list and the run. It takes id SummaryPage so that the list (0)
    // and the progress page (1) keep theirs.
    enum { SummaryPage = 2 };
    void setChanges(const QList<ChangeSummaryWizardPage::Change> &changes);
    ChangeSummaryWizardPage *summaryPage() const { return m_summaryPage; }

    int nextId() const override;

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

private:
    DeleteListWizardPage *m_listPage;
    UpdateProgressWizardPage *m_progressPage;
    ChangeSummaryWizardPage *m_summaryPage = nullptr;
};

#endif
