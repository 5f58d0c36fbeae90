#include "nvdatastream.h"

#include <QTimeZone>

namespace nivaro {

NVDataStream::NVDataStream(QByteArray *bytes, QIODevice::OpenMode mode)
    : QDataStream(bytes, mode)
{
    setVersion(QDataStream::Qt_5_15);
}

NVDataStream::NVDataStream(const QByteArray &bytes)
    : QDataStream(bytes)
{
    setVersion(QDataStream::Qt_5_15);
}

QDataStream &readDateTime(QDataStream &in, QDateTime &value)
{
    in >> value;
    if (in.status() == QDataStream::Ok && value.timeSpec() == Qt::TimeZone && !value.timeZone().isValid()) {
        value = QDateTime();
        in.setStatus(QDataStream::ReadCorruptData);
    }
    return in;
}

} // namespace nivaro
