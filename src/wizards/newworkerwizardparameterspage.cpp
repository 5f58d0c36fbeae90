#include "newworkerwizardparameterspage.h"

NewWorkerWizardParametersPage::NewWorkerWizardParametersPage(QWidget *parent)
    : NVWizardPage(parent)
{
}

bool NewWorkerWizardParametersPage::verifyCreateWorker()
{
    return isComplete();
}
