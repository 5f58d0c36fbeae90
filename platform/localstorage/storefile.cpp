#include "storefile.h"

#include "storerecordcodec.h"

#include <stringpool.h>

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

namespace nivaro {

const QString StoreFile::Application = QStringLiteral("nvstudio-store");

namespace {

int connectionCounter = 0;

QString tr(const char *text)
{
    return QCoreApplication::translate("StoreFile", text);
}

const char *const Schema[] = {
    "CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE objects(uid INTEGER PRIMARY KEY, dataname TEXT NOT NULL, body BLOB NOT NULL)",
    "CREATE TABLE blobs(uid INTEGER NOT NULL, key TEXT NOT NULL, body BLOB NOT NULL, PRIMARY KEY(uid, key))",
    "CREATE TABLE schedules(id INTEGER PRIMARY KEY, body BLOB NOT NULL)",
    "CREATE TABLE personal_schedules(worker INTEGER NOT NULL, id INTEGER NOT NULL, body BLOB NOT NULL, PRIMARY KEY(worker, id))",
    "CREATE TABLE schedule_history(worker INTEGER PRIMARY KEY, body BLOB NOT NULL)",
    "CREATE TABLE absences(worker INTEGER PRIMARY KEY, body BLOB NOT NULL)",
};

} // namespace

StoreFile::StoreFile()
    : m_connection(QStringLiteral("nvstudio-store-%1").arg(++connectionCounter))
{
}

StoreFile::~StoreFile()
{
    close();
}

void StoreFile::close()
{
    if (m_db.isValid()) {
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
    }
    m_fileName.clear();
}

// Looks at an existing file without writing to it: the first bytes, then
// the meta table through a read-only connection. Anything that is not a
// store of ours, or one from a newer client, is refused as it stands.
bool StoreFile::check(const QString &fileName, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = tr("Нет доступа к файлу: %1").arg(file.errorString());
        return false;
    }
    if (file.size() == 0)
        return true; // an empty file holds nothing to lose: it becomes a new store
    if (file.read(16) != QByteArray("SQLite format 3\0", 16)) {
        *error = tr("Это не файл хранилища Nivaro-Studio");
        qDebug() << "store: not an SQLite file" << fileName;
        return false;
    }
    file.close();

    const QString probeName = m_connection + QStringLiteral("-probe");
    QString application;
    int version = -1;
    bool readable = false;
    {
        QSqlDatabase probe = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), probeName);
        probe.setDatabaseName(fileName);
        probe.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (probe.open()) {
            QSqlQuery q(probe);
            if (q.exec(QStringLiteral("SELECT key, value FROM meta"))) {
                readable = true;
                while (q.next()) {
                    if (q.value(0).toString() == QLatin1String("application"))
                        application = q.value(1).toString();
                    else if (q.value(0).toString() == QLatin1String("version"))
                        version = q.value(1).toInt();
                }
            } else {
                qDebug() << "store: no meta table" << q.lastError().text();
            }
        }
        probe.close();
    }
    QSqlDatabase::removeDatabase(probeName);

    if (!readable || application != Application) {
        *error = tr("Это не файл хранилища Nivaro-Studio");
        qDebug() << "store: foreign database" << fileName << application;
        return false;
    }
    if (version > FormatVersion) {
        *error = tr("Файл создан более новой версией программы (формат %1, поддерживается %2)")
                     .arg(version)
                     .arg(FormatVersion);
        return false;
    }
    if (version < 1) {
        *error = tr("Файл хранилища поврежден: неизвестная версия формата");
        return false;
    }
    return true;
}

bool StoreFile::open(const QString &fileName, Contents *contents, QString *error)
{
    close();
    const bool exists = QFileInfo::exists(fileName);
    if (exists && !check(fileName, error))
        return false;
    const bool fresh = !exists || QFileInfo(fileName).size() == 0;

    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    m_db.setDatabaseName(fileName);
    // One client owns its store; a second holding the lock means trouble
    // the operator should hear of within a second, not a frozen window.
    m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
    if (!m_db.open()) {
        *error = tr("Не удалось открыть файл: %1").arg(m_db.lastError().text());
        close();
        return false;
    }
    m_fileName = fileName;
    QString why;
    // WAL lets a commit append instead of rewriting pages; FULL makes every
    // commit reach the disk before the store reports it done.
    if (!exec(QStringLiteral("PRAGMA journal_mode=WAL"), &why) || !exec(QStringLiteral("PRAGMA synchronous=FULL"), &why)
        || (fresh && !createSchema(&why)) || !load(contents, &why)) {
        *error = why;
        close();
        *contents = Contents();
        return false;
    }
    return true;
}

bool StoreFile::createSchema(QString *error)
{
    if (!m_db.transaction()) {
        *error = m_db.lastError().text();
        return false;
    }
    for (const char *sql : Schema) {
        if (!exec(QString::fromLatin1(sql), error)) {
            m_db.rollback();
            return false;
        }
    }
    if (!run(QStringLiteral("INSERT INTO meta(key, value) VALUES (?, ?)"), {QStringLiteral("application"), Application}, error)
        || !run(QStringLiteral("INSERT INTO meta(key, value) VALUES (?, ?)"), {QStringLiteral("version"), FormatVersion},
                error)
        || !m_db.commit()) {
        m_db.rollback();
        return false;
    }
    return true;
}

bool StoreFile::load(Contents *contents, QString *error)
{
    auto corrupt = [error](const QString &what, const QString &why) {
        *error = tr("Файл хранилища поврежден (%1): %2").arg(what, why);
        qDebug() << "store: corrupt row" << what << why;
        return false;
    };
    QSqlQuery q(m_db);
    q.setForwardOnly(true);

    StringPool pool;
    if (!q.exec(QStringLiteral("SELECT uid, dataname, body FROM objects")))
        return corrupt(QStringLiteral("objects"), q.lastError().text());
    QHash<QString, QString> datanames; // one shared text per data name
    while (q.next()) {
        ObjectInfo object;
        QString why;
        if (!StoreRecordCodec::decodeObject(q.value(2).toByteArray(), &pool, &object, &why))
            return corrupt(QStringLiteral("object %1").arg(q.value(0).toString()), why);
        if (object.uid() != q.value(0).toUInt())
            return corrupt(QStringLiteral("object %1").arg(q.value(0).toString()), QStringLiteral("uid mismatch"));
        const QString dataname = q.value(1).toString();
        auto it = datanames.find(dataname);
        if (it == datanames.end())
            it = datanames.insert(dataname, dataname);
        contents->objects[*it].append(object);
    }

    if (!q.exec(QStringLiteral("SELECT uid, key, body FROM blobs")))
        return corrupt(QStringLiteral("blobs"), q.lastError().text());
    while (q.next())
        contents->blobs[q.value(0).toUInt()].insert(q.value(1).toString(), q.value(2).toByteArray());

    if (!q.exec(QStringLiteral("SELECT id, body FROM schedules")))
        return corrupt(QStringLiteral("schedules"), q.lastError().text());
    while (q.next()) {
        SCHEDULE_DATA schedule;
        QString why;
        if (!StoreRecordCodec::decodeSchedule(q.value(1).toByteArray(), &schedule, &why))
            return corrupt(QStringLiteral("schedule %1").arg(q.value(0).toString()), why);
        contents->schedules.append(schedule);
    }

    if (!q.exec(QStringLiteral("SELECT worker, id, body FROM personal_schedules")))
        return corrupt(QStringLiteral("personal_schedules"), q.lastError().text());
    while (q.next()) {
        SCHEDULE_DATA schedule;
        QString why;
        if (!StoreRecordCodec::decodeSchedule(q.value(2).toByteArray(), &schedule, &why))
            return corrupt(QStringLiteral("personal schedule %1").arg(q.value(1).toString()), why);
        contents->personalSchedules[q.value(0).toUInt()].append(schedule);
    }

    if (!q.exec(QStringLiteral("SELECT worker, body FROM schedule_history")))
        return corrupt(QStringLiteral("schedule_history"), q.lastError().text());
    while (q.next()) {
        QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> records;
        QString why;
        if (!StoreRecordCodec::decodeScheduleHistory(q.value(1).toByteArray(), &records, &why))
            return corrupt(QStringLiteral("schedule history of %1").arg(q.value(0).toString()), why);
        contents->scheduleHistory.insert(q.value(0).toUInt(), records);
    }

    if (!q.exec(QStringLiteral("SELECT worker, body FROM absences")))
        return corrupt(QStringLiteral("absences"), q.lastError().text());
    while (q.next()) {
        _WORKER_ABSENCE_REASON absences;
        QString why;
        if (!StoreRecordCodec::decodeAbsences(q.value(1).toByteArray(), &absences, &why))
            return corrupt(QStringLiteral("absences of %1").arg(q.value(0).toString()), why);
        contents->absences.insert(q.value(0).toUInt(), absences);
    }
    return true;
}

bool StoreFile::exec(const QString &sql, QString *error)
{
    QSqlQuery q(m_db);
    if (q.exec(sql))
        return true;
    *error = q.lastError().text();
    qDebug() << "store: sql failed" << sql << *error;
    return false;
}

bool StoreFile::run(const QString &sql, const QVariantList &values, QString *error)
{
    QSqlQuery q(m_db);
    // Prepared statements are cached by the driver per connection text, so
    // repeated writes do not re-parse.
    if (!q.prepare(sql)) {
        *error = q.lastError().text();
        return false;
    }
    for (int i = 0; i < values.size(); ++i)
        q.bindValue(i, values.at(i));
    if (q.exec())
        return true;
    *error = q.lastError().text();
    qDebug() << "store: sql failed" << sql << *error;
    return false;
}

bool StoreFile::write(const Batch &batch, QString *error)
{
    QString ignored;
    if (!error)
        error = &ignored;
    if (!isOpen())
        return true; // a store without a file lives in memory only
    if (batch.isEmpty())
        return true;
    if (!m_db.transaction()) {
        *error = tr("Не удалось записать изменения в хранилище: %1").arg(m_db.lastError().text());
        return false;
    }
    for (const auto &step : batch.m_steps) {
        if (!step(*this)) {
            m_db.rollback();
            *error = tr("Не удалось записать изменения в хранилище: %1").arg(m_lastError);
            return false;
        }
    }
    if (!m_db.commit()) {
        const QString why = m_db.lastError().text();
        m_db.rollback();
        *error = tr("Не удалось записать изменения в хранилище: %1").arg(why);
        return false;
    }
    return true;
}

// Each step records its SQL; the file runs them inside write()'s transaction.
void StoreFile::Batch::putObject(const QString &dataname, const ObjectInfo &object)
{
    m_steps.append([dataname, object](StoreFile &f) {
        return f.run(QStringLiteral("INSERT OR REPLACE INTO objects(uid, dataname, body) VALUES (?, ?, ?)"),
                     {object.uid(), dataname, object.serialize()}, &f.m_lastError);
    });
}

void StoreFile::Batch::removeObject(TYPE_ID uid)
{
    m_steps.append([uid](StoreFile &f) {
        return f.run(QStringLiteral("DELETE FROM objects WHERE uid = ?"), {uid}, &f.m_lastError)
            && f.run(QStringLiteral("DELETE FROM blobs WHERE uid = ?"), {uid}, &f.m_lastError);
    });
}

void StoreFile::Batch::putBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes)
{
    m_steps.append([uid, key, bytes](StoreFile &f) {
        return f.run(QStringLiteral("INSERT OR REPLACE INTO blobs(uid, key, body) VALUES (?, ?, ?)"), {uid, key, bytes},
                     &f.m_lastError);
    });
}

void StoreFile::Batch::removeBlob(TYPE_ID uid, const QString &key)
{
    m_steps.append([uid, key](StoreFile &f) {
        return f.run(QStringLiteral("DELETE FROM blobs WHERE uid = ? AND key = ?"), {uid, key}, &f.m_lastError);
    });
}

void StoreFile::Batch::removeBlobs(TYPE_ID uid)
{
    m_steps.append(
        [uid](StoreFile &f) { return f.run(QStringLiteral("DELETE FROM blobs WHERE uid = ?"), {uid}, &f.m_lastError); });
}

void StoreFile::Batch::putSchedule(const SCHEDULE_DATA &schedule)
{
    m_steps.append([schedule](StoreFile &f) {
        return f.run(QStringLiteral("INSERT OR REPLACE INTO schedules(id, body) VALUES (?, ?)"),
                     {schedule.id, StoreRecordCodec::encodeSchedule(schedule)}, &f.m_lastError);
    });
}

void StoreFile::Batch::setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules)
{
    m_steps.append([worker, schedules](StoreFile &f) {
        if (!f.run(QStringLiteral("DELETE FROM personal_schedules WHERE worker = ?"), {worker}, &f.m_lastError))
            return false;
        for (const SCHEDULE_DATA &s : schedules) {
            if (!f.run(QStringLiteral("INSERT OR REPLACE INTO personal_schedules(worker, id, body) VALUES (?, ?, ?)"),
                       {worker, s.id, StoreRecordCodec::encodeSchedule(s)}, &f.m_lastError))
                return false;
        }
        return true;
    });
}

void StoreFile::Batch::setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records)
{
    m_steps.append([worker, records](StoreFile &f) {
        if (records.isEmpty())
            return f.run(QStringLiteral("DELETE FROM schedule_history WHERE worker = ?"), {worker}, &f.m_lastError);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO schedule_history(worker, body) VALUES (?, ?)"),
                     {worker, StoreRecordCodec::encodeScheduleHistory(records)}, &f.m_lastError);
    });
}

void StoreFile::Batch::setAbsences(const _WORKER_ABSENCE_REASON &absences)
{
    m_steps.append([absences](StoreFile &f) {
        if (absences.records.isEmpty())
            return f.run(QStringLiteral("DELETE FROM absences WHERE worker = ?"), {absences.worker}, &f.m_lastError);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO absences(worker, body) VALUES (?, ?)"),
                     {absences.worker, StoreRecordCodec::encodeAbsences(absences)}, &f.m_lastError);
    });
}

} // namespace nivaro
