#include <customvaluecolumn.h>
#include <userproxymodel.h>
#include <workersearchdialog.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvcustomparams.h>
#include <nvglobals.h>
#include <objecttreemodel.h>
#include <objecttreeproxy.h>
#include <objecttypes.h>
#include <simulatedbackend.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTreeView>
#include <QtTest>

#include <memory>

using namespace nivaro;

namespace {

const QString Locker = QStringLiteral("CP_LOCKER_NUMBER");
const QString Car = QStringLiteral("CP_CAR_PLATE");
constexpr TYPE_ID Firm = 10;
constexpr TYPE_ID Department = 11;
constexpr TYPE_ID Ivanov = 100;
constexpr TYPE_ID Ivashkin = 101;
constexpr TYPE_ID Petrov = 102;
constexpr TYPE_ID Sidorova = 103; // dismissed

ObjectInfo worker(TYPE_ID uid, const QString &surname, const QString &name, const QString &patronymic,
                  const QString &number, const QHash<QString, QString> &custom = {})
{
    ObjectInfo o(uid, OT_WORKER);
    o.setParent(Department);
    o.setParameter(db::worker::LAST_NAME, surname);
    o.setParameter(db::worker::FIRST_NAME, name);
    o.setParameter(db::worker::MIDDLE_NAME, patronymic);
    o.setParameter(db::worker::WORKERNUM, number);
    for (auto it = custom.cbegin(); it != custom.cend(); ++it)
        o.setParameter(it.key(), it.value());
    return o;
}

void fillOrganisation()
{
    LocalStorage *store = LocalStorage::instance();
    ObjectInfo settings(2, OT_DB_SETTINGS);
    settings.setParameter(db::database::CARD_VIEW_FORMAT, QString::number(NVGlobals::CardWiegand26));
    QVERIFY(store->setDbSettings(settings));
    ObjectInfo root(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}});
    ObjectInfo firm(Firm, OT_FIRM, {{db::common::NAME, QStringLiteral("Завод")}});
    firm.setParent(SUBJECT_ROOT_UID);
    ObjectInfo department(Department, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Отдел ивановых")}});
    department.setParent(Firm);
    department.setParameter(db::orgstructure::DEPARTNUM, QStringLiteral("12"));
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {root, firm, department}));
    QVERIFY(store->putObjects(
        SUBJECT_DATANAME,
        {worker(Ivanov, QStringLiteral("Иванов"), QStringLiteral("Пётр"), QStringLiteral("Сергеевич"),
                QStringLiteral("120"), {{Locker, QStringLiteral("Шкаф А-12")}, {Car, QStringLiteral("а123вс77")}}),
         worker(Ivashkin, QStringLiteral("Ивашкин"), QStringLiteral("Иван"), QString(), QStringLiteral("200"),
                {{Locker, QStringLiteral("ЁЛКА-3")}}),
         worker(Petrov, QStringLiteral("Петров"), QStringLiteral("Иван"), QStringLiteral("Иванович"),
                QStringLiteral("121"), {{Car, QStringLiteral("Х777ХХ")}})}));
    ObjectInfo fired = worker(Sidorova, QStringLiteral("Сидорова"), QStringLiteral("Анна"), QString(),
                              QStringLiteral("125"), {{Car, QStringLiteral("А123ВС99")}});
    fired.setParameter(db::common::OBJECTSTATE, db::common::STATE_FIRED);
    QVERIFY(store->putObjects(SUBJECT_FIRED_DATANAME, {fired}));
    QList<ObjectInfo> cards;
    const auto card = [&](TYPE_ID uid, TYPE_ID owner, const QString &number) {
        ObjectInfo c(uid, OT_CARD, {{db::card::NUMBER, number}});
        c.setParameter(db::card::OWNER, QString::number(owner));
        cards.append(c);
    };
    card(500, Ivanov, QStringLiteral("123"));
    card(501, Ivashkin, QString::number(NVGlobals::cardId(QStringLiteral("045,12345"), NVGlobals::CardWiegand26)));
    card(502, Petrov, QStringLiteral("1234567"));
    QVERIFY(store->putObjects(CARD_DATANAME, cards));
}

TypeInfo workerType()
{
    TypeInfo type(OT_WORKER, QStringLiteral("Сотрудник"));
    type.addCustomParam(Locker, QStringLiteral("Номер шкафчика"));
    type.addCustomParam(Car, QStringLiteral("Номер автомобиля"));
    return type;
}

// The employees among what the result tree shows (it shows their
// ancestors too).
QSet<unsigned int> shownWorkers(const WorkerSearchDialog &dialog)
{
    QSet<unsigned int> workers;
    const QSet<unsigned int> shown = dialog.shownUids();
    for (unsigned int uid : shown) {
        const ObjectInfo *o = LocalStorage::instance()->constObject(uid);
        if (o && o->typeName() == OT_WORKER)
            workers.insert(uid);
    }
    return workers;
}

void runSearch(WorkerSearchDialog &dialog, const QString &type, const QString &text)
{
    auto *combo = dialog.findChild<QComboBox *>(QStringLiteral("searchTypeCombo"));
    const int row = combo->findData(type);
    QVERIFY2(row >= 0, qPrintable(type));
    combo->setCurrentIndex(row);
    dialog.searchTypeChanged();
    auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"));
    // As typed: QTest::keyClicks sends only Latin-1.
    edit->setText(text);
    emit edit->textEdited(text);
    // While a background search runs the line is off; a host still searches.
    if (edit->isEnabled())
        QTest::keyClick(edit, Qt::Key_Return);
    else
        dialog.search();
}

QSet<unsigned int> uids(std::initializer_list<unsigned int> list)
{
    return QSet<unsigned int>(list);
}

} // namespace

class TestWorkerSearchDialog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void nameSearch_data();
    void nameSearch();
    void nameSearchMatchesReference();
    void cardSearch_data();
    void cardSearch();
    void customSearch_data();
    void customSearch();
    void columnMatchesCaseInsensitiveContains();
    void cancelStopsWithinHundredObjects();
    void newSearchReplacesRunningOne_data();
    void newSearchReplacesRunningOne();
    void stateIsRememberedAcrossDialogs();
    void indexFollowsChangesAndRemovals();
    void numbersChangedWhileNoDialogIsOpen();
    void gotoEmitsSelectedObject();
    void noReaders();
    void readsSmartCard();
    void keyboardReaderTimesOut();
    void userProxyFiltersByRoleTemplate();
};

void TestWorkerSearchDialog::init()
{
    WorkerSearchDialog::resetSavedState();
    WorkerSearchCancel::setCancelled(false);
    NVCustomParams::registerType(workerType());
    nvsmartcard::setDefaultBackend(std::make_shared<nvsmartcard::SimulatedBackend>());
    fillOrganisation();
}

void TestWorkerSearchDialog::cleanup()
{
    LocalStorage::instance()->close();
    nvsmartcard::setDefaultBackend(nullptr);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestWorkerSearchDialog::nameSearch_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSet<unsigned int>>("expected");
    // Every word must prefix a key of the same employee, in any order.
    QTest::newRow("surname and number") << "ив 12" << uids({Ivanov, Petrov});
    QTest::newRow("words in any order") << "12 ив" << uids({Ivanov, Petrov});
    QTest::newRow("patronymic counts") << "иванов" << uids({Ivanov, Petrov});
    QTest::newRow("case ignored") << "ИВАНОВ пЁТР" << uids({Ivanov});
    QTest::newRow("extra spaces") << "  петров   иван " << uids({Petrov});
    QTest::newRow("a word matching nothing") << "ив жжж" << uids({});
    QTest::newRow("dismissed are found") << "сидорова" << uids({Sidorova});
    QTest::newRow("personnel number") << "200" << uids({Ivashkin});
    QTest::newRow("departments are not") << "отдел" << uids({});
    QTest::newRow("empty") << "" << uids({});
}

void TestWorkerSearchDialog::nameSearch()
{
    QFETCH(QString, text);
    QFETCH(QSet<unsigned int>, expected);
    WorkerSearchDialog dialog;
    QAbstractItemModelTester tester(dialog.resultProxy(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    runSearch(dialog, QStringLiteral("hidden/fio"), text);
    QCOMPARE(shownWorkers(dialog), expected);
    // The path from the root stays visible, and nothing else.
    // What the tree shows below the hidden subject root.
    auto *view = dialog.findChild<QTreeView *>(QStringLiteral("resultView"));
    QSet<unsigned int> inView;
    QList<QModelIndex> todo{view->rootIndex()};
    while (!todo.isEmpty()) {
        const QModelIndex parent = todo.takeLast();
        for (int r = 0; r < view->model()->rowCount(parent); ++r) {
            const QModelIndex i = view->model()->index(r, 0, parent);
            if (i.data(ObjectTreeModel::TypeRole).toString() == OT_WORKER)
                inView.insert(i.data(ObjectTreeModel::UidRole).toUInt());
            QVERIFY(view->isExpanded(i) || !view->model()->hasChildren(i));
            todo.append(i);
        }
    }
    QCOMPARE(inView, expected);
    if (!expected.isEmpty())
        QVERIFY(dialog.shownUids().contains(Department));
    else
        QVERIFY(dialog.shownUids().isEmpty());
}

void TestWorkerSearchDialog::nameSearchMatchesReference()
{
    // Random names from few syllables, so that prefixes collide a lot.
    QRandomGenerator rng(20261123);
    const QStringList syllables = {QStringLiteral("ив"), QStringLiteral("ан"), QStringLiteral("ов"),
                                   QStringLiteral("пе"), QStringLiteral("тр"), QStringLiteral("ка")};
    const auto word = [&] {
        QString w;
        for (int n = 1 + rng.bounded(3); n > 0; --n)
            w += syllables.at(rng.bounded(syllables.size()));
        return w;
    };
    LocalStorage *store = LocalStorage::instance();
    QList<ObjectInfo> workers;
    QList<QPair<QString, TYPE_ID>> keys; // the plain reference: every key with its uid
    for (TYPE_ID uid = 1000; uid < 1300; ++uid) {
        const QString surname = word(), name = word(), number = QString::number(rng.bounded(1000));
        workers.append(worker(uid, surname, name, QString(), number));
        keys << qMakePair(surname, uid) << qMakePair(name, uid) << qMakePair(number, uid);
    }
    QVERIFY(store->putObjects(SUBJECT_DATANAME, workers));
    WorkerSearchDialog dialog;
    for (int round = 0; round < 150; ++round) {
        QStringList words;
        for (int n = 1 + rng.bounded(3); n > 0; --n) {
            const QString w = rng.bounded(4) == 0 ? QString::number(rng.bounded(100)) : word();
            words.append(w.left(1 + rng.bounded(w.size())));
        }
        QSet<unsigned int> expected;
        for (int i = 0; i < words.size(); ++i) {
            QSet<unsigned int> part;
            for (const auto &key : qAsConst(keys)) {
                if (key.first.startsWith(words.at(i)))
                    part.insert(key.second);
            }
            expected = i == 0 ? part : expected.intersect(part);
        }
        runSearch(dialog, QStringLiteral("hidden/fio"), words.join(QLatin1Char(' ')));
        QSet<unsigned int> found = shownWorkers(dialog);
        found.subtract(uids({Ivanov, Ivashkin, Petrov, Sidorova}));
        QCOMPARE(found, expected);
    }
}

void TestWorkerSearchDialog::cardSearch_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSet<unsigned int>>("expected");
    QTest::newRow("leading zeros") << "000123" << uids({Ivanov, Petrov});
    QTest::newRow("prefix of a number") << "12345" << uids({Petrov});
    QTest::newRow("site's view format") << "045,12345" << uids({Ivashkin});
    QTest::newRow("full number of the same card") << "2961465" << uids({Ivashkin});
    QTest::newRow("no such card") << "999" << uids({});
    QTest::newRow("only zeros") << "000" << uids({});
}

void TestWorkerSearchDialog::cardSearch()
{
    QFETCH(QString, text);
    QFETCH(QSet<unsigned int>, expected);
    WorkerSearchDialog dialog;
    runSearch(dialog, QStringLiteral("hidden/card"), text);
    QCOMPARE(shownWorkers(dialog), expected);
}

void TestWorkerSearchDialog::customSearch_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSet<unsigned int>>("expected");
    QTest::newRow("part, other case") << Car << "А123ВС" << uids({Ivanov});
    QTest::newRow("upper-case value") << Car << "х777" << uids({Petrov});
    QTest::newRow("ё folds") << Locker << "ёл" << uids({Ivashkin});
    QTest::newRow("with a space") << Locker << "ф а-1" << uids({Ivanov});
    QTest::newRow("nobody") << Locker << "сейф" << uids({});
}

void TestWorkerSearchDialog::customSearch()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(QSet<unsigned int>, expected);
    WorkerSearchDialog dialog;
    dialog.setTypeInfo(workerType());
    auto *combo = dialog.findChild<QComboBox *>(QStringLiteral("searchTypeCombo"));
    QCOMPARE(combo->itemText(combo->findData(Car)), QStringLiteral("Номер автомобиля"));
    runSearch(dialog, key, text);
    // Controls stay off until the background result is in; dismissed
    // employees are not searched by custom parameters.
    QVERIFY(!dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"))->isEnabled() || !dialog.isSearching());
    QTRY_VERIFY(!dialog.isSearching());
    QTRY_VERIFY(dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"))->isEnabled());
    QCOMPARE(shownWorkers(dialog), expected);
}

void TestWorkerSearchDialog::columnMatchesCaseInsensitiveContains()
{
    QRandomGenerator rng(7);
    const QString alphabet = QStringLiteral("аБвГдЕёЁжЗиЙкЛмНоПрСтУфХцЧшЩъЫьЭюЯ -0123abcXYZ");
    const auto text = [&](int max) {
        QString s;
        for (int n = rng.bounded(max + 1); n > 0; --n)
            s += alphabet.at(rng.bounded(alphabet.size()));
        return s;
    };
    NVHash<TYPE_ID, ObjectInfo> objects;
    for (TYPE_ID uid = 1; uid <= 500; ++uid) {
        ObjectInfo o(uid, OT_WORKER);
        if (rng.bounded(10))
            o.setParameter(Locker, text(12));
        objects.insert(uid, o);
    }
    CustomValueColumn column;
    QVERIFY(column.build(objects, Locker));
    for (int round = 0; round < 300; ++round) {
        const QString needle = text(3);
        QSet<unsigned int> expected;
        for (const ObjectInfo &o : qAsConst(objects)) {
            if (o.parameter(Locker).contains(needle, Qt::CaseInsensitive))
                expected.insert(o.uid());
        }
        QCOMPARE(column.search(needle), expected);
    }
}

void TestWorkerSearchDialog::cancelStopsWithinHundredObjects()
{
    NVHash<TYPE_ID, ObjectInfo> objects;
    for (TYPE_ID uid = 1; uid <= 1000; ++uid)
        objects.insert(uid, ObjectInfo(uid, OT_WORKER, {{Locker, QStringLiteral("Шкаф")}}));
    CustomValueColumn column;
    QVERIFY(column.build(objects, Locker));
    WorkerSearchCancel::setCancelled(true);
    const QSet<unsigned int> found = WorkerSearchDialog::searchCustom(column, QStringLiteral("шкаф"));
    CustomValueColumn partial;
    const bool built = partial.build(objects, Locker, &WorkerSearchCancel::isCancelled);
    WorkerSearchCancel::setCancelled(false);
    // Every object matches: what was found is what was looked at.
    QCOMPARE(found.size(), 100);
    QVERIFY(!built);
}

void TestWorkerSearchDialog::newSearchReplacesRunningOne_data()
{
    QTest::addColumn<QString>("second");
    QTest::newRow("name search") << "hidden/fio";
    QTest::newRow("custom search") << Car;
    QTest::newRow("closing") << QString();
}

void TestWorkerSearchDialog::newSearchReplacesRunningOne()
{
    QFETCH(QString, second);
    // Enough employees that the first search is still running when the
    // second one starts.
    QList<ObjectInfo> many;
    for (TYPE_ID uid = 10000; uid < 60000; ++uid)
        many.append(worker(uid, QStringLiteral("Кузнецов"), QStringLiteral("Олег"), QString(), QString(),
                           {{Locker, QStringLiteral("шкаф %1").arg(uid)}}));
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, many));
    WorkerSearchDialog dialog;
    dialog.setTypeInfo(workerType());
    dialog.show();
    runSearch(dialog, Locker, QStringLiteral("шкаф"));
    if (second.isEmpty()) {
        const QSet<unsigned int> before = dialog.shownUids();
        dialog.close();
        QVERIFY(!dialog.isSearching());
        QTest::qWait(50);
        QCOMPARE(dialog.shownUids(), before);
        return;
    }
    if (second == QLatin1String("hidden/fio"))
        runSearch(dialog, second, QStringLiteral("иванов"));
    else
        runSearch(dialog, second, QStringLiteral("х777"));
    QTRY_VERIFY(!dialog.isSearching());
    // The first search's result, arriving late, is never shown.
    QTest::qWait(50);
    QCOMPARE(shownWorkers(dialog), second == QLatin1String("hidden/fio") ? uids({Ivanov, Petrov}) : uids({Petrov}));
    QVERIFY(dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"))->isEnabled());
}

void TestWorkerSearchDialog::stateIsRememberedAcrossDialogs()
{
    {
        WorkerSearchDialog first;
        runSearch(first, QStringLiteral("hidden/card"), QStringLiteral("000123"));
        runSearch(first, QStringLiteral("hidden/fio"), QStringLiteral("Ив 12"));
        auto *view = first.findChild<QTreeView *>(QStringLiteral("resultView"));
        const QModelIndex petrov = first.resultProxy()->mapFromSource(
            LocalStorage::instance()->model(ORGSTRUCTURE_DATANAME)->indexOf(Petrov));
        QVERIFY(petrov.isValid());
        view->setCurrentIndex(petrov);
    }
    WorkerSearchDialog second;
    auto *combo = second.findChild<QComboBox *>(QStringLiteral("searchTypeCombo"));
    auto *edit = second.findChild<QLineEdit *>(QStringLiteral("searchEdit"));
    QCOMPARE(combo->currentData().toString(), QStringLiteral("hidden/fio"));
    QCOMPARE(edit->text(), QStringLiteral("ив 12"));
    QCOMPARE(shownWorkers(second), uids({Ivanov, Petrov}));
    auto *view = second.findChild<QTreeView *>(QStringLiteral("resultView"));
    QCOMPARE(view->currentIndex().data(ObjectTreeModel::UidRole).toUInt(), Petrov);
    // Each type keeps its own text.
    combo->setCurrentIndex(combo->findData(QStringLiteral("hidden/card")));
    second.searchTypeChanged();
    QCOMPARE(edit->text(), QStringLiteral("000123"));
}

void TestWorkerSearchDialog::indexFollowsChangesAndRemovals()
{
    LocalStorage *store = LocalStorage::instance();
    WorkerSearchDialog dialog;
    dialog.setTypeInfo(workerType());
    QVERIFY(store->updateParameters(Ivanov, {{db::worker::WORKERNUM, QStringLiteral("777")}}));
    runSearch(dialog, QStringLiteral("hidden/fio"), QStringLiteral("777"));
    QCOMPARE(shownWorkers(dialog), uids({Ivanov}));
    runSearch(dialog, QStringLiteral("hidden/fio"), QStringLiteral("120"));
    QCOMPARE(shownWorkers(dialog), uids({}));
    // Dismissed: leaves one collection for another and is still found.
    QVERIFY(store->updateParameters(Petrov, {{db::common::OBJECTSTATE, db::common::STATE_FIRED}}));
    runSearch(dialog, QStringLiteral("hidden/fio"), QStringLiteral("петров 121"));
    QCOMPARE(shownWorkers(dialog), uids({Petrov}));
    QVERIFY(store->removeObjects({Ivashkin}));
    runSearch(dialog, QStringLiteral("hidden/fio"), QStringLiteral("200"));
    QCOMPARE(shownWorkers(dialog), uids({}));
    SortedSet<TYPE_ID> left;
    store->index(ORGSTRUCTURE_DATANAME)->contains(QStringLiteral("200"), left);
    QVERIFY(left.isEmpty());
    // A custom search sees changes made after an earlier one.
    runSearch(dialog, Car, QStringLiteral("777"));
    QTRY_VERIFY(!dialog.isSearching());
    QCOMPARE(shownWorkers(dialog), uids({})); // Petrov is dismissed now
    QVERIFY(store->updateParameters(Ivanov, {{Car, QStringLiteral("О777ОО")}}));
    runSearch(dialog, Car, QStringLiteral("777"));
    QTRY_VERIFY(!dialog.isSearching());
    QCOMPARE(shownWorkers(dialog), uids({Ivanov}));
}

void TestWorkerSearchDialog::numbersChangedWhileNoDialogIsOpen()
{
    LocalStorage *store = LocalStorage::instance();
    {
        WorkerSearchDialog first;
    }
    {
        // Nothing changed: the numbers filed by the first are still there.
        WorkerSearchDialog second;
        runSearch(second, QStringLiteral("hidden/fio"), QStringLiteral("200"));
        QCOMPARE(shownWorkers(second), uids({Ivashkin}));
    }
    // The store files an employee's names anew and drops its number.
    QVERIFY(store->updateParameters(Ivashkin, {{db::worker::WORKERNUM, QStringLiteral("555")}}));
    WorkerSearchDialog third;
    runSearch(third, QStringLiteral("hidden/fio"), QStringLiteral("555"));
    QCOMPARE(shownWorkers(third), uids({Ivashkin}));
    runSearch(third, QStringLiteral("hidden/fio"), QStringLiteral("12"));
    QCOMPARE(shownWorkers(third), uids({Ivanov, Petrov, Sidorova}));
}

void TestWorkerSearchDialog::gotoEmitsSelectedObject()
{
    WorkerSearchDialog dialog;
    QSignalSpy selected(&dialog, &WorkerSearchDialog::selectObject);
    runSearch(dialog, QStringLiteral("hidden/fio"), QStringLiteral("ивашкин"));
    auto *go = dialog.findChild<QPushButton *>(QStringLiteral("gotoButton"));
    QVERIFY(!go->isEnabled());
    auto *view = dialog.findChild<QTreeView *>(QStringLiteral("resultView"));
    const QModelIndex row = dialog.resultProxy()->mapFromSource(
        LocalStorage::instance()->model(ORGSTRUCTURE_DATANAME)->indexOf(Ivashkin));
    view->setCurrentIndex(row);
    QVERIFY(go->isEnabled());
    go->click();
    emit view->activated(row);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(0).at(0).toUInt(), Ivashkin);
    QCOMPARE(selected.at(1).at(0).toUInt(), Ivashkin);
}

void TestWorkerSearchDialog::noReaders()
{
    WorkerSearchDialog dialog;
    auto *readers = dialog.findChild<QComboBox *>(QStringLiteral("readerCombo"));
    QCOMPARE(readers->count(), 1);
    QCOMPARE(readers->currentText(), QStringLiteral("Нет подключенных считывателей"));
    QVERIFY(!readers->isEnabled());
    QVERIFY(!dialog.findChild<QPushButton *>(QStringLiteral("readButton"))->isEnabled());
}

void TestWorkerSearchDialog::readsSmartCard()
{
    auto backend = std::make_shared<nvsmartcard::SimulatedBackend>();
    const int reader = backend->addReader(QStringLiteral("ACR122U"), db::devices::cardreader::SMARTCARD);
    backend->putCard(reader, nvsmartcard::VirtualCard::classic1K(QByteArray::fromHex("04A1B2C3D4E5F6")));
    nvsmartcard::setDefaultBackend(backend);
    WorkerSearchDialog dialog;
    runSearch(dialog, QStringLiteral("hidden/card"), QString());
    auto *readers = dialog.findChild<QComboBox *>(QStringLiteral("readerCombo"));
    QCOMPARE(readers->itemText(0), QStringLiteral("Выберите считыватель"));
    readers->setCurrentIndex(1);
    auto *read = dialog.findChild<QPushButton *>(QStringLiteral("readButton"));
    QVERIFY(read->isEnabled());
    QSignalSpy finished(&dialog, &WorkerSearchDialog::finishedReadCard);
    read->click();
    auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"));
    QVERIFY(!edit->isEnabled());
    QCOMPARE(edit->placeholderText(), QStringLiteral("Идет чтение карты..."));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(edit->text(), QString::number(0x04A1B2C3D4E5F6ull));
    QVERIFY(edit->isEnabled());
    QCOMPARE(WorkerSearchDialog::cardNumberFromUid(QStringLiteral("04A1B2C3D4E5F6")), 0x04A1B2C3D4E5F6ull);
    QCOMPARE(WorkerSearchDialog::cardNumberFromUid(QStringLiteral("not hex")), 0ull);
}

void TestWorkerSearchDialog::keyboardReaderTimesOut()
{
    ObjectInfo hid(900, OT_DEVICE, {{db::common::NAME, QStringLiteral("Z-2 USB")}});
    hid.setParameter(db::devices::TYPE, db::devices::cardreader::HID);
    QVERIFY(LocalStorage::instance()->putObjects(DEVICE_DATANAME, {hid}));
    WorkerSearchDialog dialog;
    runSearch(dialog, QStringLiteral("hidden/card"), QString());
    auto *readers = dialog.findChild<QComboBox *>(QStringLiteral("readerCombo"));
    readers->setCurrentIndex(readers->findText(QStringLiteral("Z-2 USB")));
    QSignalSpy asked(&dialog, &WorkerSearchDialog::cardRead);
    QSignalSpy failed(&dialog, &WorkerSearchDialog::failedMessage);
    dialog.readCard();
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.at(0).at(0).toUInt(), 900u);
    // The wait is five ticks of the timer; tick by hand.
    for (int i = 0; i < 4; ++i)
        dialog.waitCardTick();
    QCOMPARE(failed.count(), 0);
    dialog.waitCardTick();
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.at(0).at(0).toString(), QStringLiteral("Время ожидания истекло."));
    QVERIFY(dialog.findChild<QLineEdit *>(QStringLiteral("searchEdit"))->isEnabled());
    QVERIFY(dialog.findChild<QPushButton *>(QStringLiteral("readButton"))->isEnabled());
}

void TestWorkerSearchDialog::userProxyFiltersByRoleTemplate()
{
    LocalStorage *store = LocalStorage::instance();
    QVERIFY(store->updateParameters(Ivanov, {{db::common::ROLETEMPLATE, QStringLiteral("7")}}));
    QVERIFY(store->updateParameters(Ivashkin, {{db::common::ROLETEMPLATE, QStringLiteral("8")}}));
    UserProxyModel proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.setSourceModel(store->model(ORGSTRUCTURE_DATANAME));
    const auto visible = [&] {
        QSet<unsigned int> out;
        QList<QModelIndex> todo{QModelIndex()};
        while (!todo.isEmpty()) {
            const QModelIndex parent = todo.takeLast();
            for (int r = 0; r < proxy.rowCount(parent); ++r) {
                const QModelIndex i = proxy.index(r, 0, parent);
                if (i.data(ObjectTreeModel::TypeRole).toString() == OT_WORKER)
                    out.insert(i.data(ObjectTreeModel::UidRole).toUInt());
                todo.append(i);
            }
        }
        return out;
    };
    QCOMPARE(visible(), uids({Ivanov, Ivashkin, Petrov, Sidorova}));
    proxy.setRoletemplateFilter({QStringLiteral("7")});
    proxy.setRoletemplateFilterEnabled(true);
    QCOMPARE(visible(), uids({Ivanov}));
    proxy.setCurrentUserUid(Petrov);
    QCOMPARE(visible(), uids({Ivanov, Petrov}));
    proxy.setFilterUids({Ivashkin, Petrov});
    QCOMPARE(visible(), uids({Petrov}));
    proxy.setRoletemplateFilterEnabled(false);
    QCOMPARE(visible(), uids({Ivashkin, Petrov}));
}

QTEST_MAIN(TestWorkerSearchDialog)
#include "tst_workersearchdialog.moc"
