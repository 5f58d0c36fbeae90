#include <dbparams.h>
#include <nvglobals.h>
#include <objectinfo.h>
#include <objecttypes.h>

#include <QtTest>

using nivaro::ObjectInfo;

class TestNVGlobals : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void objectName_data();
    void objectName();
    void cardId_data();
    void cardId();
    void cardIdTextRoundTrip_data();
    void cardIdTextRoundTrip();
};

void TestNVGlobals::objectName_data()
{
    QTest::addColumn<ObjectInfo>("object");
    QTest::addColumn<QString>("name");
    QTest::newRow("full name") << ObjectInfo(1, nivaro::OT_WORKER,
                                             {{db::worker::LAST_NAME, QStringLiteral("Иванов")},
                                              {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                                              {db::worker::MIDDLE_NAME, QStringLiteral("Иванович")}})
                               << QStringLiteral("Иванов Иван Иванович");
    QTest::newRow("no patronymic, stray spaces")
        << ObjectInfo(1, nivaro::OT_WORKER,
                      {{db::worker::LAST_NAME, QStringLiteral(" Smith ")}, {db::worker::FIRST_NAME, QStringLiteral("John")}})
        << QStringLiteral("Smith John");
    QTest::newRow("only a first name")
        << ObjectInfo(1, nivaro::OT_WORKER, {{db::worker::FIRST_NAME, QStringLiteral("Анна")}}) << QStringLiteral("Анна");
    QTest::newRow("department") << ObjectInfo(2, nivaro::OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Бухгалтерия")},
                                                                      {db::worker::LAST_NAME, QStringLiteral("x")}})
                                << QStringLiteral("Бухгалтерия");
    QTest::newRow("invalid record") << ObjectInfo() << QString();
    // A stored name must not read backwards or break a line where it is shown.
    QTest::newRow("bidi override and control characters")
        << ObjectInfo(1, nivaro::OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("\u202EвонавИ\u202C")},
                                             {db::worker::FIRST_NAME, QStringLiteral("Ив\nан\u2066")}})
        << QStringLiteral("вонавИ Иван");
}

void TestNVGlobals::objectName()
{
    QFETCH(ObjectInfo, object);
    QFETCH(QString, name);
    QCOMPARE(NVGlobals::objectName(object), name);
}

void TestNVGlobals::cardId_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("format");
    QTest::addColumn<quint64>("id");
    QTest::newRow("decimal") << QStringLiteral("123") << int(NVGlobals::CardDecimal) << quint64(123);
    QTest::newRow("decimal with spaces") << QStringLiteral(" 4294967296 ") << int(NVGlobals::CardDecimal) << quint64(4294967296ull);
    QTest::newRow("decimal garbage") << QStringLiteral("12a") << int(NVGlobals::CardDecimal) << quint64(0);
    QTest::newRow("wiegand26") << QStringLiteral("045,12345") << int(NVGlobals::CardWiegand26) << quint64(45 * 65536 + 12345);
    QTest::newRow("wiegand26 slash") << QStringLiteral("45/12345") << int(NVGlobals::CardWiegand26) << quint64(45 * 65536 + 12345);
    QTest::newRow("wiegand26 facility too big") << QStringLiteral("256,1") << int(NVGlobals::CardWiegand26) << quint64(0);
    QTest::newRow("wiegand26 number too big") << QStringLiteral("1,65536") << int(NVGlobals::CardWiegand26) << quint64(0);
    QTest::newRow("wiegand26 plain number") << QStringLiteral("2961465") << int(NVGlobals::CardWiegand26) << quint64(2961465);
    QTest::newRow("wiegand34") << QStringLiteral("1000,1") << int(NVGlobals::CardWiegand34) << quint64(1000 * 65536 + 1);
    QTest::newRow("hex") << QStringLiteral("2d3039") << int(NVGlobals::CardHex) << quint64(0x2d3039);
    QTest::newRow("decimal24 too big") << QStringLiteral("16777216") << int(NVGlobals::CardDecimal24) << quint64(0);
    QTest::newRow("unknown format") << QStringLiteral("1") << 99 << quint64(0);
}

void TestNVGlobals::cardId()
{
    QFETCH(QString, text);
    QFETCH(int, format);
    QFETCH(quint64, id);
    QCOMPARE(NVGlobals::cardId(text, format), id);
}

void TestNVGlobals::cardIdTextRoundTrip_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("decimal") << int(NVGlobals::CardDecimal);
    QTest::newRow("wiegand26") << int(NVGlobals::CardWiegand26);
    QTest::newRow("hex") << int(NVGlobals::CardHex);
    QTest::newRow("decimal24") << int(NVGlobals::CardDecimal24);
    QTest::newRow("wiegand34") << int(NVGlobals::CardWiegand34);
}

void TestNVGlobals::cardIdTextRoundTrip()
{
    // What a person copies from a view must find the card again.
    QFETCH(int, format);
    const quint64 id = 45 * 65536 + 12345;
    QCOMPARE(NVGlobals::cardId(NVGlobals::cardIdText(id, format), format), id);
}

QTEST_GUILESS_MAIN(TestNVGlobals)
#include "tst_nvglobals.moc"
