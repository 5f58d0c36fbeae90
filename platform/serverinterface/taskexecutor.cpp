#include "taskexecutor.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objectinfo.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QCoreApplication>
#include <QDebug>
#include <QHash>
#include <QMetaMethod>
#include <QQueue>
#include <QTimer>

#include <functional>
#include <optional>

namespace nivaro {

namespace {

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

QString tr(const char *text)
{
    return QCoreApplication::translate("TaskExecutor", text);
}

Outcome notFound(TYPE_ID uid)
{
    return failure(tr("Объект %1 не найден").arg(uid), QStringLiteral("object not found: %1").arg(uid));
}

// Parameters the server keeps beside the record rather than in it: a photo
// would make every record of the organisation large.
bool isBlobKey(const QString &key)
{
    return key == db::worker::PHOTO || key == db::worker::PHOTO_PREVIEW;
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
    }

    // Hands the store only what the task changes: a parameter it does not
    // name, or a parent it does not move, stays as the file holds it.
    Outcome saveObject(const TaskInfo &task) const
    {
        const QString type = task.params.value(QStringLiteral("object_type")).toString();
        const ObjectInfo *object = task.uid ? storage->constObject(task.uid) : nullptr;
        // A card that the reader just read or wrote is new to the server:
        // the client cannot know its uid yet.
        if (!object && type == OT_CARD)
            return createCard(task);
        if (!object)
            return notFound(task.uid);
        if (type != object->typeName())
            return failure(tr("Тип объекта %1 (%2) не совпадает с типом в задаче (%3)")
                               .arg(task.uid)
                               .arg(object->typeName(), type),
                           QStringLiteral("object_type %1 does not match %2").arg(type, object->typeName()));

        QHash<QString, QString> parameters;
        QHash<QString, QByteArray> blobs;
        for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
            const QString key = propertyKey(it.key());
            if (key.isEmpty())
                continue;
            // Photos arrive as hex text, as the views read them back; an
            // empty one removes the stored photo.
            if (isBlobKey(key))
                blobs.insert(key, it.value().toString().toLatin1());
            else
                parameters.insert(key, it.value().toString());
        }
        // Views send the parent they showed; only a different one is a move.
        std::optional<TYPE_ID> parent;
        const QVariant parentValue = task.params.value(QStringLiteral("parent"));
        bool ok = false;
        const TYPE_ID parentUid = parentValue.toUInt(&ok);
        if (parentValue.isValid() && ok && parentUid != object->parent())
            parent = parentUid;

        QString error;
        if (!storage->saveChanges(task.uid, parameters, blobs, parent, &error))
            return storeFailure(error);
        return Outcome{task.uid, QString(), QString()};
    }

    static QString propertyKey(const QString &param)
    {
        static const QString prefix = QStringLiteral("property-");
        return param.startsWith(prefix) ? param.mid(prefix.size()) : QString();
    }

    // A new card for an employee. The number is what identifies a person at
    // the doors, so the server never hands one number to two cards.
    Outcome createCard(const TaskInfo &task) const
    {
        const QVariant parentValue = task.params.value(QStringLiteral("parent"));
        const TYPE_ID owner = parentValue.toUInt();
        const ObjectInfo *employee = storage->constObject(owner, QStringList{SUBJECT_DATANAME, SUBJECT_FIRED_DATANAME});
        if (!employee)
            return failure(tr("Карта не создана: сотрудник %1 не найден").arg(parentValue.toString()),
                           QStringLiteral("card owner not found: %1").arg(parentValue.toString()));
        QHash<QString, QString> parameters;
        for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
            const QString key = propertyKey(it.key());
            if (!key.isEmpty() && !it.value().toString().isEmpty())
                parameters.insert(key, it.value().toString());
        }
        const QString numberText = parameters.value(db::card::NUMBER).trimmed();
        bool ok = false;
        const quint64 number = numberText.toULongLong(&ok);
        if (!ok || number == 0)
            return failure(tr("Карта не создана: неверный номер карты \"%1\"").arg(numberText),
                           QStringLiteral("bad card number: %1").arg(numberText));
        const NVHash<TYPE_ID, ObjectInfo> &cards = *storage->constObjects(CARD_DATANAME);
        for (const ObjectInfo &card : cards) {
            if (card.parameter(db::card::NUMBER).trimmed().toULongLong() != number)
                continue;
            const TYPE_ID holder = card.parameter(db::card::OWNER).toUInt() ? card.parameter(db::card::OWNER).toUInt()
                                                                             : card.parent();
            const ObjectInfo *other = storage->constObject(holder);
            const QString whose = other ? NVGlobals::objectName(*other) : QString::number(holder);
            return failure(tr("Карта с номером %1 уже выдана: %2. Одну карту нельзя выдать дважды")
                               .arg(numberText, whose),
                           QStringLiteral("card number %1 already held by card %2").arg(numberText).arg(card.uid()));
        }
        parameters.insert(db::card::NUMBER, QString::number(number));
        parameters.insert(db::card::OWNER, QString::number(owner));
        ObjectInfo card(storage->nextUid(), OT_CARD, parameters);
        card.setParent(owner);
        QString error;
        if (!storage->putObjects(CARD_DATANAME, {card}, &error))
            return storeFailure(error);
        qDebug() << "executor: card created" << card.uid() << "number" << number << "owner" << owner;
        return Outcome{card.uid(), QString(), QString()};
    }

    Outcome deleteObject(const TaskInfo &task) const
    {
        const ObjectInfo *object = storage->constObject(task.uid);
        if (!object)
            return notFound(task.uid);
        // The server never orphans people: a department goes only once it
        // is empty, so a wizard deletes the members first.
        if (ObjectTreeModel *tree = storage->model(ORGSTRUCTURE_DATANAME)) {
            const QModelIndex node = tree->indexOf(task.uid);
            if (node.isValid() && tree->rowCount(node) > 0)
                return failure(tr("Подразделение %1 не пусто: сначала удалите или переведите сотрудников").arg(task.uid),
                               QStringLiteral("object %1 is not empty").arg(task.uid));
        }
        QString error;
        if (!storage->removeObjects({task.uid}, &error))
            return storeFailure(error);
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
                                ? failure(tr("Неизвестная команда: %1").arg(task.command),
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
