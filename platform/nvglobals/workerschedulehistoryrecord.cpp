#include "workerschedulehistoryrecord.h"

#include "nvdatastream.h"

namespace nivaro {

bool _WORKER_SCHEDULE_HISTORY_RECORD_V2::operator==(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &other) const
{
    return id == other.id && worker == other.worker && scheduleId == other.scheduleId
        && startDate == other.startDate && endDate == other.endDate
        && loopStartDate == other.loopStartDate && created == other.created;
}

QDataStream &operator<<(QDataStream &out, const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return out << record.id << record.worker << qint32(record.scheduleId) << record.startDate
               << record.endDate << record.loopStartDate << record.created;
}

QDataStream &operator>>(QDataStream &in, _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    qint32 scheduleId = -1;
    in >> record.id >> record.worker >> scheduleId >> record.startDate >> record.endDate >> record.loopStartDate;
    readDateTime(in, record.created);
    record.scheduleId = scheduleId;
    return in;
}

} // namespace nivaro
