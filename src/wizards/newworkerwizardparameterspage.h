#ifndef NEWWORKERWIZARDPARAMETERSPAGE_H
#define NEWWORKERWIZARDPARAMETERSPAGE_H

#include "nvdialogs_export.h"

#include <nvwizardpage.h>

/**
 * The first page of the new employee wizard, where the operator enters the
 * employee's parameters. The progress page asks it, before anything is
 * sent, whether the employee may be created.
 */
class NVDIALOGS_EXPORT NewWorkerWizardParametersPage : public NVWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerWizardParametersPage(QWidget *parent = nullptr);

    // Whether what was entered is enough to create the employee; a refusal
    // tells the operator why on this page.
    virtual bool verifyCreateWorker();
};

#endif
