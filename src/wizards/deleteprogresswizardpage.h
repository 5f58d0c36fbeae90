#ifndef DELETEPROGRESSWIZARDPAGE_H
#define DELETEPROGRESSWIZARDPAGE_H

#include "objectsprogresswizardpage.h"

/**
 * Deletes the chosen objects, one task each. Members go before the
 * departments that hold them, since the server deletes only empty ones:
 * a department chosen with its people then goes once they are gone.
 */
class NVDIALOGS_EXPORT DeleteProgressWizardPage : public ObjectsProgressWizardPage
{
    Q_OBJECT
public:
    explicit DeleteProgressWizardPage(QWidget *parent = nullptr);

    void setUids(const QList<unsigned int> &uids) override;

public Q_SLOTS:
    void deleted(unsigned int uid) { reply(uid); }
};

#endif
