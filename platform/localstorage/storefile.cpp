#include "storefile.h"

#include "storerecordcodec.h"

#include <datanames.h>
#include <dbparams.h>
#include <objecttypes.h>
#include <stringpool.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

#include <iterator>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace nivaro {

const QString StoreFile::Application = QStringLiteral("nvstudio-store");

namespace {

int connectionCounter = 0;

// Kinds of items the change log names.
const QString ObjectItem = QStringLiteral("object");
const QString BlobItem = QStringLiteral("blobs");
const QString ScheduleItem = QStringLiteral("schedule");
const QString CalendarItem = QStringLiteral("calendar");
const QString TemplatesItem = QStringLiteral("templates");

// The log keeps this many entries; a client further behind reloads all.
constexpr qint64 KeptChanges = 8192;
constexpr qint64 PruneEvery = 1024;

const char *const Schema[] = {
    "CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE objects(uid INTEGER PRIMARY KEY, dataname TEXT NOT NULL, body BLOB NOT NULL)",
    "CREATE TABLE blobs(uid INTEGER NOT NULL, key TEXT NOT NULL, body BLOB NOT NULL, PRIMARY KEY(uid, key))",
    "CREATE TABLE schedules(id INTEGER PRIMARY KEY, body BLOB NOT NULL)",
    "CREATE TABLE personal_schedules(worker INTEGER NOT NULL, id INTEGER NOT NULL, body BLOB NOT NULL, PRIMARY KEY(worker, id))",
    "CREATE TABLE schedule_history(worker INTEGER PRIMARY KEY, body BLOB NOT NULL)",
    "CREATE TABLE absences(worker INTEGER PRIMARY KEY, body BLOB NOT NULL)",
};

// What version 2 added to version 1: the change log and how far back it reaches.
const char *const LogSchema[] = {
    "CREATE TABLE changes(seq INTEGER PRIMARY KEY AUTOINCREMENT, what TEXT NOT NULL, id INTEGER NOT NULL)",
    "INSERT OR REPLACE INTO meta(key, value) VALUES ('changes_horizon', '0')",
};

// What version 3 added: employees' biometric templates, one row per worker.
const char *const TemplateSchema[] = {
    "CREATE TABLE templates(worker INTEGER PRIMARY KEY, body BLOB NOT NULL)",
};

// What version 4 added: card numbers beside the cards, so that a new card's
// number is checked against the others without reading every card.
const char *const CardNumberSchema[] = {
    "CREATE TABLE IF NOT EXISTS card_numbers(uid INTEGER PRIMARY KEY, number TEXT NOT NULL)",
    "CREATE INDEX IF NOT EXISTS card_numbers_by_number ON card_numbers(number)",
    "DELETE FROM card_numbers",
};

// What version 5 added: each firm's, department's and employee's parent,
// so that a delete can ask inside its own write whether anyone still hangs
// from a department without reading the whole organisation.
const char *const ParentSchema[] = {
    "CREATE TABLE IF NOT EXISTS object_parents(uid INTEGER PRIMARY KEY, parent INTEGER NOT NULL)",
    "CREATE INDEX IF NOT EXISTS object_parents_by_parent ON object_parents(parent)",
    "DELETE FROM object_parents",
};

bool holdsPlace(const QString &dataname)
{
    return dataname == ORGSTRUCTURE_DATANAME || dataname == SUBJECT_DATANAME || dataname == SUBJECT_FIRED_DATANAME;
}

// access() asks about the real user; the effective one is who writes.
bool canWrite(const QString &path)
{
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

QString folderOf(const QString &fileName)
{
    return QFileInfo(fileName).absolutePath();
}

} // namespace

QString StoreFile::failureText(const QSqlError &error)
{
    qDebug() << "store: sql failed" << error.nativeErrorCode() << error.text();
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case 13: // SQLITE_FULL
        return tr("Недостаточно места на диске: изменения не записаны");
    case 8: // SQLITE_READONLY
        return tr("Файл хранилища доступен только для чтения: изменения не записаны");
    case 10: // SQLITE_IOERR
        return tr("Ошибка ввода-вывода при записи в файл хранилища: изменения не записаны");
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return tr("Хранилище занято другим клиентом: изменения не записаны, повторите попытку");
    case 14: // SQLITE_CANTOPEN
        return tr("Не удалось открыть файл хранилища: изменения не записаны");
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return tr("Файл хранилища поврежден: изменения не записаны");
    default:
        return tr("Не удалось записать изменения в хранилище");
    }
}

// Why a store could not be read, when the cause lies around the file (its
// disk, its folder, another client) rather than in it; empty otherwise.
QString StoreFile::readFailureText(const QSqlError &error, const QString &fileName)
{
    // SQLite reports a full disk met while setting up its shared memory as
    // an I/O error; the free space tells the two apart.
    constexpr qint64 LittleRoom = 1 << 20;
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case 13: // SQLITE_FULL
        return tr("Недостаточно места на диске: хранилище не открыть");
    case 10: // SQLITE_IOERR
        if (QStorageInfo(folderOf(fileName)).bytesAvailable() < LittleRoom)
            return tr("Недостаточно места на диске: хранилище не открыть");
        return tr("Ошибка ввода-вывода при чтении файла хранилища");
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return tr("Хранилище занято другим клиентом, повторите попытку");
    case 8:  // SQLITE_READONLY
    case 14: // SQLITE_CANTOPEN
        return tr("Нет доступа к файлу хранилища");
    default:
        return QString();
    }
}

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
    m_readOnlyReason.clear();
    m_version = 0;
    m_hasLog = false;
    m_immutable = false;
    m_seenSeq = 0;
    m_dataVersion = 0;
}

// The first bytes, read without SQLite: anything else is refused as it stands.
bool StoreFile::checkHeader(const QString &fileName, QString *error)
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
    return true;
}

// Reads the meta table through db, which must not write: a store of ours
// in a format this client knows, or a reason.
bool StoreFile::checkMeta(QSqlDatabase &db, QString *error)
{
    QString application;
    int version = -1;
    QSqlQuery q(db);
    const bool readable = q.exec(QStringLiteral("SELECT key, value FROM meta"));
    while (readable && q.next()) {
        if (q.value(0).toString() == QLatin1String("application"))
            application = q.value(1).toString();
        else if (q.value(0).toString() == QLatin1String("version"))
            version = q.value(1).toInt();
    }
    if (!readable) {
        qDebug() << "store: no meta table" << q.lastError().nativeErrorCode() << q.lastError().text();
        // A file we could not read is not therefore foreign: say what kept us.
        const QString why = readFailureText(q.lastError(), db.databaseName());
        if (!why.isEmpty()) {
            *error = why;
            return false;
        }
    }
    if (!readable || application != Application) {
        *error = tr("Это не файл хранилища Nivaro-Studio");
        qDebug() << "store: foreign database" << db.databaseName() << application;
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
        qDebug() << "store: unknown format version" << version;
        return false;
    }
    m_version = version;
    return true;
}

bool StoreFile::openConnection(const QString &fileName, bool readOnly, bool immutable, QString *error)
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    // Another client's write holds the lock for milliseconds; a lock held
    // longer means trouble the operator should hear of within a second.
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000");
    if (readOnly)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    if (immutable) {
        // A folder we cannot write cannot hold the shared-memory file WAL
        // readers need; an immutable file needs none.
        options += QStringLiteral(";QSQLITE_OPEN_URI");
        m_db.setDatabaseName(QUrl::fromLocalFile(fileName).toString(QUrl::FullyEncoded)
                             + QStringLiteral("?immutable=1"));
    } else {
        m_db.setDatabaseName(fileName);
    }
    m_db.setConnectOptions(options);
    if (m_db.open())
        return true;
    *error = tr("Не удалось открыть файл: %1").arg(m_db.lastError().text());
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
    return false;
}

bool StoreFile::openReadOnly(const QString &fileName, QString *error)
{
    if (!openConnection(fileName, true, false, error))
        return false;
    QString why;
    if (checkMeta(m_db, &why))
        return true;
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connection);
    // A write-ahead log would be ignored by an immutable reader and its
    // commits lost from view: only a cleanly closed store is read so.
    if (QFileInfo::exists(fileName + QStringLiteral("-wal"))) {
        qDebug() << "store: read-only open failed beside a write-ahead log" << why;
        *error = tr("Нет прав на запись в папку хранилища, а другой клиент держит его открытым: "
                    "прочитать его можно будет, когда он закроет хранилище");
        return false;
    }
    qDebug() << "store: reading as an immutable file" << fileName;
    m_immutable = true;
    return openConnection(fileName, true, true, error) && checkMeta(m_db, error);
}

bool StoreFile::openWritable(const QString &fileName, bool fresh, QString *error)
{
    if (!fresh) {
        // Checked through a read-only connection before anything writes.
        const QString probeName = m_connection + QStringLiteral("-probe");
        bool ours = false;
        {
            QSqlDatabase probe = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), probeName);
            probe.setDatabaseName(fileName);
            probe.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
            ours = probe.open() && checkMeta(probe, error);
            if (!ours && error->isEmpty())
                *error = tr("Это не файл хранилища Nivaro-Studio");
            probe.close();
        }
        QSqlDatabase::removeDatabase(probeName);
        if (!ours)
            return false;
    }
    if (!openConnection(fileName, false, false, error))
        return false;
    // WAL lets a commit append instead of rewriting pages, and readers of
    // other clients go on while one writes; FULL makes every commit reach
    // the disk before the store reports it done.
    return exec(QStringLiteral("PRAGMA journal_mode=WAL"), error) && exec(QStringLiteral("PRAGMA synchronous=FULL"), error)
        && (fresh ? createSchema(error) : migrate(error));
}

bool StoreFile::open(const QString &fileName, Contents *contents, QString *error)
{
    close();
    const bool exists = QFileInfo::exists(fileName);
    if (exists && !checkHeader(fileName, error))
        return false;
    const bool fresh = !exists || QFileInfo(fileName).size() == 0;
    if (!canWrite(folderOf(fileName)) && !exists) {
        *error = tr("Нет прав на запись в папку хранилища");
        return false;
    }
    if (exists && !canWrite(fileName))
        m_readOnlyReason = tr("Нет прав на запись в файл хранилища");
    else if (!canWrite(folderOf(fileName)))
        m_readOnlyReason = tr("Нет прав на запись в папку хранилища");
    if (isReadOnly() && fresh) {
        *error = m_readOnlyReason;
        m_readOnlyReason.clear();
        return false;
    }

    const bool opened = isReadOnly() ? openReadOnly(fileName, error) : openWritable(fileName, fresh, error);
    m_fileName = fileName;
    m_hasLog = m_version >= 2;
    if (!opened || !load(contents, error)) {
        close();
        *contents = Contents();
        return false;
    }
    if (isReadOnly())
        qDebug() << "store: read only" << fileName << m_readOnlyReason;
    return true;
}

// All of work or nothing, under the write lock.
bool StoreFile::transact(const std::function<bool()> &work, QString *error)
{
    // IMMEDIATE takes the write lock first: two clients that both began by
    // reading could otherwise deadlock when each tries to upgrade.
    if (!exec(QStringLiteral("BEGIN IMMEDIATE"), error))
        return false;
    if (work() && exec(QStringLiteral("COMMIT"), error))
        return true;
    // SQLite may have rolled back already (a full disk does): no need to
    // report that this finds nothing to undo.
    QSqlQuery(m_db).exec(QStringLiteral("ROLLBACK"));
    return false;
}

bool StoreFile::runAll(const char *const *statements, std::size_t count, QString *error)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!exec(QString::fromLatin1(statements[i]), error))
            return false;
    }
    return true;
}

bool StoreFile::createSchema(QString *error)
{
    const bool ok = transact(
        [&] {
            return runAll(Schema, std::size(Schema), error) && runAll(LogSchema, std::size(LogSchema), error)
                && runAll(TemplateSchema, std::size(TemplateSchema), error)
                && runAll(CardNumberSchema, std::size(CardNumberSchema), error)
                && runAll(ParentSchema, std::size(ParentSchema), error)
                && run(QStringLiteral("INSERT INTO meta(key, value) VALUES (?, ?)"), {QStringLiteral("application"), Application}, error)
                && run(QStringLiteral("INSERT INTO meta(key, value) VALUES (?, ?)"), {QStringLiteral("version"), FormatVersion}, error);
        },
        error);
    if (ok)
        m_version = FormatVersion;
    return ok;
}

// A version 1 file gains the change log, a version 2 file the templates, a
// version 3 file the card numbers, a version 4 file the parents; all or
// nothing, so an older client's file is never left half converted.
bool StoreFile::migrate(QString *error)
{
    if (m_version >= FormatVersion)
        return true;
    const bool ok = transact(
        [&] {
            return (m_version >= 2 || runAll(LogSchema, std::size(LogSchema), error))
                && (m_version >= 3 || runAll(TemplateSchema, std::size(TemplateSchema), error))
                && (m_version >= 4
                    || (runAll(CardNumberSchema, std::size(CardNumberSchema), error) && indexCardNumbers(error)))
                && runAll(ParentSchema, std::size(ParentSchema), error) && indexParents(error)
                && run(QStringLiteral("UPDATE meta SET value = ? WHERE key = 'version'"), {FormatVersion}, error);
        },
        error);
    if (!ok)
        return false;
    qDebug() << "store: migrated" << m_version << "->" << FormatVersion;
    m_version = FormatVersion;
    return true;
}

bool StoreFile::indexCardNumbers(QString *error)
{
    QList<ObjectInfo> cards;
    StringPool pool;
    const bool read = select(QStringLiteral("SELECT body FROM objects WHERE dataname = ?"), {CARD_DATANAME},
                             [&](const QSqlQuery &q) {
                                 ObjectInfo card;
                                 QString why;
                                 // A card that no longer decodes is reported when the store loads.
                                 if (StoreRecordCodec::decodeObject(q.value(0).toByteArray(), &pool, &card, &why))
                                     cards.append(card);
                                 return true;
                             },
                             error);
    if (!read)
        return false;
    for (const ObjectInfo &card : qAsConst(cards)) {
        if (!indexCard(CARD_DATANAME, card, error))
            return false;
    }
    return true;
}

bool StoreFile::indexParents(QString *error)
{
    QList<QPair<QString, ObjectInfo>> placed;
    StringPool pool;
    const bool read = select(QStringLiteral("SELECT dataname, body FROM objects WHERE dataname IN (?, ?, ?)"),
                             {ORGSTRUCTURE_DATANAME, SUBJECT_DATANAME, SUBJECT_FIRED_DATANAME},
                             [&](const QSqlQuery &q) {
                                 ObjectInfo object;
                                 QString why;
                                 // A record that no longer decodes is reported when the store loads.
                                 if (StoreRecordCodec::decodeObject(q.value(1).toByteArray(), &pool, &object, &why))
                                     placed.append({q.value(0).toString(), object});
                                 return true;
                             },
                             error);
    if (!read)
        return false;
    for (const auto &object : qAsConst(placed)) {
        if (!indexPlace(object.first, object.second, error))
            return false;
    }
    return true;
}

// Keeps an object's row of object_parents as the object now is; one
// statement either way, since bulk writes of a whole organisation pass here.
bool StoreFile::indexPlace(const QString &dataname, const ObjectInfo &object, QString *error)
{
    if (holdsPlace(dataname) && object.parent() != 0)
        return run(QStringLiteral("INSERT OR REPLACE INTO object_parents(uid, parent) VALUES (?, ?)"),
                   {object.uid(), object.parent()}, error);
    return run(QStringLiteral("DELETE FROM object_parents WHERE uid = ?"), {object.uid()}, error);
}

bool StoreFile::indexObject(const QString &dataname, const ObjectInfo &object, QString *error)
{
    return (dataname != CARD_DATANAME || indexCard(dataname, object, error)) && indexPlace(dataname, object, error);
}

bool StoreFile::hasMembers(TYPE_ID parent, bool *members, QString *error)
{
    *members = false;
    return select(QStringLiteral("SELECT 1 FROM object_parents WHERE parent = ? LIMIT 1"), {parent},
                  [&](const QSqlQuery &) {
                      *members = true;
                      return true;
                  },
                  error);
}

// Keeps a card's row of card_numbers as the card now is.
bool StoreFile::indexCard(const QString &dataname, const ObjectInfo &object, QString *error)
{
    if (!run(QStringLiteral("DELETE FROM card_numbers WHERE uid = ?"), {object.uid()}, error))
        return false;
    const QString number = cardNumberKey(object.parameter(db::card::NUMBER));
    if (dataname != CARD_DATANAME || number.isEmpty())
        return true;
    return run(QStringLiteral("INSERT INTO card_numbers(uid, number) VALUES (?, ?)"), {object.uid(), number}, error);
}

QString StoreFile::cardNumberKey(const QString &number)
{
    const QString trimmed = number.trimmed();
    int zeros = 0;
    while (zeros + 1 < trimmed.size() && trimmed.at(zeros) == QLatin1Char('0'))
        ++zeros;
    for (const QChar c : trimmed) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return trimmed;
    }
    return trimmed.mid(zeros);
}

bool StoreFile::readObject(TYPE_ID uid, ObjectInfo *object, bool *found, QString *error)
{
    Contents stored;
    if (!loadObjects(uid, &stored, error))
        return false;
    *found = !stored.objects.isEmpty();
    *object = *found ? stored.objects.cbegin()->first() : ObjectInfo();
    return true;
}

bool StoreFile::cardWithNumber(const QString &number, TYPE_ID *card, QString *error)
{
    *card = 0;
    return select(QStringLiteral("SELECT uid FROM card_numbers WHERE number = ? ORDER BY uid LIMIT 1"),
                  {cardNumberKey(number)},
                  [&](const QSqlQuery &q) {
                      *card = q.value(0).toUInt();
                      return true;
                  },
                  error);
}

// All of the file in one read transaction, so a client writing meanwhile
// is seen either wholly or not at all; the log position goes with it.
bool StoreFile::load(Contents *contents, QString *error)
{
    bool ok = true;
    m_dataVersion = scalar(QStringLiteral("PRAGMA data_version"), &ok);
    return ok && snapshot(
               [&] {
                   if (m_hasLog)
                       m_seenSeq = scalar(QStringLiteral("SELECT ifnull(max(seq), 0) FROM changes"), &ok);
                   return ok && loadAll(contents, error);
               },
               error);
}

// Work that reads several tables sees them as of one moment, whatever
// other clients commit meanwhile.
bool StoreFile::snapshot(const std::function<bool()> &work, QString *error)
{
    if (!exec(QStringLiteral("BEGIN"), error))
        return false;
    const bool ok = work();
    QSqlQuery(m_db).exec(QStringLiteral("COMMIT")); // ends a read: nothing to lose
    return ok;
}

namespace {

bool corruptRow(const QString &what, const QString &why, QString *error)
{
    *error = StoreFile::tr("Файл хранилища поврежден (%1): %2").arg(what, why);
    qDebug() << "store: corrupt row" << what << why;
    return false;
}

// The statement for all rows of a table, or for those of one item.
QString rowsOf(const char *sql, const char *column, const QVariant &id)
{
    const QString all = QString::fromLatin1(sql);
    return id.isNull() ? all : all + QStringLiteral(" WHERE %1 = ?").arg(QLatin1String(column));
}

QVariantList bound(const QVariant &id)
{
    return id.isNull() ? QVariantList() : QVariantList{id};
}

} // namespace

bool StoreFile::loadObjects(const QVariant &uid, Contents *contents, QString *error)
{
    StringPool pool;
    QHash<QString, QString> datanames; // one shared text per data name
    return select(rowsOf("SELECT uid, dataname, body FROM objects", "uid", uid), bound(uid),
                  [&](const QSqlQuery &q) {
                      ObjectInfo object;
                      QString why;
                      const QString what = QStringLiteral("object %1").arg(q.value(0).toString());
                      if (!StoreRecordCodec::decodeObject(q.value(2).toByteArray(), &pool, &object, &why))
                          return corruptRow(what, why, error);
                      if (object.uid() != q.value(0).toUInt())
                          return corruptRow(what, QStringLiteral("uid mismatch"), error);
                      const QString dataname = q.value(1).toString();
                      auto it = datanames.find(dataname);
                      if (it == datanames.end())
                          it = datanames.insert(dataname, dataname);
                      contents->objects[*it].append(object);
                      return true;
                  },
                  error);
}

bool StoreFile::loadBlobs(const QVariant &uid, Contents *contents, QString *error)
{
    return select(rowsOf("SELECT uid, key, body FROM blobs", "uid", uid), bound(uid),
                  [&](const QSqlQuery &q) {
                      contents->blobs[q.value(0).toUInt()].insert(q.value(1).toString(), q.value(2).toByteArray());
                      return true;
                  },
                  error);
}

bool StoreFile::loadSchedules(const QVariant &id, Contents *contents, QString *error)
{
    return select(rowsOf("SELECT id, body FROM schedules", "id", id), bound(id),
                  [&](const QSqlQuery &q) {
                      SCHEDULE_DATA s;
                      QString why;
                      if (!StoreRecordCodec::decodeSchedule(q.value(1).toByteArray(), &s, &why))
                          return corruptRow(QStringLiteral("schedule %1").arg(q.value(0).toString()), why, error);
                      contents->schedules.append(s);
                      return true;
                  },
                  error);
}

bool StoreFile::loadCalendars(const QVariant &worker, Contents *contents, QString *error)
{
    return select(rowsOf("SELECT worker, id, body FROM personal_schedules", "worker", worker), bound(worker),
                  [&](const QSqlQuery &q) {
                      SCHEDULE_DATA s;
                      QString why;
                      if (!StoreRecordCodec::decodeSchedule(q.value(2).toByteArray(), &s, &why))
                          return corruptRow(QStringLiteral("personal schedule %1").arg(q.value(1).toString()), why, error);
                      contents->personalSchedules[q.value(0).toUInt()].append(s);
                      return true;
                  },
                  error)
        && select(rowsOf("SELECT worker, body FROM schedule_history", "worker", worker), bound(worker),
                  [&](const QSqlQuery &q) {
                      QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> records;
                      QString why;
                      if (!StoreRecordCodec::decodeScheduleHistory(q.value(1).toByteArray(), &records, &why))
                          return corruptRow(QStringLiteral("schedule history of %1").arg(q.value(0).toString()), why, error);
                      contents->scheduleHistory.insert(q.value(0).toUInt(), records);
                      return true;
                  },
                  error)
        && select(rowsOf("SELECT worker, body FROM absences", "worker", worker), bound(worker),
                  [&](const QSqlQuery &q) {
                      _WORKER_ABSENCE_REASON absences;
                      QString why;
                      if (!StoreRecordCodec::decodeAbsences(q.value(1).toByteArray(), &absences, &why))
                          return corruptRow(QStringLiteral("absences of %1").arg(q.value(0).toString()), why, error);
                      contents->absences.insert(q.value(0).toUInt(), absences);
                      return true;
                  },
                  error);
}

bool StoreFile::loadTemplates(const QVariant &worker, Contents *contents, QString *error)
{
    // A file of an older format that could not be migrated (read only) has none.
    if (m_version < 3)
        return true;
    return select(rowsOf("SELECT worker, body FROM templates", "worker", worker), bound(worker),
                  [&](const QSqlQuery &q) {
                      QList<_TEMPLATE_DATA> templates;
                      QString why;
                      if (!StoreRecordCodec::decodeTemplates(q.value(1).toByteArray(), &templates, &why))
                          return corruptRow(QStringLiteral("templates of %1").arg(q.value(0).toString()), why, error);
                      contents->templates.insert(q.value(0).toUInt(), templates);
                      return true;
                  },
                  error);
}

bool StoreFile::loadAll(Contents *contents, QString *error)
{
    return loadObjects(QVariant(), contents, error) && loadBlobs(QVariant(), contents, error)
        && loadSchedules(QVariant(), contents, error) && loadCalendars(QVariant(), contents, error)
        && loadTemplates(QVariant(), contents, error);
}

bool StoreFile::select(const QString &sql, const QVariantList &values, const std::function<bool(const QSqlQuery &)> &row,
                       QString *error)
{
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    bool ok = q.prepare(sql);
    for (int i = 0; ok && i < values.size(); ++i)
        q.bindValue(i, values.at(i));
    if (!ok || !q.exec()) {
        *error = tr("Файл хранилища поврежден (%1): %2").arg(sql, q.lastError().text());
        qDebug() << "store: read failed" << sql << q.lastError().text();
        return false;
    }
    while (q.next()) {
        if (!row(q))
            return false;
    }
    return true;
}

bool StoreFile::exec(const QString &sql, QString *error)
{
    QSqlQuery q(m_db);
    if (q.exec(sql))
        return true;
    qDebug() << "store: statement failed" << sql;
    *error = failureText(q.lastError());
    return false;
}

bool StoreFile::run(const QString &sql, const QVariantList &values, QString *error)
{
    QSqlQuery q(m_db);
    bool ok = q.prepare(sql);
    for (int i = 0; ok && i < values.size(); ++i)
        q.bindValue(i, values.at(i));
    if (ok && q.exec())
        return true;
    qDebug() << "store: statement failed" << sql;
    *error = failureText(q.lastError());
    return false;
}

qint64 StoreFile::scalar(const QString &sql, bool *ok, const QVariantList &values)
{
    QSqlQuery q(m_db);
    bool prepared = q.prepare(sql);
    for (int i = 0; prepared && i < values.size(); ++i)
        q.bindValue(i, values.at(i));
    if (prepared && q.exec() && q.next())
        return q.value(0).toLongLong();
    qDebug() << "store: query failed" << sql << q.lastError().text();
    *ok = false;
    return 0;
}

// Files what this transaction touched, once each, and now and then drops
// the oldest entries, recording how far back the log still reaches.
bool StoreFile::logTouched(QString *error)
{
    if (!m_hasLog || m_touched.isEmpty())
        return true;
    bool ok = true;
    const qint64 before = scalar(QStringLiteral("SELECT ifnull(max(seq), 0) FROM changes"), &ok);
    QSqlQuery insert(m_db);
    ok = ok && insert.prepare(QStringLiteral("INSERT INTO changes(what, id) VALUES (?, ?)"));
    for (auto it = m_touched.cbegin(); ok && it != m_touched.cend(); ++it) {
        insert.bindValue(0, it->first);
        insert.bindValue(1, it->second);
        ok = insert.exec();
    }
    if (!ok) {
        *error = failureText(insert.lastError());
        return false;
    }
    const qint64 after = insert.lastInsertId().toLongLong();
    insert.finish();
    if (before / PruneEvery != after / PruneEvery && after > KeptChanges) {
        const qint64 horizon = after - KeptChanges;
        if (!run(QStringLiteral("DELETE FROM changes WHERE seq <= ?"), {horizon}, error)
            || !run(QStringLiteral("UPDATE meta SET value = ? WHERE key = 'changes_horizon'"), {horizon}, error))
            return false;
    }
    // Nobody else wrote since we last looked: our own entries need no reading.
    if (before == m_seenSeq)
        m_pendingSeq = after;
    return true;
}

bool StoreFile::write(const Batch &batch, QString *error)
{
    QString ignored;
    if (!error)
        error = &ignored;
    if (isReadOnly()) {
        *error = m_readOnlyReason;
        return false;
    }
    if (!isOpen() || batch.isEmpty())
        return true; // a store without a file lives in memory only
    m_touched.clear();
    m_pendingSeq = 0;
    const bool ok = transact(
        [&] {
            for (const auto &step : batch.m_steps) {
                if (!step(*this)) {
                    *error = m_failure;
                    return false;
                }
            }
            return logTouched(error);
        },
        error);
    if (ok && m_pendingSeq)
        m_seenSeq = m_pendingSeq;
    return ok;
}

bool StoreFile::readChanges(Changes *changes, QString *error)
{
    if (!canWatch())
        return true;
    bool ok = true;
    const qint64 version = scalar(QStringLiteral("PRAGMA data_version"), &ok);
    if (!ok || version == m_dataVersion)
        return ok;
    qint64 last = m_seenSeq;
    ok = snapshot(
        [&] {
            const qint64 horizon = scalar(QStringLiteral("SELECT value FROM meta WHERE key = 'changes_horizon'"), &ok);
            if (ok && horizon > m_seenSeq) {
                qDebug() << "store: change log passed us, reloading" << m_seenSeq << horizon;
                changes->everything = true;
                last = scalar(QStringLiteral("SELECT ifnull(max(seq), 0) FROM changes"), &ok);
                return ok && loadAll(&changes->current, error);
            }
            return ok
                && select(QStringLiteral("SELECT seq, what, id FROM changes WHERE seq > ? ORDER BY seq"), {m_seenSeq},
                          [&](const QSqlQuery &q) {
                              last = q.value(0).toLongLong();
                              return touch(q.value(1).toString(), q.value(2).toLongLong(), changes, error);
                          },
                          error);
        },
        error);
    // A failed look is repeated at the next tick rather than skipped.
    if (ok) {
        m_dataVersion = version;
        m_seenSeq = last;
    }
    return ok;
}

// One log entry: the item's current rows, read once however often it changed.
bool StoreFile::touch(const QString &what, qint64 id, Changes *changes, QString *error)
{
    auto first = [](auto &set, auto key) {
        if (set.contains(key))
            return false;
        set.insert(key);
        return true;
    };
    if (what == ObjectItem)
        return !first(changes->objects, TYPE_ID(id)) || loadObjects(id, &changes->current, error);
    if (what == BlobItem)
        return !first(changes->blobs, TYPE_ID(id)) || loadBlobs(id, &changes->current, error);
    if (what == ScheduleItem)
        return !first(changes->schedules, int(id)) || loadSchedules(id, &changes->current, error);
    if (what == CalendarItem)
        return !first(changes->calendars, TYPE_ID(id)) || loadCalendars(id, &changes->current, error);
    if (what == TemplatesItem)
        return !first(changes->templates, TYPE_ID(id)) || loadTemplates(id, &changes->current, error);
    qDebug() << "store: unknown change kind" << what << id;
    return true;
}

// Each step records its SQL and what it touched; the file runs them inside
// write()'s transaction.
void StoreFile::Batch::putObject(const QString &dataname, const ObjectInfo &object)
{
    m_steps.append([dataname, object](StoreFile &f) {
        f.note(ObjectItem, object.uid());
        return f.run(QStringLiteral("INSERT OR REPLACE INTO objects(uid, dataname, body) VALUES (?, ?, ?)"),
                     {object.uid(), dataname, object.serialize()}, &f.m_failure)
            && f.indexObject(dataname, object, &f.m_failure);
    });
}

void StoreFile::Batch::createObject(const QString &dataname, const ObjectInfo &object,
                                    const QHash<QString, QByteArray> &blobs, const std::shared_ptr<TYPE_ID> &uid)
{
    m_steps.append([dataname, object, blobs, uid](StoreFile &f) {
        // Past every uid in the file and every uid handed out before, so a
        // uid whose object was deleted never names another one: a stale
        // task or view would otherwise change the wrong object.
        bool ok = true;
        const qint64 next = f.scalar(QStringLiteral("SELECT max(ifnull((SELECT max(uid) FROM objects), 0) + 1, "
                                                    "ifnull((SELECT CAST(value AS INTEGER) FROM meta WHERE key = 'next_uid'), 0), ?)"),
                                     &ok, {qint64(SUBJECT_ROOT_UID) + 1});
        if (!ok) {
            f.m_failure = tr("Не удалось записать изменения в хранилище");
            return false;
        }
        if (next > qint64(std::numeric_limits<TYPE_ID>::max())) {
            f.m_failure = tr("В хранилище не осталось свободных идентификаторов");
            qDebug() << "store: uids exhausted" << next;
            return false;
        }
        ObjectInfo created = object;
        created.setUid(TYPE_ID(next));
        f.note(ObjectItem, created.uid());
        if (!f.run(QStringLiteral("INSERT INTO objects(uid, dataname, body) VALUES (?, ?, ?)"),
                   {created.uid(), dataname, created.serialize()}, &f.m_failure)
            || !f.run(QStringLiteral("INSERT OR REPLACE INTO meta(key, value) VALUES ('next_uid', ?)"), {next + 1},
                      &f.m_failure)
            || !f.indexObject(dataname, created, &f.m_failure))
            return false;
        for (auto it = blobs.cbegin(); it != blobs.cend(); ++it) {
            if (it.value().isEmpty())
                continue;
            f.note(BlobItem, created.uid());
            if (!f.run(QStringLiteral("INSERT OR REPLACE INTO blobs(uid, key, body) VALUES (?, ?, ?)"),
                       {created.uid(), it.key(), it.value()}, &f.m_failure))
                return false;
        }
        *uid = created.uid();
        return true;
    });
}

void StoreFile::Batch::check(const Check &check)
{
    m_steps.append([check](StoreFile &f) {
        QString refusal;
        if (check(f, &refusal))
            return true;
        f.m_failure = refusal;
        return false;
    });
}

void StoreFile::Batch::mergeObject(TYPE_ID uid, const Merge &merge)
{
    m_steps.append([uid, merge](StoreFile &f) {
        Contents stored;
        if (!f.loadObjects(uid, &stored, &f.m_failure))
            return false;
        if (stored.objects.isEmpty()) {
            f.m_failure = tr("Объект %1 не найден в хранилище").arg(uid);
            qDebug() << "store: merge target missing" << uid;
            return false;
        }
        QString dataname = stored.objects.cbegin().key();
        ObjectInfo record = stored.objects.cbegin()->first();
        merge(&dataname, &record);
        f.note(ObjectItem, uid);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO objects(uid, dataname, body) VALUES (?, ?, ?)"),
                     {uid, dataname, record.serialize()}, &f.m_failure)
            && f.indexObject(dataname, record, &f.m_failure);
    });
}

void StoreFile::Batch::removeObject(TYPE_ID uid)
{
    m_steps.append([uid](StoreFile &f) {
        f.note(ObjectItem, uid);
        f.note(BlobItem, uid);
        f.note(CalendarItem, uid);
        f.note(TemplatesItem, uid);
        for (const char *sql : {"DELETE FROM objects WHERE uid = ?", "DELETE FROM blobs WHERE uid = ?",
                                "DELETE FROM card_numbers WHERE uid = ?", "DELETE FROM object_parents WHERE uid = ?",
                                "DELETE FROM personal_schedules WHERE worker = ?",
                                "DELETE FROM schedule_history WHERE worker = ?", "DELETE FROM absences WHERE worker = ?",
                                "DELETE FROM templates WHERE worker = ?"}) {
            if (!f.run(QString::fromLatin1(sql), {uid}, &f.m_failure))
                return false;
        }
        return true;
    });
}

void StoreFile::Batch::putBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes)
{
    m_steps.append([uid, key, bytes](StoreFile &f) {
        f.note(BlobItem, uid);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO blobs(uid, key, body) VALUES (?, ?, ?)"), {uid, key, bytes},
                     &f.m_failure);
    });
}

void StoreFile::Batch::removeBlob(TYPE_ID uid, const QString &key)
{
    m_steps.append([uid, key](StoreFile &f) {
        f.note(BlobItem, uid);
        return f.run(QStringLiteral("DELETE FROM blobs WHERE uid = ? AND key = ?"), {uid, key}, &f.m_failure);
    });
}

void StoreFile::Batch::putSchedule(const SCHEDULE_DATA &schedule)
{
    m_steps.append([schedule](StoreFile &f) {
        f.note(ScheduleItem, schedule.id);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO schedules(id, body) VALUES (?, ?)"),
                     {schedule.id, StoreRecordCodec::encodeSchedule(schedule)}, &f.m_failure);
    });
}

void StoreFile::Batch::setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules)
{
    m_steps.append([worker, schedules](StoreFile &f) {
        f.note(CalendarItem, worker);
        if (!f.run(QStringLiteral("DELETE FROM personal_schedules WHERE worker = ?"), {worker}, &f.m_failure))
            return false;
        for (const SCHEDULE_DATA &s : schedules) {
            if (!f.run(QStringLiteral("INSERT OR REPLACE INTO personal_schedules(worker, id, body) VALUES (?, ?, ?)"),
                       {worker, s.id, StoreRecordCodec::encodeSchedule(s)}, &f.m_failure))
                return false;
        }
        return true;
    });
}

void StoreFile::Batch::setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records)
{
    m_steps.append([worker, records](StoreFile &f) {
        f.note(CalendarItem, worker);
        if (records.isEmpty())
            return f.run(QStringLiteral("DELETE FROM schedule_history WHERE worker = ?"), {worker}, &f.m_failure);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO schedule_history(worker, body) VALUES (?, ?)"),
                     {worker, StoreRecordCodec::encodeScheduleHistory(records)}, &f.m_failure);
    });
}

void StoreFile::Batch::setAbsences(const _WORKER_ABSENCE_REASON &absences)
{
    m_steps.append([absences](StoreFile &f) {
        f.note(CalendarItem, absences.worker);
        if (absences.records.isEmpty())
            return f.run(QStringLiteral("DELETE FROM absences WHERE worker = ?"), {absences.worker}, &f.m_failure);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO absences(worker, body) VALUES (?, ?)"),
                     {absences.worker, StoreRecordCodec::encodeAbsences(absences)}, &f.m_failure);
    });
}

void StoreFile::Batch::setTemplates(TYPE_ID worker, const QList<_TEMPLATE_DATA> &templates)
{
    m_steps.append([worker, templates](StoreFile &f) {
        f.note(TemplatesItem, worker);
        if (templates.isEmpty())
            return f.run(QStringLiteral("DELETE FROM templates WHERE worker = ?"), {worker}, &f.m_failure);
        return f.run(QStringLiteral("INSERT OR REPLACE INTO templates(worker, body) VALUES (?, ?)"),
                     {worker, StoreRecordCodec::encodeTemplates(templates)}, &f.m_failure);
    });
}

} // namespace nivaro
