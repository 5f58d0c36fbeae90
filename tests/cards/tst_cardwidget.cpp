#include <cardtemplateswidget.h>
#include <cardwidget.h>
#include <usbcardreadermanager.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <nvsmartcardtypes.h>
#include <simulatedbackend.h>

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;
using nvsmartcard::SimulatedBackend;
using nvsmartcard::VirtualCard;

namespace {

using Params = QHash<QString, QString>;
constexpr TYPE_ID Worker = 100;
constexpr TYPE_ID Other = 101;
constexpr TYPE_ID ClassicProfile = 30;
constexpr TYPE_ID DesfireV2Profile = 31;
const QByteArray Uid = QByteArray::fromHex("04A1B2C3");
constexpr quint64 UidNumber = 0x04A1B2C3;

_TEMPLATE_DATA templateOf(int type, int size)
{
    _TEMPLATE_DATA t;
    t.type = type;
    t.finger = 1;
    t.data = QByteArray(size, 'x');
    return t;
}

// The chooser as an operator uses it: every template that still fits.
bool checkAllThatFit(QDialog *, CardTemplatesWidget *chooser)
{
    auto *table = chooser->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
    for (int row = 0; table && row < table->rowCount(); ++row) {
        QTableWidgetItem *item = table->item(row, 0);
        if (item->flags() & Qt::ItemIsEnabled) {
            item->setCheckState(Qt::Checked);
            chooser->calculateTemplatesSize();
        }
    }
    return true;
}

} // namespace

class TestCardWidget : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void cardNumberFromUid_data();
    void cardNumberFromUid();
    void templatesRoom_data();
    void templatesRoom();
    void noReaders();
    void hidReaderExplains();
    void everyFlowEndsReady_data();
    void everyFlowEndsReady();

private:
    QString storePath() const { return m_dir.filePath(QStringLiteral("s.db")); }
    QTemporaryDir m_dir;
    std::shared_ptr<SimulatedBackend> m_backend;
};

void TestCardWidget::init()
{
    LocalStorage *store = LocalStorage::instance();
    QFile::remove(storePath());
    QString error;
    QVERIFY2(store->open(storePath(), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {ObjectInfo(Worker, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Иванов")}}),
                                                 ObjectInfo(Other, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Петров")}})}));
    QVERIFY(store->putObjects(SMARTCARD_PROFILE_DATANAME,
                              {ObjectInfo(ClassicProfile, OT_SMARTCARD_PROFILE,
                                          {{db::scardprofile::common::NAME, QStringLiteral("Classic")},
                                           {db::scardprofile::mfclassic::KEY_A, QStringLiteral("A1A2A3A4A5A6")},
                                           {db::scardprofile::mfclassic::KEY_B, QStringLiteral("B1B2B3B4B5B6")}}),
                               ObjectInfo(DesfireV2Profile, OT_SMARTCARD_PROFILE,
                                          {{db::scardprofile::common::NAME, QStringLiteral("DESFire")},
                                           {db::scardprofile::common::DATA_FORMAT, QStringLiteral("v2")}})}));
    QVERIFY(store->setTemplates(Worker, {templateOf(_TEMPLATE_DATA::Fingerprint, 498),
                                         templateOf(_TEMPLATE_DATA::Face, 700)}));
    m_backend = std::make_shared<SimulatedBackend>();
    nvsmartcard::setDefaultBackend(m_backend);
}

void TestCardWidget::cleanup()
{
    nvsmartcard::setDefaultBackend(nullptr);
    m_backend.reset();
    LocalStorage::instance()->close();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestCardWidget::cardNumberFromUid_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<quint64>("number");
    QTest::newRow("4 bytes") << QStringLiteral("04A1B2C3") << quint64(0x04A1B2C3);
    QTest::newRow("lower case, spaced") << QStringLiteral(" 04 a1 b2 c3 ") << quint64(0x04A1B2C3);
    QTest::newRow("7 bytes") << QStringLiteral("04A1B2C3D4E5F6") << quint64(0x04A1B2C3D4E5F6);
    QTest::newRow("10 bytes: last 8") << QStringLiteral("0102030405060708090A") << quint64(0x030405060708090A);
    QTest::newRow("all zero") << QStringLiteral("00000000") << quint64(0);
    QTest::newRow("odd length") << QStringLiteral("4A1B2C3") << quint64(0);
    QTest::newRow("not hex") << QStringLiteral("04G1B2C3") << quint64(0);
    QTest::newRow("non-latin digits") << QStringLiteral("04A1B2C\u0663") << quint64(0);
    QTest::newRow("empty") << QString() << quint64(0);
}

void TestCardWidget::cardNumberFromUid()
{
    QFETCH(QString, uid);
    QFETCH(quint64, number);
    QCOMPARE(CardWidget::cardNumberFromUid(uid), number);
}

void TestCardWidget::templatesRoom_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("memSize");
    QTest::addColumn<int>("userMemSize");
    QTest::addColumn<Params>("profile"); // empty: default keys
    QTest::addColumn<int>("templates");
    QTest::addColumn<int>("room");
    namespace p = db::scardprofile;
    const Params v2 = {{p::common::NAME, QStringLiteral("v2")}, {p::common::DATA_FORMAT, QStringLiteral("v2")}};
    QTest::newRow("classic 1K, default keys") << 1 << 1024 << 752 << Params() << 2 << 752 - 16 - 2 * 2;
    QTest::newRow("classic 1K, blocks 1-6") << 1 << 1024 << 752
                                            << Params{{p::common::NAME, QStringLiteral("c")},
                                                                       {p::mfclassic::LAST_BLOCK, QStringLiteral("6")}}
                                            << 1 << 5 * 16 - 16 - 2;
    QTest::newRow("desfire 8K, whole card, v2") << 2 << 8192 << 8096 << v2 << 4 << 8096 - 32 - 4 * 6;
    Params file = v2;
    file.insert(p::mfdesfire::FILE_SIZE, QStringLiteral("3584"));
    QTest::newRow("desfire 8K, 3.5 KB file, v2") << 2 << 8192 << 8096 << file << 4 << 3584 - 32 - 4 * 6;
    file.insert(p::mfdesfire::FILE_OFFSET, QStringLiteral("8000"));
    QTest::newRow("desfire, file near the end") << 2 << 8192 << 8096 << file << 1 << 8096 - 8000 - 32 - 6;
    QTest::newRow("card of no known family") << 4 << 0 << 0 << Params() << 1 << 0;
}

void TestCardWidget::templatesRoom()
{
    QFETCH(int, type);
    QFETCH(int, memSize);
    QFETCH(int, userMemSize);
    QFETCH(Params, profile);
    QFETCH(int, templates);
    QFETCH(int, room);
    const ObjectInfo card(0, OT_CARD, {{nvcm::TYPE, QString::number(type)}, {nvcm::MEM_SIZE, QString::number(memSize)},
                                       {nvcm::USER_MEM_SIZE, QString::number(userMemSize)}});
    const ObjectInfo record = profile.isEmpty() ? ObjectInfo() : ObjectInfo(77, OT_SMARTCARD_PROFILE, profile);
    QCOMPARE(CardWidget::templatesRoom(card, record, templates), room);
}

void TestCardWidget::noReaders()
{
    CardWidget widget;
    widget.setWorker(Worker);
    auto *readers = widget.findChild<QComboBox *>(QStringLiteral("cbReader"));
    QCOMPARE(readers->currentText(), QStringLiteral("Нет подключенных считывателей"));
    QVERIFY(!readers->isEnabled());
    for (const char *name : {"pbRead", "pbFormat", "pbWriteUid", "pbWriteTemplates"})
        QVERIFY2(!widget.findChild<QPushButton *>(QLatin1String(name))->isEnabled(), name);
    // Default keys first, then the store's profiles by name.
    auto *profiles = widget.findChild<QComboBox *>(QStringLiteral("cbProfile"));
    QCOMPARE(profiles->count(), 3);
    QCOMPARE(profiles->itemText(0), QStringLiteral("Ключи по умолчанию"));
    QCOMPARE(profiles->itemText(1), QStringLiteral("Classic"));
}

// A keyboard-style reader only types card numbers: the widget says so and
// stays usable.
void TestCardWidget::hidReaderExplains()
{
    m_backend->addReader(QStringLiteral("Z-2 USB"), db::devices::cardreader::HID);
    CardWidget widget;
    widget.setWorker(Worker);
    auto *readers = widget.findChild<QComboBox *>(QStringLiteral("cbReader"));
    QCOMPARE(readers->currentText(), QStringLiteral("Z-2 USB (только номер карты)"));
    auto *read = widget.findChild<QPushButton *>(QStringLiteral("pbRead"));
    read->click();
    QVERIFY(!widget.isBusy());
    QVERIFY(read->isEnabled());
    QCOMPARE(widget.resultText(), QStringLiteral("Выбранный считыватель не работает со смарт-картами"));
    QVERIFY(widget.resultIsError());
}

// Whatever happens at the reader, the operation ends with the controls
// usable again and the outcome in the result line; a card read or written
// is the employee's card in the store, also after reopening it.
void TestCardWidget::everyFlowEndsReady_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<int>("profile"); // combo row
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("isError");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("switchMidway"); // the operator selects someone else while it runs

    const QString issued = QStringLiteral(" Карта %1 выдана сотруднику.").arg(UidNumber);
    QTest::newRow("read") << "pbRead" << "card" << 0 << QStringLiteral("Прочитан идентификатор карты.") + issued << false << true << false;
    QTest::newRow("read, no card") << "pbRead" << "none" << 0 << QStringLiteral("Ошибка чтения идентификатора карты.") << true << false << false;
    QTest::newRow("read, held by another") << "pbRead" << "held" << 0
                                           << QStringLiteral("Карта с номером %1 уже выдана: Петров. Одну карту нельзя выдать дважды").arg(UidNumber)
                                           << true << false << false;
    QTest::newRow("format with profile") << "pbFormat" << "card" << 1 << QStringLiteral("Данные очищены.") + issued << false << true << false;
    QTest::newRow("format, wrong key") << "pbFormat" << "foreign keys" << 1
                                       << QStringLiteral("Авторизация на карте не удалась. Выберите другой профиль карты.") << true << false << false;
    QTest::newRow("write uid") << "pbWriteUid" << "card" << 0 << QStringLiteral("Данные записаны.") + issued << false << true << false;
    QTest::newRow("write templates v1") << "pbWriteTemplates" << "card" << 1 << QStringLiteral("Данные записаны.") + issued << false << true << false;
    QTest::newRow("write templates v2") << "pbWriteTemplates" << "desfire" << 2 << QStringLiteral("Данные записаны.") + issued << false << true << false;
    QTest::newRow("write uid, someone else selected") << "pbWriteUid" << "card" << 0 << QStringLiteral("Данные записаны.") + issued << false << true << true;
    QTest::newRow("write templates, pulled") << "pbWriteTemplates" << "pulled" << 2
                                             << QStringLiteral("Ошибка. Уберите карту со считывателя и повторите операцию.") << true << false << false;
}

void TestCardWidget::everyFlowEndsReady()
{
    QFETCH(QString, button);
    QFETCH(QString, scenario);
    QFETCH(int, profile);
    QFETCH(QString, result);
    QFETCH(bool, isError);
    QFETCH(bool, saved);
    QFETCH(bool, switchMidway);

    LocalStorage *store = LocalStorage::instance();
    m_backend->addReader(QStringLiteral("Z-2 USB"), db::devices::cardreader::HID);
    const int reader = m_backend->addReader(QStringLiteral("ACR122U"), db::devices::cardreader::SMARTCARD);
    VirtualCard card = scenario == QLatin1String("desfire") || scenario == QLatin1String("pulled") ? VirtualCard::desfire(Uid, 4)
                                                                                                   : VirtualCard::classic1K(Uid);
    if (scenario == QLatin1String("foreign keys")) {
        card.keyA = nvsmartcard::Key(nvsmartcard::Crypto1KeyA, QByteArray::fromHex("C1C2C3C4C5C6"));
        card.keyB = nvsmartcard::Key(nvsmartcard::Crypto1KeyB, QByteArray::fromHex("C1C2C3C4C5C6"));
    }
    if (scenario != QLatin1String("none")) {
        m_backend->putCard(reader, card);
        m_backend->setCardAppearsOnAttempt(reader, 1);
    }
    if (scenario == QLatin1String("pulled"))
        m_backend->pullCardAfterChunks(reader, 1);
    if (scenario == QLatin1String("held")) {
        ObjectInfo held(60, OT_CARD, {{db::card::NUMBER, QString::number(UidNumber)}});
        held.setParent(Other);
        QVERIFY(store->putObjects(CARD_DATANAME, {held}));
    }

    CardWidget widget;
    TaskExecutor executor(store);
    // As the client wires it: tasks to the executor, its refusals back.
    connect(&widget, &CardWidget::appendTask, &executor, &TaskExecutor::execute);
    connect(&executor, &TaskExecutor::taskFinished, &widget, [&widget](const TaskInfo &task, bool ok, const QString &why) {
        if (!ok && task.widget == &widget)
            widget.showResult(why, true);
    });
    widget.execTemplatesDialog = checkAllThatFit;
    widget.setWorker(Worker);
    widget.show();
    auto *readers = widget.findChild<QComboBox *>(QStringLiteral("cbReader"));
    QCOMPARE(readers->currentData().toInt(), reader); // the smart-card reader is preselected
    widget.findChild<QComboBox *>(QStringLiteral("cbProfile"))->setCurrentIndex(profile);
    QSignalSpy savedSpy(&widget, &CardWidget::cardSaved);

    widget.findChild<QPushButton *>(button)->click();
    QVERIFY(widget.isBusy());
    const QList<QWidget *> controls = {readers, widget.findChild<QComboBox *>(QStringLiteral("cbProfile")),
                                       widget.findChild<QPushButton *>(QStringLiteral("pbRead")),
                                       widget.findChild<QPushButton *>(QStringLiteral("pbFormat")),
                                       widget.findChild<QPushButton *>(QStringLiteral("pbWriteUid")),
                                       widget.findChild<QPushButton *>(QStringLiteral("pbWriteTemplates"))};
    for (QWidget *control : controls)
        QVERIFY2(!control->isEnabled(), qPrintable(control->objectName()));
    if (switchMidway)
        widget.setWorker(Other);

    // Reading without a card waits its full five seconds; a pulled card
    // three more before the device is closed.
    QTRY_VERIFY_WITH_TIMEOUT(!widget.isBusy() && !widget.manager()->isBusy() && executor.pendingCount() == 0, 15000);
    QTRY_COMPARE(widget.resultText(), result);
    QCOMPARE(widget.resultIsError(), isError);
    QVERIFY(widget.findChild<QLabel *>(QStringLiteral("lbResult"))->isVisible());
    for (QWidget *control : controls)
        QVERIFY2(control->isEnabled(), qPrintable(control->objectName()));
    auto *progress = widget.findChild<QProgressBar *>(QStringLiteral("progressBar"));
    QVERIFY(progress->maximum() >= 5);

    QCOMPARE(store->cardIds(Other, false).size(), scenario == QLatin1String("held") ? 1 : 0);
    // What the last operation said does not follow the operator to another employee.
    widget.setWorker(switchMidway ? Worker : Other);
    QCOMPARE(widget.resultText(), QString());
    widget.setWorker(Worker);

    const QList<TYPE_ID> cards = store->cardIds(Worker, false);
    QCOMPARE(cards.size(), saved ? 1 : 0);
    QCOMPARE(savedSpy.size(), saved ? 1 : 0);
    if (!saved)
        return;
    QCOMPARE(savedSpy.at(0).at(0).value<TYPE_ID>(), cards.first());
    const TYPE_ID cardUid = cards.first();

    // The same card again is the same record, not a second one.
    widget.findChild<QPushButton *>(QStringLiteral("pbRead"))->click();
    QTRY_VERIFY(!widget.isBusy() && executor.pendingCount() == 0);
    QCOMPARE(store->cardIds(Worker, false), QList<TYPE_ID>{cardUid});

    store->close();
    QString error;
    QVERIFY2(store->open(storePath(), &error), qPrintable(error));
    const ObjectInfo stored = store->object(cardUid, CARD_DATANAME);
    QCOMPARE(stored.parent(), Worker);
    QCOMPARE(stored.parameter(db::card::NUMBER), QString::number(UidNumber));
    QCOMPARE(stored.parameter(db::card::UID), QString::fromLatin1(Uid.toHex().toUpper()));
    QCOMPARE(stored.parameter(db::card::SMARTCARD_PROFILE),
             profile == 0 ? QStringLiteral("-1") : QString::number(profile == 1 ? ClassicProfile : DesfireV2Profile));
}

QTEST_MAIN(TestCardWidget)
#include "tst_cardwidget.moc"
