#include "innvalidator.h"

namespace {

int checkDigit(const QString &digits, const std::initializer_list<int> &weights)
{
    int sum = 0;
    int i = 0;
    for (int w : weights)
        sum += digits.at(i++).digitValue() * w;
    return sum % 11 % 10;
}

} // namespace

INNValidator::INNValidator(Kind kind, QObject *parent)
    : QValidator(parent)
    , m_kind(kind)
{
}

QString INNValidator::withCheckDigits(const QString &digits)
{
    auto digit = [](int value) { return QChar(QLatin1Char(char('0' + value))); };
    if (digits.size() == 9)
        return digits + digit(checkDigit(digits, {2, 4, 10, 3, 5, 9, 4, 6, 8}));
    if (digits.size() != 10)
        return digits;
    const QString eleven = digits + digit(checkDigit(digits, {7, 2, 4, 10, 3, 5, 9, 4, 6, 8}));
    return eleven + digit(checkDigit(eleven, {3, 7, 2, 4, 10, 3, 5, 9, 4, 6, 8}));
}

bool INNValidator::isValidInn10(const QString &digits)
{
    return digits.size() == 10 && withCheckDigits(digits.left(9)) == digits;
}

bool INNValidator::isValidInn12(const QString &digits)
{
    return digits.size() == 12 && withCheckDigits(digits.left(10)) == digits;
}

QValidator::State INNValidator::validate(QString &input, int &) const
{
    for (const QChar c : qAsConst(input)) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return Invalid;
    }
    const int longest = m_kind == Organisation ? 10 : 12;
    if (input.size() > longest)
        return Invalid;
    const bool valid = (m_kind != Personal && isValidInn10(input)) || (m_kind != Organisation && isValidInn12(input));
    // A complete number with wrong check digits stays Intermediate rather
    // than Invalid: the edit then keeps the digit the operator typed and
    // Save stays off, instead of silently swallowing the keystroke.
    return valid ? Acceptable : Intermediate;
}
