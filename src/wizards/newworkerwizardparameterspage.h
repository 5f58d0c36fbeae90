#ifndef NEWWORKERWIZARDPARAMETERSPAGE_H
#define NEWWORKERWIZARDPARAMETERSPAGE_H

#include "validatedwizardpage.h"

class INNValidator;
class NVComboBox;
class NVDateEdit;
class NVFilterComboBox;
class QLineEdit;
class SnilsEdit;

/**
 * The first page of the new employee wizard: the personal data, under the
 * rules of the employee property view (a surname is required, the INN is a
 * person's 12 digits with their check digits, the SNILS complete with its
 * check sum). The progress page asks it, before anything is sent, whether
 * the employee may be created.
 */
class NVDIALOGS_EXPORT NewWorkerWizardParametersPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerWizardParametersPage(QWidget *parent = nullptr);

    // Whether the employee may be created as the whole wizard now stands
    // (this page and those after it: a personnel number or a card may have
    // been taken since the operator passed their page); a refusal tells the
    // operator why on this page.
    virtual bool verifyCreateWorker();

    QString refusal() const override;
    QList<Field> fields() const override;
    // "Фамилия Имя Отчество" as typed, for the summary and the log.
    QString workerName() const;

private:
    void fillCitizenship();

    QLineEdit *m_surname;
    QLineEdit *m_name;
    QLineEdit *m_patronymic;
    NVComboBox *m_gender;
    NVDateEdit *m_birthday;
    NVFilterComboBox *m_citizenship;
    QLineEdit *m_docType;
    QLineEdit *m_docSeries;
    QLineEdit *m_docNumber;
    SnilsEdit *m_snils;
    QLineEdit *m_inn;
    INNValidator *m_innValidator;
};

#endif
