#include "newworkerphotopage.h"

#include <dbparams.h>
#include <localstorage.h>
#include <nvguiglobals.h>
#include <photowidget.h>

#include <QImage>
#include <QLabel>
#include <QVBoxLayout>

NewWorkerPhotoPage::NewWorkerPhotoPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_photo(new PhotoWidget(this))
{
    setObjectName(QStringLiteral("NewWorkerPhotoPage"));
    setTitle(tr("Фотография"));
    setSubTitle(tr("Необязательно: фотографию можно добавить позже."));
    m_photo->setObjectName(QStringLiteral("photoWidget"));
    const bool denied = photosDenied();
    m_photo->setDefaultPicture(QPixmap(denied ? QStringLiteral(":/accessctl/fz152") : QStringLiteral(":/accessctl/no_photo")));
    m_photo->setButtonsEnabled(!denied);
    revalidate();
    if (denied)
        reasonLabel()->setText(tr("Хранение фотографий сотрудников запрещено настройками базы данных"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_photo, 1);
    layout->addWidget(reasonLabel());
}

bool NewWorkerPhotoPage::photosDenied() const
{
    return nivaro::LocalStorage::instance()->dbSettings().parameter(db::database::PD_DENY_STORE_USER_PHOTOS)
        == QLatin1String("true");
}

QList<ValidatedWizardPage::Field> NewWorkerPhotoPage::fields() const
{
    QList<Field> list;
    const QPixmap photo = m_photo->photo();
    if (photo.isNull() || photosDenied())
        return list;
    const QImage image = photo.toImage();
    const QImage preview = image.scaled(64, 64, Qt::KeepAspectRatio, Qt::FastTransformation);
    const QString shown = tr("%1 x %2").arg(image.width()).arg(image.height());
    addField(list, db::worker::PHOTO, tr("Фотография"), QString::fromLatin1(NVGuiGlobals::imageToDB(image, 50).toHex()), shown);
    // The preview goes with the photo; the summary names the photo once.
    addField(list, db::worker::PHOTO_PREVIEW, QString(),
             QString::fromLatin1(NVGuiGlobals::imageToDB(preview, 45).toHex()), shown);
    return list;
}
