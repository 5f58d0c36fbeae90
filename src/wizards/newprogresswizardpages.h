#ifndef NEWPROGRESSWIZARDPAGES_H
#define NEWPROGRESSWIZARDPAGES_H

#include "baseprogresswizardpage.h"

/**
 * The progress page of the new employee wizard. Its tasks name the reply
 * slot of what they store: save (creates the employee and hands its uid to
 * the tasks behind it), saveParameters, saveCards and saveAccess.
 */
class NVDIALOGS_EXPORT NewWorkerProgressWizardPage : public BaseProgressWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerProgressWizardPage(QWidget *parent = nullptr);

    // Runs the queue only when the parameters page (page 0) agrees; a
    // refused run leaves the page incomplete, even with nothing queued.
    void initializePage() override;
    bool isComplete() const override;

public Q_SLOTS:
    void save(unsigned int uid);
    void saveParameters(unsigned int uid);
    void saveCards(unsigned int uid, const QString &cards);
    void saveAccess(unsigned int uid);

private:
    bool m_refused = false;
};

/** The progress page of the new firm wizard. */
class NVDIALOGS_EXPORT NewFirmProgressWizardPage : public BaseProgressWizardPage
{
    Q_OBJECT
public:
    explicit NewFirmProgressWizardPage(QWidget *parent = nullptr);

public Q_SLOTS:
    void save(unsigned int uid);
    void saveParameters(unsigned int uid);
    void saveAccess(unsigned int uid);
};

#endif
