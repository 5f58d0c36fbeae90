#include "localstorage.h"

#include "objecttreemodel.h"
#include "storefile.h"

#include <datanames.h>
#include <dbparams.h>
#include <objecttypes.h>

#include <QCoreApplication>
#include <QDate>
#include <QDebug>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace nivaro {

namespace {

bool isFired(const ObjectInfo &object)
{
    return object.parameter(db::common::OBJECTSTATE).compare(db::common::STATE_FIRED, Qt::CaseInsensitive) == 0;
}

bool isEmployeeCollection(const QString &dataname)
{
    return dataname == SUBJECT_DATANAME || dataname == SUBJECT_FIRED_DATANAME;
}

// Names are searched word by word, so "Отдел кадров" is found by "кадр".
QStringList words(const QString &text)
{
    static const QRegularExpression space(QStringLiteral("\\s+"));
    return text.toLower().split(space, Qt::SkipEmptyParts);
}

} // namespace

class LocalStoragePrivate
{
public:
    using Collection = NVHash<TYPE_ID, ObjectInfo>;

    QHash<QString, Collection> collections;
    QHash<TYPE_ID, QString> datanameOf;
    QHash<TYPE_ID, QHash<QString, QByteArray>> blobs;
    NVHash<int, SCHEDULE_DATA> schedules;
    QHash<TYPE_ID, NVHash<int, SCHEDULE_DATA>> personalSchedules;
    QHash<TYPE_ID, QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>> history;
    QHash<TYPE_ID, _WORKER_ABSENCE_REASON> absences;
    QHash<TYPE_ID, QList<_TEMPLATE_DATA>> templates;

    void keepTemplates(TYPE_ID worker, const QList<_TEMPLATE_DATA> &list)
    {
        if (list.isEmpty())
            templates.remove(worker);
        else
            templates.insert(worker, list);
    }

    // What a confirmed write leaves in memory; an empty list forgets the worker.
    void keepPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &personal)
    {
        if (personal.isEmpty()) {
            personalSchedules.remove(worker);
            return;
        }
        NVHash<int, SCHEDULE_DATA> &mine = personalSchedules[worker];
        mine.clear();
        for (const SCHEDULE_DATA &s : personal)
            mine.replace(s.id, s);
    }

    void keepScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records)
    {
        if (records.isEmpty())
            history.remove(worker);
        else
            history.insert(worker, records);
    }

    void keepAbsences(const _WORKER_ABSENCE_REASON &worker)
    {
        if (worker.records.isEmpty())
            absences.remove(worker.worker);
        else
            absences.insert(worker.worker, worker);
    }
    QMultiHash<TYPE_ID, TYPE_ID> cardsByOwner;
    QMultiHash<QString, TYPE_ID> cardsByNumber; // by StoreFile::cardNumberKey()
    TYPE_ID issuedUid = 0; // the highest uid createObject() handed out without a file
    QHash<QString, quint64> revisions;
    quint64 lastRevision = 0;
    void touch(const QString &dataname) { revisions.insert(dataname, ++lastRevision); }
    QHash<QString, TrieStatic<TYPE_ID>> indexes;
    ObjectTreeModel *tree = nullptr;
    QTimer *watch = nullptr;
    bool watching = true;
    StoreFile file;
    const Collection empty{};

    // Where an object belongs: employees by their state, the rest as given.
    static QString home(const QString &dataname, const ObjectInfo &object)
    {
        if (object.typeName() == OT_WORKER || isEmployeeCollection(dataname))
            return isFired(object) ? SUBJECT_FIRED_DATANAME : SUBJECT_DATANAME;
        return dataname;
    }

    static TYPE_ID cardOwner(const ObjectInfo &card)
    {
        bool ok = false;
        const TYPE_ID owner = card.parameter(db::card::OWNER).toUInt(&ok);
        return ok && owner ? owner : card.parent();
    }

    void indexObject(const QString &dataname, const ObjectInfo &object)
    {
        const TYPE_ID uid = object.uid();
        if (dataname == SUBJECT_DATANAME || dataname == SUBJECT_FIRED_DATANAME) {
            const bool fired = dataname == SUBJECT_FIRED_DATANAME;
            const QString surname = object.parameter(db::worker::LAST_NAME).toLower();
            const QString number = object.parameter(db::worker::WORKERNUM).toLower();
            if (!surname.isEmpty())
                indexes[fired ? SUBJECT_FIRED_SURNAME_INDEX : SUBJECT_SURNAME_INDEX].add(surname, uid);
            if (!number.isEmpty())
                indexes[fired ? SUBJECT_FIRED_WORKERNUM_INDEX : SUBJECT_WORKERNUM_INDEX].add(number, uid);
            TrieStatic<TYPE_ID> &org = indexes[ORGSTRUCTURE_DATANAME];
            for (const QString *key : {&db::worker::LAST_NAME, &db::worker::FIRST_NAME, &db::worker::MIDDLE_NAME}) {
                const QStringList parts = words(object.parameter(*key));
                for (const QString &word : parts)
                    org.add(word, uid);
            }
        } else if (dataname == ORGSTRUCTURE_DATANAME) {
            const QStringList parts = words(object.parameter(db::common::NAME));
            for (const QString &word : parts)
                indexes[ORGSTRUCTURE_DATANAME].add(word, uid);
        } else if (dataname == CARD_DATANAME) {
            const QString number = object.parameter(db::card::NUMBER).trimmed();
            if (!number.isEmpty())
                indexes[CARD_DATANAME].add(number, cardOwner(object));
        }
    }

    void unindexObject(const QString &dataname, const ObjectInfo &object)
    {
        const TYPE_ID uid = object.uid();
        if (isEmployeeCollection(dataname)) {
            for (const QString &name : {SUBJECT_SURNAME_INDEX, SUBJECT_FIRED_SURNAME_INDEX, SUBJECT_WORKERNUM_INDEX,
                                        SUBJECT_FIRED_WORKERNUM_INDEX, ORGSTRUCTURE_DATANAME})
                indexes[name].remove(uid);
        } else if (dataname == ORGSTRUCTURE_DATANAME) {
            indexes[ORGSTRUCTURE_DATANAME].remove(uid);
        }
    }

    // The card index files numbers under owners, and an owner may hold
    // several cards: withdraw the owner and file all its cards again.
    void reindexCardsOf(TYPE_ID owner)
    {
        TrieStatic<TYPE_ID> &index = indexes[CARD_DATANAME];
        index.remove(owner);
        const Collection &cards = collections[CARD_DATANAME];
        const QList<TYPE_ID> uids = cardsByOwner.values(owner);
        for (TYPE_ID card : uids) {
            const auto it = cards.constFind(card);
            if (it != cards.cend())
                indexObject(CARD_DATANAME, *it);
        }
    }

    // Puts one object into memory, keeping indexes, the owner map and the
    // data name map current. Returns the collection it left, if it moved.
    QString place(const QString &dataname, const ObjectInfo &object)
    {
        const TYPE_ID uid = object.uid();
        const QString previous = datanameOf.value(uid);
        if (!previous.isEmpty()) {
            Collection &old = collections[previous];
            const auto it = old.constFind(uid);
            if (it != old.cend()) {
                unindexObject(previous, *it);
                if (previous == CARD_DATANAME) {
                    cardsByOwner.remove(cardOwner(*it), uid);
                    cardsByNumber.remove(StoreFile::cardNumberKey(it->parameter(db::card::NUMBER)), uid);
                }
            }
            if (previous != dataname) {
                old.remove(uid);
                touch(previous);
            }
        }
        collections[dataname].replace(uid, object);
        touch(dataname);
        datanameOf.insert(uid, dataname);
        if (dataname == CARD_DATANAME) {
            cardsByOwner.insert(cardOwner(object), uid);
            cardsByNumber.insert(StoreFile::cardNumberKey(object.parameter(db::card::NUMBER)), uid);
            reindexCardsOf(cardOwner(object));
        } else {
            indexObject(dataname, object);
        }
        return previous != dataname ? previous : QString();
    }

    // What a write or another client's changes did, announced once at the end.
    struct Notices
    {
        QHash<QString, QList<unsigned int>> changed;
        QHash<QString, QList<unsigned int>> removed;
        QList<ObjectInfo> placed; // for the tree
        QList<TYPE_ID> forgotten;
    };

    void absorb(const QString &dataname, const ObjectInfo &object, Notices *n)
    {
        const QString left = place(dataname, object);
        if (!left.isEmpty())
            n->removed[left].append(object.uid());
        n->changed[dataname].append(object.uid());
        n->placed.append(object);
    }

    // Drops an object, its blobs and calendars from memory.
    void forget(TYPE_ID uid, Notices *n)
    {
        const QString name = datanameOf.take(uid);
        if (name.isEmpty())
            return;
        const ObjectInfo object = collections[name].take(uid);
        touch(name);
        unindexObject(name, object);
        if (name == CARD_DATANAME) {
            const TYPE_ID owner = cardOwner(object);
            cardsByOwner.remove(owner, uid);
            cardsByNumber.remove(StoreFile::cardNumberKey(object.parameter(db::card::NUMBER)), uid);
            reindexCardsOf(owner);
        }
        blobs.remove(uid);
        personalSchedules.remove(uid);
        history.remove(uid);
        absences.remove(uid);
        templates.remove(uid);
        n->forgotten.append(uid);
        n->removed[name].append(uid);
    }

    void keepBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes)
    {
        if (!bytes.isEmpty()) {
            blobs[uid].insert(key, bytes);
            return;
        }
        auto it = blobs.find(uid);
        if (it != blobs.end()) {
            it->remove(key);
            if (it->isEmpty())
                blobs.erase(it);
        }
    }

    void updateTree(const Notices &n)
    {
        for (TYPE_ID uid : n.forgotten)
            tree->remove(uid);
        if (n.placed.size() <= 1000) {
            for (const ObjectInfo &object : n.placed)
                tree->insertOrUpdate(object);
            return;
        }
        // Bulk imports: one reset beats a row notification per object.
        QList<ObjectInfo> all;
        for (auto it = collections.cbegin(); it != collections.cend(); ++it) {
            for (const ObjectInfo &o : it.value()) {
                if (ObjectTreeModel::isTreeType(o.typeName()))
                    all.append(o);
            }
        }
        tree->reset(all);
    }

    void announce(LocalStorage *q, const Notices &n)
    {
        updateTree(n);
        for (auto it = n.removed.cbegin(); it != n.removed.cend(); ++it)
            emit q->dataRemoved(it.key(), it.value());
        for (auto it = n.changed.cbegin(); it != n.changed.cend(); ++it)
            emit q->dataChanged(it.key(), once(it.value()));
    }

    // An object and its blobs may both have changed: one mention each.
    static QList<unsigned int> once(const QList<unsigned int> &uids)
    {
        QList<unsigned int> out;
        QSet<unsigned int> seen;
        for (unsigned int uid : uids) {
            if (!seen.contains(uid)) {
                seen.insert(uid);
                out.append(uid);
            }
        }
        return out;
    }

    // Another client's changes: only what differs from memory is taken in
    // and announced, since our own writes come back through the log too.
    void takeIn(const StoreFile::Changes &c, Notices *n)
    {
        QSet<TYPE_ID> objectIds = c.objects;
        QSet<TYPE_ID> blobIds = c.blobs;
        QSet<int> scheduleIds = c.schedules;
        QSet<TYPE_ID> workers = c.calendars;
        QSet<TYPE_ID> templateOwners = c.templates;
        if (c.everything) {
            const auto addKeys = [](auto *set, const auto &hash) {
                for (auto it = hash.cbegin(); it != hash.cend(); ++it)
                    set->insert(it.key());
            };
            addKeys(&objectIds, datanameOf);
            for (auto it = c.current.objects.cbegin(); it != c.current.objects.cend(); ++it) {
                for (const ObjectInfo &o : it.value())
                    objectIds.insert(o.uid());
            }
            addKeys(&blobIds, blobs);
            addKeys(&blobIds, c.current.blobs);
            addKeys(&scheduleIds, schedules);
            for (const SCHEDULE_DATA &s : c.current.schedules)
                scheduleIds.insert(s.id);
            addKeys(&workers, history);
            addKeys(&workers, c.current.scheduleHistory);
            addKeys(&workers, personalSchedules);
            addKeys(&workers, c.current.personalSchedules);
            addKeys(&workers, absences);
            addKeys(&workers, c.current.absences);
            addKeys(&templateOwners, templates);
            addKeys(&templateOwners, c.current.templates);
        }
        takeInObjects(c.current, objectIds, n);
        takeInBlobs(c.current, blobIds, n);
        takeInSchedules(c.current, scheduleIds, n);
        takeInCalendars(c.current, workers, n);
        for (TYPE_ID worker : qAsConst(templateOwners)) {
            const QList<_TEMPLATE_DATA> stored = c.current.templates.value(worker);
            if (templates.value(worker) == stored)
                continue;
            keepTemplates(worker, stored);
            n->changed[TEMPLATE_DATANAME].append(worker);
        }
    }

    void takeInObjects(const StoreFile::Contents &current, const QSet<TYPE_ID> &uids, Notices *n)
    {
        QHash<TYPE_ID, QPair<QString, ObjectInfo>> stored;
        for (auto it = current.objects.cbegin(); it != current.objects.cend(); ++it) {
            for (const ObjectInfo &o : it.value())
                stored.insert(o.uid(), qMakePair(home(it.key(), o), o));
        }
        for (TYPE_ID uid : uids) {
            const auto it = stored.constFind(uid);
            if (it == stored.cend()) {
                forget(uid, n);
                continue;
            }
            const auto mine = collections.constFind(it->first);
            if (mine != collections.cend() && mine->contains(uid) && mine->value(uid) == it->second)
                continue;
            absorb(it->first, it->second, n);
        }
    }

    void takeInBlobs(const StoreFile::Contents &current, const QSet<TYPE_ID> &uids, Notices *n)
    {
        for (TYPE_ID uid : uids) {
            const QHash<QString, QByteArray> stored = current.blobs.value(uid);
            if (blobs.value(uid) == stored)
                continue;
            if (stored.isEmpty())
                blobs.remove(uid);
            else
                blobs.insert(uid, stored);
            const QString name = datanameOf.value(uid);
            if (!name.isEmpty())
                n->changed[name].append(uid);
        }
    }

    void takeInSchedules(const StoreFile::Contents &current, const QSet<int> &ids, Notices *n)
    {
        QHash<int, SCHEDULE_DATA> stored;
        for (const SCHEDULE_DATA &s : current.schedules)
            stored.insert(s.id, s);
        for (int id : ids) {
            const auto it = stored.constFind(id);
            const bool known = schedules.contains(id);
            if (it == stored.cend() ? !known : known && schedules.value(id) == *it)
                continue;
            if (it == stored.cend())
                schedules.remove(id);
            else
                schedules.replace(id, *it);
            n->changed[SCHEDULE_DATANAME].append(unsigned(id));
        }
    }

    void takeInCalendars(const StoreFile::Contents &current, const QSet<TYPE_ID> &workers, Notices *n)
    {
        for (TYPE_ID worker : workers) {
            const QList<SCHEDULE_DATA> personal = current.personalSchedules.value(worker);
            NVHash<int, SCHEDULE_DATA> byId;
            for (const SCHEDULE_DATA &s : personal)
                byId.replace(s.id, s);
            if (personalSchedules.value(worker) != byId) {
                keepPersonalSchedules(worker, personal);
                n->changed[SCHEDULE_DATANAME].append(worker);
            }
            const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> records = current.scheduleHistory.value(worker);
            if (history.value(worker) != records) {
                keepScheduleHistory(worker, records);
                n->changed[WORKER_HISTORY_DATANAME].append(worker);
            }
            _WORKER_ABSENCE_REASON reasons = current.absences.value(worker);
            reasons.worker = worker;
            if (absences.value(worker).records != reasons.records) {
                keepAbsences(reasons);
                n->changed[REASON_DATANAME].append(worker);
            }
        }
    }
};

StoredRecords::~StoredRecords() = default;

namespace {

// The file's records inside a write's transaction. A read that fails is
// kept: the write then fails with the store's reason rather than with the
// condition's, which saw nothing.
class FileRecords : public StoredRecords
{
public:
    explicit FileRecords(StoreFile &file)
        : m_file(file)
    {
    }
    ObjectInfo object(TYPE_ID uid) const override
    {
        ObjectInfo record;
        bool found = false;
        return m_file.readObject(uid, &record, &found, &failure) && found ? record : ObjectInfo();
    }
    TYPE_ID cardWithNumber(const QString &number) const override
    {
        TYPE_ID card = 0;
        return m_file.cardWithNumber(number, &card, &failure) ? card : 0;
    }
    bool hasMembers(TYPE_ID uid) const override
    {
        bool members = false;
        return m_file.hasMembers(uid, &members, &failure) && members;
    }
    mutable QString failure;

private:
    StoreFile &m_file;
};

// A store without a file checks against the cache.
class CacheRecords : public StoredRecords
{
public:
    explicit CacheRecords(const LocalStorage *store, const QMultiHash<QString, TYPE_ID> &cardsByNumber)
        : m_store(store)
        , m_cardsByNumber(cardsByNumber)
    {
    }
    ObjectInfo object(TYPE_ID uid) const override { return m_store->object(uid); }
    TYPE_ID cardWithNumber(const QString &number) const override
    {
        const QList<TYPE_ID> cards = m_cardsByNumber.values(StoreFile::cardNumberKey(number));
        return cards.isEmpty() ? 0 : *std::min_element(cards.cbegin(), cards.cend());
    }
    bool hasMembers(TYPE_ID uid) const override
    {
        for (const QString &dataname : {ORGSTRUCTURE_DATANAME, SUBJECT_DATANAME, SUBJECT_FIRED_DATANAME}) {
            const NVHash<TYPE_ID, ObjectInfo> *objects = m_store->constObjects(dataname);
            if (objects && std::any_of(objects->cbegin(), objects->cend(),
                                       [uid](const ObjectInfo &object) { return object.parent() == uid; }))
                return true;
        }
        return false;
    }

private:
    const LocalStorage *m_store;
    const QMultiHash<QString, TYPE_ID> &m_cardsByNumber;
};

StoreFile::Check fileCheck(const LocalStorage::WriteCondition &condition)
{
    return [condition](StoreFile &file, QString *refusal) {
        FileRecords records(file);
        const QString why = condition(records);
        if (!records.failure.isEmpty()) {
            *refusal = records.failure;
            return false;
        }
        if (why.isEmpty())
            return true;
        qDebug() << "store: write refused by its condition";
        *refusal = why;
        return false;
    };
}

void closeWithApplication()
{
    LocalStorage::instance()->close();
}
} // namespace

LocalStorage *LocalStorage::instance()
{
    // Never destroyed: a static object's destructor would run after Qt's
    // SQL connection registry is gone and crash on the way out. The file is
    // closed with the application instead, while that registry still exists.
    static LocalStorage *storage = [] {
        auto *s = new LocalStorage;
        qAddPostRoutine(closeWithApplication);
        return s;
    }();
    return storage;
}

LocalStorage::LocalStorage(QObject *parent)
    : QObject(parent)
    , d(new LocalStoragePrivate)
{
    d->tree = new ObjectTreeModel(this);
    d->watch = new QTimer(this);
    // A quarter second: another operator's edit shows up before anyone
    // could act on the old value, and the check costs one pragma.
    d->watch->setInterval(250);
    connect(d->watch, &QTimer::timeout, this, &LocalStorage::checkForChanges);
}

LocalStorage::~LocalStorage() = default;

const NVHash<TYPE_ID, ObjectInfo> *LocalStorage::constObjects(const QString &dataname) const
{
    const auto it = d->collections.constFind(dataname);
    return it == d->collections.cend() ? &d->empty : &*it;
}

const ObjectInfo *LocalStorage::constObject(TYPE_ID uid, const QString &dataname) const
{
    const auto collection = d->collections.constFind(dataname);
    if (collection == d->collections.cend())
        return nullptr;
    const auto it = collection->constFind(uid);
    return it == collection->cend() ? nullptr : &*it;
}

const ObjectInfo *LocalStorage::constObject(TYPE_ID uid) const
{
    const auto it = d->datanameOf.constFind(uid);
    return it == d->datanameOf.cend() ? nullptr : constObject(uid, *it);
}

const ObjectInfo *LocalStorage::constObject(TYPE_ID uid, const QStringList &datanames) const
{
    for (const QString &dataname : datanames) {
        if (const ObjectInfo *object = constObject(uid, dataname))
            return object;
    }
    return nullptr;
}

ObjectInfo LocalStorage::object(TYPE_ID uid) const
{
    const ObjectInfo *o = constObject(uid);
    return o ? *o : ObjectInfo();
}

ObjectInfo LocalStorage::object(TYPE_ID uid, const QString &dataname) const
{
    const ObjectInfo *o = constObject(uid, dataname);
    return o ? *o : ObjectInfo();
}

NVHash<TYPE_ID, ObjectInfo> LocalStorage::objects(const QList<TYPE_ID> &uids) const
{
    NVHash<TYPE_ID, ObjectInfo> found;
    found.reserve(uids.size());
    for (TYPE_ID uid : uids) {
        if (found.contains(uid))
            continue;
        if (const ObjectInfo *o = constObject(uid))
            found.insert(uid, *o);
    }
    return found;
}

QString LocalStorage::dataname(TYPE_ID uid) const
{
    return d->datanameOf.value(uid);
}

quint64 LocalStorage::revision(const QString &dataname) const
{
    return d->revisions.value(dataname);
}

QByteArray LocalStorage::blob(TYPE_ID uid, const QString &key) const
{
    return d->blobs.value(uid).value(key);
}

ObjectInfo LocalStorage::dbSettings() const
{
    const LocalStoragePrivate::Collection &settings = *constObjects(DB_DATANAME);
    return settings.isEmpty() ? ObjectInfo() : settings.cbegin().value();
}

NVHash<int, SCHEDULE_DATA> LocalStorage::schedules() const
{
    return d->schedules;
}

NVHash<int, SCHEDULE_DATA> LocalStorage::personalSchedules(TYPE_ID worker) const
{
    return d->personalSchedules.value(worker);
}

QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> LocalStorage::scheduleHistory(TYPE_ID worker) const
{
    return d->history.value(worker);
}

_WORKER_ABSENCE_REASON LocalStorage::absenceReasons(TYPE_ID worker) const
{
    _WORKER_ABSENCE_REASON reasons = d->absences.value(worker);
    reasons.worker = worker;
    return reasons;
}

QList<_TEMPLATE_DATA> LocalStorage::templates(TYPE_ID worker) const
{
    return d->templates.value(worker);
}

NVHash<TYPE_ID, ObjectInfo> LocalStorage::cards(quint64 owner, bool activeOnly) const
{
    NVHash<TYPE_ID, ObjectInfo> found;
    if (owner > 0xFFFFFFFFu)
        return found;
    const LocalStoragePrivate::Collection &all = *constObjects(CARD_DATANAME);
    const QList<TYPE_ID> uids = d->cardsByOwner.values(TYPE_ID(owner));
    const QDate today = QDate::currentDate();
    for (TYPE_ID uid : uids) {
        const auto it = all.constFind(uid);
        if (it == all.cend())
            continue;
        const QDate end = QDate::fromString(it->parameter(db::card::DATE_END), Qt::ISODate);
        if (activeOnly && end.isValid() && end < today)
            continue;
        found.insert(uid, *it);
    }
    return found;
}

QList<TYPE_ID> LocalStorage::cardIds(quint64 owner, bool activeOnly) const
{
    QList<TYPE_ID> ids = cards(owner, activeOnly).uniqueKeys();
    std::sort(ids.begin(), ids.end());
    return ids;
}

ObjectTreeModel *LocalStorage::model(const QString &dataname)
{
    return dataname == ORGSTRUCTURE_DATANAME ? d->tree : nullptr;
}

TrieStatic<TYPE_ID> *LocalStorage::index(const QString &dataname)
{
    static const QStringList names = {SUBJECT_SURNAME_INDEX, SUBJECT_WORKERNUM_INDEX, SUBJECT_FIRED_SURNAME_INDEX,
                                      SUBJECT_FIRED_WORKERNUM_INDEX, ORGSTRUCTURE_DATANAME, CARD_DATANAME};
    if (!names.contains(dataname))
        return nullptr;
    return &d->indexes[dataname];
}

bool LocalStorage::open(const QString &fileName, QString *error)
{
    close();
    StoreFile::Contents contents;
    QString why;
    if (!d->file.open(fileName, &contents, &why)) {
        qDebug() << "store: open refused" << fileName << why;
        if (error)
            *error = why;
        return false;
    }

    QList<ObjectInfo> treeObjects;
    for (auto it = contents.objects.cbegin(); it != contents.objects.cend(); ++it) {
        for (const ObjectInfo &object : it.value()) {
            d->place(LocalStoragePrivate::home(it.key(), object), object);
            if (ObjectTreeModel::isTreeType(object.typeName()))
                treeObjects.append(object);
        }
    }
    d->blobs = contents.blobs;
    for (const SCHEDULE_DATA &s : qAsConst(contents.schedules))
        d->schedules.replace(s.id, s);
    for (auto it = contents.personalSchedules.cbegin(); it != contents.personalSchedules.cend(); ++it) {
        for (const SCHEDULE_DATA &s : it.value())
            d->personalSchedules[it.key()].replace(s.id, s);
    }
    d->history = contents.scheduleHistory;
    d->absences = contents.absences;
    d->templates = contents.templates;
    d->tree->reset(treeObjects);
    if (d->file.canWatch() && d->watching)
        d->watch->start();
    return true;
}

void LocalStorage::close()
{
    d->watch->stop();
    d->file.close();
    d->collections.clear();
    d->datanameOf.clear();
    d->blobs.clear();
    d->schedules.clear();
    d->personalSchedules.clear();
    d->history.clear();
    d->absences.clear();
    d->templates.clear();
    d->cardsByOwner.clear();
    d->cardsByNumber.clear();
    d->issuedUid = 0;
    // Every collection has just changed, even one that stays empty.
    for (auto it = d->revisions.begin(); it != d->revisions.end(); ++it)
        *it = ++d->lastRevision;
    d->indexes.clear();
    d->tree->reset({});
}

bool LocalStorage::isOpen() const
{
    return d->file.isOpen();
}

QString LocalStorage::fileName() const
{
    return d->file.fileName();
}

bool LocalStorage::isReadOnly() const
{
    return d->file.isReadOnly();
}

QString LocalStorage::readOnlyReason() const
{
    return d->file.readOnlyReason();
}

void LocalStorage::setWatching(bool on)
{
    d->watching = on;
    if (on && d->file.canWatch())
        d->watch->start();
    else
        d->watch->stop();
}

bool LocalStorage::isWatching() const
{
    return d->watching;
}

void LocalStorage::checkForChanges()
{
    StoreFile::Changes changes;
    QString why;
    if (!d->file.readChanges(&changes, &why)) {
        qDebug() << "store: reading other clients' changes failed" << why;
        return;
    }
    if (changes.isEmpty())
        return;
    LocalStoragePrivate::Notices notices;
    d->takeIn(changes, &notices);
    d->announce(this, notices);
}

bool LocalStorage::putObjects(const QString &dataname, const QList<ObjectInfo> &objects, QString *error)
{
    StoreFile::Batch batch;
    for (const ObjectInfo &object : objects) {
        if (!object.isValid() || object.uid() == 0) {
            qDebug() << "store: refusing object without uid" << object;
            if (error)
                *error = tr("Объект без идентификатора не может быть сохранен");
            return false;
        }
        batch.putObject(LocalStoragePrivate::home(dataname, object), object);
    }
    if (!d->file.write(batch, error))
        return false;
    LocalStoragePrivate::Notices notices;
    for (const ObjectInfo &object : objects)
        d->absorb(LocalStoragePrivate::home(dataname, object), object, &notices);
    d->announce(this, notices);
    return true;
}

bool LocalStorage::saveChanges(TYPE_ID uid, const QHash<QString, QString> &parameters,
                               const QHash<QString, QByteArray> &blobs, std::optional<TYPE_ID> parent, QString *error,
                               const WriteCondition &condition)
{
    const auto merge = [&](QString *dataname, ObjectInfo *record) {
        for (auto it = parameters.cbegin(); it != parameters.cend(); ++it) {
            if (it.value().isEmpty())
                record->removeParameter(it.key());
            else
                record->setParameter(it.key(), it.value());
        }
        if (parent)
            record->setParent(*parent);
        *dataname = LocalStoragePrivate::home(*dataname, *record);
    };
    QString home;
    ObjectInfo merged;
    if (d->file.isOpen()) {
        StoreFile::Batch batch;
        if (condition)
            batch.check(fileCheck(condition));
        batch.mergeObject(uid, [&](QString *dataname, ObjectInfo *record) {
            merge(dataname, record);
            home = *dataname;
            merged = *record;
        });
        for (auto it = blobs.cbegin(); it != blobs.cend(); ++it) {
            if (it.value().isEmpty())
                batch.removeBlob(uid, it.key());
            else
                batch.putBlob(uid, it.key(), it.value());
        }
        if (!d->file.write(batch, error))
            return false;
    } else if (const ObjectInfo *current = constObject(uid)) {
        if (condition) {
            const QString why = condition(CacheRecords(this, d->cardsByNumber));
            if (!why.isEmpty()) {
                if (error)
                    *error = why;
                return false;
            }
        }
        home = dataname(uid);
        merged = *current;
        merge(&home, &merged);
    } else {
        qDebug() << "store: no object to change" << uid;
        if (error)
            *error = tr("Объект %1 не найден в хранилище").arg(uid);
        return false;
    }
    for (auto it = blobs.cbegin(); it != blobs.cend(); ++it)
        d->keepBlob(uid, it.key(), it.value());
    LocalStoragePrivate::Notices notices;
    d->absorb(home, merged, &notices);
    d->announce(this, notices);
    return true;
}

TYPE_ID LocalStorage::createObject(const QString &dataname, const ObjectInfo &object,
                                   const QHash<QString, QByteArray> &blobs, const WriteCondition &condition,
                                   QString *error)
{
    const QString home = LocalStoragePrivate::home(dataname, object);
    ObjectInfo created = object;
    if (d->file.isOpen()) {
        const auto uid = std::make_shared<TYPE_ID>(0);
        StoreFile::Batch batch;
        if (condition)
            batch.check(fileCheck(condition));
        batch.createObject(home, object, blobs, uid);
        if (!d->file.write(batch, error))
            return 0;
        created.setUid(*uid);
    } else {
        if (condition) {
            const QString why = condition(CacheRecords(this, d->cardsByNumber));
            if (!why.isEmpty()) {
                if (error)
                    *error = why;
                return 0;
            }
        }
        created.setUid(qMax(nextUid(), d->issuedUid + 1));
        d->issuedUid = created.uid();
    }
    for (auto it = blobs.cbegin(); it != blobs.cend(); ++it)
        d->keepBlob(created.uid(), it.key(), it.value());
    LocalStoragePrivate::Notices notices;
    d->absorb(home, created, &notices);
    d->announce(this, notices);
    qDebug() << "store: created" << created.uid() << created.typeName() << "in" << home;
    return created.uid();
}

bool LocalStorage::updateParameters(TYPE_ID uid, const QHash<QString, QString> &parameters, QString *error)
{
    return saveChanges(uid, parameters, {}, std::nullopt, error);
}

bool LocalStorage::setParent(TYPE_ID uid, TYPE_ID parent, QString *error)
{
    return saveChanges(uid, {}, {}, parent, error);
}

bool LocalStorage::removeObjects(const QList<TYPE_ID> &uids, QString *error, const WriteCondition &condition)
{
    if (condition && !d->file.isOpen()) {
        const QString why = condition(CacheRecords(this, d->cardsByNumber));
        if (!why.isEmpty()) {
            if (error)
                *error = why;
            return false;
        }
    }
    StoreFile::Batch batch;
    if (condition && d->file.isOpen())
        batch.check(fileCheck(condition));
    for (TYPE_ID uid : uids)
        batch.removeObject(uid);
    if (!d->file.write(batch, error))
        return false;
    LocalStoragePrivate::Notices notices;
    for (TYPE_ID uid : uids)
        d->forget(uid, &notices);
    d->announce(this, notices);
    return true;
}

bool LocalStorage::setBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes, QString *error)
{
    StoreFile::Batch batch;
    if (bytes.isEmpty())
        batch.removeBlob(uid, key);
    else
        batch.putBlob(uid, key, bytes);
    if (!d->file.write(batch, error))
        return false;
    d->keepBlob(uid, key, bytes);
    const QString name = dataname(uid);
    if (!name.isEmpty())
        emit dataChanged(name, {uid});
    return true;
}

bool LocalStorage::setDbSettings(const ObjectInfo &settings, QString *error)
{
    ObjectInfo record = settings;
    if (record.typeName().isEmpty())
        record.setTypeName(OT_DB_SETTINGS);
    // There is one settings record; a new one replaces whatever uid it had.
    const QList<TYPE_ID> old = constObjects(DB_DATANAME)->uniqueKeys();
    StoreFile::Batch batch;
    for (TYPE_ID uid : old) {
        if (uid != record.uid())
            batch.removeObject(uid);
    }
    batch.putObject(DB_DATANAME, record);
    if (!d->file.write(batch, error))
        return false;
    for (TYPE_ID uid : old)
        d->datanameOf.remove(uid);
    d->collections[DB_DATANAME].clear();
    d->touch(DB_DATANAME);
    d->place(DB_DATANAME, record);
    emit dataChanged(DB_DATANAME, {record.uid()});
    return true;
}

bool LocalStorage::putSchedules(const QList<SCHEDULE_DATA> &schedules, QString *error)
{
    StoreFile::Batch batch;
    for (const SCHEDULE_DATA &s : schedules)
        batch.putSchedule(s);
    if (!d->file.write(batch, error))
        return false;
    QList<unsigned int> ids;
    for (const SCHEDULE_DATA &s : schedules) {
        d->schedules.replace(s.id, s);
        ids.append(unsigned(s.id));
    }
    emit dataChanged(SCHEDULE_DATANAME, ids);
    return true;
}

bool LocalStorage::setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules, QString *error)
{
    StoreFile::Batch batch;
    batch.setPersonalSchedules(worker, schedules);
    if (!d->file.write(batch, error))
        return false;
    d->keepPersonalSchedules(worker, schedules);
    emit dataChanged(SCHEDULE_DATANAME, {worker});
    return true;
}

bool LocalStorage::setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records,
                                      QString *error)
{
    StoreFile::Batch batch;
    batch.setScheduleHistory(worker, records);
    if (!d->file.write(batch, error))
        return false;
    d->keepScheduleHistory(worker, records);
    emit dataChanged(WORKER_HISTORY_DATANAME, {worker});
    return true;
}

bool LocalStorage::setAbsenceReasons(const _WORKER_ABSENCE_REASON &reasons, QString *error)
{
    StoreFile::Batch batch;
    batch.setAbsences(reasons);
    if (!d->file.write(batch, error))
        return false;
    d->keepAbsences(reasons);
    emit dataChanged(REASON_DATANAME, {reasons.worker});
    return true;
}

bool LocalStorage::setTemplates(TYPE_ID worker, const QList<_TEMPLATE_DATA> &templates, QString *error)
{
    QList<_TEMPLATE_DATA> owned = templates;
    for (_TEMPLATE_DATA &t : owned)
        t.worker = worker;
    StoreFile::Batch batch;
    batch.setTemplates(worker, owned);
    if (!d->file.write(batch, error))
        return false;
    d->keepTemplates(worker, owned);
    emit dataChanged(TEMPLATE_DATANAME, {worker});
    return true;
}

bool LocalStorage::putWorkerCalendars(const QList<WorkerCalendar> &calendars, QString *error)
{
    StoreFile::Batch batch;
    for (const WorkerCalendar &c : calendars) {
        batch.setPersonalSchedules(c.worker, c.personalSchedules);
        batch.setScheduleHistory(c.worker, c.scheduleHistory);
        batch.setAbsences(_WORKER_ABSENCE_REASON{c.worker, c.absences});
    }
    if (!d->file.write(batch, error))
        return false;
    QList<unsigned int> workers;
    for (const WorkerCalendar &c : calendars) {
        d->keepPersonalSchedules(c.worker, c.personalSchedules);
        d->keepScheduleHistory(c.worker, c.scheduleHistory);
        d->keepAbsences(_WORKER_ABSENCE_REASON{c.worker, c.absences});
        workers.append(c.worker);
    }
    emit dataChanged(SCHEDULE_DATANAME, workers);
    emit dataChanged(WORKER_HISTORY_DATANAME, workers);
    emit dataChanged(REASON_DATANAME, workers);
    return true;
}

TYPE_ID LocalStorage::nextUid() const
{
    TYPE_ID highest = SUBJECT_ROOT_UID;
    for (auto it = d->datanameOf.cbegin(); it != d->datanameOf.cend(); ++it)
        highest = qMax(highest, it.key());
    return highest + 1;
}

} // namespace nivaro
