#include "typeinfo.h"

namespace nivaro {

TypeInfo::TypeInfo(const QString &typeName, const QString &name)
    : m_typeName(typeName)
    , m_name(name)
{
}

QStringList TypeInfo::customParamKeys() const
{
    QStringList keys;
    keys.reserve(m_params.size());
    for (const CustomParam &p : m_params)
        keys.append(p.key);
    return keys;
}

void TypeInfo::addCustomParam(const QString &key, const QString &name)
{
    for (CustomParam &p : m_params) {
        if (p.key == key) {
            p.name = name;
            return;
        }
    }
    m_params.append({key, name});
}

} // namespace nivaro
