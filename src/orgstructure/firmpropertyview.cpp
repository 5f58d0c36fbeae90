#include "firmpropertyview.h"

#include <dbparams.h>
#include <innvalidator.h>

#include <QLineEdit>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

#include <algorithm>

namespace {

bool digitsOnly(const QString &text, int count)
{
    return text.size() == count
        && std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

// Typing is held to digits up to the length; whether the number is whole
// and right is the field's check, shown under it.
void digitsInput(QLineEdit *edit, int count)
{
    edit->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("\\d{0,%1}").arg(count)), edit));
    edit->setMaxLength(count);
}

} // namespace

FirmPropertyView::FirmPropertyView(QWidget *parent)
    : OrgPropertyView(parent)
{
    addLine(QStringLiteral("leName"), tr("Краткое название"), db::firm::NAME, [](const QString &value) {
        return value.trimmed().isEmpty() ? tr("Краткое название организации не может быть пустым") : QString();
    });
    addLine(QStringLiteral("leFullName"), tr("Полное название"), db::firm::FULL_NAME);

    auto *innValidator = new INNValidator(INNValidator::Organisation, this);
    QLineEdit *inn = addLine(QStringLiteral("leInn"), tr("ИНН"), db::orgstructure::common::INN,
                             [innValidator](const QString &value) {
                                 QString text = value;
                                 int pos = 0;
                                 return value.isEmpty() || innValidator->validate(text, pos) == QValidator::Acceptable
                                     ? QString()
                                     : tr("ИНН организации состоит из 10 цифр с верной контрольной цифрой");
                             },
                             tr("10 цифр"));
    inn->setValidator(innValidator);
    inn->setMaxLength(10);

    QLineEdit *kpp = addLine(QStringLiteral("leKpp"), tr("КПП"), db::firm::KPP, [](const QString &value) {
        return value.isEmpty() || digitsOnly(value, 9) ? QString() : tr("КПП состоит из 9 цифр");
    });
    digitsInput(kpp, 9);

    QLineEdit *ogrn = addLine(QStringLiteral("leOgrn"), tr("ОГРН"), db::firm::OGRN, [](const QString &value) {
        return value.isEmpty() || isValidOgrn(value) ? QString()
                                                      : tr("ОГРН состоит из 13 цифр с верной контрольной цифрой");
    });
    digitsInput(ogrn, 13);

    addLine(QStringLiteral("leAddress"), tr("Адрес"), db::firm::ADDRESS);
    addText(QStringLiteral("teDescription"), tr("Описание"), db::common::DESCRIPTION);
    setCurrent({});
}

FirmPropertyView::~FirmPropertyView() = default;

QString FirmPropertyView::widgetUid() const
{
    return QStringLiteral("FirmPropertyView");
}

bool FirmPropertyView::isValidOgrn(const QString &digits)
{
    if (!digitsOnly(digits, 13))
        return false;
    return digits.leftRef(12).toULongLong() % 11 % 10 == unsigned(digits.at(12).digitValue());
}

QString FirmPropertyView::startText() const
{
    return tr("Сохранение параметров организации %1");
}

QString FirmPropertyView::errorText() const
{
    return tr("Ошибка сохранения параметров организации %1");
}
