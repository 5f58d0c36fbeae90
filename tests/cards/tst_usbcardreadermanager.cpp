#include <usbcardreadermanager.h>

#include <nvdialogsutils.h>

#include <cardblocks_p.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>

#include <nvsmartcardtypes.h>
#include <simulatedbackend.h>

#include <QtTest>

#include "managerrecorder.h"

using namespace nivaro;
using nvsmartcard::SimulatedBackend;
using nvsmartcard::VirtualCard;

namespace {

const QString TooMuchText = QStringLiteral("Слишком много данных для карты данного типа.");

constexpr quint32 SmartReader = 0;
constexpr quint32 HidReader = 1;

const QByteArray Uid = QByteArray::fromHex("04A1B2C3D4E5F6");

QList<_TEMPLATE_DATA> templatesOf(int size)
{
    _TEMPLATE_DATA a;
    a.type = _TEMPLATE_DATA::Fingerprint;
    a.data = QByteArray(size / 2, 'f');
    _TEMPLATE_DATA b;
    b.type = _TEMPLATE_DATA::Face;
    b.data = QByteArray(size - size / 2, 'g');
    return {a, b};
}

ObjectInfo storedProfile(TYPE_ID uid, const QString &keyA)
{
    return ObjectInfo(uid, OT_SMARTCARD_PROFILE,
                      {{db::scardprofile::common::NAME, QStringLiteral("profile %1").arg(uid)},
                       {db::scardprofile::mfclassic::KEY_A, keyA},
                       {db::scardprofile::mfclassic::KEY_B, keyA}});
}

} // namespace

class TestUSBCardReaderManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void startNeedsASmartCardReader_data();
    void startNeedsASmartCardReader();
    void readCard_data();
    void readCard();
    void readWithoutCard();
    void removeCardLeavesTheManagerReady();
    void authorisationTriesCandidatesInOrder_data();
    void authorisationTriesCandidatesInOrder();
    void wrongProfileKey();
    void formatAndWriteUid();
    void writeTemplatesV2AtTheMemoryLimit();
    void writeTooMuch();
    void cardPulledMidWrite();
    void templatesV1GoToTheLastReader();
    void stopReadCardOnlySignals();
    void debugLinesFollowTheSwitch();

private:
    bool run(int started, int expectedTicks);

    std::shared_ptr<SimulatedBackend> m_backend;
    USBCardReaderManager *m_manager = nullptr;
    Recorder *m_rec = nullptr;
};

void TestUSBCardReaderManager::init()
{
    LocalStorage::instance()->close();
    m_backend = std::make_shared<SimulatedBackend>();
    m_backend->addReader(QStringLiteral("ACR122U"), db::devices::cardreader::SMARTCARD);
    m_backend->addReader(QStringLiteral("Z-2 USB"), db::devices::cardreader::HID);
    m_backend->addReader(QStringLiteral("OMNIKEY"), db::devices::cardreader::SMARTCARD);
    nvsmartcard::setDefaultBackend(m_backend);
    m_manager = new USBCardReaderManager;
    m_rec = new Recorder(m_manager);
}

void TestUSBCardReaderManager::cleanup()
{
    delete m_rec;
    delete m_manager;
    m_manager = nullptr;
    nvsmartcard::setDefaultBackend(nullptr);
    m_backend.reset();
    LocalStorage::instance()->close();
}

bool TestUSBCardReaderManager::run(int started, int expectedTicks)
{
    if (started != expectedTicks)
        return false;
    if (!m_manager->isBusy())
        return false;
    if (!QTest::qWaitFor([this] { return m_rec->events.contains(QStringLiteral("finished")); }, 15000))
        return false;
    return !m_manager->isBusy();
}

void TestUSBCardReaderManager::startNeedsASmartCardReader_data()
{
    QTest::addColumn<quint32>("reader");
    QTest::newRow("HID reader") << HidReader;
    QTest::newRow("no such reader") << quint32(99);
}

void TestUSBCardReaderManager::startNeedsASmartCardReader()
{
    QFETCH(quint32, reader);
    m_backend->putCard(int(reader == HidReader ? HidReader : SmartReader), VirtualCard::classic1K(Uid));
    QCOMPARE(m_manager->getCard(reader), 0);
    QCOMPARE(m_manager->formatCard(reader), 0);
    QCOMPARE(m_manager->writeCardUID(reader), 0);
    QCOMPARE(m_manager->writeWorkerTemplates_v2(reader, templatesOf(10), QByteArray()), 0);
    QCOMPARE(m_manager->writeWorkerTemplates(7, templatesOf(10), QByteArray()), 0);
    QVERIFY(!m_manager->isBusy());
    QTest::qWait(50);
    QVERIFY(m_rec->events.isEmpty());
}

void TestUSBCardReaderManager::readCard_data()
{
    QTest::addColumn<int>("attempt");
    QTest::addColumn<quint32>("reader");
    QTest::newRow("at once") << 1 << SmartReader;
    QTest::newRow("third attempt") << 3 << quint32(2);
}

void TestUSBCardReaderManager::readCard()
{
    QFETCH(int, attempt);
    QFETCH(quint32, reader);
    m_backend->putCard(int(reader), VirtualCard::desfire(Uid, 4));
    m_backend->setCardAppearsOnAttempt(int(reader), attempt);
    QVERIFY(run(m_manager->getCard(reader), 5));
    // All five ticks, the rest at once, before the result.
    QCOMPARE(m_rec->events, (QStringList{QStringLiteral("tick"), QStringLiteral("tick"), QStringLiteral("tick"),
                                         QStringLiteral("tick"), QStringLiteral("tick"),
                                         QStringLiteral("message:Прочитан идентификатор карты."),
                                         QStringLiteral("card"), QStringLiteral("finished")}));
    const ObjectInfo card = m_rec->cards.first();
    QCOMPARE(card.typeName(), OT_CARD);
    QCOMPARE(card.parameter(nvcm::UID), QStringLiteral("04A1B2C3D4E5F6"));
    QCOMPARE(card.parameter(nvcm::TYPE), QStringLiteral("2"));
    QVERIFY(card.parameter(nvcm::MEM_SIZE).toInt() > 0);
    // The reader learnt the card's type name, also in readers().
    QCOMPARE(m_rec->readers.size(), 1);
    QVERIFY(!m_rec->readers.first().parameter(nvcm::CARD_NAME).isEmpty());
    QCOMPARE(m_manager->readers().at(int(reader)), m_rec->readers.first());
    QVERIFY(!m_backend->isOpened(m_backend->listReaders().at(int(reader))));
}

void TestUSBCardReaderManager::readWithoutCard()
{
    QVERIFY(run(m_manager->getCard(SmartReader), 5));
    QStringList expected;
    for (int left = 4; left >= 0; --left)
        expected << QStringLiteral("tick") << QStringLiteral("step:Идет чтение карты. Осталось %1 сек.").arg(left);
    expected << QStringLiteral("error:") + ReadErrorText << QStringLiteral("finished");
    QCOMPARE(m_rec->events, expected);
}

void TestUSBCardReaderManager::removeCardLeavesTheManagerReady()
{
    m_backend->putCard(SmartReader, VirtualCard::classic1K(Uid));
    m_backend->failCall(QStringLiteral("getCard"), nvcm::RemoveCard, 1);
    QVERIFY(run(m_manager->getCard(SmartReader), 5));
    QCOMPARE(m_rec->without(QStringLiteral("tick")),
             (QStringList{QStringLiteral("error:") + RemoveCardText, QStringLiteral("error:") + ReadErrorText,
                          QStringLiteral("finished")}));
    QVERIFY(!m_backend->isOpened(m_backend->listReaders().at(SmartReader)));

    // The operator does as told; the next read just works.
    const std::optional<VirtualCard> card = m_backend->takeCard(SmartReader);
    QVERIFY(card);
    m_backend->putCard(SmartReader, *card);
    m_rec->events.clear();
    QVERIFY(run(m_manager->getCard(SmartReader), 5));
    QVERIFY(m_rec->events.contains(QStringLiteral("card")));
}

void TestUSBCardReaderManager::authorisationTriesCandidatesInOrder_data()
{
    QTest::addColumn<int>("cardType");
    QTest::addColumn<int>("refusals");
    QTest::addColumn<bool>("formatted");
    // Without a profile a DESFire card gets two tries (AES, then DES
    // defaults), the other families one.
    QTest::newRow("desfire, first refused") << 2 << 1 << true;
    QTest::newRow("desfire, both refused") << 2 << 2 << false;
    QTest::newRow("classic, refused") << 1 << 1 << false;
    QTest::newRow("plus, accepted") << 5 << 0 << true;
}

void TestUSBCardReaderManager::authorisationTriesCandidatesInOrder()
{
    QFETCH(int, cardType);
    QFETCH(int, refusals);
    QFETCH(bool, formatted);
    const VirtualCard card = cardType == 2 ? VirtualCard::desfire(Uid, 4)
            : cardType == 1                ? VirtualCard::classic1K(Uid)
                                           : VirtualCard::plusLevel3Card(Uid);
    m_backend->putCard(SmartReader, card);
    if (refusals > 0)
        m_backend->failCall(QStringLiteral("authorize"), nvcm::AuthError, refusals);
    QVERIFY(run(m_manager->formatCard(SmartReader), 8));
    if (formatted) {
        QCOMPARE(m_rec->ticks(), 8);
        QCOMPARE(m_rec->without(QStringLiteral("tick")),
                 (QStringList{QStringLiteral("message:Прочитан идентификатор карты"),
                              QStringLiteral("step:Авторизация на карте"),
                              QStringLiteral("step:Форматирование карты. Ожидайте..."), QStringLiteral("card"),
                              QStringLiteral("message:Данные очищены."), QStringLiteral("finished")}));
    } else {
        QCOMPARE(m_rec->without(QStringLiteral("tick")),
                 (QStringList{QStringLiteral("message:Прочитан идентификатор карты"),
                              QStringLiteral("step:Авторизация на карте"), QStringLiteral("error:") + AuthFailedText,
                              QStringLiteral("finished")}));
    }
    QVERIFY(!m_backend->isOpened(m_backend->listReaders().at(SmartReader)));
}

void TestUSBCardReaderManager::wrongProfileKey()
{
    QVERIFY(LocalStorage::instance()->putObjects(SMARTCARD_PROFILE_DATANAME,
                                                 {storedProfile(301, QStringLiteral("A1A2A3A4A5A6")),
                                                  storedProfile(302, QStringLiteral("B1B2B3B4B5B6"))}));
    m_backend->putCard(SmartReader, VirtualCard::classic1K(Uid));
    m_manager->setSmartCardProfile(storedProfile(301, QString()));
    QVERIFY(run(m_manager->formatCard(SmartReader), 8));
    QVERIFY(m_rec->events.contains(QStringLiteral("message:Данные очищены.")));
    // The store's record counts, not the copy the dialog was given.
    QCOMPARE(m_backend->cardOn(SmartReader)->keyA.data, QByteArray::fromHex("A1A2A3A4A5A6"));

    m_rec->events.clear();
    m_manager->setSmartCardProfile(storedProfile(302, QString()));
    QVERIFY(run(m_manager->formatCard(SmartReader), 8));
    QVERIFY(m_rec->events.contains(QStringLiteral("error:") + AuthFailedText));
    QVERIFY(!m_rec->events.contains(QStringLiteral("card")));
    QCOMPARE(m_backend->cardOn(SmartReader)->keyA.data, QByteArray::fromHex("A1A2A3A4A5A6"));
}

void TestUSBCardReaderManager::formatAndWriteUid()
{
    m_backend->putCard(SmartReader, VirtualCard::classic1K(Uid));
    ObjectInfo cardObject(900, OT_CARD, {{nvcm::UID, QStringLiteral("00C0FFEE")}, {db::card::OWNER, QStringLiteral("55")}});
    cardObject.setParent(55);
    m_manager->setCardObject(cardObject);
    QVERIFY(run(m_manager->writeCardUID(SmartReader), 9));
    QCOMPARE(m_rec->ticks(), 9);
    QCOMPARE(m_rec->without(QStringLiteral("tick")),
             (QStringList{QStringLiteral("message:Прочитан идентификатор карты"),
                          QStringLiteral("step:Авторизация на карте"),
                          QStringLiteral("step:Форматирование карты. Ожидайте..."),
                          QStringLiteral("step:Запись данных. Ожидайте..."),
                          QStringLiteral("step:Обновление ключа авторизации карты"), QStringLiteral("card"),
                          QStringLiteral("message:Данные записаны."), QStringLiteral("finished")}));
    QVERIFY(m_rec->progressLines > 0);
    const QByteArray block = cardblocks::prepareData(2, {QByteArray("00C0FFEE")});
    QCOMPARE(m_backend->cardOn(SmartReader)->userData.left(block.size()).toHex(), block.toHex());
    // The dialog's card object comes back with what the reader read.
    const ObjectInfo card = m_rec->cards.first();
    QCOMPARE(card.uid(), TYPE_ID(900));
    QCOMPARE(card.parent(), TYPE_ID(55));
    QCOMPARE(card.parameter(db::card::OWNER), QStringLiteral("55"));
    QCOMPARE(card.parameter(nvcm::UID), QStringLiteral("04A1B2C3D4E5F6"));
}

void TestUSBCardReaderManager::writeTemplatesV2AtTheMemoryLimit()
{
    VirtualCard card = VirtualCard::desfire(Uid, 4);
    card.memSize = card.userMemSize;
    m_backend->putCard(SmartReader, card);
    const int templatesSize = int(card.memSize) - 32 - 2 * 6 - 3;
    const QList<_TEMPLATE_DATA> templates = templatesOf(templatesSize);
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(SmartReader, templates, QByteArray("abc")), 9));
    QCOMPARE(m_rec->ticks(), 9);
    QVERIFY(m_rec->events.contains(QStringLiteral("message:Данные записаны.")));
    const QByteArray block = cardblocks::prepareData_v2(templates, 0x04A1B2C3D4E5F6, QByteArray("abc"));
    QCOMPARE(quint32(block.size()), card.memSize);
    QVERIFY(m_backend->cardOn(SmartReader)->userData.startsWith(block));
}

void TestUSBCardReaderManager::writeTooMuch()
{
    VirtualCard card = VirtualCard::classic1K(Uid);
    m_backend->putCard(SmartReader, card);
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(SmartReader, templatesOf(int(card.memSize) - 32 - 12 + 1), {}), 9));
    QCOMPARE(m_rec->without(QStringLiteral("tick")),
             (QStringList{QStringLiteral("error:") + TooMuchText, QStringLiteral("finished")}));
    QCOMPARE(m_backend->cardOn(SmartReader)->userData, card.userData);
    QVERIFY(!m_backend->isOpened(m_backend->listReaders().at(SmartReader)));
}

void TestUSBCardReaderManager::cardPulledMidWrite()
{
    m_backend->putCard(SmartReader, VirtualCard::desfire(Uid, 4));
    m_backend->pullCardAfterChunks(SmartReader, 2);
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(SmartReader, templatesOf(2000), {}), 9));
    const QStringList events = m_rec->without(QStringLiteral("tick"));
    QCOMPARE(events.mid(events.size() - 2),
             (QStringList{QStringLiteral("error:") + RemoveCardText, QStringLiteral("finished")}));
    QVERIFY(!m_rec->events.contains(QStringLiteral("card")));

    // Put back, the card can be written again by the next operation.
    const std::optional<VirtualCard> card = m_backend->takeCard(SmartReader);
    QVERIFY(card);
    m_backend->putCard(SmartReader, *card);
    m_rec->events.clear();
    QVERIFY(run(m_manager->writeWorkerTemplates_v2(SmartReader, templatesOf(2000), {}), 9));
    QVERIFY(m_rec->events.contains(QStringLiteral("message:Данные записаны.")));
}

void TestUSBCardReaderManager::templatesV1GoToTheLastReader()
{
    m_backend->putCard(2, VirtualCard::classic4K(Uid));
    QVERIFY(run(m_manager->getCard(2), 5));
    m_rec->events.clear();
    _TEMPLATE_DATA face;
    face.type = _TEMPLATE_DATA::Face;
    face.data = QByteArray("face");
    _TEMPLATE_DATA finger;
    finger.type = _TEMPLATE_DATA::Fingerprint;
    finger.data = QByteArray("fp");
    QVERIFY(run(m_manager->writeWorkerTemplates(7, {finger, face, finger}, QByteArray()), 9));
    QVERIFY(m_rec->events.contains(QStringLiteral("message:Данные записаны.")));
    // Grouped by type, mixed kinds: data type 0.
    const QByteArray block = cardblocks::prepareData(0, {QByteArray("fp"), QByteArray("fp"), QByteArray("face")});
    QVERIFY(m_backend->cardOn(2)->userData.startsWith(block));
}

void TestUSBCardReaderManager::stopReadCardOnlySignals()
{
    QSignalSpy found(m_manager, &USBCardReaderManager::cardFound);
    m_backend->putCard(SmartReader, VirtualCard::classic1K(Uid));
    m_backend->setCardAppearsOnAttempt(SmartReader, 2);
    const int ticks = m_manager->getCard(SmartReader);
    m_manager->stopReadCard();
    QCOMPARE(found.count(), 1);
    QVERIFY(run(ticks, 5));
    QVERIFY(m_rec->events.contains(QStringLiteral("card")));
}

namespace {
QStringList s_debugLines;
void captureDebug(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        s_debugLines << QString::fromLatin1(context.file) + QLatin1Char(' ') + text;
}
} // namespace

void TestUSBCardReaderManager::debugLinesFollowTheSwitch()
{
    s_debugLines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureDebug);
    QCOMPARE(m_manager->getCard(HidReader), 0);
    NVDialogsUtils::setDebugEnabled(true);
    QCOMPARE(m_manager->getCard(HidReader), 0);
    NVDialogsUtils::setDebugEnabled(false);
    QCOMPARE(m_manager->getCard(HidReader), 0);
    qInstallMessageHandler(previous);
    QCOMPARE(s_debugLines.size(), 1);
    QVERIFY2(s_debugLines.first().startsWith(QStringLiteral("src/usbcardreadermanager ")), qPrintable(s_debugLines.first()));
}

QTEST_MAIN(TestUSBCardReaderManager)
#include "tst_usbcardreadermanager.moc"
