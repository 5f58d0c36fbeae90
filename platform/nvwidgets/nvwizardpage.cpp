#include "nvwizardpage.h"

NVWizardPage::NVWizardPage(QWidget *parent)
    : QWizardPage(parent)
{
}

bool NVWizardPage::isComplete() const
{
    switch (m_completeness) {
    case Completeness::Complete:
        return true;
    case Completeness::Incomplete:
        return false;
    case Completeness::ByFields:
        break;
    }
    return QWizardPage::isComplete();
}

void NVWizardPage::setComplete(bool complete)
{
    const Completeness wanted = complete ? Completeness::Complete : Completeness::Incomplete;
    if (wanted == m_completeness)
        return;
    m_completeness = wanted;
    emit completeChanged();
}
