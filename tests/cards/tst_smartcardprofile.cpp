#include <smartcardprofile.h>

#include <dbparams.h>
#include <objecttypes.h>

#include <nvscsettings.h>

#include <QtTest>

#include <memory>

using namespace db::scardprofile;
using nivaro::ObjectInfo;
using nvsmartcard::Key;

namespace {

ObjectInfo profile(const ObjectInfo::Parameters &parameters)
{
    return ObjectInfo(77, nivaro::OT_SMARTCARD_PROFILE, parameters);
}

// Takes the list's objects so that a failing check cannot leak them.
std::vector<std::unique_ptr<nvsc::SmartCardSettings>> own(const QList<nvsc::SmartCardSettings *> &list)
{
    std::vector<std::unique_ptr<nvsc::SmartCardSettings>> owned;
    for (nvsc::SmartCardSettings *s : list)
        owned.emplace_back(s);
    return owned;
}

} // namespace

class TestSmartCardProfile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void candidates_data();
    void candidates();
    void defaultDesfireTriesAesThenDes();
    void writeMode_data();
    void writeMode();
    void classicKeys();
    void desfireFields();
    void plusLevels_data();
    void plusLevels();
    void legacyKeyPieces_data();
    void legacyKeyPieces();
};

void TestSmartCardProfile::candidates_data()
{
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("types");
    const QList<int> none;
    for (const bool valid : {true, false}) {
        const char *tag = valid ? "profile" : "defaults";
        QTest::addRow("%s classic", tag) << valid << 1 << QList<int>{1};
        QTest::addRow("%s desfire", tag) << valid << 2 << (valid ? QList<int>{2} : QList<int>{2, 2});
        QTest::addRow("%s plus", tag) << valid << 5 << QList<int>{5};
        QTest::addRow("%s ultralight", tag) << valid << 3 << none;
        QTest::addRow("%s unknown", tag) << valid << 42 << none;
    }
}

void TestSmartCardProfile::candidates()
{
    QFETCH(bool, valid);
    QFETCH(int, type);
    QFETCH(QList<int>, types);
    const SmartCardProfile p(valid ? profile({}) : ObjectInfo());
    const auto list = own(p.smartCardSettings(nvsmartcard::CardType(type)));
    QList<int> got;
    for (const auto &s : list)
        got.append(int(s->cardType()));
    QCOMPARE(got, types);
}

void TestSmartCardProfile::defaultDesfireTriesAesThenDes()
{
    const auto list = own(SmartCardProfile(ObjectInfo()).smartCardSettings(nvsmartcard::MifareDESFire));
    QCOMPARE(int(list.size()), 2);
    const auto *first = dynamic_cast<const nvsc::MifareDESFireSettings *>(list[0].get());
    const auto *second = dynamic_cast<const nvsc::MifareDESFireSettings *>(list[1].get());
    QVERIFY(first && second);
    QCOMPARE(first->masterKey.type, int(nvsmartcard::AesKey));
    QCOMPARE(second->masterKey.type, int(nvsmartcard::DesKey));
}

void TestSmartCardProfile::writeMode_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("v2");
    QTest::newRow("v2") << QStringLiteral("v2") << true;
    QTest::newRow("upper case") << QStringLiteral("V2") << false;
    QTest::newRow("padded") << QStringLiteral(" v2") << false;
    QTest::newRow("v1") << QStringLiteral("v1") << false;
    QTest::newRow("missing") << QString() << false;
}

void TestSmartCardProfile::writeMode()
{
    QFETCH(QString, format);
    QFETCH(bool, v2);
    ObjectInfo record = profile({});
    if (!format.isNull())
        record.setParameter(common::DATA_FORMAT, format);
    QCOMPARE(SmartCardProfile(record).writeMode(), v2);
}

void TestSmartCardProfile::classicKeys()
{
    const std::unique_ptr<nvsc::MifareClassicSettings> s(
            SmartCardProfile(profile({{mfclassic::KEY_A, QStringLiteral("a0 a1 a2 a3 a4 a5")},
                                      {mfclassic::KEY_B, QStringLiteral("B0:B1:B2:B3:B4:B5")},
                                      {mfclassic::BLOCK_ACCESS, QStringLiteral("0013")},
                                      {mfclassic::FIRST_BLOCK, QStringLiteral("4")},
                                      {mfclassic::LAST_BLOCK, QStringLiteral("x")}}))
                    .mfClassicSettings());
    QCOMPARE(s->keyA, Key(5, QByteArray::fromHex("A0A1A2A3A4A5")));
    QCOMPARE(s->keyB, Key(5, QByteArray::fromHex("B0B1B2B3B4B5")));
    QCOMPARE(s->blockAccess, (QVector<quint8>{0, 0, 1, 3}));
    QCOMPARE(s->firstBlock, 4);
    // A number that does not parse keeps the library's default.
    QCOMPARE(s->lastBlock, nvsc::MifareClassicSettings().lastBlock);
    QVERIFY(!s->useLegacyMode);
}

void TestSmartCardProfile::desfireFields()
{
    const std::unique_ptr<nvsc::MifareDESFireSettings> s(
            SmartCardProfile(profile({{mfdesfire::KEY_MASTER, QStringLiteral("00112233445566778899aabbccddeeff")},
                                      {mfdesfire::KEY_APP_NR, QStringLiteral("3")},
                                      {mfdesfire::APP_ID, QStringLiteral("1193046")},
                                      {mfdesfire::FILE_ID, QStringLiteral("2")},
                                      {mfdesfire::FILE_SIZE, QStringLiteral("1024")},
                                      {mfdesfire::FILE_OFFSET, QStringLiteral("-5")}}))
                    .mfDESFireSettings());
    QCOMPARE(s->masterKey.data, QByteArray::fromHex("00112233445566778899aabbccddeeff"));
    // No application key in the profile: the factory one stays.
    QCOMPARE(s->appKey, nvsc::MifareDESFireSettings().appKey);
    QCOMPARE(s->appKeyNr, 3u);
    QCOMPARE(s->appId, 1193046u);
    QCOMPARE(s->fileId, 2u);
    QCOMPARE(s->fileSize, 1024u);
    QCOMPARE(s->fileOffset, nvsc::MifareDESFireSettings().fileOffset);
}

void TestSmartCardProfile::plusLevels_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("level1");
    QTest::newRow("sl1") << QStringLiteral("sl1") << true;
    QTest::newRow("sl3") << QStringLiteral("sl3") << false;
    QTest::newRow("SL1 is not sl1") << QStringLiteral("SL1") << false;
}

void TestSmartCardProfile::plusLevels()
{
    QFETCH(QString, mode);
    QFETCH(bool, level1);
    const std::unique_ptr<nvsc::MifarePlusSettings> s(
            SmartCardProfile(profile({{common::MIFARE_PLUS_MODE, mode},
                                      {mfplussl1::KEY_A, QStringLiteral("010203040506")},
                                      {mfplussl1::FIRST_BLOCK, QStringLiteral("8")},
                                      {mfplussl3::KEY_A, QStringLiteral("11").repeated(16)},
                                      {mfplussl3::KEY_L3SECTOR_SWITCH, QStringLiteral("22").repeated(16)},
                                      {mfplussl3::LAST_BLOCK, QStringLiteral("30")}}))
                    .mfPlusSettings());
    QCOMPARE(s->securityLevel1, level1);
    const nvsc::MifarePlusSettings factory;
    QCOMPARE(s->keyA, level1 ? Key(5, QByteArray::fromHex("010203040506")) : factory.keyA);
    QCOMPARE(s->firstBlock, level1 ? 8 : factory.firstBlock);
    // Level 3 keys are read whatever the mode: a level 1 card is switched
    // to level 3 with them later.
    QCOMPARE(s->sl3.keyA, Key(2, QByteArray(16, char(0x11))));
    QCOMPARE(s->sl3.l3SectorSwitchKey, Key(2, QByteArray(16, char(0x22))));
    QCOMPARE(s->sl3.keyB, factory.sl3.keyB);
    QCOMPARE(s->sl3.lastBlock, 30);
}

void TestSmartCardProfile::legacyKeyPieces_data()
{
    QTest::addColumn<QString>("legacy");
    QTest::addColumn<QByteArray>("crypto1");
    QTest::addColumn<QByteArray>("aes");
    const QByteArray full = QByteArray::fromHex("000102030405060708090a0b0c0d0e0f1011");
    QTest::newRow("long") << QString::fromLatin1(full.toHex()) << full.left(6) << full.left(16);
    QTest::newRow("shorter than 16") << QStringLiteral("0102030405060708") << QByteArray::fromHex("010203040506")
                                     << QByteArray::fromHex("0102030405060708");
    QTest::newRow("shorter than 6") << QStringLiteral("0a0b0c") << QByteArray::fromHex("0a0b0c")
                                    << QByteArray::fromHex("0a0b0c");
}

void TestSmartCardProfile::legacyKeyPieces()
{
    QFETCH(QString, legacy);
    QFETCH(QByteArray, crypto1);
    QFETCH(QByteArray, aes);
    const SmartCardProfile p(profile({{legacy::USE_LEGACY_MODE, QStringLiteral("1")}, {legacy::KEY, legacy}}));
    const std::unique_ptr<nvsc::MifareClassicSettings> classic(p.mfClassicSettings());
    const std::unique_ptr<nvsc::MifareDESFireSettings> desfire(p.mfDESFireSettings());
    const std::unique_ptr<nvsc::MifarePlusSettings> plus(p.mfPlusSettings());
    QVERIFY(classic->useLegacyMode && desfire->useLegacyMode && plus->useLegacyMode);
    QCOMPARE(classic->effectiveKeyA().data, crypto1);
    QCOMPARE(classic->effectiveKeyB().data, crypto1);
    QCOMPARE(desfire->effectiveMasterKey().data, aes);
    QCOMPARE(plus->effectiveKeyA().data, crypto1);
    QCOMPARE(plus->sl3.effectiveKeyA(true).data, aes);
}

QTEST_GUILESS_MAIN(TestSmartCardProfile)
#include "tst_smartcardprofile.moc"
