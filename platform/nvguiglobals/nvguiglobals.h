#ifndef NVGUIGLOBALS_H
#define NVGUIGLOBALS_H

#include "nvguiglobals_export.h"

#include <QByteArray>
#include <QImage>

/**
 * The byte form in which images travel in records and blobs. Records keep
 * these bytes as hexadecimal text (QByteArray::toHex / fromHex).
 */
class NVGUIGLOBALS_EXPORT NVGuiGlobals
{
public:
    // JPEG at the given quality (0-100); a null image gives empty bytes.
    static QByteArray imageToDB(const QImage &image, int quality);
    // Any format Qt reads; bytes that are no image give a null image.
    static QImage imageFromDB(const QByteArray &bytes);
};

#endif
