#include "nvdatastream.h"

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

} // namespace nivaro
