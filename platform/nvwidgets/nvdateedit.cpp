#include "nvdateedit.h"

#include <QDebug>

namespace {
// QAbstractSpinBox shows the special text only when it is not empty; a
// space reads as an empty field.
const QString EmptyText = QStringLiteral(" ");
// The day before the first date is the edit's empty value.
const QDate FirstDate(1752, 9, 15);
const QDate LastDate(9999, 12, 31);
} // namespace

NVDateEdit::NVDateEdit(QWidget *parent)
    : QDateEdit(parent)
    , m_first(FirstDate)
    , m_last(LastDate)
{
    setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    setCalendarPopup(true);
    setBounds(m_first, m_last);
    setSpecialValueText(EmptyText);
    clear();
}

void NVDateEdit::setBounds(const QDate &first, const QDate &last)
{
    setDateRange(first.addDays(-1), last);
}

void NVDateEdit::setDateOrClear(const QDate &date)
{
    // QDateEdit knows no dates before the year 100.
    if (!date.isValid() || date <= QDate(100, 1, 1)) {
        if (date.isValid())
            qDebug() << "date edit: date out of reach" << date;
        clear();
        return;
    }
    setBounds(qMin(date, m_first), qMax(date, m_last));
    setDate(date);
}

bool NVDateEdit::isEmpty() const
{
    return date() == minimumDate();
}

QDate NVDateEdit::dateOrNull() const
{
    return isEmpty() ? QDate() : date();
}

void NVDateEdit::setAllowedRange(const QDate &first, const QDate &last)
{
    m_first = first;
    m_last = last;
    clear();
}

bool NVDateEdit::isOutsideAllowedRange() const
{
    return !isEmpty() && (date() < m_first || date() > m_last);
}

void NVDateEdit::clear()
{
    setBounds(m_first, m_last);
    setDate(minimumDate());
}
