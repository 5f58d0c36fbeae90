#ifndef NIVARO_OBJECTINFO_H
#define NIVARO_OBJECTINFO_H

#include "nvglobals_export.h"
#include "nvtypes.h"

#include <QHash>
#include <QList>
#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>

class QDebug;

namespace nivaro {

class ObjectInfoData;
class StringPool;

/**
 * One server object: uid, type name, parent uid, text parameters and typed
 * links to other objects. A value type with implicit sharing, so selections
 * of thousands of records copy cheaply.
 *
 * A default-constructed record is invalid; a failed look-up in the store and
 * bytes that do not decode both give one.
 */
class NVGLOBALS_EXPORT ObjectInfo
{
public:
    using Parameters = QHash<QString, QString>;

    ObjectInfo();
    ObjectInfo(TYPE_ID uid, const QString &typeName, const Parameters &parameters = Parameters());
    // Decodes the bytes of serialize(); anything else gives an invalid record.
    explicit ObjectInfo(const QByteArray &bytes);
    ObjectInfo(const ObjectInfo &other);
    ObjectInfo(ObjectInfo &&other) noexcept;
    ObjectInfo &operator=(const ObjectInfo &other);
    ObjectInfo &operator=(ObjectInfo &&other) noexcept;
    ~ObjectInfo();

    bool isValid() const;

    TYPE_ID uid() const;
    void setUid(TYPE_ID uid);
    QString typeName() const;
    void setTypeName(const QString &typeName);
    TYPE_ID parent() const;
    void setParent(TYPE_ID parent);

    const Parameters &parameters() const;
    void setParameters(const Parameters &parameters);
    // An absent key reads as the default (the empty text unless given).
    QString parameter(const QString &key, const QString &defaultValue = QString()) const;
    bool hasParameter(const QString &key) const;
    void setParameter(const QString &key, const QString &value);
    void removeParameter(const QString &key);

    void addChild(LinkKind kind, TYPE_ID uid);
    void addParent(LinkKind kind, TYPE_ID uid);
    void removeChild(LinkKind kind, TYPE_ID uid);
    void removeParent(LinkKind kind, TYPE_ID uid);
    QList<TYPE_ID> inheritedChildren(LinkKind kind) const;
    QList<TYPE_ID> inheritedParents(LinkKind kind) const;
    bool hasInheritedChildren(LinkKind kind) const;
    bool hasInheritedParents(LinkKind kind) const;
    // The one child of a kind that has at most one; 0 when there is none.
    TYPE_ID inheritedSingleChild(LinkKind kind) const;

    QByteArray serialize() const;
    // Like the bytes constructor; a pool shares the parameter keys between
    // records (the store loads hundreds of thousands with the same keys),
    // and error receives why the bytes were refused.
    static ObjectInfo deserialize(const QByteArray &bytes, StringPool *pool = nullptr,
                                  QString *error = nullptr);

    // The data name of the collection in which objects of this type live;
    // empty for a type the store does not keep.
    static QString datatype(const QString &typeName);

    bool operator==(const ObjectInfo &other) const;
    bool operator!=(const ObjectInfo &other) const { return !(*this == other); }

private:
    QSharedDataPointer<ObjectInfoData> d;
};

NVGLOBALS_EXPORT QDebug operator<<(QDebug debug, const ObjectInfo &object);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::ObjectInfo)
Q_DECLARE_TYPEINFO(nivaro::ObjectInfo, Q_MOVABLE_TYPE);

#endif
