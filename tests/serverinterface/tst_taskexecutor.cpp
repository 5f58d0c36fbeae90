#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

class Receiver : public QObject
{
    Q_OBJECT
public:
    QList<unsigned int> saved;
public Q_SLOTS:
    void savedSlot(unsigned int uid) { saved.append(uid); }
};

namespace {

TaskInfo saveTask(QObject *receiver, TYPE_ID uid, const QString &type, const QHash<QString, QString> &changes,
                  const QString &slot = QStringLiteral("savedSlot"))
{
    TaskInfo task;
    task.id = TaskInfo::newId();
    task.uid = uid;
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), type);
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        task.params.insert(QStringLiteral("property-%1").arg(it.key()), it.value());
    task.widget = receiver;
    task.slot = slot;
    task.errorMessage = QStringLiteral("Ошибка сохранения");
    return task;
}

} // namespace

class TestTaskExecutor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { LocalStorage::instance()->close(); }
    void savesThroughTheEventLoop();
    void failuresReplyZero_data();
    void failuresReplyZero();
    void parentMovesOnlyWhenTheTaskMovesIt_data();
    void parentMovesOnlyWhenTheTaskMovesIt();
    void photosGoToBlobs();
    void deletesOnlyEmptyObjects();
    void receiverDestroyedWhileTaskIsOut();
    void createsCards_data();
    void createsCards();

private:
    QTemporaryDir m_dir;
};

void TestTaskExecutor::init()
{
    LocalStorage *store = LocalStorage::instance();
    QString error;
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo w(100, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Иванов")}});
    w.setParent(20);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {w}));
}

void TestTaskExecutor::savesThroughTheEventLoop()
{
    LocalStorage *store = LocalStorage::instance();
    TaskExecutor executor(store);
    Receiver receiver;
    QSignalSpy changed(store, &LocalStorage::dataChanged);
    QSignalSpy finished(&executor, &TaskExecutor::taskFinished);

    executor.execute(saveTask(&receiver, 100, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Петров")}}));
    executor.execute(saveTask(&receiver, 100, OT_WORKER, {{db::worker::FIRST_NAME, QStringLiteral("Пётр")}}));
    QVERIFY(receiver.saved.isEmpty()); // not inside the call that handed it over
    QCOMPARE(executor.pendingCount(), 2);

    QTRY_COMPARE(receiver.saved, (QList<unsigned int>{100, 100}));
    QCOMPARE(finished.size(), 2);
    QVERIFY(finished.at(0).at(1).toBool());
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Петров"));
    QCOMPARE(store->object(100).parameter(db::worker::FIRST_NAME), QStringLiteral("Пётр"));
    QVERIFY(changed.size() >= 2);
    QCOMPARE(changed.at(0).at(0).toString(), SUBJECT_DATANAME);

    // And it is in the file.
    const QString file = store->fileName();
    store->close();
    QString error;
    QVERIFY(store->open(file, &error));
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Петров"));
}

void TestTaskExecutor::photosGoToBlobs()
{
    LocalStorage *store = LocalStorage::instance();
    TaskExecutor executor(store);
    Receiver receiver;
    const QString hex = QStringLiteral("89504e47");
    executor.execute(saveTask(&receiver, 100, OT_WORKER,
                              {{db::worker::PHOTO, hex}, {db::worker::PHOTO_PREVIEW, hex}, {db::worker::LAST_NAME, QStringLiteral("Сидоров")}}));
    QTRY_COMPARE(receiver.saved, QList<unsigned int>{100});
    QCOMPARE(store->blob(100, db::worker::PHOTO), hex.toLatin1());
    QCOMPARE(store->blob(100, db::worker::PHOTO_PREVIEW), hex.toLatin1());
    QVERIFY(!store->object(100).hasParameter(db::worker::PHOTO));
    QCOMPARE(store->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Сидоров"));

    // A cleared photo is sent as an empty value and removes the blob.
    executor.execute(saveTask(&receiver, 100, OT_WORKER, {{db::worker::PHOTO, QString()}}));
    QTRY_COMPARE(receiver.saved.size(), 2);
    QVERIFY(store->blob(100, db::worker::PHOTO).isEmpty());
    QCOMPARE(store->blob(100, db::worker::PHOTO_PREVIEW), hex.toLatin1());
}

void TestTaskExecutor::failuresReplyZero_data()
{
    QTest::addColumn<TYPE_ID>("uid");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown object") << TYPE_ID(999) << OT_WORKER << QStringLiteral("save_object")
                                    << QStringLiteral("Объект 999 не найден");
    QTest::newRow("wrong object_type") << TYPE_ID(100) << OT_DEPARTMENT << QStringLiteral("save_object")
                                       << QStringLiteral("Тип объекта 100 (%1) не совпадает с типом в задаче (%2)").arg(OT_WORKER, OT_DEPARTMENT);
    QTest::newRow("unknown command") << TYPE_ID(100) << OT_WORKER << QStringLiteral("launch_rocket")
                                     << QStringLiteral("Неизвестная команда: launch_rocket");
}

void TestTaskExecutor::failuresReplyZero()
{
    QFETCH(TYPE_ID, uid);
    QFETCH(QString, type);
    QFETCH(QString, command);
    QFETCH(QString, reason);
    TaskExecutor executor(LocalStorage::instance());
    Receiver receiver;
    QSignalSpy finished(&executor, &TaskExecutor::taskFinished);
    TaskInfo task = saveTask(&receiver, uid, type, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}});
    task.command = command;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    executor.execute(task);
    QTRY_COMPARE(receiver.saved, QList<unsigned int>{0});
    QCOMPARE(finished.size(), 1);
    QVERIFY(!finished.at(0).at(1).toBool());
    // The operator reads these: Russian, never the debug line's English.
    QCOMPARE(finished.at(0).at(2).toString(), reason);
    QCOMPARE(executor.lastError(), reason);
    QCOMPARE(LocalStorage::instance()->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Иванов"));
}

// A bulk update names no parent: it must not move everyone to the root.
void TestTaskExecutor::parentMovesOnlyWhenTheTaskMovesIt_data()
{
    QTest::addColumn<QVariant>("parent");
    QTest::addColumn<TYPE_ID>("expected");
    QTest::newRow("no parent entry") << QVariant() << TYPE_ID(20);
    QTest::newRow("the same parent") << QVariant(20u) << TYPE_ID(20);
    QTest::newRow("another parent") << QVariant(21u) << TYPE_ID(21);
}

void TestTaskExecutor::parentMovesOnlyWhenTheTaskMovesIt()
{
    QFETCH(QVariant, parent);
    QFETCH(TYPE_ID, expected);
    LocalStorage *store = LocalStorage::instance();
    QList<ObjectInfo> departments;
    for (TYPE_ID uid : {20u, 21u}) {
        departments.append(ObjectInfo(uid, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Отдел %1").arg(uid)}}));
        departments.last().setParent(10);
    }
    departments.append(ObjectInfo(10, OT_FIRM, {{db::common::NAME, QStringLiteral("Альфа")}}));
    departments.last().setParent(SUBJECT_ROOT_UID);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, departments));
    TaskExecutor executor(store);
    Receiver receiver;
    TaskInfo task = saveTask(&receiver, 100, OT_WORKER, {{db::worker::FIRST_NAME, QStringLiteral("Пётр")}});
    if (parent.isValid())
        task.params.insert(QStringLiteral("parent"), parent);
    executor.execute(task);
    QTRY_COMPARE(receiver.saved, QList<unsigned int>{100});
    QCOMPARE(store->object(100).parent(), expected);
    const QString file = store->fileName();
    store->close();
    QVERIFY(store->open(file));
    QCOMPARE(store->object(100).parent(), expected);
    QCOMPARE(store->object(100).parameter(db::worker::FIRST_NAME), QStringLiteral("Пётр"));
}

void TestTaskExecutor::deletesOnlyEmptyObjects()
{
    LocalStorage *store = LocalStorage::instance();
    ObjectInfo department(20, OT_DEPARTMENT, {{db::orgstructure::NAME, QStringLiteral("Склад")}});
    department.setParent(SUBJECT_ROOT_UID);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {ObjectInfo(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT), department}));
    TaskExecutor executor(store);
    Receiver receiver;
    auto deleteTask = [&](TYPE_ID uid) {
        TaskInfo task = saveTask(&receiver, uid, QString(), {});
        task.command = QStringLiteral("delete_object");
        return task;
    };

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed .* not empty")));
    executor.execute(deleteTask(20));
    executor.execute(deleteTask(100));
    executor.execute(deleteTask(20));
    QTRY_COMPARE(receiver.saved, (QList<unsigned int>{0, 100, 20}));
    QVERIFY(!store->constObject(100));
    QVERIFY(!store->constObject(20));

    const QString file = store->fileName();
    store->close();
    QVERIFY(store->open(file));
    QVERIFY(!store->constObject(100));
    QVERIFY(!store->constObject(20));
}

void TestTaskExecutor::receiverDestroyedWhileTaskIsOut()
{
    TaskExecutor executor(LocalStorage::instance());
    QSignalSpy finished(&executor, &TaskExecutor::taskFinished);
    auto *receiver = new Receiver;
    executor.execute(saveTask(receiver, 100, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сидоров")}}));
    delete receiver;
    QTRY_COMPARE(finished.size(), 1);
    // The work is done even though nobody hears the answer.
    QCOMPARE(LocalStorage::instance()->object(100).parameter(db::worker::LAST_NAME), QStringLiteral("Сидоров"));
}

// A card that a reader read is new to the server: it gets a uid of its own,
// unless its number already identifies another card.
void TestTaskExecutor::createsCards_data()
{
    QTest::addColumn<TYPE_ID>("uid");
    QTest::addColumn<TYPE_ID>("owner");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("reason"); // empty: created

    QTest::newRow("uid 0") << TYPE_ID(0) << TYPE_ID(100) << QStringLiteral("3735928559") << QString();
    QTest::newRow("unknown uid") << TYPE_ID(4711) << TYPE_ID(100) << QStringLiteral("12345") << QString();
    QTest::newRow("leading zeros are the same number")
        << TYPE_ID(0) << TYPE_ID(101) << QStringLiteral("0077")
        << QStringLiteral("Карта с номером 0077 уже выдана: Иванов. Одну карту нельзя выдать дважды");
    QTest::newRow("same number, same owner")
        << TYPE_ID(0) << TYPE_ID(100) << QStringLiteral("77")
        << QStringLiteral("Карта с номером 77 уже выдана: Иванов. Одну карту нельзя выдать дважды");
    QTest::newRow("no number") << TYPE_ID(0) << TYPE_ID(100) << QString()
                               << QStringLiteral("Карта не создана: неверный номер карты \"\"");
    QTest::newRow("not a number") << TYPE_ID(0) << TYPE_ID(100) << QStringLiteral("A1B2")
                                  << QStringLiteral("Карта не создана: неверный номер карты \"A1B2\"");
    QTest::newRow("unknown owner") << TYPE_ID(0) << TYPE_ID(555) << QStringLiteral("12345")
                                   << QStringLiteral("Карта не создана: сотрудник 555 не найден");
}

void TestTaskExecutor::createsCards()
{
    QFETCH(TYPE_ID, uid);
    QFETCH(TYPE_ID, owner);
    QFETCH(QString, number);
    QFETCH(QString, reason);
    LocalStorage *store = LocalStorage::instance();
    ObjectInfo other(101, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Петров")}});
    ObjectInfo held(50, OT_CARD, {{db::card::NUMBER, QStringLiteral("77")}, {db::card::OWNER, QStringLiteral("100")}});
    held.setParent(100);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {other}));
    QVERIFY(store->putObjects(CARD_DATANAME, {held}));
    const int cardsBefore = store->constObjects(CARD_DATANAME)->size();

    TaskExecutor executor(store);
    Receiver receiver;
    QSignalSpy finished(&executor, &TaskExecutor::taskFinished);
    TaskInfo task = saveTask(&receiver, uid, OT_CARD,
                             {{db::card::NUMBER, number}, {db::card::DATE_BEGIN, QStringLiteral("2026-01-01")}});
    task.params.insert(QStringLiteral("parent"), owner);
    if (!reason.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^executor: task failed")));
    executor.execute(task);
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished.at(0).at(2).toString(), reason);
    QCOMPARE(receiver.saved.size(), 1);
    if (!reason.isEmpty()) {
        QCOMPARE(receiver.saved.first(), 0u);
        QCOMPARE(store->constObjects(CARD_DATANAME)->size(), cardsBefore);
        return;
    }
    const TYPE_ID created = receiver.saved.first();
    QVERIFY(created != 0 && created != uid && created != 50);
    QCOMPARE(store->cardIds(owner, false), (QList<TYPE_ID>{50, created}));

    // It is in the file, with its owner and what the task said.
    const QString file = store->fileName();
    store->close();
    QString error;
    QVERIFY2(store->open(file, &error), qPrintable(error));
    const ObjectInfo card = store->object(created, CARD_DATANAME);
    QCOMPARE(card.typeName(), OT_CARD);
    QCOMPARE(card.parent(), owner);
    QCOMPARE(card.parameter(db::card::OWNER), QString::number(owner));
    QCOMPARE(card.parameter(db::card::NUMBER), QString::number(number.toULongLong()));
    QCOMPARE(card.parameter(db::card::DATE_BEGIN), QStringLiteral("2026-01-01"));
}

QTEST_GUILESS_MAIN(TestTaskExecutor)
#include "tst_taskexecutor.moc"
