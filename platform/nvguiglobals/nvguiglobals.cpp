#include "nvguiglobals.h"

#include <QBuffer>
#include <QDebug>
#include <QPainter>

QByteArray NVGuiGlobals::imageToDB(const QImage &image, int quality)
{
    if (image.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    // JPEG has no alpha: flatten onto white, as a printed photo would be.
    QImage flat = image;
    if (image.hasAlphaChannel()) {
        flat = QImage(image.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter(&flat).drawImage(0, 0, image);
    }
    if (!flat.save(&buffer, "JPG", qBound(0, quality, 100))) {
        qDebug() << "imageToDB: encoding failed" << image.size();
        return {};
    }
    return bytes;
}

QImage NVGuiGlobals::imageFromDB(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return {};
    QImage image;
    if (!image.loadFromData(bytes))
        qDebug() << "imageFromDB: not an image," << bytes.size() << "bytes";
    return image;
}
