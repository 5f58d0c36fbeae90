// The card reader manager on a real PC/SC stack: pcscd with the virtual
// reader (run under scripts/pcsc-rig) and our card emulator on it, playing
// Classic, Plus in level 1 and DESFire cards.
#include <usbcardreadermanager.h>

#include <cardblocks_p.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>

#include <cardlayout.h>
#include <nvsmartcardtypes.h>
#include <pcscbackend.h>
#include <readerbackend.h>

#include <QtTest>

#include "managerrecorder.h"

using namespace nivaro;
using nvsmartcard::PcscBackend;

namespace {

const QString WrittenText = QStringLiteral("message:Данные записаны.");
const QString FormattedText = QStringLiteral("message:Данные очищены.");

constexpr quint32 Reader = 0;
constexpr int CardWaitMs = 10000;
const QString UidHex = QStringLiteral("C0DE1234");

// The emulated card: a child process connected to the virtual reader.
// Its memory comes back through the dump file it rewrites on every write.
class Emulator
{
public:
    explicit Emulator(const QString &dumpPath) : m_dump(dumpPath) {}
    ~Emulator() { stop(); }

    bool start(const QStringList &args)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(CARDEMU_PATH), args + QStringList{QStringLiteral("--dump"), m_dump});
        return m_process.waitForStarted(CardWaitMs);
    }
    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(CardWaitMs))
            m_process.kill();
        m_process.waitForFinished(CardWaitMs);
    }
    bool running() const { return m_process.state() != QProcess::NotRunning; }
    QByteArray memory() const
    {
        QFile file(m_dump);
        return file.open(QIODevice::ReadOnly) ? QByteArray::fromHex(file.readAll().trimmed()) : QByteArray();
    }
    const QString &dumpPath() const { return m_dump; }
    // DESFire: the dump has a line per key, application and file.
    QByteArray desfireLine(const QByteArray &prefix) const
    {
        QFile file(m_dump);
        if (!file.open(QIODevice::ReadOnly))
            return QByteArray();
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith(prefix))
                return line;
        }
        return QByteArray();
    }
    QByteArray desfireFile() const
    {
        const QList<QByteArray> fields = desfireLine("file ").split(' ');
        return fields.size() == 6 && fields[5] != "-" ? QByteArray::fromHex(fields[5]) : QByteArray();
    }
    QByteArray rawDump() const
    {
        QFile file(m_dump);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QString m_dump;
    QProcess m_process;
};

// User data as the card's data blocks hold it, block 0 and trailers left out.
QByteArray userData(const QByteArray &memory)
{
    QByteArray data;
    for (int block = 1; block < memory.size() / nvsmartcard::CardBlockSize; ++block) {
        if (!nvsmartcard::isSectorTrailer(block))
            data += memory.mid(block * nvsmartcard::CardBlockSize, nvsmartcard::CardBlockSize);
    }
    return data;
}

QByteArray trailerOf(const QByteArray &memory, int block)
{
    return memory.mid(block * nvsmartcard::CardBlockSize, nvsmartcard::CardBlockSize);
}

QList<int> trailers(int memSize)
{
    QList<int> list;
    for (int block = 0; block < memSize / nvsmartcard::CardBlockSize; ++block) {
        if (nvsmartcard::isSectorTrailer(block))
            list << block;
    }
    return list;
}

ObjectInfo desfireProfile(TYPE_ID uid, const QString &master, const QString &app, int appKeyNr = 0)
{
    return ObjectInfo(uid, OT_SMARTCARD_PROFILE,
                      {{db::scardprofile::common::NAME, QStringLiteral("profile %1").arg(uid)},
                       {db::scardprofile::mfdesfire::KEY_MASTER, master},
                       {db::scardprofile::mfdesfire::KEY_APP, app},
                       {db::scardprofile::mfdesfire::KEY_APP_NR, QString::number(appKeyNr)}});
}

// A key as the card keeps it: its cipher, DES doubled to 16 bytes.
QByteArray storedDesfireKey(const QString &hex)
{
    const QByteArray key = QByteArray::fromHex(hex.toLatin1());
    if (key.size() == 8)
        return "2k3des " + QByteArray(key + key).toHex();
    return (key.size() == 24 ? "3k3des " : "aes ") + key.toHex();
}

ObjectInfo storedProfile(TYPE_ID uid, const QString &key)
{
    return ObjectInfo(uid, OT_SMARTCARD_PROFILE,
                      {{db::scardprofile::common::NAME, QStringLiteral("profile %1").arg(uid)},
                       {db::scardprofile::mfclassic::KEY_A, key},
                       {db::scardprofile::mfclassic::KEY_B, key}});
}

} // namespace

class TestUSBCardReaderManagerPcsc : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void readCard_data();
    void readCard();
    void formatAndWriteUid_data();
    void formatAndWriteUid();
    void templatesV1_data();
    void templatesV1();
    void newKeysAreNeededAfterwards_data();
    void newKeysAreNeededAfterwards();
    void cardPulledMidWrite();
    void readWithoutCard();
    void desfireWrites_data();
    void desfireWrites();
    void desfireNewKeysAreNeededAfterwards_data();
    void desfireNewKeysAreNeededAfterwards();
    void desfirePulledMidWrite();
    void plusLevel3IsNotDriven();

private:
    bool putCard(const QStringList &args);
    bool takeCard();
    bool run(int started);
    static void addSizes(bool rows = true);

    QTemporaryDir m_dir;
    std::shared_ptr<PcscBackend> m_backend;
    nvcm::ReaderInfo m_reader;
    std::unique_ptr<Emulator> m_card;
    USBCardReaderManager *m_manager = nullptr;
    Recorder *m_rec = nullptr;
};

void TestUSBCardReaderManagerPcsc::initTestCase()
{
    m_backend = std::make_shared<PcscBackend>();
    const QList<nvcm::ReaderInfo> readers = m_backend->listReaders();
    if (readers.isEmpty())
        QFAIL("pcscd lists no reader: run this test under scripts/pcsc-rig");
    m_reader = readers.first();
    // A host that is not told which backend to use takes these readers.
    const std::shared_ptr<nvsmartcard::ReaderBackend> probed = nvsmartcard::probePcscBackend();
    QVERIFY(probed);
    QCOMPARE(probed->backendName(), QStringLiteral("pcsc"));
    // vpcd offers two slots; the emulator plugs into the first one's port.
    QVERIFY2(m_reader.id == QStringLiteral("Virtual PCD 00 00"),
             qPrintable(QStringLiteral("the first reader is %1, not the rig's virtual one").arg(m_reader.id)));
    QVERIFY2(m_backend->waitForCard(m_reader, CardWaitMs, false) == nvcm::OK, "a card is already on the virtual reader");
}

void TestUSBCardReaderManagerPcsc::init()
{
    LocalStorage::instance()->close();
    nvsmartcard::setDefaultBackend(m_backend);
    m_card = std::make_unique<Emulator>(m_dir.filePath(QStringLiteral("card.hex")));
    m_manager = new USBCardReaderManager;
    m_rec = new Recorder(m_manager, Recorder::Outcome);
}

void TestUSBCardReaderManagerPcsc::cleanup()
{
    delete m_rec;
    delete m_manager;
    m_manager = nullptr;
    QVERIFY(takeCard());
    nvsmartcard::setDefaultBackend(nullptr);
    LocalStorage::instance()->close();
}

// The card lies on the reader once pcscd has seen it, so the manager's
// first attempt already finds it.
bool TestUSBCardReaderManagerPcsc::putCard(const QStringList &args)
{
    return m_card->start(args) && m_backend->waitForCard(m_reader, CardWaitMs) == nvcm::OK;
}

bool TestUSBCardReaderManagerPcsc::takeCard()
{
    m_card->stop();
    return m_backend->waitForCard(m_reader, CardWaitMs, false) == nvcm::OK;
}

bool TestUSBCardReaderManagerPcsc::run(int started)
{
    if (started <= 0 || !m_manager->isBusy())
        return false;
    if (!QTest::qWaitFor([this] { return m_rec->events.contains(QStringLiteral("finished")); }, 60000))
        return false;
    return !m_manager->isBusy();
}

void TestUSBCardReaderManagerPcsc::addSizes(bool rows)
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<int>("memSize");
    if (!rows)
        return;
    QTest::newRow("classic 1K") << QStringLiteral("1k") << 1024;
    QTest::newRow("classic 4K") << QStringLiteral("4k") << 4096;
}

void TestUSBCardReaderManagerPcsc::readCard_data()
{
    addSizes(false);
    QTest::addColumn<QStringList>("extra");
    QTest::addColumn<QString>("uid");
    QTest::addColumn<int>("type");
    const QString uid7 = QStringLiteral("04C0DE12345680");
    QTest::newRow("classic 1K") << QStringLiteral("1k") << 1024 << QStringList() << UidHex << 1;
    QTest::newRow("classic 4K") << QStringLiteral("4k") << 4096 << QStringList() << UidHex << 1;
    // A card that answers late is waited for, not given up on.
    QTest::newRow("slow classic 1K") << QStringLiteral("1k") << 1024
                                     << QStringList{QStringLiteral("--delay"), QStringLiteral("300")} << UidHex << 1;
    QTest::newRow("plus 4K SL1") << QStringLiteral("plus4k") << 4096 << QStringList() << uid7 << 5;
    // ISO 14443-4 cards: the ATR says nothing, GetVersion tells.
    QTest::newRow("desfire 8K") << QStringLiteral("desfire8k") << 8192 << QStringList() << uid7 << 2;
    QTest::newRow("desfire 2K") << QStringLiteral("desfire2k") << 2048 << QStringList() << uid7 << 2;
    QTest::newRow("slow desfire 4K") << QStringLiteral("desfire4k") << 4096
                                     << QStringList{QStringLiteral("--delay"), QStringLiteral("200")} << uid7 << 2;
    QTest::newRow("plus 4K SL3") << QStringLiteral("plussl3") << 4096 << QStringList() << uid7 << 5;
}

void TestUSBCardReaderManagerPcsc::readCard()
{
    QFETCH(QString, size);
    QFETCH(int, memSize);
    QFETCH(QStringList, extra);
    QFETCH(QString, uid);
    QFETCH(int, type);
    QVERIFY(putCard(QStringList{QStringLiteral("--type"), size, QStringLiteral("--uid"), uid} + extra));
    QVERIFY(run(m_manager->getCard(Reader)));
    QVERIFY2(m_rec->events.contains(QStringLiteral("card")), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    const ObjectInfo card = m_rec->cards.first();
    QCOMPARE(card.parameter(nvcm::UID), uid);
    QCOMPARE(card.parameter(nvcm::TYPE), QString::number(type));
    QCOMPARE(card.parameter(nvcm::MEM_SIZE).toInt(), memSize);
    QVERIFY(!m_backend->isOpened(m_reader));
}

void TestUSBCardReaderManagerPcsc::formatAndWriteUid_data()
{
    addSizes();
}

void TestUSBCardReaderManagerPcsc::formatAndWriteUid()
{
    QFETCH(QString, size);
    QFETCH(int, memSize);
    QVERIFY(putCard({QStringLiteral("--type"), size, QStringLiteral("--uid"), UidHex}));
    // Leftovers of an earlier owner: formatting has to clear them.
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(600, 'x'))));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    m_rec->events.clear();

    ObjectInfo cardObject(900, OT_CARD, {{nvcm::UID, QStringLiteral("00C0FFEE")}});
    m_manager->setCardObject(cardObject);
    QVERIFY(run(m_manager->writeCardUID(Reader)));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(m_rec->progressLines > 0);
    QCOMPARE(m_rec->cards.first().parameter(nvcm::UID), UidHex);

    const QByteArray memory = m_card->memory();
    QCOMPARE(memory.size(), memSize);
    const QByteArray block = cardblocks::prepareData(2, {QByteArray("00C0FFEE")});
    const QByteArray data = userData(memory);
    QCOMPARE(data.left(block.size()).toHex(), block.toHex());
    QCOMPARE(data.mid(block.size()), QByteArray(data.size() - block.size(), '\0'));
    // Block 0 is the manufacturer's; the trailers keep the factory state.
    QCOMPARE(memory.left(4).toHex().toUpper(), UidHex.toLatin1());
    for (int t : trailers(memSize))
        QCOMPARE(trailerOf(memory, t).toHex(), QByteArray("ffffffffffffff078069ffffffffffff"));
}

void TestUSBCardReaderManagerPcsc::templatesV1_data()
{
    addSizes();
    // Plus in level 1 takes the Classic commands.
    QTest::newRow("plus 2K SL1") << QStringLiteral("plus2k") << 2048;
}

void TestUSBCardReaderManagerPcsc::templatesV1()
{
    QFETCH(QString, size);
    QVERIFY(putCard({QStringLiteral("--type"), size}));
    QVERIFY(run(m_manager->getCard(Reader)));
    m_rec->events.clear();
    _TEMPLATE_DATA face;
    face.type = _TEMPLATE_DATA::Face;
    face.data = QByteArray(300, 'F');
    _TEMPLATE_DATA finger;
    finger.type = _TEMPLATE_DATA::Fingerprint;
    finger.data = QByteArray(200, 'p');
    QVERIFY(run(m_manager->writeWorkerTemplates(7, {finger, face}, QByteArray())));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    const QByteArray block = cardblocks::prepareData(0, {finger.data, face.data});
    const QByteArray data = userData(m_card->memory());
    QCOMPARE(data.left(block.size()).toHex(), block.toHex());
    QCOMPARE(data.mid(block.size()), QByteArray(data.size() - block.size(), '\0'));
}

void TestUSBCardReaderManagerPcsc::newKeysAreNeededAfterwards_data()
{
    addSizes();
}

void TestUSBCardReaderManagerPcsc::newKeysAreNeededAfterwards()
{
    QFETCH(QString, size);
    QFETCH(int, memSize);
    QVERIFY(LocalStorage::instance()->putObjects(SMARTCARD_PROFILE_DATANAME,
                                                 {storedProfile(301, QStringLiteral("A1A2A3A4A5A6")),
                                                  storedProfile(302, QStringLiteral("B1B2B3B4B5B6"))}));
    QVERIFY(putCard({QStringLiteral("--type"), size}));
    m_manager->setSmartCardProfile(storedProfile(301, QString()));
    QVERIFY(run(m_manager->formatCard(Reader)));
    QVERIFY2(m_rec->events.contains(FormattedText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    const QByteArray memory = m_card->memory();
    for (int t : trailers(memSize)) {
        QCOMPARE(trailerOf(memory, t).toHex(), QByteArray("a1a2a3a4a5a6ff078069a1a2a3a4a5a6"));
    }

    // The factory keys and another profile's are refused now, and the
    // refused attempts change nothing.
    for (TYPE_ID profile : {TYPE_ID(302), TYPE_ID(0)}) {
        m_rec->events.clear();
        m_manager->setSmartCardProfile(profile ? storedProfile(profile, QString()) : ObjectInfo());
        QVERIFY(run(m_manager->formatCard(Reader)));
        QVERIFY2(m_rec->events.contains(QStringLiteral("error:") + AuthFailedText),
                 qPrintable(m_rec->events.join(QLatin1Char('|'))));
        QCOMPARE(m_card->memory(), memory);
    }

    // A card that came with the second profile's keys opens with them.
    QVERIFY(takeCard());
    QVERIFY(putCard({QStringLiteral("--type"), size, QStringLiteral("--key-a"), QStringLiteral("B1B2B3B4B5B6"),
                     QStringLiteral("--key-b"), QStringLiteral("B1B2B3B4B5B6")}));
    m_rec->events.clear();
    m_manager->setSmartCardProfile(storedProfile(302, QString()));
    QVERIFY(run(m_manager->formatCard(Reader)));
    QVERIFY2(m_rec->events.contains(FormattedText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
}

void TestUSBCardReaderManagerPcsc::cardPulledMidWrite()
{
    QVERIFY(putCard({QStringLiteral("--pull-after"), QStringLiteral("3")}));
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(400, 'd'))));
    QVERIFY2(m_rec->events.contains(QStringLiteral("error:") + RemoveCardText),
             qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(!m_rec->events.contains(QStringLiteral("card")));
    QVERIFY(!m_backend->isOpened(m_reader));

    // The emulator left with the card; it comes back as it was left.
    QVERIFY(m_backend->waitForCard(m_reader, CardWaitMs, false) == nvcm::OK);
    const QString left = m_dir.filePath(QStringLiteral("left.hex"));
    QFile::remove(left);
    QVERIFY(QFile::copy(m_card->dumpPath(), left));
    m_card->stop();
    QVERIFY(putCard({QStringLiteral("--memory"), left}));
    m_rec->events.clear();
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(400, 'd'))));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    const QByteArray block = cardblocks::prepareData_v2({}, 0x01020304, QByteArray(400, 'd'));
    QVERIFY(userData(m_card->memory()).startsWith(block));
}

void TestUSBCardReaderManagerPcsc::readWithoutCard()
{
    QVERIFY(run(m_manager->getCard(Reader)));
    QCOMPARE(m_rec->events, (QStringList{QStringLiteral("error:") + ReadErrorText, QStringLiteral("finished")}));
}


void TestUSBCardReaderManagerPcsc::desfireWrites_data()
{
    QTest::addColumn<QStringList>("card");
    QTest::addColumn<int>("memSize");
    // Without a profile the manager tries the AES factory key, then the DES one.
    QTest::newRow("desfire 8K, DES factory key") << QStringList{QStringLiteral("--type"), QStringLiteral("desfire8k")}
                                                 << 8192;
    QTest::newRow("desfire 4K, AES factory key")
        << QStringList{QStringLiteral("--type"), QStringLiteral("desfire4k"), QStringLiteral("--master-key"),
                       QString(32, QLatin1Char('0'))}
        << 4096;
}

// The data file holds exactly the block the manager built, the rest of it
// cleared by formatting.
void TestUSBCardReaderManagerPcsc::desfireWrites()
{
    QFETCH(QStringList, card);
    QFETCH(int, memSize);
    const QString uid = QStringLiteral("04C0DE12345680");
    QVERIFY(putCard(card + QStringList{QStringLiteral("--uid"), uid}));
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(700, 'x'))));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QByteArray file = m_card->desfireFile();
    QCOMPARE(file.size(), int(nvsmartcard::desfireUserMemory(quint32(memSize))));
    const QByteArray v2 = cardblocks::prepareData_v2({}, 0x04C0DE12345680ull, QByteArray(700, 'x'));
    QCOMPARE(file.left(v2.size()).toHex(), v2.toHex());
    QCOMPARE(file.mid(v2.size()), QByteArray(file.size() - v2.size(), '\0'));
    QVERIFY(m_card->desfireLine("app ").startsWith("app 4e5601 "));

    m_rec->events.clear();
    m_manager->setCardObject(ObjectInfo(900, OT_CARD, {{nvcm::UID, QStringLiteral("00C0FFEE")}}));
    QVERIFY(run(m_manager->writeCardUID(Reader)));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(m_rec->progressLines > 0);
    QCOMPARE(m_rec->cards.first().parameter(nvcm::UID), uid);
    file = m_card->desfireFile();
    const QByteArray v1 = cardblocks::prepareData(2, {QByteArray("00C0FFEE")});
    QCOMPARE(file.left(v1.size()).toHex(), v1.toHex());
    QCOMPARE(file.mid(v1.size()), QByteArray(file.size() - v1.size(), '\0'));
}

void TestUSBCardReaderManagerPcsc::desfireNewKeysAreNeededAfterwards_data()
{
    QTest::addColumn<QString>("factory");
    QTest::addColumn<QString>("master");
    QTest::addColumn<QString>("app");
    QTest::addColumn<int>("appKeyNr");
    QTest::newRow("DES") << QString(16, QLatin1Char('0')) << QStringLiteral("0011223344556677")
                         << QStringLiteral("A0A1A2A3A4A5A6A7") << 0;
    QTest::newRow("AES") << QString(32, QLatin1Char('0')) << QStringLiteral("00112233445566778899AABBCCDDEEFF")
                         << QStringLiteral("A0A1A2A3A4A5A6A7A8A9AAABACADAEAF") << 0;
    // The data file answers to the profile's key number, not to key 0.
    QTest::newRow("AES, application key 2")
        << QString(32, QLatin1Char('0')) << QStringLiteral("00112233445566778899AABBCCDDEEFF")
        << QStringLiteral("A0A1A2A3A4A5A6A7A8A9AAABACADAEAF") << 2;
    QTest::newRow("3K3DES") << QString(48, QLatin1Char('0'))
                            << QStringLiteral("00112233445566778899AABBCCDDEEFF0011223344556677")
                            << QStringLiteral("A0A1A2A3A4A5A6A7A8A9AAABACADAEAFB0B1B2B3B4B5B6B7") << 0;
}

void TestUSBCardReaderManagerPcsc::desfireNewKeysAreNeededAfterwards()
{
    QFETCH(QString, factory);
    QFETCH(QString, master);
    QFETCH(QString, app);
    QFETCH(int, appKeyNr);
    QString other = master;
    other[0] = QLatin1Char('F');
    QVERIFY(LocalStorage::instance()->putObjects(SMARTCARD_PROFILE_DATANAME,
                                                 {desfireProfile(311, master, app, appKeyNr),
                                                  desfireProfile(312, other, app, appKeyNr)}));
    QVERIFY(putCard({QStringLiteral("--type"), QStringLiteral("desfire2k"), QStringLiteral("--master-key"), factory}));
    m_manager->setSmartCardProfile(desfireProfile(311, QString(), QString()));
    QVERIFY(run(m_manager->formatCard(Reader)));
    QVERIFY2(m_rec->events.contains(FormattedText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QCOMPARE(m_card->desfireLine("master "), "master " + storedDesfireKey(master));
    const QByteArray appLine = m_card->desfireLine("app ");
    // The profile's key number holds the key, and so does key 0, which rules the files.
    const QList<QByteArray> appKeys = appLine.split(' ').last().split(',');
    QCOMPARE(appKeys.size(), appKeyNr + 1);
    QCOMPARE(appKeys.at(appKeyNr), storedDesfireKey(app).split(' ').last());
    QCOMPARE(appKeys.at(0), storedDesfireKey(app).split(' ').last());
    QVERIFY(appLine.contains(" " + storedDesfireKey(app).split(' ').first() + " "));

    // The factory keys and another profile's are refused now, and the
    // refused attempts change nothing.
    const QByteArray dump = m_card->rawDump();
    for (TYPE_ID profile : {TYPE_ID(312), TYPE_ID(0)}) {
        m_rec->events.clear();
        m_manager->setSmartCardProfile(profile ? desfireProfile(profile, QString(), QString()) : ObjectInfo());
        QVERIFY(run(m_manager->formatCard(Reader)));
        QVERIFY2(m_rec->events.contains(QStringLiteral("error:") + AuthFailedText),
                 qPrintable(m_rec->events.join(QLatin1Char('|'))));
        QCOMPARE(m_card->rawDump(), dump);
    }

    // The profile's own keys open the card, also for the application.
    m_rec->events.clear();
    m_manager->setSmartCardProfile(desfireProfile(311, QString(), QString()));
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(100, 'k'))));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(m_card->desfireFile().startsWith(cardblocks::prepareData_v2({}, 0x04C0DE12345680ull, QByteArray(100, 'k'))));

    // What the backend reads back through the session's MACs is the file.
    auto keyOf = [](const QString &hex) {
        const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
        return nvsmartcard::Key(bytes.size() == 8    ? nvsmartcard::DesKey
                                    : bytes.size() == 24 ? nvsmartcard::TripleDesKey
                                                         : nvsmartcard::AesKey,
                                bytes);
    };
    nvsc::MifareDESFireSettings settings;
    settings.masterKey = keyOf(master);
    settings.appKey = keyOf(app);
    settings.appKeyNr = quint32(appKeyNr);
    nvcm::SCardInfo info;
    QByteArray read;
    QCOMPARE(m_backend->openDevice(m_reader), int(nvcm::OK));
    QCOMPARE(m_backend->getCard(m_reader, info), int(nvcm::OK));
    QCOMPARE(m_backend->authorize(m_reader, settings), int(nvcm::OK));
    QCOMPARE(m_backend->readData(m_reader, settings, read), int(nvcm::OK));
    m_backend->closeDevice(m_reader);
    QCOMPARE(read.toHex(), m_card->desfireFile().toHex());
}

void TestUSBCardReaderManagerPcsc::desfirePulledMidWrite()
{
    QVERIFY(putCard({QStringLiteral("--type"), QStringLiteral("desfire2k"), QStringLiteral("--pull-after"),
                     QStringLiteral("20")}));
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(400, 'd'))));
    QVERIFY2(m_rec->events.contains(QStringLiteral("error:") + RemoveCardText),
             qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(!m_rec->events.contains(QStringLiteral("card")));
    QVERIFY(!m_backend->isOpened(m_reader));

    QVERIFY(m_backend->waitForCard(m_reader, CardWaitMs, false) == nvcm::OK);
    const QString left = m_dir.filePath(QStringLiteral("left.txt"));
    QFile::remove(left);
    QVERIFY(QFile::copy(m_card->dumpPath(), left));
    m_card->stop();
    QVERIFY(putCard({QStringLiteral("--type"), QStringLiteral("desfire2k"), QStringLiteral("--memory"), left}));
    m_rec->events.clear();
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(Reader, {}, QByteArray(400, 'd'))));
    QVERIFY2(m_rec->events.contains(WrittenText), qPrintable(m_rec->events.join(QLatin1Char('|'))));
    QVERIFY(m_card->desfireFile().startsWith(cardblocks::prepareData_v2({}, 0x04C0DE12345680ull, QByteArray(400, 'd'))));
}

// Level 3 is told apart from DESFire, and refused with a clear code
// rather than sent DESFire commands.
void TestUSBCardReaderManagerPcsc::plusLevel3IsNotDriven()
{
    QVERIFY(putCard({QStringLiteral("--type"), QStringLiteral("plussl3")}));
    QVERIFY(run(m_manager->formatCard(Reader)));
    QVERIFY2(m_rec->events.contains(QStringLiteral("error:") + AuthFailedText),
             qPrintable(m_rec->events.join(QLatin1Char('|'))));
}

QTEST_MAIN(TestUSBCardReaderManagerPcsc)
#include "tst_usbcardreadermanager_pcsc.moc"

