#include <datanames.h>
#include <dbparams.h>
#include <objectinfo.h>
#include <objecttypes.h>
#include <stringpool.h>

#include <QtEndian>
#include <QtTest>

using nivaro::ObjectInfo;

namespace {

ObjectInfo employee()
{
    ObjectInfo o(4711, nivaro::OT_WORKER,
                 {{db::worker::LAST_NAME, QStringLiteral("Иванов")},
                  {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                  {db::worker::BIRTHDAY, QStringLiteral("1980-02-29")},
                  {db::worker::DESCRIPTION, QStringLiteral("строка\nс переводом и \"кавычками\"")},
                  {db::worker::LOCKED, QString()}});
    o.setParent(12);
    o.addChild(nivaro::link::CARD, 900);
    o.addChild(nivaro::link::CARD, 901);
    o.addParent(nivaro::link::JOB, 33);
    return o;
}

} // namespace

class TestObjectInfo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void defaultIsInvalid();
    void absentKeyReadsAsEmpty();
    void links();
    void copiesAreIndependent();
    void roundTrip_data();
    void roundTrip();
    void serializeIsDeterministic();
    void poolSharesKeys();
    void everyTruncationIsRefused();
    void hostileBytes_data();
    void hostileBytes();
    void datatype_data();
    void datatype();
};

void TestObjectInfo::defaultIsInvalid()
{
    QVERIFY(!ObjectInfo().isValid());
    QVERIFY(ObjectInfo(0, nivaro::OT_WORKER).isValid());
    ObjectInfo built;
    built.setTypeName(nivaro::OT_CARD);
    QVERIFY(built.isValid());
}

void TestObjectInfo::absentKeyReadsAsEmpty()
{
    const ObjectInfo o = employee();
    QVERIFY(o.parameter(QStringLiteral("PT_NOPE")).isEmpty());
    QCOMPARE(o.parameter(QStringLiteral("PT_NOPE"), QStringLiteral("-1")), QStringLiteral("-1"));
    QVERIFY(o.hasParameter(db::worker::LOCKED));
    QVERIFY(!o.hasParameter(QStringLiteral("PT_NOPE")));
}

void TestObjectInfo::links()
{
    ObjectInfo o = employee();
    QCOMPARE(o.inheritedChildren(nivaro::link::CARD), (QList<nivaro::TYPE_ID>{900, 901}));
    QVERIFY(o.hasInheritedChildren(nivaro::link::CARD));
    QVERIFY(!o.hasInheritedChildren(nivaro::link::JOB));
    QVERIFY(o.hasInheritedParents(nivaro::link::JOB));
    QCOMPARE(o.inheritedSingleChild(nivaro::link::VEHICLE), 0u);
    o.addChild(nivaro::link::CARD, 900); // a repeat is one link
    QCOMPARE(o.inheritedChildren(nivaro::link::CARD).size(), 2);
    o.removeChild(nivaro::link::CARD, 900);
    QCOMPARE(o.inheritedSingleChild(nivaro::link::CARD), 901u);
}

void TestObjectInfo::copiesAreIndependent()
{
    const ObjectInfo original = employee();
    ObjectInfo copy = original;
    copy.setParameter(db::worker::LAST_NAME, QStringLiteral("Петров"));
    copy.addChild(nivaro::link::CARD, 902);
    QCOMPARE(original.parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
    QCOMPARE(original.inheritedChildren(nivaro::link::CARD).size(), 2);
    QVERIFY(copy != original);
}

void TestObjectInfo::roundTrip_data()
{
    QTest::addColumn<ObjectInfo>("object");
    QTest::newRow("employee with links") << employee();
    QTest::newRow("no parameters") << ObjectInfo(1, nivaro::OT_SUBJECT_ROOT);
    QTest::newRow("empty type") << ObjectInfo(7, QString());
    ObjectInfo big(0xFFFFFFFFu, nivaro::OT_DB_SETTINGS);
    big.setParent(0xFFFFFFFEu);
    big.setParameter(db::worker::PHOTO, QString(70000, QLatin1Char('a')));
    big.setParameter(QStringLiteral("ключ"), QStringLiteral("😀 emoji"));
    QTest::newRow("large and non-ascii") << big;
}

void TestObjectInfo::roundTrip()
{
    QFETCH(ObjectInfo, object);
    const QByteArray bytes = object.serialize();
    const ObjectInfo back(bytes);
    QVERIFY(back.isValid());
    QCOMPARE(back, object);
    nivaro::StringPool pool;
    QCOMPARE(ObjectInfo::deserialize(bytes, &pool), object);
}

void TestObjectInfo::serializeIsDeterministic()
{
    // Equal records must give equal bytes however their hashes were filled,
    // so that the store can compare and dedupe bodies.
    ObjectInfo a(5, nivaro::OT_CARD);
    ObjectInfo b(5, nivaro::OT_CARD);
    for (int i = 0; i < 50; ++i)
        a.setParameter(QStringLiteral("PT_K%1").arg(i), QString::number(i));
    for (int i = 49; i >= 0; --i)
        b.setParameter(QStringLiteral("PT_K%1").arg(i), QString::number(i));
    QCOMPARE(a.serialize(), b.serialize());
}

void TestObjectInfo::poolSharesKeys()
{
    nivaro::StringPool pool;
    const QByteArray bytes = employee().serialize();
    const ObjectInfo a = ObjectInfo::deserialize(bytes, &pool);
    const ObjectInfo b = ObjectInfo::deserialize(bytes, &pool);
    const QString keyA = a.parameters().find(db::worker::LAST_NAME).key();
    const QString keyB = b.parameters().find(db::worker::LAST_NAME).key();
    QVERIFY(keyA.isSharedWith(keyB));
}

void TestObjectInfo::everyTruncationIsRefused()
{
    const QByteArray bytes = employee().serialize();
    for (int n = 0; n < bytes.size(); ++n) {
        QString error;
        const ObjectInfo o = ObjectInfo::deserialize(bytes.left(n), nullptr, &error);
        QVERIFY2(!o.isValid(), qPrintable(QStringLiteral("prefix of %1 bytes accepted").arg(n)));
        QVERIFY(!error.isEmpty());
    }
}

void TestObjectInfo::hostileBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = ObjectInfo(3, nivaro::OT_CARD, {{QStringLiteral("PT_A"), QStringLiteral("b")}}).serialize();
    // Offsets in the byte form: header 4, uid 4, parent 4, type length 4 + 7.
    const int typeLength = 12;
    const int paramCount = typeLength + 4 + 7;

    auto patched = [&](int offset, quint32 value) {
        QByteArray b = good;
        qToLittleEndian(value, b.data() + offset);
        return b;
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("foreign magic") << QByteArray("PK\x03\x04garbage-garbage-garbage");
    QByteArray version = good;
    version[3] = char(2);
    QTest::newRow("newer version") << version;
    QTest::newRow("type length 4 GiB") << patched(typeLength, 0xFFFFFFFFu);
    QTest::newRow("type length past end") << patched(typeLength, 1000);
    QTest::newRow("parameter count 4 billion") << patched(paramCount, 0xFFFFFFF0u);
    QTest::newRow("parameter count one too many") << patched(paramCount, 2);
    QTest::newRow("trailing byte") << good + QByteArray(1, '\0');
    QByteArray badLink = ObjectInfo(3, nivaro::OT_CARD).serialize();
    badLink.chop(4);
    badLink += QByteArray::fromHex("01000000" "07" "0100" "05000000");
    QTest::newRow("bad link direction") << badLink;
}

void TestObjectInfo::hostileBytes()
{
    QFETCH(QByteArray, bytes);
    QString error;
    QVERIFY(!ObjectInfo::deserialize(bytes, nullptr, &error).isValid());
    QVERIFY(!error.isEmpty());
    QVERIFY(!ObjectInfo(bytes).isValid());
}

void TestObjectInfo::datatype_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("dataname");
    QTest::newRow("worker") << nivaro::OT_WORKER << nivaro::SUBJECT_DATANAME;
    QTest::newRow("department") << nivaro::OT_DEPARTMENT << nivaro::ORGSTRUCTURE_DATANAME;
    QTest::newRow("firm") << nivaro::OT_FIRM << nivaro::ORGSTRUCTURE_DATANAME;
    QTest::newRow("card") << nivaro::OT_CARD << nivaro::CARD_DATANAME;
    QTest::newRow("profile") << nivaro::OT_SMARTCARD_PROFILE << nivaro::SMARTCARD_PROFILE_DATANAME;
    QTest::newRow("reader model") << db::devices::cardreader::SMARTCARD << nivaro::DEVICE_DATANAME;
    QTest::newRow("unknown") << QStringLiteral("OT_NOTHING") << QString();
}

void TestObjectInfo::datatype()
{
    QFETCH(QString, type);
    QFETCH(QString, dataname);
    QCOMPARE(ObjectInfo::datatype(type), dataname);
}

QTEST_GUILESS_MAIN(TestObjectInfo)
#include "tst_objectinfo.moc"
