#include "nvcustomparams.h"

#include "typeinfo.h"

#include <QHash>

namespace {
QHash<QString, QString> &names()
{
    static QHash<QString, QString> map;
    return map;
}
} // namespace

void NVCustomParams::registerType(const nivaro::TypeInfo &type)
{
    const QList<nivaro::TypeInfo::CustomParam> params = type.customParams();
    for (const nivaro::TypeInfo::CustomParam &p : params)
        setParamName(p.key, p.name);
}

void NVCustomParams::setParamName(const QString &key, const QString &name)
{
    names().insert(key, name);
}

QString NVCustomParams::paramName(const QString &key)
{
    const QString name = names().value(key);
    return name.isEmpty() ? key : name;
}

void NVCustomParams::clear()
{
    names().clear();
}
