#ifndef TRANSFERWIZARD_H
#define TRANSFERWIZARD_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QList>

class ChangeSummaryWizardPage;
class DeleteListWizardPage;
class TransferProgressWizardPage;
class TransferTargetWizardPage;

/**
 * Moves employees, or departments with everyone in them, under another
 * department or firm: the list of what moves, the target, a summary of
 * each object's old and new department, then the run.
 *
 * One wizard moves one kind: moving people and restructuring departments
 * are different orders with different targets, so a selection that mixes
 * them (or holds firms, which never move) is refused on the list page with
 * the reason, and Next stays disabled. The tasks leave through
 * appendTask() for the host's executor. Deleted when closed.
 */
class NVDIALOGS_EXPORT TransferWizard : public PageListWizard
{
    Q_OBJECT
public:
    enum PageId { ListPage, TargetPage, SummaryPage, ProgressPage };

    explicit TransferWizard(QWidget *parent = nullptr);
    ~TransferWizard() override;

    // What to move; unknown uids and repeats are left out.
    void setUids(const QList<nivaro::TYPE_ID> &uids);
    QList<nivaro::TYPE_ID> uids() const { return m_uids; }
    // Why the selection cannot be moved; empty when it can.
    QString refusal() const { return m_refusal; }
    // True when the selection is departments, false for employees.
    bool movesDepartments() const { return m_departments; }

    // The department or firm to move to, as if chosen in the chooser.
    void setTarget(nivaro::TYPE_ID target);
    nivaro::TYPE_ID target() const;
    // Why the target cannot be taken; empty when it can.
    QString targetRefusal() const;

    DeleteListWizardPage *listPage() const { return m_listPage; }
    ChangeSummaryWizardPage *summaryPage() const { return m_summaryPage; }
    TransferProgressWizardPage *progressPage() const { return m_progressPage; }

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

protected:
    void initializePage(int id) override;

private:
    void setProgressPage(bool departments);

    QList<nivaro::TYPE_ID> m_uids;
    QString m_refusal;
    bool m_departments = false;
    DeleteListWizardPage *m_listPage;
    TransferTargetWizardPage *m_targetPage;
    ChangeSummaryWizardPage *m_summaryPage;
    TransferProgressWizardPage *m_progressPage = nullptr;
};

#endif
