#ifndef DELETEOBJECTWIZARD_H
#define DELETEOBJECTWIZARD_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QList>

class ChangeSummaryWizardPage;
class DeleteListWizardPage;
class DeleteProgressWizardPage;

/**
 * Deletes employees, departments and firms: the list, a summary, then one
 * "delete_object" task each, members before the departments that hold
 * them.
 *
 * The server deletes a department or firm only once it is empty. One that
 * would still hold someone or something not chosen with it is left out
 * before the run and named on the list page with the reason, while the
 * rest goes ahead: the operator still gets what can be done, and sees
 * what was kept. When nothing is left, Next stays disabled. The tasks
 * leave through appendTask() for the host's executor. Deleted when closed.
 */
class NVDIALOGS_EXPORT DeleteObjectWizard : public PageListWizard
{
    Q_OBJECT
public:
    enum PageId { ListPage, SummaryPage, ProgressPage };

    explicit DeleteObjectWizard(QWidget *parent = nullptr);
    ~DeleteObjectWizard() override;

    void setUids(const QList<nivaro::TYPE_ID> &uids);
    // What will be deleted, in the order it goes.
    QList<nivaro::TYPE_ID> uids() const;
    // What is left out and why, one line each; empty when nothing is.
    QString refusal() const { return m_refusal; }

    DeleteListWizardPage *listPage() const { return m_listPage; }
    ChangeSummaryWizardPage *summaryPage() const { return m_summaryPage; }
    DeleteProgressWizardPage *progressPage() const { return m_progressPage; }

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

protected:
    void initializePage(int id) override;

private:
    QString m_refusal;
    DeleteListWizardPage *m_listPage;
    ChangeSummaryWizardPage *m_summaryPage;
    DeleteProgressWizardPage *m_progressPage;
};

#endif
