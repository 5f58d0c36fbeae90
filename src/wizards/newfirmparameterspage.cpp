#include "newfirmparameterspage.h"

#include <dbparams.h>
#include <innvalidator.h>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

NewFirmParametersPage::NewFirmParametersPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_name(new QLineEdit(this))
    , m_fullName(new QLineEdit(this))
    , m_inn(new QLineEdit(this))
    , m_kpp(new QLineEdit(this))
    , m_innValidator(new INNValidator(INNValidator::Organisation, this))
{
    setObjectName(QStringLiteral("NewFirmParametersPage"));
    setTitle(tr("Организация"));
    setSubTitle(tr("Название обязательно, остальное можно заполнить позже."));
    m_name->setObjectName(QStringLiteral("leName"));
    m_name->setMaxLength(200);
    m_fullName->setObjectName(QStringLiteral("leFullName"));
    m_fullName->setMaxLength(500);
    m_inn->setObjectName(QStringLiteral("leInn"));
    m_inn->setPlaceholderText(tr("10 цифр"));
    m_inn->setMaxLength(10);
    m_inn->setValidator(m_innValidator);
    m_kpp->setObjectName(QStringLiteral("leKpp"));
    m_kpp->setPlaceholderText(tr("9 цифр"));
    m_kpp->setMaxLength(9);
    m_kpp->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,9}")), m_kpp));

    auto *form = new QFormLayout;
    form->addRow(tr("Название"), m_name);
    form->addRow(tr("Полное название"), m_fullName);
    form->addRow(tr("ИНН"), m_inn);
    form->addRow(tr("КПП"), m_kpp);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(reasonLabel());
    layout->addStretch();
    for (QLineEdit *edit : {m_name, m_inn, m_kpp})
        connect(edit, &QLineEdit::textChanged, this, &ValidatedWizardPage::revalidate);
    revalidate();
}

QString NewFirmParametersPage::firmName() const
{
    return m_name->text().trimmed();
}

QString NewFirmParametersPage::refusal() const
{
    if (firmName().isEmpty())
        return tr("Укажите название организации");
    QString inn = m_inn->text();
    int pos = 0;
    if (!inn.isEmpty() && m_innValidator->validate(inn, pos) != QValidator::Acceptable)
        return tr("ИНН организации: 10 цифр с верной контрольной цифрой");
    const QString kpp = m_kpp->text();
    if (!kpp.isEmpty() && kpp.size() != 9)
        return tr("КПП: 9 цифр");
    return QString();
}

QList<ValidatedWizardPage::Field> NewFirmParametersPage::fields() const
{
    QList<Field> list;
    addField(list, db::firm::NAME, tr("Название"), firmName());
    addField(list, db::firm::FULL_NAME, tr("Полное название"), m_fullName->text().trimmed());
    addField(list, db::orgstructure::common::INN, tr("ИНН"), m_inn->text());
    addField(list, db::firm::KPP, tr("КПП"), m_kpp->text());
    return list;
}
