#ifndef NEWFIRMPARAMETERSPAGE_H
#define NEWFIRMPARAMETERSPAGE_H

#include "validatedwizardpage.h"

class INNValidator;
class QLineEdit;

/**
 * A new firm's name (required), full name and the legal entity's tax
 * numbers: INN of 10 digits with its check digit, KPP of 9 digits.
 */
class NVDIALOGS_EXPORT NewFirmParametersPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewFirmParametersPage(QWidget *parent = nullptr);

    QString refusal() const override;
    QList<Field> fields() const override;
    QString firmName() const;

private:
    QLineEdit *m_name;
    QLineEdit *m_fullName;
    QLineEdit *m_inn;
    QLineEdit *m_kpp;
    INNValidator *m_innValidator;
};

#endif
