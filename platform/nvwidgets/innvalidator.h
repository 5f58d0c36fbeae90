#ifndef INNVALIDATOR_H
#define INNVALIDATOR_H

#include "nvwidgets_export.h"

#include <QValidator>

/**
 * Validates a taxpayer number (INN): 10 digits for an organisation, 12 for
 * a person, each with its check digits. Digits only; a prefix of a possible
 * number is Intermediate, a complete one with wrong check digits Invalid.
 */
class NVWIDGETS_EXPORT INNValidator : public QValidator
{
    Q_OBJECT
public:
    enum Kind {
        Personal,      // 12 digits
        Organisation,  // 10 digits
        Any,           // either
    };
    explicit INNValidator(Kind kind = Any, QObject *parent = nullptr);

    Kind kind() const { return m_kind; }
    State validate(QString &input, int &pos) const override;

    static bool isValidInn10(const QString &digits);
    static bool isValidInn12(const QString &digits);
    // The number with its check digits added: 9 digits give an
    // organisation's INN, 10 a person's. Other input comes back as it is.
    static QString withCheckDigits(const QString &digits);

private:
    Kind m_kind;
};

#endif
