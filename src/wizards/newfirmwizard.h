#ifndef NEWFIRMWIZARD_H
#define NEWFIRMWIZARD_H

#include "newobjectwizard.h"

class NewFirmParametersPage;
class NewFirmProgressWizardPage;

/** Creates a firm under the organisation's root. Deletes itself when closed. */
class NVDIALOGS_EXPORT NewFirmWizard : public NewObjectWizard
{
    Q_OBJECT
public:
    enum PageId { ParametersPageId = 0, SummaryPageId, ProgressPageId };

    explicit NewFirmWizard(QWidget *parent = nullptr);

    NewFirmParametersPage *parametersPage() const { return m_parameters; }
    NewFirmProgressWizardPage *progressPage() const { return m_progress; }

    QList<nivaro::TaskInfo> tasks() const override;
    QList<ChangeSummaryWizardPage::Change> changes() const override;

private:
    NewFirmParametersPage *m_parameters;
    NewFirmProgressWizardPage *m_progress;
};

#endif
