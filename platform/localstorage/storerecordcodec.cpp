#include "storerecordcodec.h"

#include <nvdatastream.h>

namespace nivaro {

namespace {

// Smallest stream form of a schedule history record: id, worker and
// schedule id, three QDates and a QDateTime.
constexpr qint64 MinHistoryRecordSize = 3 * 4 + 4 * 8;
// Smallest stream form of a template: id, worker, type, finger and the
// length of its bytes; the date-time adds more.
constexpr qint64 MinTemplateSize = 3 * 4 + 2 + 4;

template<typename T>
QByteArray encode(const T &value)
{
    QByteArray bytes;
    NVDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

bool finish(const NVDataStream &in, const char *what, QString *error)
{
    if (in.status() == QDataStream::Ok && in.atEnd())
        return true;
    if (error) {
        *error = in.status() == QDataStream::Ok ? QStringLiteral("%1: trailing bytes").arg(QLatin1String(what))
                                                : QStringLiteral("%1: truncated or corrupt").arg(QLatin1String(what));
    }
    return false;
}

} // namespace

bool StoreRecordCodec::decodeObject(const QByteArray &bytes, StringPool *pool, ObjectInfo *object, QString *error)
{
    *object = ObjectInfo::deserialize(bytes, pool, error);
    return object->isValid();
}

QByteArray StoreRecordCodec::encodeSchedule(const SCHEDULE_DATA &schedule)
{
    return encode(schedule);
}

bool StoreRecordCodec::decodeSchedule(const QByteArray &bytes, SCHEDULE_DATA *schedule, QString *error)
{
    NVDataStream in(bytes);
    in >> *schedule;
    return finish(in, "schedule", error);
}

QByteArray StoreRecordCodec::encodeScheduleHistory(const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records)
{
    QByteArray bytes;
    NVDataStream out(&bytes, QIODevice::WriteOnly);
    writeList(out, records);
    return bytes;
}

bool StoreRecordCodec::decodeScheduleHistory(const QByteArray &bytes, QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> *records,
                                             QString *error)
{
    NVDataStream in(bytes);
    readList(in, *records, MinHistoryRecordSize);
    return finish(in, "schedule history", error);
}

QByteArray StoreRecordCodec::encodeAbsences(const _WORKER_ABSENCE_REASON &absences)
{
    return encode(absences);
}

bool StoreRecordCodec::decodeAbsences(const QByteArray &bytes, _WORKER_ABSENCE_REASON *absences, QString *error)
{
    NVDataStream in(bytes);
    in >> *absences;
    return finish(in, "absence records", error);
}

QByteArray StoreRecordCodec::encodeTemplates(const QList<_TEMPLATE_DATA> &templates)
{
    QByteArray bytes;
    NVDataStream out(&bytes, QIODevice::WriteOnly);
    writeList(out, templates);
    return bytes;
}

bool StoreRecordCodec::decodeTemplates(const QByteArray &bytes, QList<_TEMPLATE_DATA> *templates, QString *error)
{
    NVDataStream in(bytes);
    readList(in, *templates, MinTemplateSize);
    return finish(in, "templates", error);
}

} // namespace nivaro
