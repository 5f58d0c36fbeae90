#ifndef NEWWORKERPHOTOPAGE_H
#define NEWWORKERPHOTOPAGE_H

#include "validatedwizardpage.h"

class PhotoWidget;

/**
 * The new employee's photo, which may be left out. Where the database
 * bans storing photos the page says so and takes none.
 */
class NVDIALOGS_EXPORT NewWorkerPhotoPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerPhotoPage(QWidget *parent = nullptr);

    PhotoWidget *photoWidget() const { return m_photo; }
    bool photosDenied() const;

    QString refusal() const override { return QString(); }
    // The photo and its preview as the property view stores them (hex).
    QList<Field> fields() const override;

private:
    PhotoWidget *m_photo;
};

#endif
