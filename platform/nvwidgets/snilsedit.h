#ifndef SNILSEDIT_H
#define SNILSEDIT_H

#include "nvwidgets_export.h"

#include <QLineEdit>

/**
 * Entry of the insurance number (SNILS) as "XXX-XXX-XXX YY". snils() gives
 * the eleven digits alone (empty while nothing is typed), which is what
 * the store keeps; snilsChanged carries the same.
 */
class NVWIDGETS_EXPORT SnilsEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit SnilsEdit(QWidget *parent = nullptr);

    QString snils() const;
    // Accepts digits with or without the mask's separators.
    void setSnils(const QString &snils);
    // Complete and with a correct check sum (numbers up to 001-001-998
    // carry no check sum and are accepted when complete).
    bool isAcceptable() const;
    static bool isValidSnils(const QString &digits);
    // Nine digits followed by their two-digit check sum.
    static QString withCheckSum(const QString &nineDigits);

    // Shows an empty field with this placeholder (e.g. for differing values
    // of several employees). The mask would hide a placeholder, so it is
    // lifted until the user starts typing or a number is set.
    void showPlaceholder(const QString &text);

    // A number that cannot be right (a wrong check sum, or too few digits
    // once the user has left the field) is marked red with a tooltip that
    // says why. Only a mark: the number stays the user's to keep.
    bool isMarkedInvalid() const { return !m_problem.isEmpty(); }

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

Q_SIGNALS:
    void snilsChanged(const QString &snils);

private:
    void restoreMask();
    void updateMark();

    QString m_problem;
};

#endif
