#include "newprogresswizardpages.h"

#include "newworkerwizardparameterspage.h"

#include <QWizard>

NewWorkerProgressWizardPage::NewWorkerProgressWizardPage(QWidget *parent)
    : BaseProgressWizardPage(parent)
{
    setTitle(tr("Сохранение"));
}

void NewWorkerProgressWizardPage::initializePage()
{
    clearMessages();
    auto *parameters = wizard() ? qobject_cast<NewWorkerWizardParametersPage *>(wizard()->page(0)) : nullptr;
    m_refused = !parameters || !parameters->verifyCreateWorker();
    if (m_refused) {
        appendMessage(tr("Операция отменена"));
        emit completeChanged();
        return;
    }
    BaseProgressWizardPage::initializePage();
}

bool NewWorkerProgressWizardPage::isComplete() const
{
    return !m_refused && BaseProgressWizardPage::isComplete();
}

void NewWorkerProgressWizardPage::save(unsigned int uid)
{
    objectAdded(uid);
}

void NewWorkerProgressWizardPage::saveParameters(unsigned int uid)
{
    objectUpdated(uid);
}

void NewWorkerProgressWizardPage::saveCards(unsigned int uid, const QString &)
{
    objectUpdated(uid);
}

void NewWorkerProgressWizardPage::saveAccess(unsigned int uid)
{
    objectUpdated(uid);
}

NewFirmProgressWizardPage::NewFirmProgressWizardPage(QWidget *parent)
    : BaseProgressWizardPage(parent)
{
}

void NewFirmProgressWizardPage::save(unsigned int uid)
{
    objectAdded(uid);
}

void NewFirmProgressWizardPage::saveParameters(unsigned int uid)
{
    objectUpdated(uid);
}

void NewFirmProgressWizardPage::saveAccess(unsigned int uid)
{
    objectUpdated(uid);
}
