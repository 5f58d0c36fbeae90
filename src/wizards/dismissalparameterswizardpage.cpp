#include "dismissalparameterswizardpage.h"

#include <nvdateedit.h>
#include <nvglobals.h>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

DismissalParametersWizardPage::DismissalParametersWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_date(new NVDateEdit(this))
    , m_reason(new QLineEdit(this))
    , m_hint(new QLabel(this))
{
    setTitle(tr("Параметры увольнения"));
    setSubTitle(tr("Дата и причина увольнения сохраняются у каждого сотрудника."));
    m_date->setObjectName(QStringLiteral("deDismissDate"));
    m_date->setCalendarPopup(true);
    m_date->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    m_date->setDateOrClear(QDate::currentDate());
    m_reason->setObjectName(QStringLiteral("leReason"));
    m_reason->setPlaceholderText(tr("Например: по собственному желанию"));
    m_reason->setMaxLength(500);
    m_hint->setObjectName(QStringLiteral("lbHint"));
    m_hint->setWordWrap(true);
    auto *form = new QFormLayout(this);
    form->addRow(tr("Дата увольнения"), m_date);
    form->addRow(tr("Причина увольнения"), m_reason);
    form->addRow(m_hint);
    connect(m_date, &QDateEdit::dateChanged, this, &DismissalParametersWizardPage::update);
    connect(m_reason, &QLineEdit::textChanged, this, &DismissalParametersWizardPage::update);
    update();
}

void DismissalParametersWizardPage::setDate(const QDate &date)
{
    m_date->setDateOrClear(date);
}

QDate DismissalParametersWizardPage::date() const
{
    return m_date->dateOrNull();
}

void DismissalParametersWizardPage::setReason(const QString &reason)
{
    m_reason->setText(reason);
}

QString DismissalParametersWizardPage::reason() const
{
    return NVGlobals::withoutControlCharacters(m_reason->text()).trimmed();
}

QString DismissalParametersWizardPage::refusal() const
{
    if (!date().isValid())
        return tr("Укажите дату увольнения");
    if (reason().isEmpty())
        return tr("Укажите причину увольнения");
    return QString();
}

void DismissalParametersWizardPage::update()
{
    const QString missing = refusal();
    m_hint->setText(missing);
    setComplete(missing.isEmpty());
}
