// Several clients of one store file: each saves only what its tasks change
// and takes in what the others wrote, announcing it like its own writes.

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

namespace {

// A child run of this program opens the file named here, saves one task
// and exits: a second client process.
const char ChildFile[] = "NVD_SHAREDSTORE_CHILD_FILE";
const char ChildSurname[] = "NVD_SHAREDSTORE_CHILD_SURNAME";

TaskInfo saveTask(TYPE_ID uid, const QHash<QString, QString> &changes)
{
    TaskInfo task;
    task.id = TaskInfo::newId();
    task.uid = uid;
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), OT_WORKER);
    task.params.insert(QStringLiteral("parent"), 20u);
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        task.params.insert(QStringLiteral("property-%1").arg(it.key()), it.value());
    return task;
}

// Runs one task to its end; the executor's verdict.
bool run(TaskExecutor *executor, const TaskInfo &task)
{
    QSignalSpy finished(executor, &TaskExecutor::taskFinished);
    executor->execute(task);
    return finished.wait(5000) && finished.at(0).at(1).toBool();
}

int childSave()
{
    LocalStorage store;
    QString error;
    if (!store.open(qEnvironmentVariable(ChildFile), &error)) {
        qWarning() << "child: open failed" << error;
        return 2;
    }
    TaskExecutor executor(&store);
    const bool ok = run(&executor, saveTask(100, {{db::worker::LAST_NAME, qEnvironmentVariable(ChildSurname)}}));
    store.close();
    return ok ? 0 : 3;
}

// The uids a spy on dataChanged saw for one data name.
QList<unsigned int> changedUids(const QSignalSpy &spy, const QString &dataname)
{
    QList<unsigned int> uids;
    for (const QList<QVariant> &call : spy) {
        if (call.at(0).toString() == dataname)
            uids += call.at(1).value<QList<unsigned int>>();
    }
    return uids;
}

} // namespace

class TestSharedStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void twoClientsSaveOneEmployee_data();
    void twoClientsSaveOneEmployee();
    void arrivalAndRemovalReachTheOtherClient();
    void randomSavesConverge();
    void clientBehindTheLogReloadsAll();
    void anotherProcessIsHeard();
    void twoClientsCreateAtOnce();
    void oneNumberOneCard();
    void dismissalReachesTheOtherClient();
    void departmentFilledMeanwhileIsNotDeleted();

private:
    QString path() const { return m_dir->filePath(QStringLiteral("shared.db")); }
    QScopedPointer<QTemporaryDir> m_dir;
    QScopedPointer<LocalStorage> a;
    QScopedPointer<LocalStorage> b;
};

void TestSharedStore::init()
{
    qRegisterMetaType<QList<unsigned int>>();
    m_dir.reset(new QTemporaryDir);
    a.reset(new LocalStorage);
    b.reset(new LocalStorage);
    QString error;
    QVERIFY2(a->open(path(), &error), qPrintable(error));
    ObjectInfo w(100, OT_WORKER,
                 {{db::worker::LAST_NAME, QStringLiteral("Иванов")}, {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                  {db::worker::MIDDLE_NAME, QStringLiteral("Иванович")}});
    w.setParent(20);
    QVERIFY(a->putObjects(SUBJECT_DATANAME, {w}));
    // Where the employee may be moved to.
    ObjectInfo firm(10, OT_FIRM, {{db::common::NAME, QStringLiteral("Альфа")}});
    firm.setParent(SUBJECT_ROOT_UID);
    QList<ObjectInfo> org = {firm};
    for (TYPE_ID uid : {20u, 21u, 22u}) {
        ObjectInfo department(uid, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Отдел %1").arg(uid)}});
        department.setParent(10);
        org.append(department);
    }
    QVERIFY(a->putObjects(ORGSTRUCTURE_DATANAME, org));
    QVERIFY2(b->open(path(), &error), qPrintable(error));
}

void TestSharedStore::cleanup()
{
    a.reset();
    b.reset();
}

// A saves first, then B, each holding the record as it was before either:
// different fields both survive, the same field ends as the later save
// wrote it, and each client ends holding what the file holds.
void TestSharedStore::twoClientsSaveOneEmployee_data()
{
    QTest::addColumn<QString>("keyB");
    QTest::addColumn<QString>("expectedFirstName");
    QTest::newRow("different fields") << db::worker::MIDDLE_NAME << QStringLiteral("Пётр");
    QTest::newRow("same field") << db::worker::FIRST_NAME << QStringLiteral("Павел");
}

void TestSharedStore::twoClientsSaveOneEmployee()
{
    QFETCH(QString, keyB);
    QFETCH(QString, expectedFirstName);
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    QSignalSpy changedA(a.data(), &LocalStorage::dataChanged);
    QSignalSpy changedB(b.data(), &LocalStorage::dataChanged);

    QVERIFY(run(&executorA, saveTask(100, {{db::worker::FIRST_NAME, QStringLiteral("Пётр")}})));
    QVERIFY(run(&executorB, saveTask(100, {{keyB, QStringLiteral("Павел")}})));
    b->checkForChanges(); // its own write: nothing new to announce
    a->checkForChanges();

    ObjectInfo expected = a->object(100);
    expected.setParameter(db::worker::FIRST_NAME, expectedFirstName);
    expected.setParameter(keyB, QStringLiteral("Павел"));
    QCOMPARE(a->object(100), expected);
    QCOMPARE(b->object(100), expected);
    QCOMPARE(changedUids(changedA, SUBJECT_DATANAME), (QList<unsigned int>{100, 100}));
    QCOMPARE(changedUids(changedB, SUBJECT_DATANAME), QList<unsigned int>{100});
    a->checkForChanges();
    QCOMPARE(changedA.size(), 2);

    LocalStorage reader;
    QVERIFY(reader.open(path()));
    QCOMPARE(reader.object(100), expected);
}

// A new employee with a photo arrives as one change, and leaves with it.
void TestSharedStore::arrivalAndRemovalReachTheOtherClient()
{
    QSignalSpy changedA(a.data(), &LocalStorage::dataChanged);
    QSignalSpy removedA(a.data(), &LocalStorage::dataRemoved);
    QVERIFY(b->putObjects(SUBJECT_DATANAME, {ObjectInfo(200, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Орлов")}})}));
    QVERIFY(b->setBlob(200, db::worker::PHOTO, "ffd8"));
    a->checkForChanges();
    QCOMPARE(changedUids(changedA, SUBJECT_DATANAME), QList<unsigned int>{200});
    QCOMPARE(a->blob(200, db::worker::PHOTO), QByteArray("ffd8"));

    QVERIFY(b->removeObjects({200}));
    a->checkForChanges();
    QVERIFY(!a->constObject(200));
    QVERIFY(a->blob(200, db::worker::PHOTO).isEmpty());
    QCOMPARE(removedA.size(), 1);
    QCOMPARE(removedA.at(0).at(0).toString(), SUBJECT_DATANAME);
    QCOMPARE(changedA.size(), 1);
}

// Saves of random fields from both clients, each looking for the other's
// writes at random moments (or not): at the end every field, the photo and
// the parent hold what the last save of them wrote, in both clients and in
// the file.
void TestSharedStore::randomSavesConverge()
{
    QRandomGenerator rng(20261123);
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    const QStringList keys = {db::worker::LAST_NAME, db::worker::FIRST_NAME, db::worker::MIDDLE_NAME,
                              db::worker::DESCRIPTION, db::worker::PHOTO};
    QHash<QString, QString> expected = {{db::worker::LAST_NAME, QStringLiteral("Иванов")},
                                        {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                                        {db::worker::MIDDLE_NAME, QStringLiteral("Иванович")}};
    TYPE_ID expectedParent = 20;
    for (int i = 0; i < 80; ++i) {
        const bool byA = rng.bounded(2) == 0;
        LocalStorage *client = byA ? a.data() : b.data();
        const QString key = keys.at(rng.bounded(keys.size()));
        const QString value = rng.bounded(4) == 0 ? QString() : QString::number(1000 + i);
        TaskInfo task = saveTask(100, {{key, value}});
        // A view sends the parent it shows; now and then the operator moves the employee.
        TYPE_ID parent = client->object(100).parent();
        if (rng.bounded(5) == 0)
            expectedParent = parent = 20 + rng.bounded(3u);
        task.params.replace(QStringLiteral("parent"), parent);
        QVERIFY(run(byA ? &executorA : &executorB, task));
        expected.insert(key, value);
        if (rng.bounded(3) == 0)
            (rng.bounded(2) == 0 ? a : b)->checkForChanges();
    }
    a->checkForChanges();
    b->checkForChanges();
    LocalStorage reader;
    QVERIFY(reader.open(path()));
    for (LocalStorage *client : {a.data(), b.data(), &reader}) {
        const ObjectInfo object = client->object(100);
        for (const QString &key : keys) {
            const QString stored = key == db::worker::PHOTO ? QString::fromLatin1(client->blob(100, key))
                                                            : object.parameter(key);
            QCOMPARE(stored, expected.value(key));
        }
        QCOMPARE(object.parent(), expectedParent);
    }
}

// So many writes that the log was cut short behind A: A reloads it all.
void TestSharedStore::clientBehindTheLogReloadsAll()
{
    QList<ObjectInfo> many;
    for (TYPE_ID uid = 1000; uid < 11000; ++uid)
        many.append(ObjectInfo(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник %1").arg(uid)}}));
    QVERIFY(b->putObjects(SUBJECT_DATANAME, many));
    QVERIFY(b->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}}));
    QSignalSpy changedA(a.data(), &LocalStorage::dataChanged);
    a->checkForChanges();
    QCOMPARE(a->constObjects(SUBJECT_DATANAME)->size(), 10001);
    QCOMPARE(a->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Сидоров"));
    QCOMPARE(changedUids(changedA, SUBJECT_DATANAME).size(), 10001);
    TrieStatic<TYPE_ID>::Set found;
    QVERIFY(a->index(SUBJECT_SURNAME_INDEX)->contains(QStringLiteral("сид"), found));
}

// A second program saves; this one hears of it through its own watch.
void TestSharedStore::anotherProcessIsHeard()
{
    QSignalSpy changedA(a.data(), &LocalStorage::dataChanged);
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QString::fromLatin1(ChildFile), path());
    env.insert(QString::fromLatin1(ChildSurname), QStringLiteral("Кузнецов"));
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);

    QTRY_COMPARE(a->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Кузнецов"));
    QCOMPARE(changedUids(changedA, SUBJECT_DATANAME), QList<unsigned int>{100});
    QCOMPARE(a->object(100).parameter(db::worker::FIRST_NAME), QStringLiteral("Иван"));
}

namespace {

TaskInfo createTask(const QString &type, TYPE_ID parent, const QHash<QString, QString> &properties)
{
    TaskInfo task = saveTask(0, properties);
    task.params.replace(QStringLiteral("object_type"), type);
    task.params.replace(QStringLiteral("parent"), parent);
    return task;
}

// Both clients' tasks, handed over alternately and run as the two
// executors interleave them: each client's verdicts and the failures.
struct Outcomes
{
    QList<bool> a, b;
    QStringList errors;
};

Outcomes runTogether(TaskExecutor *a, const QList<TaskInfo> &tasksA, TaskExecutor *b, const QList<TaskInfo> &tasksB)
{
    Outcomes out;
    QObject guard;
    for (auto [executor, verdicts] : {std::make_pair(a, &out.a), std::make_pair(b, &out.b)}) {
        QObject::connect(executor, &TaskExecutor::taskFinished, &guard,
                         [&out, verdicts = verdicts](const TaskInfo &, bool ok, const QString &error) {
                             verdicts->append(ok);
                             if (!ok)
                                 out.errors.append(error);
                         });
    }
    for (int i = 0; i < qMax(tasksA.size(), tasksB.size()); ++i) {
        if (i < tasksA.size())
            a->execute(tasksA.at(i));
        if (i < tasksB.size())
            b->execute(tasksB.at(i));
    }
    if (!QTest::qWaitFor([&] { return out.a.size() == tasksA.size() && out.b.size() == tasksB.size(); }, 10000))
        out.errors.append(QStringLiteral("timed out"));
    return out;
}

} // namespace

// Neither client hears of the other's new objects before it creates its
// own: the uids still never meet, and each ends up holding all of them.
void TestSharedStore::twoClientsCreateAtOnce()
{
    a->setWatching(false);
    b->setWatching(false);
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    QList<TaskInfo> departments, employees;
    for (int i = 0; i < 10; ++i) {
        departments.append(createTask(OT_DEPARTMENT, 10, {{db::common::NAME, QStringLiteral("Отдел A%1").arg(i)}}));
        employees.append(createTask(OT_WORKER, 21, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник B%1").arg(i)}}));
    }
    QSignalSpy createdA(a.data(), &LocalStorage::dataChanged);
    QSignalSpy createdB(b.data(), &LocalStorage::dataChanged);
    const Outcomes out = runTogether(&executorA, departments, &executorB, employees);
    QVERIFY2(out.errors.isEmpty(), qPrintable(out.errors.join(QLatin1Char('\n'))));
    QCOMPARE(out.a.size() + out.b.size(), 20);
    const QList<unsigned int> uidsA = changedUids(createdA, ORGSTRUCTURE_DATANAME);
    const QList<unsigned int> uidsB = changedUids(createdB, SUBJECT_DATANAME);
    QSet<unsigned int> all(uidsA.cbegin(), uidsA.cend());
    all.unite(QSet<unsigned int>(uidsB.cbegin(), uidsB.cend()));
    QCOMPARE(all.size(), 20);

    a->checkForChanges();
    b->checkForChanges();
    LocalStorage reader;
    QVERIFY(reader.open(path()));
    for (LocalStorage *client : {a.data(), b.data(), &reader}) {
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(client->object(uidsA.at(i)).parameter(db::common::NAME), QStringLiteral("Отдел A%1").arg(i));
            QCOMPARE(client->object(uidsB.at(i)).parameter(db::worker::LAST_NAME), QStringLiteral("Сотрудник B%1").arg(i));
        }
    }
}

// Two operators give out one card number at the same moment: one card.
void TestSharedStore::oneNumberOneCard()
{
    a->setWatching(false);
    b->setWatching(false);
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    TaskInfo card = saveTask(100, {{db::card::NUMBER, QStringLiteral("4242")}});
    card.params.replace(QStringLiteral("object_type"), OT_CARD);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed .* already held")));
    const Outcomes out = runTogether(&executorA, {card}, &executorB, {card});
    QCOMPARE(out.a.size() + out.b.size(), 2);
    QCOMPARE(out.errors, QStringList{QStringLiteral("Карта с номером 4242 уже выдана: Иванов Иван Иванович. Одну карту нельзя выдать дважды")});
    LocalStorage reader;
    QVERIFY(reader.open(path()));
    QCOMPARE(reader.cardIds(100, false).size(), 1);
}

// One operator dismisses an employee the other one shows: the other
// client moves it to the dismissed too, in its indexes and its tree, and
// a second dismissal from it is refused.
void TestSharedStore::dismissalReachesTheOtherClient()
{
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    TaskInfo dismiss = saveTask(100, {});
    dismiss.command = QStringLiteral("dismiss_object");
    dismiss.params.insert(QStringLiteral("date"), QStringLiteral("2026-11-23"));
    QVERIFY(run(&executorB, dismiss));

    QSignalSpy removedA(a.data(), &LocalStorage::dataRemoved);
    QSignalSpy changedA(a.data(), &LocalStorage::dataChanged);
    a->checkForChanges();
    QCOMPARE(changedUids(removedA, SUBJECT_DATANAME), QList<unsigned int>{100});
    QCOMPARE(changedUids(changedA, SUBJECT_FIRED_DATANAME), QList<unsigned int>{100});
    QVERIFY(a->constObject(100, SUBJECT_FIRED_DATANAME));
    QSet<TYPE_ID> found;
    a->index(SUBJECT_FIRED_SURNAME_INDEX)->contains(QStringLiteral("иван"), found);
    QVERIFY(found.contains(100));
    ObjectTreeModel *tree = a->model(ORGSTRUCTURE_DATANAME);
    QCOMPARE(tree->data(tree->indexOf(100), ObjectTreeModel::StateRole).toString(), QStringLiteral("d"));

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed .*already dismissed")));
    QVERIFY(!run(&executorA, dismiss));
}

// B moves someone into a department A still sees empty; A's delete of it
// must be refused by what the file holds, not by A's stale tree, or the
// employee would hang from nothing.
void TestSharedStore::departmentFilledMeanwhileIsNotDeleted()
{
    a->setWatching(false);
    b->setWatching(false);
    TaskExecutor executorA(a.data());
    TaskExecutor executorB(b.data());
    TaskInfo move = saveTask(100, {});
    move.params.replace(QStringLiteral("parent"), 21u);
    QVERIFY(run(&executorB, move));
    TaskInfo remove;
    remove.id = TaskInfo::newId();
    remove.uid = 21;
    remove.command = QStringLiteral("delete_object");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed .* is not empty")));
    QVERIFY(!run(&executorA, remove));
    LocalStorage reader;
    QVERIFY(reader.open(path()));
    QVERIFY(reader.constObject(21));
    QCOMPARE(reader.object(100).parent(), 21u);
    // Once it is empty again the delete goes through.
    move.params.replace(QStringLiteral("parent"), 22u);
    QVERIFY(run(&executorB, move));
    QVERIFY(run(&executorA, remove));
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(ChildFile))
        return childSave();
    TestSharedStore test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sharedstore.moc"
