#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <asnobody.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

using namespace nivaro;

namespace {

ObjectInfo worker(TYPE_ID uid, const QString &surname, const QString &number, const QString &state = QString())
{
    ObjectInfo o(uid, OT_WORKER,
                 {{db::worker::LAST_NAME, surname},
                  {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                  {db::worker::WORKERNUM, number}});
    if (!state.isEmpty())
        o.setParameter(db::common::OBJECTSTATE, state);
    o.setParent(20);
    return o;
}

ObjectInfo card(TYPE_ID uid, TYPE_ID owner, quint64 number)
{
    ObjectInfo c(uid, OT_CARD, {{db::card::NUMBER, QString::number(number)}});
    c.setParent(owner);
    return c;
}

_TEMPLATE_DATA fingerprint(TYPE_ID id, int size)
{
    _TEMPLATE_DATA t;
    t.id = id;
    t.type = _TEMPLATE_DATA::Fingerprint;
    t.finger = quint16(id % 10);
    t.data = QByteArray(size, char(id));
    t.created = QDateTime(QDate(2026, 3, 1), QTime(9, 30), Qt::UTC);
    return t;
}

QSet<TYPE_ID> lookup(LocalStorage *store, const QString &index, const QString &prefix)
{
    TrieStatic<TYPE_ID>::Set found;
    store->index(index)->contains(prefix, found);
    QSet<TYPE_ID> out;
    for (TYPE_ID uid : found)
        out.insert(uid);
    return out;
}

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Runs statements on a file through a connection of the test's own.
void tamper(const QString &path, const QStringList &statements)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tamper"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        for (const QString &sql : statements)
            QVERIFY2(q.exec(sql), qPrintable(sql + q.lastError().text()));
        QVERIFY(q.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tamper"));
}

int storedVersion(const QString &path)
{
    int version = -1;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("version"));
        db.setDatabaseName(path);
        QSqlQuery q(db);
        if (db.open() && q.exec(QStringLiteral("SELECT value FROM meta WHERE key = 'version'")) && q.next())
            version = q.value(0).toInt();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("version"));
    return version;
}

// The store's own connection to a file, for what only SQLite can do to it.
QSqlDatabase connectionTo(const QString &path)
{
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        QSqlDatabase db = QSqlDatabase::database(name, false);
        if (db.databaseName() == path)
            return db;
    }
    return QSqlDatabase();
}

} // namespace

class TestLocalStorage : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void lookupsOfUnknownThings();
    void employeesMoveBetweenServiceAndFired();
    void indexesFollowWrites();
    void cardIndexFindsTheOwner();
    void fileRoundTrip();
    void brokenFilesAreRefusedUntouched_data();
    void brokenFilesAreRefusedUntouched();
    void failedWriteLeavesMemoryAlone();
    void writeFailuresAreExplained_data();
    void writeFailuresAreExplained();
    void removalTakesBlobsAndCalendars_data();
    void removalTakesBlobsAndCalendars();
    void versionOneFile_data();
    void versionOneFile();
    void templatesRoundTrip_data();
    void templatesRoundTrip();
    void cardIsValidThroughItsLastDay_data();
    void cardIsValidThroughItsLastDay();
    void storeLeftOpenClosesWithTheApplication(); // keep last

private:
    QString path() const { return m_dir->filePath(QStringLiteral("store.db")); }
    // Hands the store to an unprivileged user, with these modes on its
    // folder and file.
    AsNobody *leaveToNobody(mode_t folderMode, mode_t fileMode) const
    {
        AsNobody::setMode(m_dir->path(), folderMode);
        AsNobody::setMode(path(), fileMode);
        return new AsNobody;
    }
    LocalStorage *store = LocalStorage::instance();
    QScopedPointer<QTemporaryDir> m_dir;
};

void TestLocalStorage::init()
{
    m_dir.reset(new QTemporaryDir);
    store->close();
}

void TestLocalStorage::cleanup()
{
    if (qstrcmp(QTest::currentTestFunction(), "storeLeftOpenClosesWithTheApplication") != 0)
        store->close();
}

void TestLocalStorage::lookupsOfUnknownThings()
{
    QVERIFY(store->constObjects(QStringLiteral("no_such_data")) != nullptr);
    QVERIFY(store->constObjects(QStringLiteral("no_such_data"))->isEmpty());
    QVERIFY(!store->constObject(99));
    QVERIFY(!store->object(99).isValid());
    QVERIFY(store->blob(99, db::worker::PHOTO).isEmpty());
    QVERIFY(!store->dbSettings().isValid());
    QVERIFY(!store->index(QStringLiteral("subject")));
    QVERIFY(!store->model(SUBJECT_DATANAME));
    QString error;
    QVERIFY(!store->updateParameters(99, {{db::worker::LAST_NAME, QStringLiteral("x")}}, &error));
    QVERIFY(!error.isEmpty());
}

void TestLocalStorage::employeesMoveBetweenServiceAndFired()
{
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Петров"), QStringLiteral("7"))}));
    QSignalSpy removed(store, &LocalStorage::dataRemoved);
    QSignalSpy changed(store, &LocalStorage::dataChanged);

    // Any case of the state letter counts: the server writes "D" as well.
    QVERIFY(store->updateParameters(100, {{db::common::OBJECTSTATE, QStringLiteral("D")}}));
    QVERIFY(!store->constObject(100, SUBJECT_DATANAME));
    QVERIFY(store->constObject(100, SUBJECT_FIRED_DATANAME));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).toString(), SUBJECT_DATANAME);
    QCOMPARE(changed.last().at(0).toString(), SUBJECT_FIRED_DATANAME);
    QCOMPARE(lookup(store, SUBJECT_FIRED_SURNAME_INDEX, QStringLiteral("петр")), QSet<TYPE_ID>{100});
    QVERIFY(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("петр")).isEmpty());

    // An empty value removes the key, which brings the employee back.
    QVERIFY(store->updateParameters(100, {{db::common::OBJECTSTATE, QString()}}));
    QVERIFY(store->constObject(100, SUBJECT_DATANAME));
    QVERIFY(!store->object(100).hasParameter(db::common::OBJECTSTATE));
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("петр")), QSet<TYPE_ID>{100});
}

void TestLocalStorage::indexesFollowWrites()
{
    ObjectInfo dept(20, OT_DEPARTMENT, {{db::orgstructure::NAME, QStringLiteral("Отдел кадров")}});
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {dept}));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("000123")),
                                                  worker(101, QStringLiteral("Иванова"), QStringLiteral("000124"))}));
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("иван")), (QSet<TYPE_ID>{100, 101}));
    QCOMPARE(lookup(store, SUBJECT_WORKERNUM_INDEX, QStringLiteral("000123")), QSet<TYPE_ID>{100});
    QCOMPARE(lookup(store, ORGSTRUCTURE_DATANAME, QStringLiteral("кадр")), QSet<TYPE_ID>{20});
    QCOMPARE(lookup(store, ORGSTRUCTURE_DATANAME, QStringLiteral("иван")), (QSet<TYPE_ID>{100, 101}));

    // A renamed employee is found only by the new name.
    QVERIFY(store->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}}));
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("иван")), QSet<TYPE_ID>{101});
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("сид")), QSet<TYPE_ID>{100});

    QVERIFY(store->removeObjects({101}));
    QVERIFY(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("иван")).isEmpty());
    QVERIFY(lookup(store, SUBJECT_WORKERNUM_INDEX, QStringLiteral("000124")).isEmpty());
}

void TestLocalStorage::cardIndexFindsTheOwner()
{
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
    QVERIFY(store->putObjects(CARD_DATANAME, {card(500, 100, 123456), card(501, 100, 777)}));
    QCOMPARE(lookup(store, CARD_DATANAME, QStringLiteral("123456")), QSet<TYPE_ID>{100});
    QCOMPARE(lookup(store, CARD_DATANAME, QStringLiteral("777")), QSet<TYPE_ID>{100});
    QCOMPARE(store->cardIds(100, false), (QList<TYPE_ID>{500, 501}));

    // Taking one card away keeps the owner findable by the other.
    QVERIFY(store->removeObjects({500}));
    QVERIFY(lookup(store, CARD_DATANAME, QStringLiteral("123456")).isEmpty());
    QCOMPARE(lookup(store, CARD_DATANAME, QStringLiteral("777")), QSet<TYPE_ID>{100});
}

void TestLocalStorage::fileRoundTrip()
{
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    ObjectInfo root(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}});
    ObjectInfo dept(20, OT_DEPARTMENT, {{db::orgstructure::NAME, QStringLiteral("Склад")}});
    dept.setParent(SUBJECT_ROOT_UID);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {root, dept}, &error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1")),
                                                  worker(101, QStringLiteral("Петров"), QStringLiteral("2"), QStringLiteral("d"))},
                              &error));
    QVERIFY(store->setBlob(100, db::worker::PHOTO, QByteArray("ffd8ff"), &error));
    ObjectInfo settings(2, OT_DB_SETTINGS, {{db::database::PD_DENY_STORE_USER_PHOTOS, QStringLiteral("true")}});
    QVERIFY(store->setDbSettings(settings, &error));
    SCHEDULE_DATA schedule;
    schedule.id = 3;
    schedule.name = QStringLiteral("Сменный 2/2");
    schedule.startDate = QDate(2024, 1, 1);
    QVERIFY(store->putSchedules({schedule}, &error));
    _WORKER_SCHEDULE_HISTORY_RECORD_V2 assignment;
    assignment.worker = 100;
    assignment.scheduleId = 3;
    assignment.startDate = QDate(2024, 2, 1);
    QVERIFY(store->setScheduleHistory(100, {assignment}, &error));
    _WORKER_ABSENCE_REASON absences;
    absences.worker = 100;
    _WORKER_ABSENCE_REASON_RECORD record;
    record.id = 1;
    record.reason = 40;
    record.start = QDateTime(QDate(2024, 3, 10), QTime(0, 0), Qt::UTC);
    record.end = QDateTime(QDate(2024, 3, 12), QTime(0, 0), Qt::UTC);
    absences.records = {record};
    QVERIFY(store->setAbsenceReasons(absences, &error));
    QVERIFY(store->setPersonalSchedules(100, {schedule}, &error));
    WorkerCalendar calendar;
    calendar.worker = 101;
    calendar.personalSchedules = {schedule};
    calendar.scheduleHistory = {assignment};
    calendar.absences = {record};
    QSignalSpy changed(store, &LocalStorage::dataChanged);
    QVERIFY(store->putWorkerCalendars({calendar}, &error));
    QCOMPARE(changed.size(), 3);
    QVERIFY(store->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Иванов-Петров")}}, &error));
    store->close();

    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Иванов-Петров"));
    QVERIFY(store->constObject(101, SUBJECT_FIRED_DATANAME));
    QCOMPARE(store->blob(100, db::worker::PHOTO), QByteArray("ffd8ff"));
    QCOMPARE(store->dbSettings(), settings);
    QCOMPARE(store->schedules().value(3), schedule);
    QCOMPARE(store->scheduleHistory(100), QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>{assignment});
    QCOMPARE(store->absenceReasons(100), absences);
    QCOMPARE(store->personalSchedules(100).value(3), schedule);
    QCOMPARE(store->personalSchedules(101).value(3), schedule);
    QCOMPARE(store->scheduleHistory(101), QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>{assignment});
    QCOMPARE(store->absenceReasons(101).records, QList<_WORKER_ABSENCE_REASON_RECORD>{record});
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("иванов-")), QSet<TYPE_ID>{100});
    QVERIFY(store->model(ORGSTRUCTURE_DATANAME)->indexOf(100).isValid());
    QCOMPARE(store->model(ORGSTRUCTURE_DATANAME)->parentKeys(100), (QSet<TYPE_ID>{20, SUBJECT_ROOT_UID}));
}

void TestLocalStorage::brokenFilesAreRefusedUntouched_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("random bytes") << QStringLiteral("random");
    QTest::newRow("truncated store") << QStringLiteral("truncated");
    QTest::newRow("foreign sqlite") << QStringLiteral("foreign");
    QTest::newRow("newer version") << QStringLiteral("newer");
    QTest::newRow("version 0") << QStringLiteral("zero");
    QTest::newRow("row that does not decode") << QStringLiteral("badrow");
}

void TestLocalStorage::brokenFilesAreRefusedUntouched()
{
    QFETCH(QString, kind);
    QString error;
    if (kind == QLatin1String("random")) {
        QFile f(path());
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray junk;
        for (int i = 0; i < 5000; ++i)
            junk.append(char(i * 7919 % 251));
        f.write(junk);
    } else {
        QVERIFY(store->open(path(), &error));
        QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
        store->close();
        if (kind == QLatin1String("truncated")) {
            QFile::remove(path() + QStringLiteral("-wal"));
            QFile::remove(path() + QStringLiteral("-shm"));
            const QByteArray bytes = readAll(path());
            QFile f(path());
            QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(bytes.left(bytes.size() / 3 + 100));
        } else {
            const QHash<QString, QString> statements = {
                {QStringLiteral("foreign"), QStringLiteral("UPDATE meta SET value = 'spreadsheet' WHERE key = 'application'")},
                {QStringLiteral("newer"), QStringLiteral("UPDATE meta SET value = '99' WHERE key = 'version'")},
                {QStringLiteral("zero"), QStringLiteral("UPDATE meta SET value = '0' WHERE key = 'version'")},
                {QStringLiteral("badrow"), QStringLiteral("UPDATE objects SET body = x'4e564f01ffffffff' WHERE uid = 100")},
            };
            tamper(path(), {statements.value(kind)});
        }
    }
    const QByteArray before = readAll(path());
    error.clear();
    QVERIFY(!store->open(path(), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!store->isOpen());
    QVERIFY(store->constObjects(SUBJECT_DATANAME)->isEmpty());
    QCOMPARE(readAll(path()), before);
}

void TestLocalStorage::failedWriteLeavesMemoryAlone()
{
    QString error;
    QVERIFY(store->open(path(), &error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
    // Another connection holds the write lock: our transaction cannot commit.
    QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("locker"));
    other.setDatabaseName(path());
    other.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    QVERIFY(other.open());
    QSqlQuery lock(other);
    QVERIFY(lock.exec(QStringLiteral("BEGIN IMMEDIATE")));

    QSignalSpy changed(store, &LocalStorage::dataChanged);
    QVERIFY(!store->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Петров")}}, &error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(lookup(store, SUBJECT_SURNAME_INDEX, QStringLiteral("иван")), QSet<TYPE_ID>{100});

    QVERIFY(lock.exec(QStringLiteral("ROLLBACK")));
    lock.finish();
    other.close();
    other = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("locker"));
    QVERIFY2(store->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Петров")}}, &error), qPrintable(error));
}

// What the operator reads when a write cannot reach the file, and that
// nothing changed: the file that cannot be written, the folder that cannot
// be, and a disk that is full (SQLite's own answer, through a page limit).
void TestLocalStorage::writeFailuresAreExplained_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QString>("reason");
    QTest::newRow("read-only file") << QStringLiteral("file") << true << QStringLiteral("Нет прав на запись в файл хранилища");
    QTest::newRow("read-only folder") << QStringLiteral("folder") << true
                                      << QStringLiteral("Нет прав на запись в папку хранилища");
    QTest::newRow("full disk") << QStringLiteral("full") << false
                               << QStringLiteral("Недостаточно места на диске: изменения не записаны");
}

void TestLocalStorage::writeFailuresAreExplained()
{
    QFETCH(QString, kind);
    QFETCH(bool, readOnly);
    QFETCH(QString, reason);
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
    store->close();

    const bool file = kind == QLatin1String("file");
    QScopedPointer<AsNobody> nobody(readOnly ? leaveToNobody(file ? 0777 : 0755, file ? 0444 : 0666) : nullptr);
    if (nobody && !nobody->isActive())
        QSKIP("needs to run as root to act as another user");
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QCOMPARE(store->isReadOnly(), readOnly);
    QCOMPARE(store->readOnlyReason(), readOnly ? reason : QString());
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
    if (!readOnly) {
        QSqlQuery limit(connectionTo(path()));
        QVERIFY(limit.exec(QStringLiteral("PRAGMA page_count")) && limit.next());
        QVERIFY(limit.exec(QStringLiteral("PRAGMA max_page_count = %1").arg(limit.value(0).toInt())));
    }
    const QByteArray before = readAll(path());
    QSignalSpy changed(store, &LocalStorage::dataChanged);
    const QString large(100000, QLatin1Char('x'));
    const QList<std::function<bool(QString *)>> writes = {
        [&](QString *e) { return store->updateParameters(100, {{db::worker::DESCRIPTION, large}}, e); },
        [&](QString *e) { return store->setBlob(100, db::worker::PHOTO, large.toLatin1(), e); },
        [&](QString *e) {
            return store->putObjects(SUBJECT_DATANAME, {worker(101, large, QStringLiteral("2"))}, e);
        },
    };
    for (const auto &write : writes) {
        error.clear();
        QVERIFY(!write(&error));
        QCOMPARE(error, reason);
    }
    QCOMPARE(changed.size(), 0);
    QVERIFY(!store->object(100).hasParameter(db::worker::DESCRIPTION));
    QVERIFY(store->blob(100, db::worker::PHOTO).isEmpty());
    QVERIFY(!store->constObject(101));
    store->close();
    QCOMPARE(readAll(path()), before);
}

// What belongs to an object goes with it, also from the file.
void TestLocalStorage::removalTakesBlobsAndCalendars_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("blob") << QStringLiteral("blob");
    QTest::newRow("personal schedule") << QStringLiteral("personal");
    QTest::newRow("schedule history") << QStringLiteral("history");
    QTest::newRow("absences") << QStringLiteral("absences");
    QTest::newRow("templates") << QStringLiteral("templates");
}

void TestLocalStorage::removalTakesBlobsAndCalendars()
{
    QFETCH(QString, kind);
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
    SCHEDULE_DATA schedule;
    schedule.id = 3;
    _WORKER_SCHEDULE_HISTORY_RECORD_V2 assignment;
    assignment.worker = 100;
    assignment.scheduleId = 3;
    _WORKER_ABSENCE_REASON absences;
    absences.worker = 100;
    absences.records = {_WORKER_ABSENCE_REASON_RECORD()};
    auto present = [&] {
        if (kind == QLatin1String("blob"))
            return !store->blob(100, db::worker::PHOTO).isEmpty();
        if (kind == QLatin1String("personal"))
            return !store->personalSchedules(100).isEmpty();
        if (kind == QLatin1String("history"))
            return !store->scheduleHistory(100).isEmpty();
        if (kind == QLatin1String("templates"))
            return !store->templates(100).isEmpty();
        return !store->absenceReasons(100).records.isEmpty();
    };
    QVERIFY(store->setBlob(100, db::worker::PHOTO, "ffd8") || kind != QLatin1String("blob"));
    QVERIFY(store->setPersonalSchedules(100, {schedule}) || kind != QLatin1String("personal"));
    QVERIFY(store->setScheduleHistory(100, {assignment}) || kind != QLatin1String("history"));
    QVERIFY(store->setAbsenceReasons(absences) || kind != QLatin1String("absences"));
    QVERIFY(store->setTemplates(100, {fingerprint(1, 512)}) || kind != QLatin1String("templates"));
    QVERIFY(present());

    QVERIFY(store->removeObjects({100}));
    QVERIFY(!present());
    store->close();
    QVERIFY(store->open(path(), &error));
    QVERIFY(!present());
}

// A file of an earlier format gains what later formats added (the change
// log, the templates) when opened writable and keeps its contents; one that
// cannot be written is read as it is.
void TestLocalStorage::versionOneFile_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<int>("versionBefore");
    QTest::addColumn<int>("versionAfter");
    for (int version = 1; version <= 4; ++version) {
        QTest::addRow("version %d writable: migrated", version) << false << version << 5;
        QTest::addRow("version %d read only: left alone", version) << true << version << version;
    }
}

void TestLocalStorage::versionOneFile()
{
    QFETCH(bool, readOnly);
    QFETCH(int, versionBefore);
    QFETCH(int, versionAfter);
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    ObjectInfo department(20, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Склад")}});
    department.setParent(SUBJECT_ROOT_UID);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {department}));
    ObjectInfo employee = worker(100, QStringLiteral("Иванов"), QStringLiteral("1"));
    employee.setParent(20);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {employee}));
    ObjectInfo card(50, OT_CARD, {{db::card::NUMBER, QStringLiteral("77")}});
    card.setParent(100);
    QVERIFY(store->putObjects(CARD_DATANAME, {card}));
    store->close();
    QStringList downgrade = {QStringLiteral("DROP TABLE object_parents"),
                             QStringLiteral("UPDATE meta SET value = '%1' WHERE key = 'version'").arg(versionBefore)};
    if (versionBefore < 4)
        downgrade << QStringLiteral("DROP TABLE card_numbers");
    if (versionBefore < 3)
        downgrade << QStringLiteral("DROP TABLE templates");
    if (versionBefore < 2)
        downgrade << QStringLiteral("DROP TABLE changes") << QStringLiteral("DELETE FROM meta WHERE key = 'changes_horizon'");
    tamper(path(), downgrade);

    {
        QScopedPointer<AsNobody> nobody(readOnly ? leaveToNobody(0777, 0444) : nullptr);
        if (nobody && !nobody->isActive())
            QSKIP("needs to run as root to act as another user");
        QVERIFY2(store->open(path(), &error), qPrintable(error));
        QCOMPARE(store->isReadOnly(), readOnly);
        QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
        QCOMPARE(store->updateParameters(100, {{db::worker::LAST_NAME, QStringLiteral("Петров")}}, &error), !readOnly);
        QVERIFY(store->templates(100).isEmpty());
        QCOMPARE(store->setTemplates(100, {fingerprint(1, 64)}, &error), !readOnly);
        store->close();
    }
    QCOMPARE(storedVersion(path()), versionAfter);
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME),
             readOnly ? QStringLiteral("Иванов") : QStringLiteral("Петров"));
    // The cards the file held before it knew card numbers are filed by
    // number too: a new card cannot take one of theirs.
    const auto numberTaken = [](const StoredRecords &stored) {
        return stored.cardWithNumber(QStringLiteral("0077")) == 50 ? QStringLiteral("taken") : QString();
    };
    QCOMPARE(store->createObject(CARD_DATANAME, ObjectInfo(0, OT_CARD), {}, numberTaken, &error), 0u);
    QCOMPARE(error, QStringLiteral("taken"));
    // So are the places: a department that still holds someone is seen
    // as such inside a write.
    const auto holds = [](const StoredRecords &stored) {
        return stored.hasMembers(20) && !stored.hasMembers(100) ? QStringLiteral("held") : QString();
    };
    QVERIFY(!store->removeObjects({20}, &error, holds));
    QCOMPARE(error, QStringLiteral("held"));
    QVERIFY(store->constObject(20));
}

// Templates are kept per employee, exactly as given, across reopening and
// for another client of the file; an empty list removes them.
void TestLocalStorage::templatesRoundTrip_data()
{
    QTest::addColumn<QList<int>>("sizes");
    QTest::newRow("none") << QList<int>{};
    QTest::newRow("one") << QList<int>{498};
    QTest::newRow("all kinds, large") << QList<int>{498, 5000, 1024, 60000};
}

void TestLocalStorage::templatesRoundTrip()
{
    QFETCH(QList<int>, sizes);
    const int kinds[] = {_TEMPLATE_DATA::Fingerprint, _TEMPLATE_DATA::PalmVein, _TEMPLATE_DATA::Face,
                         _TEMPLATE_DATA::FingerVein};
    QList<_TEMPLATE_DATA> templates;
    for (int i = 0; i < sizes.size(); ++i) {
        _TEMPLATE_DATA t = fingerprint(TYPE_ID(i + 1), sizes.at(i));
        t.type = kinds[i % 4];
        t.worker = 999; // the store makes the employee the owner
        templates.append(t);
    }
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1")),
                                                 worker(101, QStringLiteral("Петров"), QStringLiteral("2"))}));
    QVERIFY(store->setTemplates(101, {fingerprint(7, 10)}));
    LocalStorage other;
    QVERIFY2(other.open(path(), &error), qPrintable(error));
    QSignalSpy otherChanged(&other, &LocalStorage::dataChanged);
    QSignalSpy changed(store, &LocalStorage::dataChanged);

    QVERIFY2(store->setTemplates(100, templates, &error), qPrintable(error));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), TEMPLATE_DATANAME);
    QCOMPARE(changed.at(0).at(1).value<QList<unsigned int>>(), QList<unsigned int>{100});
    for (_TEMPLATE_DATA &t : templates)
        t.worker = 100;
    QCOMPARE(store->templates(100), templates);

    other.checkForChanges();
    QCOMPARE(other.templates(100), templates);
    QCOMPARE(otherChanged.size(), templates.isEmpty() ? 0 : 1);

    store->close();
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QCOMPARE(store->templates(100), templates);
    QCOMPARE(store->templates(101).size(), 1);

    QVERIFY(store->setTemplates(100, {}));
    store->close();
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QVERIFY(store->templates(100).isEmpty());
    QCOMPARE(store->templates(101).size(), 1);
}

void TestLocalStorage::cardIsValidThroughItsLastDay_data()
{
    QTest::addColumn<int>("daysLeft");
    QTest::addColumn<bool>("active");
    QTest::newRow("ended yesterday") << -1 << false;
    QTest::newRow("ends today") << 0 << true;
    QTest::newRow("ends tomorrow") << 1 << true;
}

void TestLocalStorage::cardIsValidThroughItsLastDay()
{
    QFETCH(int, daysLeft);
    QFETCH(bool, active);
    ObjectInfo c = card(500, 100, 123);
    c.setParameter(db::card::DATE_END, QDate::currentDate().addDays(daysLeft).toString(Qt::ISODate));
    QVERIFY(store->putObjects(CARD_DATANAME, {c}));
    QCOMPARE(store->cardIds(100, true), active ? QList<TYPE_ID>{500} : QList<TYPE_ID>());
    QCOMPARE(store->cards(100, true).size(), active ? 1 : 0);
    QCOMPARE(store->cardIds(100, false), QList<TYPE_ID>{500}); // ended or not, still the owner's
}

// Hosts may end without close(): the store must then be closed as the
// application ends, not crash in static destruction after Qt's SQL driver
// registry is gone. The program's clean exit is the check.
void TestLocalStorage::storeLeftOpenClosesWithTheApplication()
{
    QString error;
    QVERIFY2(store->open(path(), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker(100, QStringLiteral("Иванов"), QStringLiteral("1"))}));
}

QTEST_GUILESS_MAIN(TestLocalStorage)
#include "tst_localstorage.moc"
