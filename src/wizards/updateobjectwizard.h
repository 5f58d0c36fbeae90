#ifndef UPDATEOBJECTWIZARD_H
#define UPDATEOBJECTWIZARD_H

#include "nvdialogs_export.h"
#include "steppedloop.h"

#include <nvwizardpage.h>
#include <nvhash.h>
#include <objectinfo.h>
#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QHash>
#include <QVariant>

class BufferedLog;
class DeleteListWizardPage;
class NVProgressBar;
class QAbstractItemModel;
class QAbstractItemView;
class QLabel;
class QTextBrowser;
class StyledItemDelegate;
namespace nivaro {
class ObjectTreeProxy;
}

/**
 * Sends one save task per object with the same parameter values, and logs
 * each outcome. The first failure ends the run: objects not yet sent stay
 * as they were, and the log tells which ones were done.
 */
class NVDIALOGS_EXPORT UpdateProgressWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    explicit UpdateProgressWizardPage(QWidget *parent = nullptr);

    void setUids(const QList<unsigned int> &uids);
    void addUpdateParameter(const QString &name, const QVariant &value);

    void initializePage() override;
    void updateNext();

    QString statusText() const;
    QString logText() const;

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

public Q_SLOTS:
    void updated(unsigned int uid);

private:
    void sendNext();
    void appendLog(const QString &text);

    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> m_objects; // still to be done
    QHash<QString, QVariant> m_parameters;
    unsigned int m_current = 0; // the object whose task is out
    QLabel *m_status = nullptr;
    NVProgressBar *m_bar = nullptr;
    QTextBrowser *m_log = nullptr;
    BufferedLog *m_buffer = nullptr;
    SteppedLoop m_loop;
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

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

private:
    DeleteListWizardPage *m_listPage;
    UpdateProgressWizardPage *m_progressPage;
};

#endif
