#include <nvcardmanager.h>
#include <simulatedbackend.h>

#include <dbparams.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <functional>
#include <map>
#include <thread>

using namespace nvsmartcard;

namespace {

enum Kind { Classic1K, Classic4K, DESFire2, DESFire4, DESFire8, DESFire4Aes, Plus1_2K, Plus1_4K, Plus3_2K, Plus3_4K };
const QList<Kind> AllKinds{Classic1K, Classic4K, DESFire2, DESFire4, DESFire8, DESFire4Aes, Plus1_2K, Plus1_4K, Plus3_2K, Plus3_4K};

const char *kindName(Kind kind)
{
    static const char *names[] = {"classic1k", "classic4k", "desfire2", "desfire4", "desfire8",
                                  "desfire4aes", "plus-sl1-2k", "plus-sl1-4k", "plus-sl3-2k", "plus-sl3-4k"};
    return names[kind];
}

VirtualCard makeCard(Kind kind)
{
    switch (kind) {
    case Classic1K: return VirtualCard::classic1K({});
    case Classic4K: return VirtualCard::classic4K({});
    case DESFire2: return VirtualCard::desfire({}, 2);
    case DESFire4: return VirtualCard::desfire({}, 4);
    case DESFire8: return VirtualCard::desfire({}, 8);
    case DESFire4Aes: return VirtualCard::desfire({}, 4, AesKey);
    case Plus1_2K: return VirtualCard::plusLevel1Card({}, 2);
    case Plus1_4K: return VirtualCard::plusLevel1Card({}, 4);
    case Plus3_2K: return VirtualCard::plusLevel3Card({}, 2);
    case Plus3_4K: return VirtualCard::plusLevel3Card({}, 4);
    }
    return {};
}

bool isDesfire(Kind kind) { return kind >= DESFire2 && kind <= DESFire4Aes; }
bool isSl3(Kind kind) { return kind == Plus3_2K || kind == Plus3_4K; }

// Which keys a settings object (or a card) carries.
enum Keys { Factory, Own, Other, Legacy };

QByteArray keyBytes(Keys keys, int length)
{
    const char fill = keys == Own ? '\x5A' : keys == Other ? '\x33' : '\x71';
    return QByteArray(length, fill);
}

// Settings for the card kind; `legacyMode` switches to the Legacy keys.
std::unique_ptr<nvsc::SmartCardSettings> settingsFor(Kind kind, Keys keys, bool legacyMode = false)
{
    std::unique_ptr<nvsc::SmartCardSettings> result;
    if (isDesfire(kind)) {
        const int type = kind == DESFire4Aes ? AesKey : DesKey;
        auto s = std::make_unique<nvsc::MifareDESFireSettings>(type);
        const int length = type == AesKey ? 16 : 8;
        if (keys != Factory)
            s->masterKey = s->appKey = Key(type, keyBytes(keys, length));
        s->legacyKey = Key(type, keyBytes(Legacy, length));
        result = std::move(s);
    } else {
        std::unique_ptr<nvsc::MifareBaseSettings> s;
        if (kind == Classic1K || kind == Classic4K) {
            s = std::make_unique<nvsc::MifareClassicSettings>();
        } else {
            auto plus = std::make_unique<nvsc::MifarePlusSettings>();
            plus->securityLevel1 = !isSl3(kind);
            if (keys != Factory)
                plus->sl3.keyA = plus->sl3.keyB = plus->sl3.masterKey = Key(AesKey, keyBytes(keys, 16));
            plus->sl3.legacyKey = Key(AesKey, keyBytes(Legacy, 16));
            s = std::move(plus);
        }
        if (keys != Factory) {
            s->keyA = Key(Crypto1KeyA, keyBytes(keys, 6));
            s->keyB = Key(Crypto1KeyB, keyBytes(keys, 6));
        }
        s->legacyKeyA = Key(Crypto1KeyA, keyBytes(Legacy, 6));
        s->legacyKeyB = Key(Crypto1KeyB, keyBytes(Legacy, 6));
        result = std::move(s);
    }
    result->useLegacyMode = legacyMode;
    return result;
}

// A card of the kind whose keys are already the given ones.
VirtualCard keyedCard(Kind kind, Keys keys)
{
    VirtualCard card = makeCard(kind);
    if (keys == Factory)
        return card;
    if (isDesfire(kind)) {
        card.masterKey = Key(card.masterKey.type, keyBytes(keys, card.masterKey.data.size()));
    } else {
        const int length = isSl3(kind) ? 16 : 6;
        card.keyA.data = keyBytes(keys, length);
        card.keyB.data = keyBytes(keys, length);
    }
    return card;
}

QByteArray pattern(int size)
{
    QByteArray data(size, '\0');
    for (int i = 0; i < size; ++i)
        data[i] = char(i * 7 + 1);
    return data;
}

} // namespace

class TestSimulatedBackend : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<SimulatedBackend> backend;
    std::unique_ptr<NVCardManager> manager;
    nvcm::ReaderInfo reader;
    nvcm::ReaderInfo hid;

    // Opens the reader and authorises with the settings; returns the code.
    int openAndAuthorize(nvsc::SmartCardSettings &settings)
    {
        const int open = manager->openDevice(reader);
        if (open != nvcm::OK)
            return open;
        manager->setSmartCardSettings(&settings);
        return manager->authorize(reader);
    }

private Q_SLOTS:
    void init()
    {
        backend = std::make_shared<SimulatedBackend>();
        backend->addReader(QStringLiteral("Contactless"), db::devices::cardreader::SMARTCARD);
        backend->addReader(QStringLiteral("Keyboard"), db::devices::cardreader::HID);
        manager = std::make_unique<NVCardManager>(backend);
        const auto readers = manager->listReaders();
        QCOMPARE(readers.size(), 2);
        reader = readers.at(0);
        hid = readers.at(1);
    }

    void cardKinds_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("memSize");
        QTest::addColumn<int>("userMemSize");
        QTest::addColumn<int>("uidLength");
        QTest::newRow("classic1k") << int(Classic1K) << int(MifareClassic) << 1024 << 752 << 4;
        QTest::newRow("classic4k") << int(Classic4K) << int(MifareClassic) << 4096 << 3440 << 4;
        QTest::newRow("desfire2") << int(DESFire2) << int(MifareDESFire) << 2048 << -1 << 7;
        QTest::newRow("desfire4") << int(DESFire4) << int(MifareDESFire) << 4096 << -1 << 7;
        QTest::newRow("desfire8") << int(DESFire8) << int(MifareDESFire) << 8192 << -1 << 7;
        QTest::newRow("plus-sl1-2k") << int(Plus1_2K) << int(MifarePlus) << 2048 << 1520 << 7;
        QTest::newRow("plus-sl3-4k") << int(Plus3_4K) << int(MifarePlus) << 4096 << 3440 << 7;
    }

    void cardKinds()
    {
        QFETCH(int, kind);
        QFETCH(int, type);
        QFETCH(int, memSize);
        QFETCH(int, userMemSize);
        QFETCH(int, uidLength);
        backend->putCard(0, makeCard(Kind(kind)));
        QCOMPARE(manager->openDevice(reader), int(nvcm::OK));
        nvcm::SCardInfo info;
        QCOMPARE(manager->getCard(reader, info), int(nvcm::OK));
        QCOMPARE(int(info.type), type);
        QCOMPARE(int(info.memSize), memSize);
        if (userMemSize >= 0)
            QCOMPARE(int(info.userMemSize), userMemSize);
        else // DESFire: the application's overhead, but most of the card
            QVERIFY(info.userMemSize < info.memSize && info.userMemSize > info.memSize * 9 / 10);
        QCOMPARE(info.uid.size(), uidLength);
        QCOMPARE(info.uidText().size(), 2 * uidLength);
        QVERIFY(!info.atr.isEmpty());
        QCOMPARE(manager->getCardTypeName(reader), info.name);

        auto settings = settingsFor(Kind(kind), Factory);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        QByteArray data;
        QCOMPARE(manager->readData(reader, data), int(nvcm::OK));
        QCOMPARE(data, QByteArray(int(info.userMemSize), '\0'));
    }

    void authorize_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("cardKeys");
        QTest::addColumn<int>("settingsKeys");
        QTest::addColumn<bool>("legacyMode");
        QTest::addColumn<int>("expected");
        for (Kind kind : AllKinds) {
            auto row = [kind](const char *what) -> QTestData & { return QTest::addRow("%s: %s", kindName(kind), what); };
            row("factory card, default settings") << int(kind) << int(Factory) << int(Factory) << false << 0;
            row("factory card, own settings") << int(kind) << int(Factory) << int(Own) << false << 0;
            row("own card, own settings") << int(kind) << int(Own) << int(Own) << false << 0;
            row("own card, default settings") << int(kind) << int(Own) << int(Factory) << false << 3;
            row("own card, other settings") << int(kind) << int(Own) << int(Other) << false << 3;
            row("legacy card, legacy mode") << int(kind) << int(Legacy) << int(Own) << true << 0;
            row("legacy card, no legacy mode") << int(kind) << int(Legacy) << int(Own) << false << 3;
            row("own card, legacy mode") << int(kind) << int(Own) << int(Own) << true << 0;
        }
    }

    void authorize()
    {
        QFETCH(int, kind);
        QFETCH(int, cardKeys);
        QFETCH(int, settingsKeys);
        QFETCH(bool, legacyMode);
        QFETCH(int, expected);
        backend->putCard(0, keyedCard(Kind(kind), Keys(cardKeys)));
        auto settings = settingsFor(Kind(kind), Keys(settingsKeys), legacyMode);
        QCOMPARE(openAndAuthorize(*settings), expected);
        // Only an authorised session may touch the data.
        QByteArray data;
        QCOMPARE(manager->readData(reader, data) == nvcm::OK, expected == nvcm::OK);
    }

    void authorizeNeedsMatchingFamilyAndCipher_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("settingsKind");
        QTest::newRow("classic settings on desfire") << int(DESFire4) << int(Classic1K);
        QTest::newRow("desfire settings on classic") << int(Classic1K) << int(DESFire4);
        QTest::newRow("plus settings on classic") << int(Classic4K) << int(Plus1_4K);
        // The same zero bytes, but the card was made for the other cipher.
        QTest::newRow("aes default on des card") << int(DESFire4) << int(DESFire4Aes);
        QTest::newRow("des default on aes card") << int(DESFire4Aes) << int(DESFire4);
    }

    void authorizeNeedsMatchingFamilyAndCipher()
    {
        QFETCH(int, kind);
        QFETCH(int, settingsKind);
        backend->putCard(0, makeCard(Kind(kind)));
        auto settings = settingsFor(Kind(settingsKind), Factory);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::AuthError));
    }

    void formatWriteAndUpdateKeys_data()
    {
        QTest::addColumn<int>("kind");
        for (Kind kind : AllKinds)
            QTest::newRow(kindName(kind)) << int(kind);
    }

    // Format, write the whole data area, then change the keys: on every card
    // kind, with the write refused whole when it does not fit.
    void formatWriteAndUpdateKeys()
    {
        QFETCH(int, kind);
        VirtualCard card = makeCard(Kind(kind));
        card.userData.fill('\xEE');
        backend->putCard(0, card);
        auto factory = settingsFor(Kind(kind), Factory);
        auto own = settingsFor(Kind(kind), Own);

        QCOMPARE(manager->formatCard(reader), int(nvcm::NoSettings));
        QCOMPARE(openAndAuthorize(*own), int(nvcm::OK)); // through the factory keys
        QList<QPair<int, int>> calls;
        manager->setWriteCallback([&calls](int done, int total) { calls.append({done, total}); });
        const int size = int(card.userMemSize);
        QCOMPARE(manager->writeData(reader, pattern(size + 1)), int(nvcm::TooMuchData));
        QVERIFY(calls.isEmpty());
        QCOMPARE(backend->cardOn(0)->userData, card.userData);
        QCOMPARE(manager->formatCard(reader), int(nvcm::OK));
        QCOMPARE(backend->cardOn(0)->userData, QByteArray(size, '\0'));
        calls.clear(); // formatting reports its writes as well

        QCOMPARE(manager->writeData(reader, pattern(size)), int(nvcm::OK));
        const int chunk = isDesfire(Kind(kind)) ? 48 : 16;
        QCOMPARE(calls.size(), (size + chunk - 1) / chunk);
        for (int i = 0; i < calls.size(); ++i)
            QCOMPARE(calls.at(i), qMakePair(i + 1, calls.size()));
        QCOMPARE(manager->updateSmartCardKeys(reader, own.get()), int(nvcm::OK));
        manager->closeDevice(reader);

        QCOMPARE(openAndAuthorize(*factory), int(nvcm::AuthError));
        auto other = settingsFor(Kind(kind), Other);
        manager->setSmartCardSettings(other.get());
        QCOMPARE(manager->authorize(reader), int(nvcm::AuthError));
        QCOMPARE(openAndAuthorize(*own), int(nvcm::OK));
        QByteArray data;
        QCOMPARE(manager->readData(reader, data), int(nvcm::OK));
        QCOMPARE(data, pattern(size));
    }

    void settingsChooseTheDataArea_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("first"); // first block, or file offset
        QTest::addColumn<int>("last");  // last block, or file size
        QTest::addColumn<int>("offset"); // where that is in user memory
        QTest::addColumn<int>("size");
        // Blocks 4..6 of sector 1; blocks 1 and 2 come before, 3 is a trailer.
        QTest::newRow("classic sector 1") << int(Classic1K) << 4 << 6 << 32 << 48;
        QTest::newRow("classic across a trailer") << int(Classic1K) << 2 << 4 << 16 << 32;
        // Sector 32 of a 4K card starts at block 128, with 15 data blocks.
        QTest::newRow("plus sl3 big sector") << int(Plus3_4K) << 128 << 143 << 95 * 16 << 240;
        QTest::newRow("desfire file window") << int(DESFire4) << 100 << 50 << 100 << 50;
    }

    void settingsChooseTheDataArea()
    {
        QFETCH(int, kind);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, offset);
        QFETCH(int, size);
        auto settings = settingsFor(Kind(kind), Factory);
        if (auto *d = dynamic_cast<nvsc::MifareDESFireSettings *>(settings.get())) {
            d->fileOffset = quint32(first);
            d->fileSize = quint32(last);
        } else if (auto *p = dynamic_cast<nvsc::MifarePlusSettings *>(settings.get()); p && isSl3(Kind(kind))) {
            p->sl3.firstBlock = first;
            p->sl3.lastBlock = last;
        } else {
            auto *b = dynamic_cast<nvsc::MifareBaseSettings *>(settings.get());
            b->firstBlock = first;
            b->lastBlock = last;
        }
        const VirtualCard card = makeCard(Kind(kind));
        backend->putCard(0, card);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        QCOMPARE(manager->writeData(reader, pattern(size + 1)), int(nvcm::TooMuchData));
        QCOMPARE(manager->writeData(reader, pattern(size)), int(nvcm::OK));
        QByteArray expected(int(card.userMemSize), '\0');
        expected.replace(offset, size, pattern(size));
        QCOMPARE(backend->cardOn(0)->userData, expected);
        QByteArray data;
        QCOMPARE(manager->readData(reader, data), int(nvcm::OK));
        QCOMPARE(data, pattern(size));
    }

    void cardAppearsOnAttempt_data()
    {
        QTest::addColumn<int>("attempt");
        QTest::newRow("first") << 1;
        QTest::newRow("third") << 3;
        QTest::newRow("tenth") << 10;
    }

    void cardAppearsOnAttempt()
    {
        QFETCH(int, attempt);
        backend->putCard(0, makeCard(Classic1K));
        backend->setCardAppearsOnAttempt(0, attempt);
        for (int i = 1; i < attempt; ++i)
            QCOMPARE(manager->openDevice(reader), int(nvcm::NoCard));
        QVERIFY(!manager->isOpened(reader));
        QCOMPARE(manager->openDevice(reader), int(nvcm::OK));
        QVERIFY(manager->isOpened(reader));
    }

    void cardPulledMidWrite()
    {
        backend->putCard(0, makeCard(Classic1K));
        auto settings = settingsFor(Classic1K, Factory);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        backend->pullCardAfterChunks(0, 3);
        QCOMPARE(manager->writeData(reader, pattern(100)), int(nvcm::RemoveCard));

        QCOMPARE(manager->writeData(reader, pattern(10)), int(nvcm::RemoveCard));
        QCOMPARE(manager->authorize(reader), int(nvcm::RemoveCard));
        QCOMPARE(manager->openDevice(reader), int(nvcm::NoCard));
        std::optional<VirtualCard> pulled = backend->takeCard(0);
        QVERIFY(pulled);
        QCOMPARE(pulled->userData.left(48), pattern(48));
        QCOMPARE(pulled->userData.mid(48), QByteArray(752 - 48, '\0'));

        // Back on the reader, the old session still answers "removed".
        backend->putCard(0, *pulled);
        QCOMPARE(manager->openDevice(reader), int(nvcm::RemoveCard));
        manager->closeDevice(reader);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        QCOMPARE(manager->writeData(reader, pattern(100)), int(nvcm::OK));
    }

    void ejectEndsTheSession()
    {
        backend->putCard(0, makeCard(Classic1K));
        auto settings = settingsFor(Classic1K, Factory);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        manager->ejectCard(reader);
        QVERIFY(!manager->isOpened(reader));
        QByteArray data;
        QCOMPARE(manager->readData(reader, data), int(nvcm::DeviceNotOpened));
        // A new session starts unauthorised.
        QCOMPARE(manager->openDevice(reader), int(nvcm::OK));
        QCOMPARE(manager->readData(reader, data), int(nvcm::AuthError));
    }

    void failCall_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("times");
        for (const char *call : {"openDevice", "getCard", "authorize", "formatCard", "writeData", "readData", "updateKeys"}) {
            QTest::addRow("%s once", call) << QString::fromLatin1(call) << int(nvcm::RemoveCard) << 1;
            QTest::addRow("%s thrice", call) << QString::fromLatin1(call) << int(nvcm::CommunicationError) << 3;
            QTest::addRow("%s always", call) << QString::fromLatin1(call) << int(nvcm::AuthError) << -1;
        }
    }

    void failCall()
    {
        QFETCH(QString, call);
        QFETCH(int, code);
        QFETCH(int, times);
        backend->putCard(0, makeCard(Classic1K));
        auto settings = settingsFor(Classic1K, Factory);
        QCOMPARE(openAndAuthorize(*settings), int(nvcm::OK));
        const std::map<QString, std::function<int()>> calls{
            {QStringLiteral("openDevice"), [&] { return manager->openDevice(reader); }},
            {QStringLiteral("getCard"), [&] { nvcm::SCardInfo info; return manager->getCard(reader, info); }},
            {QStringLiteral("authorize"), [&] { return manager->authorize(reader); }},
            {QStringLiteral("formatCard"), [&] { return manager->formatCard(reader); }},
            {QStringLiteral("writeData"), [&] { return manager->writeData(reader, pattern(20)); }},
            {QStringLiteral("readData"), [&] { QByteArray d; return manager->readData(reader, d); }},
            {QStringLiteral("updateKeys"), [&] { return manager->updateSmartCardKeys(reader, settings.get()); }},
        };
        const auto &run = calls.at(call);
        backend->failCall(call, code, times);
        for (int i = 0; i < (times < 0 ? 5 : times); ++i)
            QCOMPARE(run(), code);
        if (times < 0)
            backend->clearScript();
        if (call == QLatin1String("updateKeys")) // drops the session's authorisation
            QCOMPARE(manager->authorize(reader), int(nvcm::OK));
        QCOMPARE(run(), int(nvcm::OK));
    }

    void cardMovedDuringSlowWrite()
    {
        const VirtualCard card = makeCard(Classic4K);
        backend->putCard(0, card);
        auto settings = settingsFor(Classic4K, Factory);
        backend->setChunkDelay(1);
        std::atomic<bool> done{false};
        std::thread mover([&] {
            while (!done) {
                auto taken = backend->takeCard(0);
                QThread::usleep(500);
                backend->putCard(0, taken ? *taken : card);
                QThread::msleep(15);
            }
        });
        QList<int> results;
        for (int round = 0; round < 200 && results.size() < 8; ++round) {
            manager->closeDevice(reader);
            if (openAndAuthorize(*settings) == nvcm::OK)
                results.append(manager->writeData(reader, pattern(160)));
            else
                QThread::msleep(1); // the card is off the reader for a moment
        }
        done = true;
        mover.join();
        QVERIFY(!results.isEmpty());
        for (int code : std::as_const(results))
            QVERIFY2(code == nvcm::OK || code == nvcm::RemoveCard, qPrintable(QString::number(code)));
        // Every write had the same bytes, so torn ones leave a prefix of them.
        const QByteArray written = backend->cardOn(0)->userData.left(160);
        int blocks = 0;
        while (blocks < 10 && written.mid(blocks * 16, 16) == pattern(160).mid(blocks * 16, 16))
            ++blocks;
        QCOMPARE(written.mid(blocks * 16), QByteArray(160 - blocks * 16, '\0'));
        if (results.contains(nvcm::OK))
            QCOMPARE(blocks, 10);
    }

    void readers()
    {
        QCOMPARE(manager->readerProperty(reader, nvcm::CAN_WRITE_DATA), QStringLiteral("1"));
        QCOMPARE(manager->readerProperty(hid, nvcm::CAN_WRITE_DATA), QStringLiteral("0"));
        QCOMPARE(hid.deviceType, db::devices::cardreader::HID);
        backend->putCard(1, makeCard(Classic1K));
        nvcm::SCardInfo info;
        QCOMPARE(manager->getCard(hid, info), int(nvcm::NotSupported));

        backend->putCard(0, makeCard(Classic1K));
        QCOMPARE(manager->openDevice(reader), int(nvcm::OK));
        backend->removeReader(0);
        QCOMPARE(manager->getCard(reader, info), int(nvcm::NoReader));
        QCOMPARE(manager->openDevice(reader), int(nvcm::NoReader));
        QCOMPARE(manager->listReaders().size(), 1);
        QCOMPARE(manager->listReaders().at(0).id, hid.id);
    }

    void settingsAreCopied()
    {
        backend->putCard(0, keyedCard(Classic1K, Own));
        auto own = settingsFor(Classic1K, Own);
        manager->setSmartCardSettings(own.get());
        static_cast<nvsc::MifareClassicSettings &>(*own).keyA.data = keyBytes(Other, 6);
        static_cast<nvsc::MifareClassicSettings &>(*own).keyB.data = keyBytes(Other, 6);
        QCOMPARE(manager->openDevice(reader), int(nvcm::OK));
        QCOMPARE(manager->authorize(reader), int(nvcm::OK));
    }

    void stateRoundTrip()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("cards.json"));
        VirtualCard card = keyedCard(DESFire4Aes, Own);
        card.userData = pattern(int(card.userMemSize));
        backend->putCard(0, card);
        QVERIFY(backend->saveState(path));

        SimulatedBackend other;
        QVERIFY2(other.loadState(path), qPrintable(other.errorString()));
        QCOMPARE(other.readerCount(), 2);
        const auto loaded = other.cardOn(0);
        QVERIFY(loaded);
        QCOMPARE(loaded->uid, card.uid);
        QCOMPARE(loaded->type, card.type);
        QCOMPARE(loaded->name, card.name);
        QCOMPARE(loaded->masterKey, card.masterKey);
        QCOMPARE(loaded->userData, card.userData);
        QVERIFY(!other.cardOn(1));
    }

    void brokenStateFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("not json") << QByteArray("{\"readers\": [");
        QTest::newRow("other version") << QByteArray(R"({"version": 7, "readers": []})");
        QTest::newRow("bad uid") << QByteArray(
            R"({"version":1,"readers":[{"card":{"uid":"zz","type":1,"memSize":1024,"userMemSize":0,"data":""}}]})");
        QTest::newRow("unknown card type") << QByteArray(
            R"({"version":1,"readers":[{"card":{"uid":"01020304","type":9,"memSize":1024,"userMemSize":0,"data":""}}]})");
        QTest::newRow("short data") << QByteArray(
            R"({"version":1,"readers":[{"card":{"uid":"01020304","type":1,"memSize":1024,"userMemSize":752,"data":"00"}}]})");
        QTest::newRow("huge sizes") << QByteArray(
            R"({"version":1,"readers":[{"card":{"uid":"01020304","type":1,"memSize":1e12,"userMemSize":1e11,"data":""}}]})");
    }

    void brokenStateFile()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("cards.json"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        const VirtualCard card = makeCard(Classic1K);
        backend->putCard(0, card);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^loadState: ")));
        QVERIFY(!backend->loadState(path));
        QVERIFY(!backend->errorString().isEmpty());
        QCOMPARE(backend->cardOn(0)->uid, card.uid); // nothing half-loaded
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^loadState: cannot read")));
        QVERIFY(!backend->loadState(dir.filePath(QStringLiteral("missing.json"))));
    }

    void defaultBackendFromEnvironment()
    {
        setDefaultBackend(backend);
        QCOMPARE(NVCardManager().backend(), backend.get());
        qputenv("NV_CARD_BACKEND", "telepathy");
        setDefaultBackend(nullptr);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("unknown backend")));
        QCOMPARE(defaultBackend().get(), SimulatedBackend::shared().get());
        qunsetenv("NV_CARD_BACKEND");
        setDefaultBackend(nullptr);
    }
};

QTEST_GUILESS_MAIN(TestSimulatedBackend)
#include "tst_simulatedbackend.moc"
