#ifndef DISMISSPROGRESSWIZARDPAGE_H
#define DISMISSPROGRESSWIZARDPAGE_H

#include "objectsprogresswizardpage.h"

#include <QDate>

/**
 * Dismisses the chosen employees, one "dismiss_object" task each, all with
 * the same date and reason. The server moves each record to the dismissed
 * ones in one transaction, so a failure leaves that employee in service.
 */
class NVDIALOGS_EXPORT DismissProgressWizardPage : public ObjectsProgressWizardPage
{
    Q_OBJECT
public:
    explicit DismissProgressWizardPage(QWidget *parent = nullptr);

    void setDismissal(const QDate &date, const QString &reason);

public Q_SLOTS:
    void dismissed(unsigned int uid) { reply(uid); }
};

#endif
