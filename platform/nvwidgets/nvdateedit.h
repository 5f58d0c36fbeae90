#ifndef NVDATEEDIT_H
#define NVDATEEDIT_H

#include "nvwidgets_export.h"

#include <QDateEdit>

/**
 * A date edit that can be empty: its minimum date is its special value,
 * shown as the special-value text (empty by default, "(разные значения)"
 * for a mixed selection). clear() goes back to it; isEmpty() tells.
 *
 * An allowed range bounds what a user can enter. A date set from code
 * outside it is still shown as it is (the range widens while it is shown),
 * so that stored data never looks altered; isOutsideAllowedRange() tells.
 */
class NVWIDGETS_EXPORT NVDateEdit : public QDateEdit
{
    Q_OBJECT
public:
    explicit NVDateEdit(QWidget *parent = nullptr);

    // Invalid dates clear the edit.
    void setDateOrClear(const QDate &date);
    bool isEmpty() const;
    // The date, or an invalid one while the edit is empty.
    QDate dateOrNull() const;

    // The first and last date a user may enter; clears the edit.
    void setAllowedRange(const QDate &first, const QDate &last);
    bool isOutsideAllowedRange() const;

public Q_SLOTS:
    void clear() override;

private:
    void setBounds(const QDate &first, const QDate &last);

    QDate m_first;
    QDate m_last;
};

#endif
