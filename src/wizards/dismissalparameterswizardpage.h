#ifndef DISMISSALPARAMETERSWIZARDPAGE_H
#define DISMISSALPARAMETERSWIZARDPAGE_H

#include "nvdialogs_export.h"

#include <nvwizardpage.h>

#include <QDate>

class NVDateEdit;
class QLabel;
class QLineEdit;

/**
 * The date and the reason of a dismissal. The reason is required: it is
 * what HR is asked about later (and what the labour book entry cites), and
 * a record without it cannot be explained once the operator has moved on.
 */
class NVDIALOGS_EXPORT DismissalParametersWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    explicit DismissalParametersWizardPage(QWidget *parent = nullptr);

    void setDate(const QDate &date);
    QDate date() const;
    void setReason(const QString &reason);
    // Without control characters and surrounding blanks.
    QString reason() const;
    // What is still missing; empty when the page is complete.
    QString refusal() const;

private:
    void update();

    NVDateEdit *m_date;
    QLineEdit *m_reason;
    QLabel *m_hint;
};

#endif
