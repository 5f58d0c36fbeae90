#include <nvcustomparams.h>
#include <objecttypes.h>
#include <typeinfo.h>

#include <QtTest>

using nivaro::TypeInfo;

class TestTypeInfo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { NVCustomParams::clear(); }
    void paramsKeepTheirOrder();
    void paramName_data();
    void paramName();
};

void TestTypeInfo::paramsKeepTheirOrder()
{
    TypeInfo type(nivaro::OT_WORKER, QStringLiteral("Сотрудник"));
    QVERIFY(type.isValid());
    QVERIFY(!TypeInfo().isValid());
    type.addCustomParam(QStringLiteral("CP_A"), QStringLiteral("А"));
    type.addCustomParam(QStringLiteral("CP_B"), QStringLiteral("Б"));
    // Named again: same place, new name.
    type.addCustomParam(QStringLiteral("CP_A"), QStringLiteral("А2"));
    QCOMPARE(type.customParamKeys(), (QStringList{QStringLiteral("CP_A"), QStringLiteral("CP_B")}));
    QCOMPARE(type.customParams().first().name, QStringLiteral("А2"));
}

void TestTypeInfo::paramName_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    QTest::newRow("registered") << "CP_LOCKER" << "Номер шкафчика";
    QTest::newRow("unknown shows its key") << "CP_UNKNOWN" << "CP_UNKNOWN";
    QTest::newRow("named empty shows its key") << "CP_EMPTY" << "CP_EMPTY";
}

void TestTypeInfo::paramName()
{
    QFETCH(QString, key);
    QFETCH(QString, name);
    TypeInfo type(nivaro::OT_WORKER);
    type.addCustomParam(QStringLiteral("CP_LOCKER"), QStringLiteral("Номер шкафчика"));
    type.addCustomParam(QStringLiteral("CP_EMPTY"), QString());
    NVCustomParams::registerType(type);
    QCOMPARE(NVCustomParams::paramName(key), name);
}

QTEST_GUILESS_MAIN(TestTypeInfo)
#include "tst_typeinfo.moc"
