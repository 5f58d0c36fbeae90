#include "scheduledata.h"

namespace nivaro {

bool SCHEDULE_DATA::operator==(const SCHEDULE_DATA &other) const
{
    return id == other.id && name == other.name && type == other.type
        && startDate == other.startDate && pattern == other.pattern
        && description == other.description;
}

QDataStream &operator<<(QDataStream &out, const SCHEDULE_DATA &schedule)
{
    return out << qint32(schedule.id) << schedule.name << qint32(schedule.type)
               << schedule.startDate << schedule.pattern << schedule.description;
}

QDataStream &operator>>(QDataStream &in, SCHEDULE_DATA &schedule)
{
    qint32 id = -1;
    qint32 type = 0;
    in >> id >> schedule.name >> type >> schedule.startDate >> schedule.pattern
        >> schedule.description;
    schedule.id = id;
    schedule.type = type;
    return in;
}

} // namespace nivaro
