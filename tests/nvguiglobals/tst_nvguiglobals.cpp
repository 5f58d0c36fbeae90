#include <authdata.h>
#include <dbparams.h>
#include <guipassfuncs.h>
#include <nvguiglobals.h>
#include <settings.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace db::database::json;

class TestNVGuiGlobals : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { AuthData::setCurrent(AuthData()); }
    void imageRoundTrip();
    void imageGarbage_data();
    void imageGarbage();
    void restrictions_data();
    void restrictions();
    void settingsInIniFile();
};

void TestNVGuiGlobals::imageRoundTrip()
{
    QImage image(64, 48, QImage::Format_ARGB32);
    image.fill(QColor(0, 128, 255, 128));
    const QByteArray bytes = NVGuiGlobals::imageToDB(image, 50);
    QVERIFY(bytes.startsWith("\xff\xd8"));
    // Records keep hex text; it must come back as the same picture size.
    const QImage back = NVGuiGlobals::imageFromDB(QByteArray::fromHex(bytes.toHex()));
    QCOMPARE(back.size(), image.size());
    QVERIFY(NVGuiGlobals::imageToDB(QImage(), 50).isEmpty());
}

void TestNVGuiGlobals::imageGarbage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("jpeg header only") << QByteArray("\xff\xd8\xff\xe0\x00\x10JFIF", 10);
    QTest::newRow("hex text not decoded") << QByteArray("ffd8ffe0");
    QTest::newRow("png header, no body") << QByteArray("\x89PNG\r\n\x1a\n", 8);
}

void TestNVGuiGlobals::imageGarbage()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(NVGuiGlobals::imageFromDB(bytes).isNull());
}

void TestNVGuiGlobals::restrictions_data()
{
    QTest::addColumn<QStringList>("barred");
    QTest::addColumn<bool>("administrator");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("nothing") << QStringList() << false << QStringList();
    QTest::newRow("one item") << QStringList{PERSONAL_DOCUMENT_INN} << false << QStringList{PERSONAL_DOCUMENT_INN};
    QTest::newRow("group spreads to its items")
        << QStringList{PERSONAL_DOCUMENT} << false
        << QStringList{PERSONAL_DOCUMENT_TYPE, PERSONAL_DOCUMENT_SERIES, PERSONAL_DOCUMENT_NUMBER,
                       PERSONAL_DOCUMENT_INN, PERSONAL_DOCUMENT_SNILS};
    QTest::newRow("administrator is never barred") << QStringList{PERSONAL_GENERAL, PERSONAL_CONTACT_PHONE} << true << QStringList();
}

void TestNVGuiGlobals::restrictions()
{
    QFETCH(QStringList, barred);
    QFETCH(bool, administrator);
    QFETCH(QStringList, expected);
    AuthData auth(5, QStringLiteral("operator"), administrator);
    for (const QString &name : barred)
        auth.setRestriction(name, true);
    AuthData::setCurrent(auth);
    const QMap<QString, bool> map = GUIPassFuncs::getPersonalDataRestrictions();
    QCOMPARE(map.size(), 15);
    QStringList got;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it.value())
            got << it.key();
    }
    std::sort(got.begin(), got.end());
    std::sort(expected.begin(), expected.end());
    QCOMPARE(got, expected);
}

void TestNVGuiGlobals::settingsInIniFile()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("client.ini"));
    Settings::setFileName(file);
    QVERIFY(!Settings::value(QStringLiteral("accessctlview/schedules_show_shifts"), false).toBool());
    Settings::setValue(QStringLiteral("accessctlview/schedules_show_shifts"), true);
    QVERIFY(Settings::value(QStringLiteral("accessctlview/schedules_show_shifts")).toBool());
    QVERIFY(QFile::exists(file));
    Settings::setFileName(QString());
}

QTEST_GUILESS_MAIN(TestNVGuiGlobals)
#include "tst_nvguiglobals.moc"
