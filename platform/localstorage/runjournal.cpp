#include "runjournal.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDebug>
#include <QFileInfo>
#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace nivaro {

namespace {

int connectionCounter = 0;

const char *const Schema[] = {
    "CREATE TABLE IF NOT EXISTS runs(id INTEGER PRIMARY KEY AUTOINCREMENT, kind TEXT NOT NULL,"
    " parameters BLOB, uids BLOB, started INTEGER)",
    "CREATE TABLE IF NOT EXISTS run_done(run INTEGER NOT NULL, uid INTEGER NOT NULL, PRIMARY KEY(run, uid))",
};

template<typename T>
QByteArray encode(const T &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << value;
    return bytes;
}

template<typename T>
bool decode(const QByteArray &bytes, T *value)
{
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_15);
    in >> *value;
    return in.status() == QDataStream::Ok && in.atEnd();
}

} // namespace

QList<TYPE_ID> RunJournal::Run::remaining() const
{
    QList<TYPE_ID> rest;
    for (TYPE_ID uid : uids) {
        if (!done.contains(uid))
            rest.append(uid);
    }
    return rest;
}

RunJournal::RunJournal()
    : m_connection(QStringLiteral("nvstudio-runjournal-%1").arg(++connectionCounter))
{
}

RunJournal::~RunJournal()
{
    close();
}

bool RunJournal::open(const QString &storeFile, QString *error)
{
    close();
    auto fail = [this, error](const QString &why) {
        qDebug() << "run journal: cannot open" << m_storeFile << why;
        if (error)
            *error = QCoreApplication::translate("RunJournal", "Не удалось открыть журнал массовых изменений: %1")
                         .arg(why);
        close();
        return false;
    };
    m_storeFile = storeFile;
    // The journal belongs to a store; it never makes a file of its own.
    if (!QFileInfo(storeFile).isFile())
        return fail(QCoreApplication::translate("RunJournal", "нет файла хранилища %1").arg(storeFile));
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(storeFile);
    // The store's own connection writes to the same file; wait for it.
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    if (!db.open())
        return fail(db.lastError().text());
    QSqlQuery pragma(db);
    if (!pragma.exec(QStringLiteral("PRAGMA synchronous=FULL")))
        return fail(pragma.lastError().text());
    for (const char *sql : Schema) {
        if (!write(QString::fromLatin1(sql), {}))
            return fail(db.lastError().text());
    }
    return true;
}

void RunJournal::close()
{
    m_locks.clear(); // unlocks: the runs still open now count as cut short
    if (QSqlDatabase::contains(m_connection)) {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

bool RunJournal::isOpen() const
{
    return QSqlDatabase::contains(m_connection) && QSqlDatabase::database(m_connection, false).isOpen();
}

QString RunJournal::lockFileName(qint64 run) const
{
    return m_storeFile + QStringLiteral(".run-%1.lock").arg(run);
}

qint64 RunJournal::beginRun(const QString &kind, const QVariantMap &parameters, const QList<TYPE_ID> &uids,
                            QString *error)
{
    if (!isOpen()) {
        if (error)
            *error = QCoreApplication::translate("RunJournal", "Журнал массовых изменений не открыт");
        return 0;
    }
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    // The lock is taken before the row is visible to anyone: another client
    // looking for cut-short runs must never see ours without its lock.
    qint64 id = 0;
    bool ok = db.transaction();
    QSqlQuery q(db);
    ok = ok && q.prepare(QStringLiteral("INSERT INTO runs(kind, parameters, uids, started) VALUES (?, ?, ?, ?)"));
    if (ok) {
        q.addBindValue(kind);
        q.addBindValue(encode(parameters));
        q.addBindValue(encode(uids));
        q.addBindValue(QDateTime::currentMSecsSinceEpoch());
        ok = q.exec();
        id = q.lastInsertId().toLongLong();
    }
    ok = ok && id > 0 && lock(id);
    if (ok && db.commit())
        return id;
    qDebug() << "run journal: cannot begin" << kind << db.lastError().text();
    db.rollback();
    m_locks.erase(id);
    if (error)
        *error = QCoreApplication::translate("RunJournal", "Не удалось записать в журнал массовых изменений: %1")
                     .arg(db.lastError().text());
    return 0;
}

bool RunJournal::markDone(qint64 run, TYPE_ID uid)
{
    if (!holds(run))
        return false;
    return write(QStringLiteral("INSERT OR IGNORE INTO run_done(run, uid) VALUES (?, ?)"), {run, uid});
}

bool RunJournal::endRun(qint64 run)
{
    if (!holds(run))
        return false;
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    QSqlQuery q(db);
    const bool ok = db.transaction() && q.exec(QStringLiteral("DELETE FROM run_done WHERE run = %1").arg(run))
        && q.exec(QStringLiteral("DELETE FROM runs WHERE id = %1").arg(run)) && db.commit();
    if (!ok) {
        qDebug() << "run journal: cannot end" << run << db.lastError().text();
        db.rollback();
        return false;
    }
    const auto it = m_locks.find(run);
    it->second->unlock(); // removes the lock file
    m_locks.erase(it);
    return true;
}

QList<RunJournal::Run> RunJournal::interruptedRuns(const QString &kind)
{
    QList<Run> runs;
    if (!isOpen())
        return runs;
    // Runs of other kinds stay free for the clients that can repeat them.
    QSqlQuery q(QSqlDatabase::database(m_connection, false));
    q.prepare(QStringLiteral("SELECT id FROM runs WHERE kind = ? ORDER BY id"));
    q.addBindValue(kind);
    if (!q.exec()) { // also when the statement could not be prepared
        qDebug() << "run journal: cannot read" << q.lastError().text();
        return runs;
    }
    QList<qint64> open;
    while (q.next())
        open.append(q.value(0).toLongLong());
    for (qint64 id : qAsConst(open)) {
        // Ours are running; a lock we cannot take belongs to a live client.
        if (holds(id) || !lock(id))
            continue;
        Run run;
        run.id = id;
        if (readRun(&run))
            runs.append(run);
    }
    return runs;
}

bool RunJournal::readRun(Run *run)
{
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT kind, parameters, uids, started FROM runs WHERE id = %1").arg(run->id))
        || !q.next()) {
        qDebug() << "run journal: run vanished" << run->id << q.lastError().text();
        return false;
    }
    run->kind = q.value(0).toString();
    run->started = QDateTime::fromMSecsSinceEpoch(q.value(3).toLongLong());
    if (!decode(q.value(1).toByteArray(), &run->parameters) || !decode(q.value(2).toByteArray(), &run->uids)) {
        // Nothing can be repeated from it; it stays for someone to look at.
        qDebug() << "run journal: unreadable run" << run->id;
        return false;
    }
    if (!q.exec(QStringLiteral("SELECT uid FROM run_done WHERE run = %1").arg(run->id)))
        return false;
    while (q.next())
        run->done.insert(q.value(0).toUInt());
    return true;
}

bool RunJournal::holds(qint64 run) const
{
    return m_locks.count(run) != 0;
}

bool RunJournal::lock(qint64 run)
{
    auto lockFile = std::make_unique<QLockFile>(lockFileName(run));
    // Runs take as long as they take: only a dead owner frees a lock.
    lockFile->setStaleLockTime(0);
    if (!lockFile->tryLock(0))
        return false;
    m_locks[run] = std::move(lockFile);
    return true;
}

bool RunJournal::write(const QString &sql, const QVariantList &values)
{
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    QSqlQuery q(db);
    bool ok = db.transaction() && q.prepare(sql);
    for (const QVariant &value : values)
        q.addBindValue(value);
    if (ok && q.exec() && db.commit())
        return true;
    qDebug() << "run journal: write failed" << sql << q.lastError().text() << db.lastError().text();
    db.rollback();
    return false;
}

} // namespace nivaro
