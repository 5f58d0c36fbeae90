// The organisation's life cycle as the executor runs it: new firms,
// departments and employees, moves, dismissal, and the tasks a wizard
// queues behind the creation of their object.

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

namespace {

using Properties = QHash<QString, QString>;

bool indexed(LocalStorage *store, const QString &index, const QString &prefix, TYPE_ID uid)
{
    QSet<TYPE_ID> found;
    store->index(index)->contains(prefix, found);
    return found.contains(uid);
}

TaskInfo task(const QString &command, TYPE_ID uid, const QString &type, const QVariant &parent,
              const Properties &properties, QObject *receiver, const char *slot)
{
    TaskInfo t;
    t.id = TaskInfo::newId();
    t.uid = uid;
    t.command = command;
    if (!type.isEmpty())
        t.params.insert(QStringLiteral("object_type"), type);
    if (parent.isValid())
        t.params.insert(QStringLiteral("parent"), parent);
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        t.params.insert(QStringLiteral("property-%1").arg(it.key()), it.value());
    t.widget = receiver;
    t.slot = QString::fromLatin1(slot);
    return t;
}

ObjectInfo record(TYPE_ID uid, const QString &type, TYPE_ID parent, const Properties &properties)
{
    ObjectInfo o(uid, type, properties);
    o.setParent(parent);
    return o;
}

} // namespace

// Replies, and a queue run as a progress page runs it: one task at a
// time, and the reply to the creating task hands its uid to those behind.
class Replies : public QObject
{
    Q_OBJECT
public:
    explicit Replies(TaskExecutor *executor)
        : m_executor(executor)
    {
    }
    QList<unsigned int> uids;
    QList<TaskInfo> queue;
    void start() { m_executor->execute(queue.first()); }

public Q_SLOTS:
    void saved(unsigned int uid) { uids.append(uid); }
    void objectAdded(unsigned int uid)
    {
        if (uid != 0) {
            for (TaskInfo &t : queue)
                t.uid = uid;
        }
        objectUpdated(uid);
    }
    void objectUpdated(unsigned int uid)
    {
        uids.append(uid);
        queue.removeFirst();
        if (uid != 0 && !queue.isEmpty())
            m_executor->execute(queue.first());
    }

private:
    TaskExecutor *m_executor;
};

class TestOrgCommands : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<QList<unsigned int>>(); }
    void init();
    void cleanup() { m_store.reset(); }
    void creates_data();
    void creates();
    void moves_data();
    void moves();
    void dismisses_data();
    void dismisses();
    void queuedTasksActOnTheNewEmployee();
    void uidsAreNeverReused();

private:
    // Runs one task; the uid it replied and the executor's reason.
    TYPE_ID run(const TaskInfo &t, QString *reason = nullptr);
    void reopen();
    QString path() const { return m_dir.filePath(QStringLiteral("org.db")); }

    QTemporaryDir m_dir;
    QScopedPointer<LocalStorage> m_store;
    QScopedPointer<TaskExecutor> m_executor;
};

// Firm 10 "Альфа" holds department 20 "Склад", which holds 21 "Приемка";
// 22 "Бухгалтерия" is in the firm too. Employee 100 works in 20, 101 was
// dismissed; 200 is a job, which holds nobody.
void TestOrgCommands::init()
{
    QFile::remove(path());
    m_executor.reset();
    m_store.reset(new LocalStorage);
    QString error;
    QVERIFY2(m_store->open(path(), &error), qPrintable(error));
    const QList<ObjectInfo> org = {
        record(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, 0, {{db::common::NAME, QStringLiteral("Организация")}}),
        record(10, OT_FIRM, SUBJECT_ROOT_UID, {{db::common::NAME, QStringLiteral("Альфа")}}),
        record(20, OT_DEPARTMENT, 10, {{db::common::NAME, QStringLiteral("Склад")}}),
        record(21, OT_DEPARTMENT, 20, {{db::common::NAME, QStringLiteral("Приемка")}}),
        record(22, OT_DEPARTMENT, 10, {{db::common::NAME, QStringLiteral("Бухгалтерия")}}),
    };
    QVERIFY(m_store->putObjects(ORGSTRUCTURE_DATANAME, org));
    QVERIFY(m_store->putObjects(
        SUBJECT_DATANAME,
        {record(100, OT_WORKER, 20, {{db::worker::LAST_NAME, QStringLiteral("Иванов")}}),
         record(101, OT_WORKER, 20,
                {{db::worker::LAST_NAME, QStringLiteral("Петров")}, {db::common::OBJECTSTATE, QStringLiteral("d")}})}));
    QVERIFY(m_store->putObjects(JOB_DATANAME, {record(200, OT_JOB, 0, {{db::common::NAME, QStringLiteral("Кладовщик")}})}));
    m_executor.reset(new TaskExecutor(m_store.data()));
}

TYPE_ID TestOrgCommands::run(const TaskInfo &t, QString *reason)
{
    QSignalSpy finished(m_executor.data(), &TaskExecutor::taskFinished);
    m_executor->execute(t);
    if (!finished.wait(5000))
        return 0;
    if (reason)
        *reason = finished.at(0).at(2).toString();
    return finished.at(0).at(1).toBool() ? qobject_cast<Replies *>(t.widget.data())->uids.constLast() : 0;
}

void TestOrgCommands::reopen()
{
    m_executor.reset();
    m_store->close();
    QString error;
    QVERIFY2(m_store->open(path(), &error), qPrintable(error));
    m_executor.reset(new TaskExecutor(m_store.data()));
}

void TestOrgCommands::creates_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QVariant>("parent");
    QTest::addColumn<Properties>("properties");
    QTest::addColumn<QString>("reason"); // empty: created

    const Properties named = {{db::common::NAME, QStringLiteral("Новый отдел")}};
    const Properties person = {{db::worker::LAST_NAME, QStringLiteral("Сидоров")},
                               {db::worker::FIRST_NAME, QStringLiteral("Семен")}};
    QTest::newRow("firm at the top") << OT_FIRM << QVariant(1u) << named << QString();
    QTest::newRow("department in a firm") << OT_DEPARTMENT << QVariant(10u) << named << QString();
    QTest::newRow("department in a department") << OT_DEPARTMENT << QVariant(21u) << named << QString();
    QTest::newRow("employee in a department") << OT_WORKER << QVariant(QStringLiteral("22")) << person << QString();
    QTest::newRow("employee in a firm") << OT_WORKER << QVariant(10u) << person << QString();

    QTest::newRow("firm in a firm") << OT_FIRM << QVariant(10u) << named
                                    << QStringLiteral("Организация может находиться только в корне оргструктуры, а не в объекте 10");
    QTest::newRow("department at the top")
        << OT_DEPARTMENT << QVariant(1u) << named
        << QStringLiteral("Подразделение может находиться только в организации или в другом подразделении, а Организация не организация и не подразделение");
    QTest::newRow("department in an employee")
        << OT_DEPARTMENT << QVariant(100u) << named
        << QStringLiteral("Подразделение может находиться только в организации или в другом подразделении, а Иванов не организация и не подразделение");
    QTest::newRow("employee in a job")
        << OT_WORKER << QVariant(200u) << person
        << QStringLiteral("Сотрудник может находиться только в организации или в подразделении, а Кладовщик не организация и не подразделение");
    QTest::newRow("employee in nothing") << OT_WORKER << QVariant(999u) << person
                                         << QStringLiteral("Родительский объект 999 не найден");
    QTest::newRow("employee without parent") << OT_WORKER << QVariant() << person
                                             << QStringLiteral("Объект не создан: не указан родительский объект");
    QTest::newRow("employee without surname") << OT_WORKER << QVariant(20u) << named
                                              << QStringLiteral("Сотрудник не создан: не задана фамилия");
    QTest::newRow("department without name") << OT_DEPARTMENT << QVariant(20u) << Properties()
                                             << QStringLiteral("Подразделение не создано: не задано название");
    QTest::newRow("firm without name") << OT_FIRM << QVariant(1u) << Properties{{db::common::NAME, QStringLiteral("  ")}}
                                       << QStringLiteral("Организация не создана: не задано название");
    QTest::newRow("a job") << OT_JOB << QVariant(1u) << named
                           << QStringLiteral("Объект не создан: объекты типа OT_JOB так не создаются");
    QTest::newRow("no type") << QString() << QVariant(1u) << named
                             << QStringLiteral("Объект не создан: не указан тип объекта");
}

void TestOrgCommands::creates()
{
    QFETCH(QString, type);
    QFETCH(QVariant, parent);
    QFETCH(Properties, properties);
    QFETCH(QString, reason);
    Replies replies(m_executor.data());
    const int before = m_store->constObjects(ORGSTRUCTURE_DATANAME)->size() + m_store->constObjects(SUBJECT_DATANAME)->size();
    QSignalSpy changed(m_store.data(), &LocalStorage::dataChanged);
    if (!reason.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    QString why;
    const TYPE_ID uid = run(task(QStringLiteral("save_object"), 0, type, parent, properties, &replies, "saved"), &why);
    QCOMPARE(why, reason);
    QCOMPARE(replies.uids.size(), 1);
    if (!reason.isEmpty()) {
        QCOMPARE(replies.uids.first(), 0u);
        QCOMPARE(m_store->constObjects(ORGSTRUCTURE_DATANAME)->size() + m_store->constObjects(SUBJECT_DATANAME)->size(), before);
        QVERIFY(changed.isEmpty());
        return;
    }
    QVERIFY(uid > 200);
    const QString dataname = type == OT_WORKER ? SUBJECT_DATANAME : ORGSTRUCTURE_DATANAME;
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), dataname);
    QCOMPARE(changed.at(0).at(1).value<QList<unsigned int>>(), QList<unsigned int>{uid});
    // The tree shows it under its parent at once; the indexes find it.
    ObjectTreeModel *tree = m_store->model(ORGSTRUCTURE_DATANAME);
    QCOMPARE(tree->uid(tree->indexOf(uid).parent()), parent.toUInt());
    QVERIFY(indexed(m_store.data(), ORGSTRUCTURE_DATANAME, QStringLiteral("сидоров"), uid)
            || indexed(m_store.data(), ORGSTRUCTURE_DATANAME, QStringLiteral("новый"), uid));

    reopen();
    const ObjectInfo *stored = m_store->constObject(uid, dataname);
    QVERIFY(stored);
    QCOMPARE(stored->typeName(), type);
    QCOMPARE(stored->parent(), parent.toUInt());
    QCOMPARE(stored->parameters(), ObjectInfo::Parameters(properties));
    tree = m_store->model(ORGSTRUCTURE_DATANAME);
    QCOMPARE(tree->uid(tree->indexOf(uid).parent()), parent.toUInt());
}

void TestOrgCommands::moves_data()
{
    QTest::addColumn<TYPE_ID>("uid");
    QTest::addColumn<QString>("type");
    QTest::addColumn<TYPE_ID>("parent");
    QTest::addColumn<QString>("reason"); // empty: moved

    QTest::newRow("department to its firm") << TYPE_ID(21) << OT_DEPARTMENT << TYPE_ID(10) << QString();
    QTest::newRow("department to a sibling") << TYPE_ID(20) << OT_DEPARTMENT << TYPE_ID(22) << QString();
    QTest::newRow("employee to another department") << TYPE_ID(100) << OT_WORKER << TYPE_ID(21) << QString();
    QTest::newRow("department into itself") << TYPE_ID(20) << OT_DEPARTMENT << TYPE_ID(20)
                                            << QStringLiteral("Подразделение Склад нельзя перенести в само себя");
    QTest::newRow("department below itself")
        << TYPE_ID(20) << OT_DEPARTMENT << TYPE_ID(21)
        << QStringLiteral("Подразделение Склад нельзя перенести в подчиненное ему подразделение Приемка");
    QTest::newRow("department into an employee")
        << TYPE_ID(22) << OT_DEPARTMENT << TYPE_ID(100)
        << QStringLiteral("Подразделение может находиться только в организации или в другом подразделении, а Иванов не организация и не подразделение");
    QTest::newRow("employee into a job")
        << TYPE_ID(100) << OT_WORKER << TYPE_ID(200)
        << QStringLiteral("Сотрудник может находиться только в организации или в подразделении, а Кладовщик не организация и не подразделение");
    QTest::newRow("employee into nothing") << TYPE_ID(100) << OT_WORKER << TYPE_ID(999)
                                           << QStringLiteral("Родительский объект 999 не найден");
    QTest::newRow("firm into a department")
        << TYPE_ID(10) << OT_FIRM << TYPE_ID(22)
        << QStringLiteral("Организация может находиться только в корне оргструктуры, а не в объекте 22");
}

void TestOrgCommands::moves()
{
    QFETCH(TYPE_ID, uid);
    QFETCH(QString, type);
    QFETCH(TYPE_ID, parent);
    QFETCH(QString, reason);
    Replies replies(m_executor.data());
    const ObjectInfo before = m_store->object(uid);
    if (!reason.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    QString why;
    const Properties touched = {{db::common::DESCRIPTION, QStringLiteral("перенесен")}};
    run(task(QStringLiteral("save_object"), uid, type, parent, touched, &replies, "saved"), &why);
    QCOMPARE(why, reason);
    QCOMPARE(replies.uids, QList<unsigned int>{reason.isEmpty() ? uid : 0});
    reopen();
    // A refused move changes nothing, not even the properties beside it.
    const ObjectInfo after = m_store->object(uid);
    QCOMPARE(after.parent(), reason.isEmpty() ? parent : before.parent());
    QCOMPARE(after.parameter(db::common::DESCRIPTION), reason.isEmpty() ? QStringLiteral("перенесен") : QString());
    ObjectTreeModel *tree = m_store->model(ORGSTRUCTURE_DATANAME);
    QCOMPARE(tree->uid(tree->indexOf(uid).parent()), after.parent());
}

void TestOrgCommands::dismisses_data()
{
    QTest::addColumn<TYPE_ID>("uid");
    QTest::addColumn<QVariant>("date");
    QTest::addColumn<QString>("dismissal");
    QTest::addColumn<QString>("reason"); // empty: dismissed

    QTest::newRow("with a reason") << TYPE_ID(100) << QVariant(QStringLiteral("2026-11-20"))
                                   << QStringLiteral("По собственному желанию") << QString();
    QTest::newRow("without a reason") << TYPE_ID(100) << QVariant(QDate(2026, 11, 20)) << QString() << QString();
    QTest::newRow("already dismissed") << TYPE_ID(101) << QVariant(QStringLiteral("2026-11-20")) << QString()
                                       << QStringLiteral("Сотрудник Петров уже уволен");
    QTest::newRow("unknown") << TYPE_ID(999) << QVariant(QStringLiteral("2026-11-20")) << QString()
                             << QStringLiteral("Объект 999 не найден");
    QTest::newRow("a department") << TYPE_ID(20) << QVariant(QStringLiteral("2026-11-20")) << QString()
                                  << QStringLiteral("Объект 20 не сотрудник: уволить можно только сотрудника");
    QTest::newRow("no date") << TYPE_ID(100) << QVariant() << QString()
                             << QStringLiteral("Сотрудник не уволен: не указана дата увольнения");
    QTest::newRow("no such date") << TYPE_ID(100) << QVariant(QStringLiteral("2026-13-01")) << QString()
                                  << QStringLiteral("Сотрудник не уволен: неверная дата увольнения \"2026-13-01\"");
}

void TestOrgCommands::dismisses()
{
    QFETCH(TYPE_ID, uid);
    QFETCH(QVariant, date);
    QFETCH(QString, dismissal);
    QFETCH(QString, reason);
    // The previous dismissal's reason must not survive a new one.
    QVERIFY(m_store->updateParameters(100, {{db::worker::DISMISS_REASON, QStringLiteral("старая")}}));
    Replies replies(m_executor.data());
    QSignalSpy removed(m_store.data(), &LocalStorage::dataRemoved);
    QSignalSpy changed(m_store.data(), &LocalStorage::dataChanged);
    TaskInfo t = task(QStringLiteral("dismiss_object"), uid, QString(), QVariant(), {}, &replies, "saved");
    if (date.isValid())
        t.params.insert(QStringLiteral("date"), date);
    t.params.insert(QStringLiteral("reason"), dismissal);
    if (!reason.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    QString why;
    run(t, &why);
    QCOMPARE(why, reason);
    QCOMPARE(replies.uids, QList<unsigned int>{reason.isEmpty() ? uid : 0});
    if (!reason.isEmpty()) {
        QVERIFY(removed.isEmpty());
        QVERIFY(changed.isEmpty());
        return;
    }
    const auto check = [&] {
        QVERIFY(!m_store->constObject(uid, SUBJECT_DATANAME));
        const ObjectInfo *fired = m_store->constObject(uid, SUBJECT_FIRED_DATANAME);
        QVERIFY(fired);
        QCOMPARE(fired->parameter(db::common::OBJECTSTATE), QStringLiteral("d"));
        QCOMPARE(fired->parameter(db::worker::DISMISS_DATE), QStringLiteral("2026-11-20"));
        QCOMPARE(fired->parameter(db::worker::DISMISS_REASON), dismissal);
        QCOMPARE(fired->parent(), 20u);
        QVERIFY(!indexed(m_store.data(), SUBJECT_SURNAME_INDEX, QStringLiteral("иванов"), uid));
        QVERIFY(indexed(m_store.data(), SUBJECT_FIRED_SURNAME_INDEX, QStringLiteral("иванов"), uid));
        ObjectTreeModel *tree = m_store->model(ORGSTRUCTURE_DATANAME);
        QCOMPARE(tree->data(tree->indexOf(uid), ObjectTreeModel::StateRole).toString(), QStringLiteral("d"));
    };
    check();
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).toString(), SUBJECT_DATANAME);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), SUBJECT_FIRED_DATANAME);
    reopen();
    check();
}

// What a new employee wizard queues: the employee, then a card and the
// photo, both built before the employee had a uid.
void TestOrgCommands::queuedTasksActOnTheNewEmployee()
{
    Replies replies(m_executor.data());
    replies.queue = {
        task(QStringLiteral("save_object"), 0, OT_WORKER, 21u, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}},
             &replies, "objectAdded"),
        task(QStringLiteral("save_object"), 0, OT_CARD, 0u, {{db::card::NUMBER, QStringLiteral("0012345")}}, &replies,
             "objectUpdated"),
        task(QStringLiteral("save_object"), 0, OT_WORKER, 0u, {{db::worker::PHOTO, QStringLiteral("ffd8ffe0")}},
             &replies, "objectUpdated"),
    };
    replies.start();
    QTRY_COMPARE(replies.uids.size(), 3);
    const TYPE_ID employee = replies.uids.at(0);
    const TYPE_ID card = replies.uids.at(1);
    QVERIFY(employee != 0 && card != 0 && card != employee);
    QCOMPARE(replies.uids.at(2), employee);

    reopen();
    QCOMPARE(m_store->object(employee).parent(), 21u); // the photo task's parent 0 moved nothing
    QCOMPARE(m_store->cardIds(employee, false), QList<TYPE_ID>{card});
    QCOMPARE(m_store->object(card).parameter(db::card::NUMBER), QStringLiteral("12345"));
    QCOMPARE(m_store->blob(employee, db::worker::PHOTO), QByteArray("ffd8ffe0"));

    // The same number again is refused, for this employee or another.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    QString why;
    run(task(QStringLiteral("save_object"), 100, OT_CARD, QVariant(), {{db::card::NUMBER, QStringLiteral("12345")}},
             &replies, "saved"),
        &why);
    QCOMPARE(why, QStringLiteral("Карта с номером 12345 уже выдана: Сидоров. Одну карту нельзя выдать дважды"));
}

// A uid names one object for ever: a stale task for a deleted object must
// not reach one created after it.
void TestOrgCommands::uidsAreNeverReused()
{
    Replies replies(m_executor.data());
    const auto create = [&] {
        return run(task(QStringLiteral("save_object"), 0, OT_DEPARTMENT, 10u,
                        {{db::common::NAME, QStringLiteral("Временный")}}, &replies, "saved"));
    };
    const TYPE_ID first = create();
    QVERIFY(first > 200);
    QCOMPARE(run(task(QStringLiteral("delete_object"), first, QString(), QVariant(), {}, &replies, "saved")), first);
    reopen();
    const TYPE_ID second = create();
    QVERIFY(second > first);
}

QTEST_GUILESS_MAIN(TestOrgCommands)
#include "tst_orgcommands.moc"
