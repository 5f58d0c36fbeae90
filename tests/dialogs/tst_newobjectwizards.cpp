#include <baseprogresswizardpage.h>
#include <changesummarywizardpage.h>
#include <newdepartmentparameterspage.h>
#include <newdepartmentwizard.h>
#include <newfirmparameterspage.h>
#include <newfirmwizard.h>
#include <newprogresswizardpages.h>
#include <newworkercardpage.h>
#include <newworkerjobpage.h>
#include <newworkerphotopage.h>
#include <newworkerwizard.h>
#include <newworkerwizardparameterspage.h>

#include <cardwidget.h>
#include <datanames.h>
#include <dbparams.h>
#include <innvalidator.h>
#include <localstorage.h>
#include <nvdateedit.h>
#include <objecttypes.h>
#include <photowidget.h>
#include <readerbackend.h>
#include <simulatedbackend.h>
#include <snilsedit.h>
#include <taskexecutor.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

namespace {

constexpr TYPE_ID Firm = 10;
constexpr TYPE_ID Department = 20;
constexpr TYPE_ID Job = 30;
constexpr TYPE_ID Holder = 101;
constexpr TYPE_ID HeldCard = 60;
constexpr int Schedule = 5;
const QString HeldNumber = QStringLiteral("555");

template<typename T>
T *child(QObject *parent, const char *name)
{
    T *found = parent->findChild<T *>(QLatin1String(name));
    if (!found)
        qWarning() << "no child" << name;
    return found;
}

void type(QObject *page, const char *name, const QString &text)
{
    child<QLineEdit>(page, name)->setText(text);
}

QString reason(QObject *page)
{
    return child<QLabel>(page, "lbReason")->text();
}

} // namespace

class TestNewObjectWizards : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void parametersPageRefusal_data();
    void parametersPageRefusal();
    void jobPageRefusal_data();
    void jobPageRefusal();
    void cardPageRefusal_data();
    void cardPageRefusal();
    void cardReadOnAReaderGivesTheNumber();
    void firmAndDepartmentRefusal_data();
    void firmAndDepartmentRefusal();
    void backAndNextKeepTheInput();
    void workerTaskQueue_data();
    void workerTaskQueue();
    void creatingReplyHandsTheUidOn();
    void runRefusedWhenANumberWasTakenMeanwhile();
    void createsWorkerWithCardAndPhoto();
    void createsFirmAndDepartmentUnderIt();
    void refusedCreationShowsItsErrorInTheLog();

private:
    // Fills the wizard's pages with a valid employee going to Department.
    void fillWorker(NewWorkerWizard *wizard, const QString &cardNumber, bool photo);
    // Runs the wizard's progress page through the executor to its end.
    void runThroughExecutor(NewObjectWizard *wizard);
    void reopenStore();

    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
    std::shared_ptr<nvsmartcard::SimulatedBackend> m_backend;
};

void TestNewObjectWizards::init()
{
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo root(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}});
    ObjectInfo firm(Firm, OT_FIRM, {{db::common::NAME, QStringLiteral("Ромашка")}});
    firm.setParent(SUBJECT_ROOT_UID);
    ObjectInfo dep(Department, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Склад")}});
    dep.setParent(Firm);
    ObjectInfo holder(Holder, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Петров")}, {db::worker::WORKERNUM, QStringLiteral("77")}});
    holder.setParent(Department);
    ObjectInfo card(HeldCard, OT_CARD, {{db::card::NUMBER, HeldNumber}, {db::card::OWNER, QString::number(Holder)}});
    card.setParent(Holder);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {root, firm, dep}));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {holder}));
    QVERIFY(store->putObjects(CARD_DATANAME, {card}));
    QVERIFY(store->putObjects(JOB_DATANAME, {ObjectInfo(Job, OT_JOB, {{db::common::NAME, QStringLiteral("Кладовщик")}})}));
    SCHEDULE_DATA schedule;
    schedule.id = Schedule;
    schedule.name = QStringLiteral("Пятидневка");
    schedule.pattern = QStringLiteral("1111100");
    QVERIFY(store->putSchedules({schedule}));
    m_backend = std::make_shared<nvsmartcard::SimulatedBackend>();
    nvsmartcard::setDefaultBackend(m_backend);
}

void TestNewObjectWizards::cleanup()
{
    nvsmartcard::setDefaultBackend(nullptr);
    m_backend.reset();
    store->close();
    // A failed check leaves its wizard open: closed here, so that the
    // next test starts clean, but still reported.
    const QWidgetList left = QApplication::topLevelWidgets();
    QList<QPointer<QWidget>> guarded;
    for (QWidget *w : left) {
        qWarning() << "left open:" << w;
        guarded.append(w);
    }
    for (const QPointer<QWidget> &w : qAsConst(guarded))
        delete w.data();
    QVERIFY(left.isEmpty());
}

void TestNewObjectWizards::reopenStore()
{
    store->close();
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
}

void TestNewObjectWizards::parametersPageRefusal_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<QString>("inn");
    QTest::addColumn<QString>("snils");
    QTest::addColumn<QString>("refusal"); // empty: the page may be left
    const QString inn = INNValidator::withCheckDigits(QStringLiteral("5001234567"));
    const QString snils = SnilsEdit::withCheckSum(QStringLiteral("112233445"));
    QTest::newRow("surname only") << QStringLiteral("Иванов") << QString() << QString() << QString();
    QTest::newRow("everything") << QStringLiteral("Иванов") << inn << snils << QString();
    QTest::newRow("no surname") << QString() << inn << snils << QStringLiteral("фамилию");
    QTest::newRow("blank surname") << QStringLiteral("   ") << QString() << QString() << QStringLiteral("фамилию");
    QTest::newRow("firm's inn") << QStringLiteral("Иванов") << INNValidator::withCheckDigits(QStringLiteral("770708389"))
                                << QString() << QStringLiteral("ИНН");
    QTest::newRow("inn check digit") << QStringLiteral("Иванов") << inn.left(11) + QString::number((inn.at(11).digitValue() + 1) % 10)
                                     << QString() << QStringLiteral("ИНН");
    QTest::newRow("snils check sum") << QStringLiteral("Иванов") << QString()
                                     << snils.left(9) + QString::number((snils.mid(9).toInt() + 1) % 100).rightJustified(2, QLatin1Char('0'))
                                     << QStringLiteral("СНИЛС");
    QTest::newRow("snils short") << QStringLiteral("Иванов") << QString() << snils.left(6) << QStringLiteral("СНИЛС");
}

void TestNewObjectWizards::parametersPageRefusal()
{
    QFETCH(QString, surname);
    QFETCH(QString, inn);
    QFETCH(QString, snils);
    QFETCH(QString, refusal);
    NewWorkerWizardParametersPage page;
    type(&page, "leSurname", surname);
    type(&page, "leInn", inn);
    child<SnilsEdit>(&page, "leSnils")->setSnils(snils);
    QCOMPARE(page.isComplete(), refusal.isEmpty());
    QCOMPARE(page.verifyCreateWorker(), refusal.isEmpty());
    if (refusal.isEmpty())
        QVERIFY(reason(&page).isEmpty());
    else
        QVERIFY2(reason(&page).contains(refusal), qPrintable(reason(&page)));
}

void TestNewObjectWizards::jobPageRefusal_data()
{
    QTest::addColumn<uint>("department");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QDate>("begin");
    QTest::addColumn<QDate>("end");
    QTest::addColumn<QString>("refusal");
    const QDate today = QDate::currentDate();
    QTest::newRow("department") << uint(Department) << QString() << today << QDate() << QString();
    QTest::newRow("firm") << uint(Firm) << QStringLiteral("78") << today << today << QString();
    QTest::newRow("none") << 0u << QString() << today << QDate() << QStringLiteral("Выберите подразделение");
    // The host presets the selected row: an employee or the root is no place.
    QTest::newRow("an employee") << uint(Holder) << QString() << today << QDate() << QStringLiteral("Выберите подразделение");
    QTest::newRow("the root") << uint(SUBJECT_ROOT_UID) << QString() << today << QDate() << QStringLiteral("Выберите подразделение");
    QTest::newRow("number taken") << uint(Department) << QStringLiteral(" 77 ") << today << QDate()
                                  << QStringLiteral("77 уже есть у сотрудника: Петров");
    QTest::newRow("ends before it begins") << uint(Department) << QString() << today << today.addDays(-1)
                                           << QStringLiteral("раньше даты начала");
    QTest::newRow("open start") << uint(Department) << QString() << QDate() << today << QString();
}

void TestNewObjectWizards::jobPageRefusal()
{
    QFETCH(uint, department);
    QFETCH(QString, number);
    QFETCH(QDate, begin);
    QFETCH(QDate, end);
    QFETCH(QString, refusal);
    NewWorkerJobPage page;
    page.chooseDepartment = [department](QWidget *, TYPE_ID) { return TYPE_ID(department); };
    child<QPushButton>(&page, "pbDepartment")->click();
    type(&page, "leWorkerNumber", number);
    child<NVDateEdit>(&page, "deDateBegin")->setDateOrClear(begin);
    child<NVDateEdit>(&page, "deDateEnd")->setDateOrClear(end);
    QCOMPARE(page.isComplete(), refusal.isEmpty());
    QCOMPARE(reason(&page).isEmpty(), refusal.isEmpty());
    QVERIFY2(reason(&page).contains(refusal), qPrintable(reason(&page)));
}

void TestNewObjectWizards::cardPageRefusal_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("number"); // what the card task would carry
    QTest::newRow("no card") << QString() << QString() << QString();
    QTest::newRow("free number") << QStringLiteral("556") << QString() << QStringLiteral("556");
    QTest::newRow("held by someone") << HeldNumber << QStringLiteral("уже выдана: Петров") << QString();
    QTest::newRow("held, leading zeros") << QStringLiteral("000555") << QStringLiteral("уже выдана: Петров") << QString();
    QTest::newRow("not a number") << QStringLiteral("12a") << QStringLiteral("не распознан") << QString();
    QTest::newRow("zero") << QStringLiteral("0") << QStringLiteral("не распознан") << QString();
}

void TestNewObjectWizards::cardPageRefusal()
{
    QFETCH(QString, typed);
    QFETCH(QString, refusal);
    QFETCH(QString, number);
    NewWorkerCardPage page;
    type(&page, "leCardNumber", typed);
    QCOMPARE(reason(&page).isEmpty(), refusal.isEmpty());
    QVERIFY2(reason(&page).contains(refusal), qPrintable(reason(&page)));
    QCOMPARE(page.isComplete(), refusal.isEmpty());
    QString carried;
    for (const ValidatedWizardPage::Field &field : page.fields()) {
        if (field.key == db::card::NUMBER)
            carried = field.value;
    }
    if (refusal.isEmpty())
        QCOMPARE(carried, number);
}

void TestNewObjectWizards::cardReadOnAReaderGivesTheNumber()
{
    const int reader = m_backend->addReader(QStringLiteral("ACR122U"), db::devices::cardreader::SMARTCARD);
    const QByteArray uid = QByteArray::fromHex("04A1B2C3");
    m_backend->putCard(reader, nvsmartcard::VirtualCard::classic1K(uid));
    m_backend->setCardAppearsOnAttempt(reader, 1);
    NewWorkerCardPage page;
    page.refreshReaders();
    child<QPushButton>(&page, "pbRead")->click();
    QVERIFY(page.isReading());
    QVERIFY(!page.isComplete()); // no going on while the reader works
    QTRY_VERIFY(!page.isReading());
    QCOMPARE(page.cardNumber(), quint64(0x04A1B2C3));
    QCOMPARE(child<QLineEdit>(&page, "leCardNumber")->text(), CardWidget::cardNumberText(0x04A1B2C3));
    QVERIFY(page.isComplete());
    QHash<QString, QString> values;
    for (const ValidatedWizardPage::Field &field : page.fields())
        values.insert(field.key, field.value);
    QCOMPARE(values.value(db::card::NUMBER), QString::number(0x04A1B2C3));
    QCOMPARE(values.value(db::card::UID), QStringLiteral("04A1B2C3"));
    // Typing another number forgets the card that was read.
    type(&page, "leCardNumber", QStringLiteral("556"));
    values.clear();
    for (const ValidatedWizardPage::Field &field : page.fields())
        values.insert(field.key, field.value);
    QCOMPARE(values.value(db::card::NUMBER), QStringLiteral("556"));
    QVERIFY(!values.contains(db::card::UID));
}

void TestNewObjectWizards::firmAndDepartmentRefusal_data()
{
    QTest::addColumn<bool>("firm");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("second"); // INN of a firm, number of a department
    QTest::addColumn<QString>("third");  // KPP of a firm, parent uid of a department
    QTest::addColumn<QString>("refusal");
    const QString inn = INNValidator::withCheckDigits(QStringLiteral("770708389"));
    QTest::newRow("firm") << true << QStringLiteral("Лютик") << inn << QStringLiteral("770701001") << QString();
    QTest::newRow("firm, name only") << true << QStringLiteral("Лютик") << QString() << QString() << QString();
    QTest::newRow("firm, no name") << true << QStringLiteral(" ") << inn << QString() << QStringLiteral("название");
    QTest::newRow("firm, person's inn") << true << QStringLiteral("Лютик")
                                        << INNValidator::withCheckDigits(QStringLiteral("5001234567")).left(10)
                                        << QString() << QStringLiteral("ИНН");
    QTest::newRow("firm, inn short") << true << QStringLiteral("Лютик") << inn.left(9) << QString() << QStringLiteral("ИНН");
    QTest::newRow("firm, kpp short") << true << QStringLiteral("Лютик") << inn << QStringLiteral("77070100")
                                     << QStringLiteral("КПП");
    QTest::newRow("department") << false << QStringLiteral("Цех") << QStringLiteral("12") << QString::number(Department)
                                << QString();
    QTest::newRow("department under firm") << false << QStringLiteral("Цех") << QString() << QString::number(Firm) << QString();
    QTest::newRow("department, no name") << false << QString() << QString() << QString::number(Firm)
                                         << QStringLiteral("название");
    QTest::newRow("department, no parent") << false << QStringLiteral("Цех") << QString() << QStringLiteral("0")
                                           << QStringLiteral("Выберите");
    QTest::newRow("department under an employee") << false << QStringLiteral("Цех") << QString()
                                                  << QString::number(Holder) << QStringLiteral("Выберите");
}

void TestNewObjectWizards::firmAndDepartmentRefusal()
{
    QFETCH(bool, firm);
    QFETCH(QString, name);
    QFETCH(QString, second);
    QFETCH(QString, third);
    QFETCH(QString, refusal);
    QScopedPointer<ValidatedWizardPage> page;
    if (firm) {
        page.reset(new NewFirmParametersPage);
        type(page.data(), "leInn", second);
        type(page.data(), "leKpp", third);
    } else {
        auto *department = new NewDepartmentParametersPage;
        page.reset(department);
        type(department, "leNumber", second);
        department->setParentDepartment(third.toUInt());
    }
    type(page.data(), "leName", name);
    QCOMPARE(page->isComplete(), refusal.isEmpty());
    QCOMPARE(reason(page.data()).isEmpty(), refusal.isEmpty());
    QVERIFY2(reason(page.data()).contains(refusal), qPrintable(reason(page.data())));
}

void TestNewObjectWizards::backAndNextKeepTheInput()
{
    QPointer<NewWorkerWizard> wizard = new NewWorkerWizard;
    QCOMPARE(wizard->windowTitle(), QStringLiteral("Мастер создания сотрудника"));
    wizard->setDepartment(Holder); // the host's selection: the employee's department is meant
    QCOMPARE(wizard->jobPage()->department(), Department);
    wizard->show();
    QAbstractButton *next = wizard->button(QWizard::NextButton);
    QVERIFY(!next->isEnabled()); // no surname yet
    type(wizard->parametersPage(), "leSurname", QStringLiteral("Иванов"));
    type(wizard->parametersPage(), "leName", QStringLiteral("Иван"));
    QVERIFY(next->isEnabled());
    wizard->next();
    QCOMPARE(wizard->currentId(), int(NewWorkerWizard::JobPageId));
    type(wizard->jobPage(), "leWorkerNumber", QStringLiteral("77"));
    QVERIFY(!next->isEnabled());
    QVERIFY(reason(wizard->jobPage()).contains(QStringLiteral("Петров")));
    type(wizard->jobPage(), "leWorkerNumber", QStringLiteral("78"));
    QVERIFY(next->isEnabled());
    wizard->back();
    QCOMPARE(child<QLineEdit>(wizard->parametersPage(), "leSurname")->text(), QStringLiteral("Иванов"));
    QCOMPARE(child<QLineEdit>(wizard->parametersPage(), "leName")->text(), QStringLiteral("Иван"));
    wizard->next();
    QCOMPARE(child<QLineEdit>(wizard->jobPage(), "leWorkerNumber")->text(), QStringLiteral("78"));
    QCOMPARE(wizard->jobPage()->department(), Department);
    wizard->next();
    wizard->next();
    type(wizard->cardPage(), "leCardNumber", HeldNumber);
    QVERIFY(!next->isEnabled());
    type(wizard->cardPage(), "leCardNumber", QString());
    wizard->next();
    QCOMPARE(wizard->currentId(), int(NewWorkerWizard::SummaryPageId));
    const QString summary = wizard->summaryPage()->summaryText();
    QVERIFY2(summary.startsWith(QStringLiteral("Создание: Иванов Иван")), qPrintable(summary));
    QVERIFY2(summary.contains(QStringLiteral("Табельный номер:  -> 78")), qPrintable(summary));
    QVERIFY2(summary.contains(QStringLiteral("Подразделение:  -> Склад")), qPrintable(summary));
    wizard->close();
    QTRY_VERIFY(wizard.isNull());
}

void TestNewObjectWizards::fillWorker(NewWorkerWizard *wizard, const QString &cardNumber, bool photo)
{
    type(wizard->parametersPage(), "leSurname", QStringLiteral("Иванов"));
    type(wizard->parametersPage(), "lePatronymic", QStringLiteral("Петрович"));
    wizard->setDepartment(Department);
    child<QComboBox>(wizard->jobPage(), "cbJob")->setCurrentIndex(1);
    child<QComboBox>(wizard->jobPage(), "cbSchedule")->setCurrentIndex(1);
    type(wizard->jobPage(), "leWorkerNumber", QStringLiteral("78"));
    type(wizard->cardPage(), "leCardNumber", cardNumber);
    if (photo) {
        QPixmap picture(40, 30);
        picture.fill(Qt::darkCyan);
        wizard->photoPage()->photoWidget()->setPhoto(picture);
    }
}

void TestNewObjectWizards::workerTaskQueue_data()
{
    QTest::addColumn<QString>("card");
    QTest::addColumn<bool>("photo");
    QTest::addColumn<QStringList>("replies");
    QTest::newRow("employee only") << QString() << false << QStringList{QStringLiteral("save")};
    QTest::newRow("with card") << QStringLiteral("556") << false
                               << QStringList{QStringLiteral("save"), QStringLiteral("saveCards")};
    QTest::newRow("with photo") << QString() << true << QStringList{QStringLiteral("save"), QStringLiteral("saveParameters")};
    QTest::newRow("with both") << QStringLiteral("556") << true
                               << QStringList{QStringLiteral("save"), QStringLiteral("saveCards"), QStringLiteral("saveParameters")};
}

void TestNewObjectWizards::workerTaskQueue()
{
    QFETCH(QString, card);
    QFETCH(bool, photo);
    QFETCH(QStringList, replies);
    NewWorkerWizard wizard;
    fillWorker(&wizard, card, photo);
    const QList<TaskInfo> tasks = wizard.tasks();
    QStringList replySlots;
    for (const TaskInfo &task : tasks) {
        replySlots.append(task.slot);
        QCOMPARE(task.command, QStringLiteral("save_object"));
        QCOMPARE(task.uid, TYPE_ID(0)); // all wait for the new uid
        QVERIFY(!task.errorMessage.isEmpty());
    }
    QCOMPARE(replySlots, replies);
    const TaskInfo create = tasks.constFirst();
    QCOMPARE(create.params.value(QStringLiteral("object_type")).toString(), OT_WORKER);
    QCOMPARE(create.params.value(QStringLiteral("parent")).toString(), QString::number(Department));
    const QHash<QString, QString> expected = {
        {db::worker::LAST_NAME, QStringLiteral("Иванов")},     {db::worker::MIDDLE_NAME, QStringLiteral("Петрович")},
        {db::worker::JOBLINK, QString::number(Job)},           {db::worker::SCHEDULE, QString::number(Schedule)},
        {db::worker::WORKERNUM, QStringLiteral("78")},         {db::worker::DATE_BEGIN, QDate::currentDate().toString(Qt::ISODate)},
    };
    QHash<QString, QString> properties;
    for (auto it = create.params.cbegin(); it != create.params.cend(); ++it) {
        if (it.key().startsWith(QLatin1String("property-")))
            properties.insert(it.key().mid(9), it.value().toString());
    }
    // Nothing the operator left empty is written, nor a photo into the record.
    QCOMPARE(properties, expected);
    for (const TaskInfo &task : tasks.mid(1)) {
        QVERIFY(!task.params.contains(QStringLiteral("parent")));
        if (task.slot == QLatin1String("saveCards")) {
            QCOMPARE(task.params.value(QStringLiteral("object_type")).toString(), OT_CARD);
            QCOMPARE(task.params.value(QStringLiteral("property-") + db::card::NUMBER).toString(), card);
        } else {
            QCOMPARE(task.params.value(QStringLiteral("object_type")).toString(), OT_WORKER);
            const QByteArray hex = task.params.value(QStringLiteral("property-") + db::worker::PHOTO).toString().toLatin1();
            QVERIFY(!QImage::fromData(QByteArray::fromHex(hex)).isNull());
            QVERIFY(task.params.contains(QStringLiteral("property-") + db::worker::PHOTO_PREVIEW));
        }
    }
    // The summary lists each field the operator gave, the photo once.
    wizard.summaryPage()->setChanges(wizard.changes());
    const QString summary = wizard.summaryPage()->summaryText();
    QCOMPARE(summary.count(QLatin1Char('\n')), expected.size() + 1 /* department */ + (card.isEmpty() ? 0 : 1) + (photo ? 1 : 0));
}

void TestNewObjectWizards::creatingReplyHandsTheUidOn()
{
    QPointer<NewWorkerWizard> wizard = new NewWorkerWizard;
    fillWorker(wizard, QStringLiteral("556"), true);
    QList<TaskInfo> sent;
    connect(wizard, &NewObjectWizard::appendTask, this, [&sent](const TaskInfo &task) { sent.append(task); });
    QSignalSpy created(wizard.data(), &NewObjectWizard::objectCreated);
    wizard->show();
    while (wizard->currentId() != NewWorkerWizard::ProgressPageId) {
        const int before = wizard->currentId();
        wizard->next();
        QVERIFY(wizard->currentId() != before);
    }
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.constFirst().widget.data(), static_cast<QObject *>(wizard->progressPage()));
    QVERIFY(QMetaObject::invokeMethod(sent.last().widget, qPrintable(sent.last().slot), Q_ARG(uint, 4242u)));
    QCOMPARE(sent.size(), 2);
    QCOMPARE(sent.last().uid, TYPE_ID(4242));
    QCOMPARE(wizard->property("uid").toUInt(), 4242u);
    QVERIFY(created.isEmpty()); // not before the run has ended
    QVERIFY(QMetaObject::invokeMethod(sent.last().widget, qPrintable(sent.last().slot), Q_ARG(uint, 90u), Q_ARG(QString, QString())));
    QCOMPARE(sent.size(), 3);
    QCOMPARE(sent.last().uid, TYPE_ID(4242));
    QVERIFY(QMetaObject::invokeMethod(sent.last().widget, qPrintable(sent.last().slot), Q_ARG(uint, 4242u)));
    QCOMPARE(created.size(), 1);
    QCOMPARE(created.constFirst().constFirst().toUInt(), 4242u);
    QVERIFY(wizard->button(QWizard::FinishButton)->isEnabled());
    wizard->close();
    QTRY_VERIFY(wizard.isNull());
}

void TestNewObjectWizards::runRefusedWhenANumberWasTakenMeanwhile()
{
    QPointer<NewWorkerWizard> wizard = new NewWorkerWizard;
    fillWorker(wizard, QString(), false);
    QList<TaskInfo> sent;
    connect(wizard, &NewObjectWizard::appendTask, this, [&sent](const TaskInfo &task) { sent.append(task); });
    wizard->show();
    while (wizard->currentId() != NewWorkerWizard::SummaryPageId)
        wizard->next();
    // Someone else takes the personnel number while the summary is read.
    ObjectInfo other(102, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}, {db::worker::WORKERNUM, QStringLiteral("78")}});
    other.setParent(Department);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {other}));
    wizard->next();
    QCOMPARE(wizard->currentId(), int(NewWorkerWizard::ProgressPageId));
    QVERIFY(sent.isEmpty());
    QCOMPARE(wizard->runPage()->logText(), QStringLiteral("Операция отменена"));
    QVERIFY(!wizard->button(QWizard::FinishButton)->isEnabled());
    QVERIFY(reason(wizard->parametersPage()).contains(QStringLiteral("Сидоров")));
    wizard->close();
    QTRY_VERIFY(wizard.isNull());
}

void TestNewObjectWizards::runThroughExecutor(NewObjectWizard *wizard)
{
    TaskExecutor executor(store);
    connect(wizard, &NewObjectWizard::appendTask, &executor, &TaskExecutor::execute);
    QSignalSpy finished(wizard->runPage(), &BaseProgressWizardPage::tasksFinished);
    wizard->show();
    while (wizard->currentId() != wizard->pageIds().constLast()) {
        const int before = wizard->currentId();
        wizard->next();
        QVERIFY2(wizard->currentId() != before, qPrintable(QStringLiteral("stuck on page %1").arg(before)));
    }
    QTRY_COMPARE(finished.size(), 1);
}

void TestNewObjectWizards::createsWorkerWithCardAndPhoto()
{
    QPointer<NewWorkerWizard> wizard = new NewWorkerWizard;
    fillWorker(wizard, QStringLiteral("556"), true);
    QSignalSpy created(wizard.data(), &NewObjectWizard::objectCreated);
    runThroughExecutor(wizard);
    QVERIFY2(!wizard->runPage()->logText().contains(QStringLiteral("Ошибка")), qPrintable(wizard->runPage()->logText()));
    QCOMPARE(created.size(), 1);
    const TYPE_ID uid = created.constFirst().constFirst().toUInt();
    QVERIFY(uid);
    QCOMPARE(wizard->createdUid(), uid);
    wizard->close();
    QTRY_VERIFY(wizard.isNull());

    reopenStore();
    const ObjectInfo *worker = store->constObject(uid, SUBJECT_DATANAME);
    QVERIFY(worker);
    QCOMPARE(worker->parent(), Department);
    QCOMPARE(worker->parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
    QCOMPARE(worker->parameter(db::worker::JOBLINK), QString::number(Job));
    const NVHash<TYPE_ID, ObjectInfo> cards = store->cards(uid, false);
    QCOMPARE(cards.size(), 1);
    QCOMPARE(cards.begin()->parameter(db::card::NUMBER), QStringLiteral("556"));
    QVERIFY(!QImage::fromData(QByteArray::fromHex(store->blob(uid, db::worker::PHOTO))).isNull());
}

void TestNewObjectWizards::createsFirmAndDepartmentUnderIt()
{
    QPointer<NewFirmWizard> firmWizard = new NewFirmWizard;
    QCOMPARE(firmWizard->windowTitle(), QStringLiteral("Мастер создания организации"));
    type(firmWizard->parametersPage(), "leName", QStringLiteral("Лютик"));
    type(firmWizard->parametersPage(), "leInn", INNValidator::withCheckDigits(QStringLiteral("770708389")));
    QSignalSpy firmCreated(firmWizard.data(), &NewObjectWizard::objectCreated);
    runThroughExecutor(firmWizard);
    QCOMPARE(firmCreated.size(), 1);
    const TYPE_ID firm = firmCreated.constFirst().constFirst().toUInt();
    firmWizard->close();

    QPointer<NewDepartmentWizard> depWizard = new NewDepartmentWizard;
    depWizard->setParentDepartment(firm);
    type(depWizard->parametersPage(), "leName", QStringLiteral("Цех"));
    type(depWizard->parametersPage(), "leNumber", QStringLiteral("12"));
    QSignalSpy depCreated(depWizard.data(), &NewObjectWizard::objectCreated);
    runThroughExecutor(depWizard);
    QCOMPARE(depCreated.size(), 1);
    const TYPE_ID dep = depCreated.constFirst().constFirst().toUInt();
    depWizard->close();
    QTRY_VERIFY(firmWizard.isNull() && depWizard.isNull());

    reopenStore();
    const ObjectInfo *firmRecord = store->constObject(firm, ORGSTRUCTURE_DATANAME);
    QVERIFY(firmRecord);
    QCOMPARE(firmRecord->typeName(), OT_FIRM);
    QCOMPARE(firmRecord->parent(), SUBJECT_ROOT_UID);
    QCOMPARE(firmRecord->parameter(db::firm::NAME), QStringLiteral("Лютик"));
    const ObjectInfo *depRecord = store->constObject(dep, ORGSTRUCTURE_DATANAME);
    QVERIFY(depRecord);
    QCOMPARE(depRecord->typeName(), OT_DEPARTMENT);
    QCOMPARE(depRecord->parent(), firm);
    QCOMPARE(depRecord->parameter(db::orgstructure::DEPARTNUM), QStringLiteral("12"));
}

void TestNewObjectWizards::refusedCreationShowsItsErrorInTheLog()
{
    // The server knows a card this client has not heard of yet: another
    // client issued the number a moment ago.
    store->setWatching(false);
    LocalStorage server;
    QString error;
    QVERIFY2(server.open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo card(61, OT_CARD, {{db::card::NUMBER, QStringLiteral("556")}, {db::card::OWNER, QString::number(Holder)}});
    card.setParent(Holder);
    QVERIFY(server.putObjects(CARD_DATANAME, {card}));

    QPointer<NewWorkerWizard> wizard = new NewWorkerWizard;
    fillWorker(wizard, QStringLiteral("556"), true);
    QVERIFY(wizard->cardPage()->isComplete());
    TaskExecutor executor(&server);
    connect(wizard, &NewObjectWizard::appendTask, &executor, &TaskExecutor::execute);
    // As the client wires it: the server's reason follows the task's own text.
    connect(&executor, &TaskExecutor::taskFinished, wizard, &NewObjectWizard::taskFinished);
    QSignalSpy finished(wizard->runPage(), &BaseProgressWizardPage::tasksFinished);
    QSignalSpy created(wizard.data(), &NewObjectWizard::objectCreated);
    wizard->show();
    while (wizard->currentId() != NewWorkerWizard::ProgressPageId)
        wizard->next();
    QTRY_COMPARE(finished.size(), 1);
    QTRY_VERIFY(wizard->runPage()->logText().contains(QStringLiteral("уже выдана")));
    const QString log = wizard->runPage()->logText();
    QVERIFY2(log.contains(QStringLiteral("Ошибка сохранения карты 556 сотрудника Иванов Петрович")), qPrintable(log));
    // The photo behind the card is not sent; the employee exists and the
    // host selects it.
    QVERIFY2(!log.contains(QStringLiteral("фотографии")), qPrintable(log));
    QCOMPARE(created.size(), 1);
    const TYPE_ID uid = created.constFirst().constFirst().toUInt();
    QVERIFY(server.constObject(uid, SUBJECT_DATANAME));
    QVERIFY(server.cards(uid, false).isEmpty());
    QVERIFY(wizard->button(QWizard::FinishButton)->isEnabled());
    wizard->close();
    QTRY_VERIFY(wizard.isNull());
    server.close();
    store->setWatching(true);
}

QTEST_MAIN(TestNewObjectWizards)
#include "tst_newobjectwizards.moc"
