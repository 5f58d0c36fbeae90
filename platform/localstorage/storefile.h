#ifndef NIVARO_STOREFILE_H
#define NIVARO_STOREFILE_H

#include <objectinfo.h>
#include <scheduledata.h>
#include <templatedata.h>
#include <workerabsencereason.h>
#include <workerschedulehistoryrecord.h>

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QSet>
#include <QSqlDatabase>
#include <QString>

#include <functional>
#include <memory>

class QSqlError;
class QSqlQuery;

namespace nivaro {

/**
 * The store's SQLite file. open() checks that the file is ours before
 * writing anything to it and loads all of it; every change is one
 * transaction with synchronous=FULL, so what a write confirmed survives a
 * crash, and a write that fails leaves the file as it was.
 *
 * Several clients may share one file: each write transaction also files
 * what it touched in a change log, and readChanges() hands back the current
 * rows of whatever other connections touched since this one last looked.
 * A file that can be read but not written opens read only and refuses
 * every write before it reaches SQLite.
 */
class StoreFile
{
    // Its messages reach the operator; one context for them and for Batch.
    Q_DECLARE_TR_FUNCTIONS(StoreFile)
public:
    struct Contents
    {
        QHash<QString, QList<ObjectInfo>> objects; // by data name
        QHash<TYPE_ID, QHash<QString, QByteArray>> blobs;
        QList<SCHEDULE_DATA> schedules;
        QHash<TYPE_ID, QList<SCHEDULE_DATA>> personalSchedules;
        QHash<TYPE_ID, QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>> scheduleHistory;
        QHash<TYPE_ID, _WORKER_ABSENCE_REASON> absences;
        QHash<TYPE_ID, QList<_TEMPLATE_DATA>> templates; // by worker
    };

    // The items other connections touched, and their rows as stored now (an
    // item touched but missing from `current` is gone). `everything` means
    // the log no longer reaches back far enough: `current` holds the whole
    // file and every item counts as touched.
    struct Changes
    {
        bool everything = false;
        QSet<TYPE_ID> objects;
        QSet<TYPE_ID> blobs;
        QSet<int> schedules;
        QSet<TYPE_ID> calendars; // workers whose personal schedules, history or absences changed
        QSet<TYPE_ID> templates; // workers whose biometric templates changed
        Contents current;
        bool isEmpty() const
        {
            return !everything && objects.isEmpty() && blobs.isEmpty() && schedules.isEmpty() && calendars.isEmpty()
                && templates.isEmpty();
        }
    };

    // Applies changes to a stored record: gets the data name and the record
    // as stored and leaves in them what is to be stored.
    using Merge = std::function<void(QString *dataname, ObjectInfo *record)>;
    // A condition checked inside the transaction, where no other client can
    // change what it reads until the transaction ends: true to go ahead,
    // false with the operator's reason in *refusal to roll everything back.
    using Check = std::function<bool(StoreFile &file, QString *refusal)>;

    // What one transaction does, statement by statement.
    class Batch
    {
    public:
        void putObject(const QString &dataname, const ObjectInfo &object);
        // Reads the record inside the transaction, so a change made by
        // another client in the meantime is kept; fails when it is absent.
        void mergeObject(TYPE_ID uid, const Merge &merge);
        // Inserts the object under a uid that no object of the file holds
        // or ever held, chosen inside the transaction, so two clients never
        // hand out the same one; *uid receives it once the step has run.
        void createObject(const QString &dataname, const ObjectInfo &object, const QHash<QString, QByteArray> &blobs,
                          const std::shared_ptr<TYPE_ID> &uid);
        void check(const Check &check);
        // The object with its blobs and calendar rows.
        void removeObject(TYPE_ID uid);
        void putBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes);
        void removeBlob(TYPE_ID uid, const QString &key);
        void putSchedule(const SCHEDULE_DATA &schedule);
        void setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules);
        void setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records);
        void setAbsences(const _WORKER_ABSENCE_REASON &absences);
        // All of a worker's templates at once; an empty list removes them.
        void setTemplates(TYPE_ID worker, const QList<_TEMPLATE_DATA> &templates);
        bool isEmpty() const { return m_steps.isEmpty(); }

    private:
        friend class StoreFile;
        QList<std::function<bool(StoreFile &)>> m_steps;
    };

    static constexpr int FormatVersion = 5;
    static const QString Application;

    StoreFile();
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    bool open(const QString &fileName, Contents *contents, QString *error);
    void close();
    bool isOpen() const { return m_db.isOpen(); }
    QString fileName() const { return m_fileName; }
    bool isReadOnly() const { return !m_readOnlyReason.isEmpty(); }
    QString readOnlyReason() const { return m_readOnlyReason; }
    // Whether other connections' writes can be seen (a file with a change
    // log that others may write to).
    bool canWatch() const { return isOpen() && m_hasLog && !m_immutable; }

    bool write(const Batch &batch, QString *error);
    // Empty changes when no other connection committed since the last call.
    bool readChanges(Changes *changes, QString *error);

    // For checks inside a write: the record as the file holds it (found
    // false when there is none), and a card that carries a number.
    bool readObject(TYPE_ID uid, ObjectInfo *object, bool *found, QString *error);
    bool cardWithNumber(const QString &number, TYPE_ID *card, QString *error);
    // Whether a firm, department or employee hangs from parent.
    bool hasMembers(TYPE_ID parent, bool *members, QString *error);
    // The form under which card numbers are compared: "0077" and "77" are
    // one number to a reader.
    static QString cardNumberKey(const QString &number);

    // The operator's sentence for a failed statement; the SQLite text goes
    // to the debug line.
    static QString failureText(const QSqlError &error);

private:
    static QString readFailureText(const QSqlError &error, const QString &fileName);
    bool checkHeader(const QString &fileName, QString *error);
    bool checkMeta(QSqlDatabase &db, QString *error);
    bool openConnection(const QString &fileName, bool readOnly, bool immutable, QString *error);
    bool openReadOnly(const QString &fileName, QString *error);
    bool openWritable(const QString &fileName, bool fresh, QString *error);
    bool transact(const std::function<bool()> &work, QString *error);
    bool snapshot(const std::function<bool()> &work, QString *error);
    bool runAll(const char *const *statements, std::size_t count, QString *error);
    bool createSchema(QString *error);
    bool migrate(QString *error);
    bool indexCardNumbers(QString *error);
    bool indexCard(const QString &dataname, const ObjectInfo &object, QString *error);
    bool indexParents(QString *error);
    bool indexPlace(const QString &dataname, const ObjectInfo &object, QString *error);
    // Both of the above: the rows beside a record, as the record now is.
    bool indexObject(const QString &dataname, const ObjectInfo &object, QString *error);
    bool load(Contents *contents, QString *error);
    bool loadAll(Contents *contents, QString *error);
    // A null id loads every row of the table.
    bool loadObjects(const QVariant &uid, Contents *contents, QString *error);
    bool loadBlobs(const QVariant &uid, Contents *contents, QString *error);
    bool loadSchedules(const QVariant &id, Contents *contents, QString *error);
    bool loadCalendars(const QVariant &worker, Contents *contents, QString *error);
    bool loadTemplates(const QVariant &worker, Contents *contents, QString *error);
    bool touch(const QString &what, qint64 id, Changes *changes, QString *error);
    bool select(const QString &sql, const QVariantList &values, const std::function<bool(const QSqlQuery &)> &row,
                QString *error);
    bool exec(const QString &sql, QString *error);
    bool run(const QString &sql, const QVariantList &values, QString *error);
    qint64 scalar(const QString &sql, bool *ok, const QVariantList &values = {});
    void note(const QString &what, qint64 id) { m_touched.insert(qMakePair(what, id)); }
    bool logTouched(QString *error);

    QString m_connection;
    QSqlDatabase m_db;
    QString m_fileName;
    QString m_failure; // why the running step failed, for the operator
    QString m_readOnlyReason;
    int m_version = 0;
    bool m_hasLog = false;
    bool m_immutable = false;
    qint64 m_seenSeq = 0; // the last log entry this client has taken in
    qint64 m_pendingSeq = 0;
    qint64 m_dataVersion = 0;
    QSet<QPair<QString, qint64>> m_touched;
};

} // namespace nivaro

#endif
