#include "taskexecutor.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objectinfo.h>
#include <objecttypes.h>

#include <QDate>
#include <QDebug>
#include <QHash>
#include <QMetaMethod>
#include <QQueue>
#include <QTimer>

#include <functional>
#include <optional>

namespace nivaro {

namespace {

// Texts go through TaskExecutor::tr() even outside the class, so that they
// are filed and looked up under one context, the class's own.

// What a command handler answers: the uid to reply with, or 0 and why
// (for the operator, and in English for the debug line).
struct Outcome
{
    TYPE_ID uid = 0;
    QString error;
    QString debug;
};

Outcome failure(const QString &why, const QString &debug)
{
    return Outcome{0, why, debug};
}

// The store has already logged the SQLite side of its refusals.
Outcome storeFailure(const QString &why)
{
    return Outcome{0, why, QStringLiteral("store refused")};
}

Outcome notFound(TYPE_ID uid)
{
    return failure(TaskExecutor::tr("Объект %1 не найден").arg(uid), QStringLiteral("object not found: %1").arg(uid));
}

// Parameters the server keeps beside the record rather than in it: a photo
// would make every record of the organisation large.
bool isBlobKey(const QString &key)
{
    return key == db::worker::PHOTO || key == db::worker::PHOTO_PREVIEW;
}

// Where an object of a type may stand: firms at the top of the
// organisation, departments and employees in a firm or a department.
// Read from the store inside the write, so a parent that another client
// deleted or moved a moment ago is judged as it is now. uid is 0 for an
// object being created.
QString placementRefusal(const QString &type, TYPE_ID uid, TYPE_ID parent, const StoredRecords &stored,
                         QString *debug)
{
    if (type == OT_FIRM) {
        if (parent == SUBJECT_ROOT_UID)
            return QString();
        *debug = QStringLiteral("firm parent %1 is not the subject root").arg(parent);
        return TaskExecutor::tr("Организация может находиться только в корне оргструктуры, а не в объекте %1").arg(parent);
    }
    if (type != OT_DEPARTMENT && type != OT_WORKER)
        return QString();
    const bool department = type == OT_DEPARTMENT;
    if (department && uid != 0 && parent == uid) {
        *debug = QStringLiteral("department %1 into itself").arg(uid);
        return TaskExecutor::tr("Подразделение %1 нельзя перенести в само себя").arg(NVGlobals::objectName(stored.object(uid)));
    }
    const ObjectInfo target = stored.object(parent);
    if (!target.isValid()) {
        *debug = QStringLiteral("parent %1 not found").arg(parent);
        return TaskExecutor::tr("Родительский объект %1 не найден").arg(parent);
    }
    if (target.typeName() != OT_FIRM && target.typeName() != OT_DEPARTMENT) {
        *debug = QStringLiteral("parent %1 of type %2 cannot hold %3").arg(parent).arg(target.typeName(), type);
        const QString name = NVGlobals::objectName(target).isEmpty() ? QString::number(parent) : NVGlobals::objectName(target);
        return department ? TaskExecutor::tr("Подразделение может находиться только в организации или в другом подразделении, "
                               "а %1 не организация и не подразделение")
                                .arg(name)
                          : TaskExecutor::tr("Сотрудник может находиться только в организации или в подразделении, "
                               "а %1 не организация и не подразделение")
                                .arg(name);
    }
    if (!department || uid == 0)
        return QString();
    // Below itself the department and everything under it would hang
    // from nothing the tree can reach.
    int steps = 0;
    for (ObjectInfo up = target; up.isValid() && up.uid() != SUBJECT_ROOT_UID; up = stored.object(up.parent())) {
        if (up.uid() == uid || ++steps > 100000) {
            *debug = QStringLiteral("department %1 below its own descendant %2").arg(uid).arg(parent);
            return TaskExecutor::tr("Подразделение %1 нельзя перенести в подчиненное ему подразделение %2")
                .arg(NVGlobals::objectName(stored.object(uid)), NVGlobals::objectName(target));
        }
    }
    return QString();
}

// A failure the store reported: the condition's English line when one
// refused, the store's own otherwise (it has logged the SQLite side).
Outcome writeFailure(const QString &why, const QString &debug)
{
    return debug.isEmpty() ? storeFailure(why) : failure(why, debug);
}

QString propertyKey(const QString &param)
{
    static const QString prefix = QStringLiteral("property-");
    return param.startsWith(prefix) ? param.mid(prefix.size()) : QString();
}

// The task's "property-" entries: photos as blobs (hex text, as the views
// read them back), the rest as parameters; skipEmpty for a new object,
// where an empty value has nothing to remove.
void splitProperties(const TaskInfo &task, bool skipEmpty, QHash<QString, QString> *parameters,
                     QHash<QString, QByteArray> *blobs)
{
    for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
        const QString key = propertyKey(it.key());
        const QString value = it.value().toString();
        if (key.isEmpty() || (skipEmpty && value.isEmpty()))
            continue;
        if (isBlobKey(key))
            blobs->insert(key, value.toLatin1());
        else
            parameters->insert(key, value);
    }
}

// The task's "parent", 0 when it names none: no object has uid 0, and a
// task queued before its object existed may carry 0 there.
TYPE_ID parentOf(const TaskInfo &task)
{
    bool ok = false;
    const TYPE_ID parent = task.params.value(QStringLiteral("parent")).toUInt(&ok);
    return ok ? parent : 0;
}

bool isEmployee(const ObjectInfo *object)
{
    return object && object->typeName() == OT_WORKER;
}

} // namespace

class TaskExecutorPrivate
{
public:
    using Handler = std::function<Outcome(const TaskInfo &)>;

    explicit TaskExecutorPrivate(LocalStorage *s)
        : storage(s)
    {
        handlers.insert(QStringLiteral("save_object"), [this](const TaskInfo &t) { return saveObject(t); });
        handlers.insert(QStringLiteral("delete_object"), [this](const TaskInfo &t) { return deleteObject(t); });
        handlers.insert(QStringLiteral("dismiss_object"), [this](const TaskInfo &t) { return dismissObject(t); });
    }

    // Hands the store only what the task changes: a parameter it does not
    // name, or a parent it does not move, stays as the file holds it.
    Outcome saveObject(const TaskInfo &task) const
    {
        const QString type = task.params.value(QStringLiteral("object_type")).toString();
        const ObjectInfo *object = task.uid ? storage->constObject(task.uid) : nullptr;
        // A card that the reader just read or wrote is new to the server:
        // the client cannot know its uid yet. A card task queued behind
        // the creation of its employee carries that employee's uid.
        if (type == OT_CARD && (!object || isEmployee(object)))
            return createCard(task, isEmployee(object) ? task.uid : parentOf(task));
        if (task.uid == 0)
            return createObject(task, type);
        if (!object)
            return notFound(task.uid);
        if (type != object->typeName())
            return failure(TaskExecutor::tr("Тип объекта %1 (%2) не совпадает с типом в задаче (%3)")
                               .arg(task.uid)
                               .arg(object->typeName(), type),
                           QStringLiteral("object_type %1 does not match %2").arg(type, object->typeName()));

        QHash<QString, QString> parameters;
        QHash<QString, QByteArray> blobs;
        splitProperties(task, false, &parameters, &blobs);
        // Views send the parent they showed; only a different one is a move.
        std::optional<TYPE_ID> parent;
        const TYPE_ID parentUid = parentOf(task);
        if (parentUid != 0 && parentUid != object->parent())
            parent = parentUid;

        QString debug;
        LocalStorage::WriteCondition condition;
        if (parent) {
            const TYPE_ID uid = task.uid;
            condition = [type, uid, parentUid, &debug](const StoredRecords &stored) {
                return placementRefusal(type, uid, parentUid, stored, &debug);
            };
        }
        QString error;
        if (!storage->saveChanges(task.uid, parameters, blobs, parent, &error, condition))
            return writeFailure(error, debug);
        return Outcome{task.uid, QString(), QString()};
    }

    // A new firm, department or employee. The store picks the uid inside
    // the same transaction that checks the parent and inserts the record.
    Outcome createObject(const TaskInfo &task, const QString &type) const
    {
        if (type != OT_FIRM && type != OT_DEPARTMENT && type != OT_WORKER) {
            return failure(type.isEmpty() ? TaskExecutor::tr("Объект не создан: не указан тип объекта")
                                          : TaskExecutor::tr("Объект не создан: объекты типа %1 так не создаются").arg(type),
                           QStringLiteral("cannot create object_type '%1'").arg(type));
        }
        QHash<QString, QString> parameters;
        QHash<QString, QByteArray> blobs;
        splitProperties(task, true, &parameters, &blobs);
        const QString nameKey = type == OT_WORKER ? db::worker::LAST_NAME : db::common::NAME;
        if (parameters.value(nameKey).trimmed().isEmpty()) {
            const QString why = type == OT_FIRM         ? TaskExecutor::tr("Организация не создана: не задано название")
                                : type == OT_DEPARTMENT ? TaskExecutor::tr("Подразделение не создано: не задано название")
                                                        : TaskExecutor::tr("Сотрудник не создан: не задана фамилия");
            return failure(why, QStringLiteral("new %1 without %2").arg(type, nameKey));
        }
        const TYPE_ID parent = parentOf(task);
        if (parent == 0)
            return failure(TaskExecutor::tr("Объект не создан: не указан родительский объект"),
                           QStringLiteral("new %1 without parent").arg(type));

        ObjectInfo object(0, type, parameters);
        object.setParent(parent);
        QString debug;
        QString error;
        const TYPE_ID uid = storage->createObject(
            ObjectInfo::datatype(type), object, blobs,
            [&](const StoredRecords &stored) { return placementRefusal(type, 0, parent, stored, &debug); }, &error);
        if (uid == 0)
            return writeFailure(error, debug);
        qDebug() << "executor: created" << type << uid << "under" << parent;
        return Outcome{uid, QString(), QString()};
    }

    // A new card for an employee. The number is what identifies a person at
    // the doors, so the server never hands one number to two cards; the
    // check and the insert are one transaction, so two clients cannot.
    Outcome createCard(const TaskInfo &task, TYPE_ID owner) const
    {
        QHash<QString, QString> parameters;
        QHash<QString, QByteArray> blobs;
        splitProperties(task, true, &parameters, &blobs);
        const QString numberText = parameters.value(db::card::NUMBER).trimmed();
        bool ok = false;
        const quint64 number = numberText.toULongLong(&ok);
        if (!ok || number == 0)
            return failure(TaskExecutor::tr("Карта не создана: неверный номер карты \"%1\"").arg(numberText),
                           QStringLiteral("bad card number: %1").arg(numberText));
        parameters.insert(db::card::NUMBER, QString::number(number));
        parameters.insert(db::card::OWNER, QString::number(owner));
        ObjectInfo card(0, OT_CARD, parameters);
        card.setParent(owner);

        QString debug;
        const auto condition = [&](const StoredRecords &stored) {
            const ObjectInfo employee = stored.object(owner);
            if (owner == 0 || employee.typeName() != OT_WORKER) {
                debug = QStringLiteral("card owner not found: %1").arg(owner);
                return TaskExecutor::tr("Карта не создана: сотрудник %1 не найден").arg(owner);
            }
            const TYPE_ID held = stored.cardWithNumber(QString::number(number));
            if (held == 0)
                return QString();
            const ObjectInfo other = stored.object(held);
            const TYPE_ID holder = other.parameter(db::card::OWNER).toUInt() ? other.parameter(db::card::OWNER).toUInt()
                                                                             : other.parent();
            const ObjectInfo person = stored.object(holder);
            const QString whose = person.isValid() ? NVGlobals::objectName(person) : QString::number(holder);
            debug = QStringLiteral("card number %1 already held by card %2").arg(numberText).arg(held);
            return TaskExecutor::tr("Карта с номером %1 уже выдана: %2. Одну карту нельзя выдать дважды").arg(numberText, whose);
        };
        QString error;
        const TYPE_ID uid = storage->createObject(CARD_DATANAME, card, blobs, condition, &error);
        if (uid == 0)
            return writeFailure(error, debug);
        qDebug() << "executor: card created" << uid << "number" << number << "owner" << owner;
        return Outcome{uid, QString(), QString()};
    }

    // Dismissal: the state, the date and the reason change, and the store
    // moves the record to the dismissed, all in one write.
    Outcome dismissObject(const TaskInfo &task) const
    {
        const QString dateText = task.params.value(QStringLiteral("date")).toString().trimmed();
        const QDate date = QDate::fromString(dateText, Qt::ISODate);
        if (!date.isValid())
            return failure(dateText.isEmpty() ? TaskExecutor::tr("Сотрудник не уволен: не указана дата увольнения")
                                              : TaskExecutor::tr("Сотрудник не уволен: неверная дата увольнения \"%1\"").arg(dateText),
                           QStringLiteral("bad dismissal date: '%1'").arg(dateText));
        const QHash<QString, QString> changes = {
            {db::common::OBJECTSTATE, db::common::STATE_FIRED},
            {db::worker::DISMISS_DATE, date.toString(Qt::ISODate)},
            {db::worker::DISMISS_REASON, task.params.value(QStringLiteral("reason")).toString().trimmed()},
        };
        const TYPE_ID uid = task.uid;
        QString debug;
        const auto condition = [&](const StoredRecords &stored) {
            const ObjectInfo employee = stored.object(uid);
            if (!employee.isValid()) {
                debug = QStringLiteral("object not found: %1").arg(uid);
                return TaskExecutor::tr("Объект %1 не найден").arg(uid);
            }
            if (employee.typeName() != OT_WORKER) {
                debug = QStringLiteral("dismissing %1 of type %2").arg(uid).arg(employee.typeName());
                return TaskExecutor::tr("Объект %1 не сотрудник: уволить можно только сотрудника").arg(uid);
            }
            if (employee.parameter(db::common::OBJECTSTATE).compare(db::common::STATE_FIRED, Qt::CaseInsensitive) == 0) {
                debug = QStringLiteral("already dismissed: %1").arg(uid);
                return TaskExecutor::tr("Сотрудник %1 уже уволен").arg(NVGlobals::objectName(employee));
            }
            return QString();
        };
        QString error;
        if (uid == 0 || !storage->saveChanges(uid, changes, {}, std::nullopt, &error, condition))
            return uid == 0 ? notFound(uid) : writeFailure(error, debug);
        qDebug() << "executor: dismissed" << uid << date;
        return Outcome{uid, QString(), QString()};
    }

    Outcome deleteObject(const TaskInfo &task) const
    {
        const ObjectInfo *object = storage->constObject(task.uid);
        if (!object)
            return notFound(task.uid);
        // The server never orphans people: a department goes only once it
        // is empty, so a wizard deletes the members first. Asked inside the
        // delete's own write, so a member another client adds meanwhile is
        // never left hanging from nothing.
        const TYPE_ID uid = task.uid;
        QString debug;
        const auto empty = [uid, &debug](const StoredRecords &stored) {
            if (!stored.hasMembers(uid))
                return QString();
            debug = QStringLiteral("object %1 is not empty").arg(uid);
            return TaskExecutor::tr("Подразделение %1 не пусто: сначала удалите или переведите сотрудников").arg(uid);
        };
        QString error;
        if (!storage->removeObjects({uid}, &error, empty))
            return writeFailure(error, debug);
        return Outcome{task.uid, QString(), QString()};
    }

    LocalStorage *storage;
    QHash<QString, Handler> handlers;
    QQueue<TaskInfo> queue;
    bool scheduled = false;
    QString lastError;
};

TaskExecutor::TaskExecutor(LocalStorage *storage, QObject *parent)
    : QObject(parent)
    , d(new TaskExecutorPrivate(storage))
{
}

TaskExecutor::~TaskExecutor() = default;

int TaskExecutor::pendingCount() const
{
    return d->queue.size();
}

QString TaskExecutor::lastError() const
{
    return d->lastError;
}

void TaskExecutor::execute(const TaskInfo &task)
{
    d->queue.enqueue(task);
    if (d->scheduled)
        return;
    d->scheduled = true;
    // Never inside the caller: a page that queues and then waits must get
    // its reply from the event loop, after it has returned.
    QTimer::singleShot(0, this, [this] { runNext(); });
}

void TaskExecutor::runNext()
{
    d->scheduled = false;
    if (d->queue.isEmpty()) {
        emit idle();
        return;
    }
    const TaskInfo task = d->queue.dequeue();
    const auto handler = d->handlers.constFind(task.command);
    const Outcome outcome = handler == d->handlers.cend()
                                ? failure(TaskExecutor::tr("Неизвестная команда: %1").arg(task.command),
                                          QStringLiteral("unknown command %1").arg(task.command))
                                : (*handler)(task);
    if (outcome.uid == 0) {
        d->lastError = outcome.error;
        qWarning() << "executor: task failed" << task.id << task.command << task.uid << outcome.debug;
    }
    reply(task, outcome.uid);
    emit taskFinished(task, outcome.uid != 0, outcome.error);

    if (!d->queue.isEmpty()) {
        d->scheduled = true;
        QTimer::singleShot(0, this, [this] { runNext(); });
    } else {
        emit idle();
    }
}

void TaskExecutor::reply(const TaskInfo &task, TYPE_ID uid)
{
    QObject *receiver = task.widget.data();
    if (!receiver) {
        qDebug() << "executor: receiver of task" << task.id << "is gone, reply dropped";
        return;
    }
    const QMetaObject *meta = receiver->metaObject();
    const QByteArray name = task.slot.toLatin1();
    // Reply slots take the uid, some a text after it ("saveCards").
    const QByteArray uidSignature = QMetaObject::normalizedSignature(QByteArray(name + "(uint)").constData());
    const QByteArray textSignature = QMetaObject::normalizedSignature(QByteArray(name + "(uint,QString)").constData());
    const int withUid = meta->indexOfMethod(uidSignature.constData());
    const int withText = meta->indexOfMethod(textSignature.constData());
    if (withUid >= 0) {
        meta->method(withUid).invoke(receiver, Qt::DirectConnection, Q_ARG(unsigned int, uid));
    } else if (withText >= 0) {
        meta->method(withText).invoke(receiver, Qt::DirectConnection, Q_ARG(unsigned int, uid), Q_ARG(QString, QString()));
    } else {
        qWarning() << "executor: no reply slot" << task.slot << "on" << meta->className();
    }
}

} // namespace nivaro
