#include "objectinfo.h"

#include "datanames.h"
#include "objecttypes.h"
#include "stringpool.h"

#include <QDebug>
#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace nivaro {

namespace {

struct Link
{
    quint8 direction; // 0: child, 1: parent
    LinkKind kind;
    TYPE_ID uid;
    bool operator==(const Link &o) const
    {
        return direction == o.direction && kind == o.kind && uid == o.uid;
    }
};

constexpr quint8 Child = 0;
constexpr quint8 Parent = 1;

// Byte form: "NVO" and a version byte, then little-endian fields:
// uid u32, parent u32, type str, parameter count u32 and key/value strs,
// link count u32 and (direction u8, kind u16, uid u32) per link.
// A str is a u32 byte length followed by that many UTF-8 bytes.
constexpr char Magic[3] = {'N', 'V', 'O'};
constexpr quint8 FormatVersion = 1;
constexpr int HeaderSize = 4;
constexpr int LinkSize = 7;

class Reader
{
public:
    Reader(const QByteArray &bytes)
        : m_data(bytes.constData())
        , m_left(bytes.size())
    {
    }

    int left() const { return m_left; }

    bool skip(int n)
    {
        if (n < 0 || n > m_left)
            return false;
        m_data += n;
        m_left -= n;
        return true;
    }
    bool u8(quint8 &v)
    {
        if (m_left < 1)
            return false;
        v = quint8(*m_data);
        return skip(1);
    }
    bool u16(quint16 &v)
    {
        if (m_left < 2)
            return false;
        v = qFromLittleEndian<quint16>(m_data);
        return skip(2);
    }
    bool u32(quint32 &v)
    {
        if (m_left < 4)
            return false;
        v = qFromLittleEndian<quint32>(m_data);
        return skip(4);
    }
    // Text whose length prefix is checked against what is left, so hostile
    // lengths never turn into allocations.
    bool str(QString &out, StringPool *pool)
    {
        quint32 n = 0;
        if (!u32(n) || n > quint32(m_left))
            return false;
        out = pool ? pool->intern(m_data, int(n)) : QString::fromUtf8(m_data, int(n));
        return skip(int(n));
    }

    bool value(QString &out, const QString &key, StringPool *pool)
    {
        quint32 n = 0;
        if (!u32(n) || n > quint32(m_left))
            return false;
        out = pool ? pool->internValue(key, m_data, int(n)) : QString::fromUtf8(m_data, int(n));
        return skip(int(n));
    }

private:
    const char *m_data;
    int m_left;
};

void putU16(QByteArray &out, quint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    out.append(b, 2);
}

void putU32(QByteArray &out, quint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    out.append(b, 4);
}

void putStr(QByteArray &out, const QString &s)
{
    const QByteArray utf8 = s.toUtf8();
    putU32(out, quint32(utf8.size()));
    out.append(utf8);
}

} // namespace

class ObjectInfoData : public QSharedData
{
public:
    bool valid = false;
    TYPE_ID uid = 0;
    TYPE_ID parent = 0;
    QString typeName;
    ObjectInfo::Parameters parameters;
    QVector<Link> links;

    QList<TYPE_ID> linked(quint8 direction, LinkKind kind) const
    {
        QList<TYPE_ID> out;
        for (const Link &l : links) {
            if (l.direction == direction && l.kind == kind)
                out.append(l.uid);
        }
        return out;
    }
    bool hasLink(quint8 direction, LinkKind kind) const
    {
        return std::any_of(links.cbegin(), links.cend(), [&](const Link &l) {
            return l.direction == direction && l.kind == kind;
        });
    }
    void addLink(quint8 direction, LinkKind kind, TYPE_ID target)
    {
        const Link link{direction, kind, target};
        if (!links.contains(link))
            links.append(link);
    }
};

ObjectInfo::ObjectInfo()
    : d(new ObjectInfoData)
{
}

ObjectInfo::ObjectInfo(TYPE_ID uid, const QString &typeName, const Parameters &parameters)
    : d(new ObjectInfoData)
{
    d->valid = true;
    d->uid = uid;
    d->typeName = typeName;
    d->parameters = parameters;
}

ObjectInfo::ObjectInfo(const QByteArray &bytes)
    : ObjectInfo(deserialize(bytes))
{
}

ObjectInfo::ObjectInfo(const ObjectInfo &other) = default;
ObjectInfo::ObjectInfo(ObjectInfo &&other) noexcept = default;
ObjectInfo &ObjectInfo::operator=(const ObjectInfo &other) = default;
ObjectInfo &ObjectInfo::operator=(ObjectInfo &&other) noexcept = default;
ObjectInfo::~ObjectInfo() = default;

bool ObjectInfo::isValid() const { return d->valid; }
TYPE_ID ObjectInfo::uid() const { return d->uid; }
QString ObjectInfo::typeName() const { return d->typeName; }
TYPE_ID ObjectInfo::parent() const { return d->parent; }
const ObjectInfo::Parameters &ObjectInfo::parameters() const { return d->parameters; }

// Editing an invalid record makes it a real one: hosts build records field
// by field, and an object with a uid or a type is no failed look-up.
void ObjectInfo::setUid(TYPE_ID uid)
{
    d->uid = uid;
    d->valid = true;
}

void ObjectInfo::setTypeName(const QString &typeName)
{
    d->typeName = typeName;
    d->valid = true;
}

void ObjectInfo::setParent(TYPE_ID parent) { d->parent = parent; }
void ObjectInfo::setParameters(const Parameters &parameters) { d->parameters = parameters; }

QString ObjectInfo::parameter(const QString &key, const QString &defaultValue) const
{
    return d->parameters.value(key, defaultValue);
}

bool ObjectInfo::hasParameter(const QString &key) const { return d->parameters.contains(key); }
void ObjectInfo::setParameter(const QString &key, const QString &value) { d->parameters.insert(key, value); }
void ObjectInfo::removeParameter(const QString &key) { d->parameters.remove(key); }

void ObjectInfo::addChild(LinkKind kind, TYPE_ID uid) { d->addLink(Child, kind, uid); }
void ObjectInfo::addParent(LinkKind kind, TYPE_ID uid) { d->addLink(Parent, kind, uid); }
void ObjectInfo::removeChild(LinkKind kind, TYPE_ID uid) { d->links.removeAll(Link{Child, kind, uid}); }
void ObjectInfo::removeParent(LinkKind kind, TYPE_ID uid) { d->links.removeAll(Link{Parent, kind, uid}); }
QList<TYPE_ID> ObjectInfo::inheritedChildren(LinkKind kind) const { return d->linked(Child, kind); }
QList<TYPE_ID> ObjectInfo::inheritedParents(LinkKind kind) const { return d->linked(Parent, kind); }
bool ObjectInfo::hasInheritedChildren(LinkKind kind) const { return d->hasLink(Child, kind); }
bool ObjectInfo::hasInheritedParents(LinkKind kind) const { return d->hasLink(Parent, kind); }

TYPE_ID ObjectInfo::inheritedSingleChild(LinkKind kind) const
{
    for (const Link &l : d->links) {
        if (l.direction == Child && l.kind == kind)
            return l.uid;
    }
    return 0;
}

QByteArray ObjectInfo::serialize() const
{
    QByteArray out;
    out.reserve(64 + d->parameters.size() * 48 + d->links.size() * LinkSize);
    out.append(Magic, 3);
    out.append(char(FormatVersion));
    putU32(out, d->uid);
    putU32(out, d->parent);
    putStr(out, d->typeName);
    // Keys in order, so that equal records give equal bytes whatever the
    // hash's iteration order happens to be.
    QStringList keys = d->parameters.keys();
    std::sort(keys.begin(), keys.end());
    putU32(out, quint32(keys.size()));
    for (const QString &key : qAsConst(keys)) {
        putStr(out, key);
        putStr(out, d->parameters.value(key));
    }
    putU32(out, quint32(d->links.size()));
    for (const Link &l : qAsConst(d->links)) {
        out.append(char(l.direction));
        putU16(out, l.kind);
        putU32(out, l.uid);
    }
    return out;
}

ObjectInfo ObjectInfo::deserialize(const QByteArray &bytes, StringPool *pool, QString *error)
{
    auto fail = [error](const char *why) {
        if (error)
            *error = QString::fromLatin1(why);
        return ObjectInfo();
    };
    if (bytes.size() < HeaderSize || std::memcmp(bytes.constData(), Magic, 3) != 0)
        return fail("not an object record");
    if (quint8(bytes.at(3)) != FormatVersion)
        return fail("unknown object record version");

    Reader in(bytes);
    in.skip(HeaderSize);
    ObjectInfo object;
    ObjectInfoData &o = *object.d;
    quint32 count = 0;
    if (!in.u32(o.uid) || !in.u32(o.parent) || !in.str(o.typeName, pool) || !in.u32(count))
        return fail("truncated object record");
    // Each parameter takes at least two length prefixes; a count that
    // cannot fit in what is left is a lie, refused before anything is reserved.
    if (count > quint32(in.left() / 8))
        return fail("parameter count exceeds the record");
    o.parameters.reserve(int(count));
    for (quint32 i = 0; i < count; ++i) {
        QString key;
        QString value;
        if (!in.str(key, pool) || !in.value(value, key, pool))
            return fail("truncated parameter");
        o.parameters.insert(key, value);
    }
    if (!in.u32(count))
        return fail("truncated object record");
    if (count > quint32(in.left() / LinkSize))
        return fail("link count exceeds the record");
    o.links.reserve(int(count));
    for (quint32 i = 0; i < count; ++i) {
        Link l{};
        if (!in.u8(l.direction) || !in.u16(l.kind) || !in.u32(l.uid))
            return fail("truncated link");
        if (l.direction > Parent)
            return fail("bad link direction");
        o.links.append(l);
    }
    if (in.left() != 0)
        return fail("trailing bytes after object record");
    o.valid = true;
    return object;
}

QString ObjectInfo::datatype(const QString &typeName)
{
    static const QHash<QString, QString> types = {
        {OT_WORKER, SUBJECT_DATANAME},
        {OT_SUBJECT_ROOT, ORGSTRUCTURE_DATANAME},
        {OT_FIRM, ORGSTRUCTURE_DATANAME},
        {OT_DEPARTMENT, ORGSTRUCTURE_DATANAME},
        {OT_JOB, JOB_DATANAME},
        {OT_CARD, CARD_DATANAME},
        {OT_SCHEDULE, SCHEDULE_DATANAME},
        {OT_REASON, REASON_DATANAME},
        {OT_POLICY, POLICY_DATANAME},
        {OT_ACCESS_ZONE, ACCESS_ZONE_DATANAME},
        {OT_DEVICE, DEVICE_DATANAME},
        {OT_USER, USER_DATANAME},
        {OT_VEHICLE, VEHICLE_DATANAME},
        {OT_SMARTCARD_PROFILE, SMARTCARD_PROFILE_DATANAME},
        {OT_DB_SETTINGS, DB_DATANAME},
    };
    const auto it = types.constFind(typeName);
    if (it != types.cend())
        return *it;
    // Terminal and reader models are device types of their own.
    if (typeName.startsWith(QLatin1String("OT_CARDREADER")) || typeName.startsWith(QLatin1String("OT_TERMINAL")))
        return DEVICE_DATANAME;
    return QString();
}

bool ObjectInfo::operator==(const ObjectInfo &other) const
{
    if (d == other.d)
        return true;
    return d->valid == other.d->valid && d->uid == other.d->uid && d->parent == other.d->parent
        && d->typeName == other.d->typeName && d->parameters == other.d->parameters
        && d->links == other.d->links;
}

QDebug operator<<(QDebug debug, const ObjectInfo &object)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "ObjectInfo(" << object.uid() << ", " << object.typeName()
                    << ", parent " << object.parent() << ", " << object.parameters().size()
                    << " parameters" << (object.isValid() ? "" : ", invalid") << ')';
    return debug;
}

} // namespace nivaro
