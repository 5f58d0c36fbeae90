#include "nvdateedit.h"

namespace {
// QAbstractSpinBox shows the special text only when it is not empty; a
// space reads as an empty field.
const QString EmptyText = QStringLiteral(" ");
const QDate EmptyDate(1752, 9, 14);
} // namespace

NVDateEdit::NVDateEdit(QWidget *parent)
    : QDateEdit(parent)
{
    setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    setCalendarPopup(true);
    setMinimumDate(EmptyDate);
    setSpecialValueText(EmptyText);
    setDate(EmptyDate);
}

void NVDateEdit::setDateOrClear(const QDate &date)
{
    if (date.isValid() && date > minimumDate())
        setDate(date);
    else
        clear();
}

bool NVDateEdit::isEmpty() const
{
    return date() == minimumDate();
}

QDate NVDateEdit::dateOrNull() const
{
    return isEmpty() ? QDate() : date();
}

void NVDateEdit::clear()
{
    setDate(minimumDate());
}
