#ifndef NIVARO_LOCALSTORAGE_H
#define NIVARO_LOCALSTORAGE_H

#include "localstorage_export.h"

#include <nvhash.h>
#include <nvtypes.h>
#include <objectinfo.h>
#include <scheduledata.h>
#include <templatedata.h>
#include <trie>
#include <workerabsencereason.h>
#include <workerschedulehistoryrecord.h>

#include <QObject>
#include <QScopedPointer>
#include <QStringList>

#include <functional>
#include <optional>

namespace nivaro {

class LocalStoragePrivate;
class ObjectTreeModel;

/** An employee's personal schedules, schedule assignments and absences. */
struct WorkerCalendar
{
    TYPE_ID worker = 0;
    QList<SCHEDULE_DATA> personalSchedules;
    QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> scheduleHistory;
    QList<_WORKER_ABSENCE_REASON_RECORD> absences;
};

/**
 * What a write's condition reads (LocalStorage::WriteCondition): the
 * records as the store file holds them inside the write's transaction,
 * where no other client can change them before it ends; the cache itself
 * for a store without a file.
 */
class LOCALSTORAGE_EXPORT StoredRecords
{
public:
    virtual ~StoredRecords();
    // An invalid record when there is none.
    virtual ObjectInfo object(TYPE_ID uid) const = 0;
    // A card that carries this number (leading zeros aside); 0 when none does.
    virtual TYPE_ID cardWithNumber(const QString &number) const = 0;
    // Whether a firm, department or employee (in service or dismissed)
    // has this object as its parent.
    virtual bool hasMembers(TYPE_ID uid) const = 0;
};

/**
 * A cache of the server's objects: one collection per data name, the search
 * indexes over them, the organisation tree model, blobs, schedules and the
 * database settings, backed by the store file. instance() is the one views
 * read; a host or a test may make another client of the same file, and each
 * takes in what the others write (watched every quarter second, or at once
 * through checkForChanges()), emitting the same signals as for its own.
 *
 * Views only read (the const accessors; pointers stay valid until the next
 * write). Changes come in through the write side, which hosts and the task
 * executor call with what the server confirmed: each write is saved to the
 * store file in one transaction, then the collections, indexes and tree are
 * updated and dataChanged / dataRemoved is emitted. A write that cannot be
 * saved changes nothing in memory either and reports why.
 *
 * GUI thread only, except that the const accessors may be read from one
 * background search while the GUI thread does not write. Taking in other
 * clients' writes is a write too: a host holds the watch back with
 * setWatching(false) while such a search runs. A search that must not hold
 * writes back copies the collection on the GUI thread instead and reads
 * the copy: collections and records share their data implicitly (atomic
 * counts), and a write never changes shared data in place but detaches
 * its own copy first, so the copy stays as it was (the employee search
 * does so). revision() tells such a reader when its copy is out of date.
 */
class LOCALSTORAGE_EXPORT LocalStorage : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LocalStorage)

public:
    // The process-wide store the views read.
    static LocalStorage *instance();
    explicit LocalStorage(QObject *parent = nullptr);
    ~LocalStorage() override;

    // ---- Read side --------------------------------------------------------
    // The whole collection; an empty one for a data name nobody filled.
    const NVHash<TYPE_ID, ObjectInfo> *constObjects(const QString &dataname) const;
    const ObjectInfo *constObject(TYPE_ID uid, const QString &dataname) const;
    const ObjectInfo *constObject(TYPE_ID uid) const;
    const ObjectInfo *constObject(TYPE_ID uid, const QStringList &datanames) const;
    ObjectInfo object(TYPE_ID uid) const;
    ObjectInfo object(TYPE_ID uid, const QString &dataname) const;
    NVHash<TYPE_ID, ObjectInfo> objects(const QList<TYPE_ID> &uids) const;
    // The data name of the collection that holds uid; empty when none does.
    QString dataname(TYPE_ID uid) const;
    // Changes whenever the collection does (and when the store is opened or
    // closed), never going back to an earlier value: what a cache built
    // from a collection compares to know it still holds.
    quint64 revision(const QString &dataname) const;

    QByteArray blob(TYPE_ID uid, const QString &key) const;
    ObjectInfo dbSettings() const;
    NVHash<int, SCHEDULE_DATA> schedules() const;
    NVHash<int, SCHEDULE_DATA> personalSchedules(TYPE_ID worker) const;
    QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> scheduleHistory(TYPE_ID worker) const;
    _WORKER_ABSENCE_REASON absenceReasons(TYPE_ID worker) const;
    // An employee's biometric templates in the order they were stored.
    QList<_TEMPLATE_DATA> templates(TYPE_ID worker) const;
    // Cards whose owner is `owner`; activeOnly leaves out cards whose
    // validity (PT_DATE_END) has passed.
    NVHash<TYPE_ID, ObjectInfo> cards(quint64 owner, bool activeOnly) const;
    QList<TYPE_ID> cardIds(quint64 owner, bool activeOnly) const;

    // The shared tree model of a collection ("orgstructure": firms,
    // departments and employees under the subject root); null for others.
    ObjectTreeModel *model(const QString &dataname);
    // The search index of an index data name (SUBJECT_SURNAME_INDEX, ...,
    // "orgstructure", "card"); null for others. Owned by the store.
    TrieStatic<TYPE_ID> *index(const QString &dataname);

    // ---- Store file -------------------------------------------------------
    // Opens (creating when missing) and loads a store file, replacing what
    // the cache held. A corrupt, foreign or newer file is left untouched
    // and the cache empty; error says why.
    bool open(const QString &fileName, QString *error = nullptr);
    void close();
    bool isOpen() const;
    QString fileName() const;
    // A store that can be read but not written (the file or its folder):
    // every write is refused with readOnlyReason(), a text for the operator.
    bool isReadOnly() const;
    QString readOnlyReason() const;

    // ---- Write side (hosts and the executor) ------------------------------
    // What a write requires of the stored records, checked in its own
    // transaction just before it writes: the empty text to go ahead,
    // otherwise the operator's reason, which the write reports as its
    // error, changing nothing. What another client may be changing at the
    // same moment is checked here, not against the cache.
    using WriteCondition = std::function<QString(const StoredRecords &stored)>;

    // Inserts or replaces objects in a collection.
    bool putObjects(const QString &dataname, const QList<ObjectInfo> &objects, QString *error = nullptr);
    // Applies exactly these changes to the object as the file holds it now,
    // in one transaction, so what another client saved meanwhile is kept:
    // parameters (an empty value removes the key), blobs (empty bytes
    // remove one) and, when given, the parent. An employee whose
    // PT_OBJECTSTATE changes moves between "subject" and "subject_fired".
    bool saveChanges(TYPE_ID uid, const QHash<QString, QString> &parameters, const QHash<QString, QByteArray> &blobs,
                     std::optional<TYPE_ID> parent, QString *error = nullptr,
                     const WriteCondition &condition = WriteCondition());
    // Stores a new object with its blobs under a uid that no object of the
    // file holds or ever held. The uid is chosen inside the write's
    // transaction, so two clients of one file creating at once never get
    // the same one; `condition` is checked in that same transaction (a
    // card whose number another card carries, a parent that is gone).
    // Returns the new uid, or 0 (error says why, nothing was written).
    TYPE_ID createObject(const QString &dataname, const ObjectInfo &object,
                         const QHash<QString, QByteArray> &blobs = QHash<QString, QByteArray>(),
                         const WriteCondition &condition = WriteCondition(), QString *error = nullptr);
    // saveChanges() of parameters only, or of the parent only.
    bool updateParameters(TYPE_ID uid, const QHash<QString, QString> &parameters, QString *error = nullptr);
    bool setParent(TYPE_ID uid, TYPE_ID parent, QString *error = nullptr);
    // Removes the objects with their blobs and calendars.
    bool removeObjects(const QList<TYPE_ID> &uids, QString *error = nullptr,
                       const WriteCondition &condition = WriteCondition());
    // An empty value removes the blob.
    bool setBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes, QString *error = nullptr);
    bool setDbSettings(const ObjectInfo &settings, QString *error = nullptr);
    bool putSchedules(const QList<SCHEDULE_DATA> &schedules, QString *error = nullptr);
    bool setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules, QString *error = nullptr);
    bool setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records, QString *error = nullptr);
    bool setAbsenceReasons(const _WORKER_ABSENCE_REASON &reasons, QString *error = nullptr);
    // Replaces all of an employee's templates (each gets `worker` as its
    // owner); an empty list removes them. Announced as TEMPLATE_DATANAME.
    bool setTemplates(TYPE_ID worker, const QList<_TEMPLATE_DATA> &templates, QString *error = nullptr);
    // The three calls above for many employees in one transaction.
    bool putWorkerCalendars(const QList<WorkerCalendar> &calendars, QString *error = nullptr);
    // A uid no object of the cache holds yet. Only for a store without a
    // file: with one, createObject() is how a new object gets its uid.
    TYPE_ID nextUid() const;

    // Whether the timer looks for other clients' writes (on by default);
    // what it missed meanwhile is taken in at the next look.
    void setWatching(bool on);
    bool isWatching() const;

public Q_SLOTS:
    // Takes in what other clients of the file wrote since the last look.
    void checkForChanges();

Q_SIGNALS:
    void dataChanged(const QString &dataname, const QList<unsigned int> &uids);
    void dataRemoved(const QString &dataname, const QList<unsigned int> &uids);

private:
    QScopedPointer<LocalStoragePrivate> d;
};

} // namespace nivaro

#endif
