#include "taskexecutor.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objectinfo.h>
#include <objecttreemodel.h>

#include <QDebug>
#include <QHash>
#include <QMetaMethod>
#include <QQueue>
#include <QTimer>

#include <functional>

namespace nivaro {

namespace {

// What a command handler answers: the uid to reply with, or 0 and why.
struct Outcome
{
    TYPE_ID uid = 0;
    QString error;
};

Outcome failure(const QString &why)
{
    return Outcome{0, why};
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

    Outcome saveObject(const TaskInfo &task) const
    {
        const ObjectInfo *object = storage->constObject(task.uid);
        if (!object)
            return failure(QStringLiteral("object not found: %1").arg(task.uid));
        const QString type = task.params.value(QStringLiteral("object_type")).toString();
        if (type != object->typeName())
            return failure(QStringLiteral("object_type %1 does not match %2").arg(type, object->typeName()));

        static const QString prefix = QStringLiteral("property-");
        QHash<QString, QString> parameters;
        QHash<QString, QString> blobs;
        for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
            if (!it.key().startsWith(prefix) || it.key().size() == prefix.size())
                continue;
            const QString key = it.key().mid(prefix.size());
            (isBlobKey(key) ? blobs : parameters).insert(key, it.value().toString());
        }
        QString error;
        if (!parameters.isEmpty() && !storage->updateParameters(task.uid, parameters, &error))
            return failure(error);
        // Photos arrive as hex text, as the views read them back; an empty
        // one removes the stored photo.
        for (auto it = blobs.cbegin(); it != blobs.cend(); ++it) {
            if (!storage->setBlob(task.uid, it.key(), it.value().toLatin1(), &error))
                return failure(error);
        }

        const QVariant parent = task.params.value(QStringLiteral("parent"));
        bool ok = false;
        const TYPE_ID parentUid = parent.toUInt(&ok);
        if (parent.isValid() && ok && parentUid != storage->constObject(task.uid)->parent()
            && !storage->setParent(task.uid, parentUid, &error))
            return failure(error);
        return Outcome{task.uid, QString()};
    }

    Outcome deleteObject(const TaskInfo &task) const
    {
        const ObjectInfo *object = storage->constObject(task.uid);
        if (!object)
            return failure(QStringLiteral("object not found: %1").arg(task.uid));
        // The server never orphans people: a department goes only once it
        // is empty, so a wizard deletes the members first.
        if (ObjectTreeModel *tree = storage->model(ORGSTRUCTURE_DATANAME)) {
            const QModelIndex node = tree->indexOf(task.uid);
            if (node.isValid() && tree->rowCount(node) > 0)
                return failure(QStringLiteral("object %1 is not empty").arg(task.uid));
        }
        QString error;
        if (!storage->removeObjects({task.uid}, &error))
            return failure(error);
        return Outcome{task.uid, QString()};
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
                                ? failure(QStringLiteral("unknown command %1").arg(task.command))
                                : (*handler)(task);
    if (outcome.uid == 0) {
        d->lastError = outcome.error;
        qWarning() << "executor: task failed" << task.id << task.command << task.uid << outcome.error;
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
