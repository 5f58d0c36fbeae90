#ifndef DISMISSALWIZARD_H
#define DISMISSALWIZARD_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QDate>
#include <QList>

class ChangeSummaryWizardPage;
class DeleteListWizardPage;
class DismissProgressWizardPage;
class DismissalParametersWizardPage;

/**
 * Dismisses employees in service: the list (anyone already dismissed, or
 * not an employee, is named as left out with the reason), the date and the
 * reason of the dismissal, a summary, then one "dismiss_object" task each.
 * The tasks leave through appendTask() for the host's executor. Deleted
 * when closed.
 */
class NVDIALOGS_EXPORT DismissalWizard : public PageListWizard
{
    Q_OBJECT
public:
    enum PageId { ListPage, ParametersPage, SummaryPage, ProgressPage };

    explicit DismissalWizard(QWidget *parent = nullptr);
    ~DismissalWizard() override;

    void setUids(const QList<nivaro::TYPE_ID> &uids);
    // The employees that will be dismissed.
    QList<nivaro::TYPE_ID> uids() const { return m_uids; }
    // Who is left out and why, one line each; empty when nobody is.
    QString refusal() const { return m_refusal; }

    void setDismissDate(const QDate &date);
    QDate dismissDate() const;
    void setReason(const QString &reason);
    QString reason() const;

    DeleteListWizardPage *listPage() const { return m_listPage; }
    ChangeSummaryWizardPage *summaryPage() const { return m_summaryPage; }
    DismissProgressWizardPage *progressPage() const { return m_progressPage; }

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

protected:
    void initializePage(int id) override;

private:
    QList<nivaro::TYPE_ID> m_uids;
    QString m_refusal;
    DeleteListWizardPage *m_listPage;
    DismissalParametersWizardPage *m_parametersPage;
    ChangeSummaryWizardPage *m_summaryPage;
    DismissProgressWizardPage *m_progressPage;
};

#endif
