#include "snilsedit.h"

#include <QRegularExpression>

namespace {
QString digitsOf(const QString &text)
{
    QString digits;
    for (const QChar c : text) {
        if (c.isDigit())
            digits += c;
    }
    return digits;
}
} // namespace

namespace {
const QString Mask = QStringLiteral("999-999-999 99;_");
}

SnilsEdit::SnilsEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setInputMask(Mask);
    connect(this, &QLineEdit::textChanged, this, [this] {
        updateMark();
        emit snilsChanged(snils());
    });
}

void SnilsEdit::updateMark()
{
    const QString digits = snils();
    QString problem;
    if (digits.size() == 11 && !isValidSnils(digits))
        problem = tr("Неверный СНИЛС: контрольное число не совпадает");
    else if (!digits.isEmpty() && digits.size() < 11 && !hasFocus())
        problem = tr("Неполный СНИЛС: нужно 11 цифр");
    if (problem == m_problem)
        return;
    m_problem = problem;
    setStyleSheet(problem.isEmpty() ? QString() : QStringLiteral("color: #b00020;"));
    setToolTip(problem);
}

void SnilsEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    updateMark();
}

QString SnilsEdit::snils() const
{
    return digitsOf(text());
}

void SnilsEdit::showPlaceholder(const QString &text)
{
    const QSignalBlocker blocker(this);
    setInputMask(QString());
    clear();
    setPlaceholderText(text);
    updateMark();
}

void SnilsEdit::restoreMask()
{
    if (inputMask().isEmpty()) {
        const QSignalBlocker blocker(this);
        setPlaceholderText(QString());
        setInputMask(Mask);
    }
}

void SnilsEdit::focusInEvent(QFocusEvent *event)
{
    restoreMask();
    QLineEdit::focusInEvent(event);
    updateMark();
}

void SnilsEdit::setSnils(const QString &snils)
{
    restoreMask();
    const QString digits = digitsOf(snils).left(11);
    if (digits.isEmpty()) {
        clear();
        return;
    }
    setText(digits);
}

bool SnilsEdit::isAcceptable() const
{
    return isValidSnils(snils());
}

bool SnilsEdit::isValidSnils(const QString &digits)
{
    static const QRegularExpression eleven(QStringLiteral("^\\d{11}$"));
    if (!eleven.match(digits).hasMatch())
        return false;
    // Numbers up to 001-001-998 were issued before check sums existed.
    if (digits.leftRef(9).toInt() <= 1001998)
        return true;
    return withCheckSum(digits.left(9)) == digits;
}

QString SnilsEdit::withCheckSum(const QString &nineDigits)
{
    int sum = 0;
    for (int i = 0; i < 9 && i < nineDigits.size(); ++i)
        sum += nineDigits.at(i).digitValue() * (9 - i);
    int check = sum;
    if (sum == 100 || sum == 101)
        check = 0;
    else if (sum > 101)
        check = sum % 101 == 100 ? 0 : sum % 101;
    return nineDigits + QStringLiteral("%1").arg(check, 2, 10, QLatin1Char('0'));
}
