#ifndef NIVARO_NVDATASTREAM_H
#define NIVARO_NVDATASTREAM_H

#include "nvglobals_export.h"

#include <QDataStream>
#include <QDateTime>
#include <QIODevice>
#include <QList>

namespace nivaro {

/**
 * The data stream of the shared records: a QDataStream pinned to one
 * version, so that what one build writes every later build reads.
 *
 * Never read a list from untrusted bytes with QDataStream's own container
 * operators: they reserve whatever count the bytes claim. readList() checks
 * the count against the bytes that are left first.
 */
class NVGLOBALS_EXPORT NVDataStream : public QDataStream
{
public:
    NVDataStream(QByteArray *bytes, QIODevice::OpenMode mode);
    explicit NVDataStream(const QByteArray &bytes);
};

// Reads a date-time. A zone the bytes name but this system does not know
// comes back as an invalid zone, and writing that value again crashes
// inside Qt: such a value marks the stream corrupt instead.
NVGLOBALS_EXPORT QDataStream &readDateTime(QDataStream &in, QDateTime &value);

// Reads a count and that many items, each at least minItemSize bytes long
// in its stream form. A count the remaining bytes cannot hold marks the
// stream corrupt and leaves the list empty.
template<typename T>
QDataStream &readList(QDataStream &in, QList<T> &list, qint64 minItemSize)
{
    list.clear();
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok)
        return in;
    const qint64 available = in.device() ? in.device()->bytesAvailable() : 0;
    if (qint64(count) * qMax<qint64>(minItemSize, 1) > available) {
        in.setStatus(QDataStream::ReadCorruptData);
        return in;
    }
    list.reserve(int(count));
    for (quint32 i = 0; i < count; ++i) {
        T item;
        in >> item;
        if (in.status() != QDataStream::Ok) {
            list.clear();
            return in;
        }
        list.append(item);
    }
    return in;
}

template<typename T>
QDataStream &writeList(QDataStream &out, const QList<T> &list)
{
    out << quint32(list.size());
    for (const T &item : list)
        out << item;
    return out;
}

} // namespace nivaro

#endif
