#ifndef NEWWORKERWIZARD_H
#define NEWWORKERWIZARD_H

#include "newobjectwizard.h"

class NewWorkerCardPage;
class NewWorkerJobPage;
class NewWorkerPhotoPage;
class NewWorkerProgressWizardPage;
class NewWorkerWizardParametersPage;

/**
 * Creates an employee: personal data, place of work, an optional photo and
 * card, a summary, then the run. The creating task goes first; the card
 * and the photo tasks wait behind it and take the new employee's uid from
 * its reply. The wizard deletes itself when closed.
 */
class NVDIALOGS_EXPORT NewWorkerWizard : public NewObjectWizard
{
    Q_OBJECT
public:
    enum PageId { ParametersPageId = 0, JobPageId, PhotoPageId, CardPageId, SummaryPageId, ProgressPageId };

    explicit NewWorkerWizard(QWidget *parent = nullptr);

    // The department (or firm) the employee goes to, as the host's tree
    // has it selected (a selected employee stands for its department);
    // anything else is ignored.
    void setDepartment(nivaro::TYPE_ID uid);

    NewWorkerWizardParametersPage *parametersPage() const { return m_parameters; }
    NewWorkerJobPage *jobPage() const { return m_job; }
    NewWorkerPhotoPage *photoPage() const { return m_photo; }
    NewWorkerCardPage *cardPage() const { return m_card; }
    NewWorkerProgressWizardPage *progressPage() const { return m_progress; }

    QList<nivaro::TaskInfo> tasks() const override;
    QList<ChangeSummaryWizardPage::Change> changes() const override;

protected:
    bool mayRun() override;

private:
    NewWorkerWizardParametersPage *m_parameters;
    NewWorkerJobPage *m_job;
    NewWorkerPhotoPage *m_photo;
    NewWorkerCardPage *m_card;
    NewWorkerProgressWizardPage *m_progress;
};

#endif
