#ifndef NVDATEEDIT_H
#define NVDATEEDIT_H

#include "nvwidgets_export.h"

#include <QDateEdit>

/**
 * A date edit that can be empty: its minimum date is its special value,
 * shown as the special-value text (empty by default, "(разные значения)"
 * for a mixed selection). clear() goes back to it; isEmpty() tells.
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

public Q_SLOTS:
    void clear() override;
};

#endif
