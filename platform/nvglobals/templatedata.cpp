#include "templatedata.h"

#include "nvdatastream.h"

namespace nivaro {

bool _TEMPLATE_DATA::operator==(const _TEMPLATE_DATA &other) const
{
    return id == other.id && worker == other.worker && type == other.type
        && finger == other.finger && data == other.data && created == other.created;
}

QDataStream &operator<<(QDataStream &out, const _TEMPLATE_DATA &tpl)
{
    return out << tpl.id << tpl.worker << qint32(tpl.type) << tpl.finger << tpl.data << tpl.created;
}

QDataStream &operator>>(QDataStream &in, _TEMPLATE_DATA &tpl)
{
    qint32 type = 0;
    in >> tpl.id >> tpl.worker >> type >> tpl.finger >> tpl.data;
    readDateTime(in, tpl.created);
    tpl.type = type;
    return in;
}

} // namespace nivaro
