#ifndef NEWDEPARTMENTWIZARD_H
#define NEWDEPARTMENTWIZARD_H

#include "newobjectwizard.h"

class NewDepartmentParametersPage;
class NewFirmProgressWizardPage;

/**
 * Creates a department under a firm or another department. The host
 * presets the parent from its selected tree row. Deletes itself when closed.
 */
class NVDIALOGS_EXPORT NewDepartmentWizard : public NewObjectWizard
{
    Q_OBJECT
public:
    enum PageId { ParametersPageId = 0, SummaryPageId, ProgressPageId };

    explicit NewDepartmentWizard(QWidget *parent = nullptr);

    // As the host's tree has it selected; a selected employee stands for
    // its department.
    void setParentDepartment(nivaro::TYPE_ID uid);

    NewDepartmentParametersPage *parametersPage() const { return m_parameters; }
    NewFirmProgressWizardPage *progressPage() const { return m_progress; }

    QList<nivaro::TaskInfo> tasks() const override;
    QList<ChangeSummaryWizardPage::Change> changes() const override;

private:
    NewDepartmentParametersPage *m_parameters;
    NewFirmProgressWizardPage *m_progress;
};

#endif
