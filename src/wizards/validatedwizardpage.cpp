#include "validatedwizardpage.h"

#include <QLabel>

ValidatedWizardPage::ValidatedWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_reason(new QLabel(this))
{
    m_reason->setObjectName(QStringLiteral("lbReason"));
    m_reason->setWordWrap(true);
    m_reason->setStyleSheet(QStringLiteral("color: #c00000;"));
}

bool ValidatedWizardPage::isComplete() const
{
    return m_complete;
}

void ValidatedWizardPage::revalidate()
{
    const QString why = refusal();
    m_reason->setText(why);
    m_complete = why.isEmpty();
    emit completeChanged();
}

void ValidatedWizardPage::addField(QList<Field> &fields, const QString &key, const QString &caption,
                                   const QString &value, const QString &shown)
{
    if (value.isEmpty())
        return;
    fields.append({key, caption, value, shown.isEmpty() ? value : shown});
}
