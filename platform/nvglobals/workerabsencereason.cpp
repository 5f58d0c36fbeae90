#include "workerabsencereason.h"

#include "nvdatastream.h"

namespace nivaro {

namespace {
// Smallest stream form of a record: two u32, three QDateTime (at least
// a QDate's 8 bytes each), a bool and an empty string's length.
constexpr qint64 MinRecordSize = 4 + 4 + 3 * 8 + 1 + 4;
} // namespace

bool _WORKER_ABSENCE_REASON_RECORD::operator==(const _WORKER_ABSENCE_REASON_RECORD &other) const
{
    return id == other.id && reason == other.reason && start == other.start && end == other.end
        && withTime == other.withTime && comment == other.comment && created == other.created;
}

bool _WORKER_ABSENCE_REASON::operator==(const _WORKER_ABSENCE_REASON &other) const
{
    return worker == other.worker && records == other.records;
}

QDataStream &operator<<(QDataStream &out, const _WORKER_ABSENCE_REASON_RECORD &record)
{
    return out << record.id << record.reason << record.start << record.end << record.withTime
               << record.comment << record.created;
}

QDataStream &operator>>(QDataStream &in, _WORKER_ABSENCE_REASON_RECORD &record)
{
    in >> record.id >> record.reason;
    readDateTime(in, record.start);
    readDateTime(in, record.end);
    in >> record.withTime >> record.comment;
    return readDateTime(in, record.created);
}

QDataStream &operator<<(QDataStream &out, const _WORKER_ABSENCE_REASON &reasons)
{
    out << reasons.worker;
    return writeList(out, reasons.records);
}

QDataStream &operator>>(QDataStream &in, _WORKER_ABSENCE_REASON &reasons)
{
    in >> reasons.worker;
    return readList(in, reasons.records, MinRecordSize);
}

} // namespace nivaro
