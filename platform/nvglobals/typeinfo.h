#ifndef NIVARO_TYPEINFO_H
#define NIVARO_TYPEINFO_H

#include "nvglobals_export.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace nivaro {

/**
 * What the server says about one object type: its type name, its display
 * name and the custom parameters that objects of the type may carry, in
 * the order the server lists them. A plain value.
 */
class NVGLOBALS_EXPORT TypeInfo
{
public:
    struct CustomParam
    {
        QString key;
        QString name;
        bool operator==(const CustomParam &o) const { return key == o.key && name == o.name; }
    };

    TypeInfo() = default;
    explicit TypeInfo(const QString &typeName, const QString &name = QString());

    // False for a default-constructed description (no type name).
    bool isValid() const { return !m_typeName.isEmpty(); }
    QString typeName() const { return m_typeName; }
    QString name() const { return m_name; }

    QList<CustomParam> customParams() const { return m_params; }
    QStringList customParamKeys() const;
    // A key given twice keeps its first place and takes the new name.
    void addCustomParam(const QString &key, const QString &name);

    bool operator==(const TypeInfo &o) const
    {
        return m_typeName == o.m_typeName && m_name == o.m_name && m_params == o.m_params;
    }

private:
    QString m_typeName;
    QString m_name;
    QList<CustomParam> m_params;
};

} // namespace nivaro

#endif
