#include <nvdialogsutils.h>
#include <workerpropertyview.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvcombobox.h>
#include <nvdateedit.h>
#include <nvfiltercombobox.h>
#include <nvguiglobals.h>
#include <objecttypes.h>
#include <photowidget.h>
#include <snilsedit.h>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QLabel>
#include <QRandomGenerator>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QToolTip>
#include <QtTest>

using namespace nivaro;

namespace {

const QString Mixed = QStringLiteral("(разные значения)");

ObjectInfo employee(TYPE_ID uid, const QHash<QString, QString> &extra = {})
{
    ObjectInfo o(uid, OT_WORKER,
                 {{db::worker::LAST_NAME, QStringLiteral("Иванов")},
                  {db::worker::FIRST_NAME, QStringLiteral("Иван")},
                  {db::worker::MIDDLE_NAME, QStringLiteral("Иванович")},
                  {db::worker::GENDER, QStringLiteral("1")},
                  {db::worker::BIRTHDAY, QStringLiteral("1980-02-29")},
                  {db::worker::CITIZENSHIP_CODE, QStringLiteral("643")},
                  {db::worker::SNILS, QStringLiteral("11223344595")},
                  {db::orgstructure::common::INN, QStringLiteral("500500123491")}});
    o.setParent(20);
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        o.setParameter(it.key(), it.value());
    return o;
}

NVHash<unsigned int, ObjectInfo> selectionOf(const QList<ObjectInfo> &objects)
{
    NVHash<unsigned int, ObjectInfo> selection;
    for (const ObjectInfo &o : objects)
        selection.insert(o.uid(), o);
    return selection;
}

// What a person can see and use of every widget in the view, inner ones
// included, one line per widget in a fixed order.
QStringList controlStates(QWidget *view)
{
    QStringList states;
    const QList<QWidget *> widgets = view->findChildren<QWidget *>();
    for (QWidget *w : widgets) {
        QString line = QLatin1String(w->metaObject()->className()) + QLatin1Char(' ') + w->objectName();
        line += w->isEnabled() ? QLatin1String(" enabled") : QLatin1String(" disabled");
        for (const char *property : {"readOnly", "text", "placeholderText", "currentText", "plainText", "count",
                                     "toolTip", "styleSheet", "specialValueText"}) {
            const QVariant value = w->property(property);
            if (value.isValid())
                line += QLatin1Char(' ') + QLatin1String(property) + QLatin1Char('=') + value.toString();
        }
        states << line;
    }
    return states;
}

// Answers the view's save tasks as the server would: applies the changes
// to the store, then replies; or fails without touching anything.
void answer(WorkerPropertyView *view, const TaskInfo &task, bool ok)
{
    if (!ok) {
        view->saved(0);
        return;
    }
    ObjectInfo object = LocalStorage::instance()->object(task.uid);
    for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
        if (it.key().startsWith(QLatin1String("property-")))
            object.setParameter(it.key().mid(9), it.value().toString());
    }
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, {object}));
    view->saved(task.uid);
}

// Employee 1 in the store with a 40x50 photo.
void storeEmployeeWithPhoto()
{
    QImage stored(40, 50, QImage::Format_RGB32);
    stored.fill(Qt::green);
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, {employee(1)}));
    QVERIFY(LocalStorage::instance()->setBlob(1, db::worker::PHOTO, NVGuiGlobals::imageToDB(stored, 90).toHex()));
}

// Records the print preview instead of opening a modal dialog.
class TestableView : public WorkerPropertyView
{
public:
    QString printed;

protected:
    void openPrintPreview(QTextDocument *document) override { printed = document->toPlainText(); }
};

} // namespace

class TestWorkerPropertyView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void mixedValuesShowPlaceholders();
    void untouchedMixedFieldsAreNeverWritten();
    void saveTaskFields();
    void nothingSelectedSendsNothing();
    void repeatedUidSendsOneTask();
    void citizenshipOrderAndHiddenRow();
    void citizenshipChoices_data();
    void citizenshipChoices();
    void photoBan();
    void photoEditWritesBothKeys();
    void saveEnabling_data();
    void saveEnabling();
    void personalDataRestrictions();
    void dismissedEmployeeLocksControls();
    void controlStatesDependOnlyOnTheLastSelection();
    void repliesOfSeveralSaves_data();
    void repliesOfSeveralSaves();
    void storeChangesShowWhileEditing();
    void inputIsCleanedAndBounded_data();
    void inputIsCleanedAndBounded();
    void storedBirthdayOutsideBoundsIsShownMarked();
    void invalidSnilsIsMarkedNotBlocked();
    void unreadableValuesShowEmpty();
    void printSheet();

private:
    template<typename T>
    T *child(const char *name) const
    {
        T *w = m_view->findChild<T *>(QLatin1String(name));
        if (!w)
            qFatal("no child %s", name);
        return w;
    }
    QList<TaskInfo> applyAndCollect();

    TestableView *m_view = nullptr;
};

void TestWorkerPropertyView::init()
{
    LocalStorage::instance()->close();
    m_view = new TestableView;
}

void TestWorkerPropertyView::cleanup()
{
    delete m_view;
    m_view = nullptr;
    LocalStorage::instance()->close();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

QList<TaskInfo> TestWorkerPropertyView::applyAndCollect()
{
    QList<TaskInfo> tasks;
    const auto connection = connect(m_view, &PropertyBaseWidget::appendTask, this,
                                    [&tasks](const TaskInfo &task) { tasks.append(task); });
    m_view->applyChanges();
    disconnect(connection);
    return tasks;
}

void TestWorkerPropertyView::mixedValuesShowPlaceholders()
{
    m_view->setCurrent(selectionOf({employee(1), employee(2, {{db::worker::LAST_NAME, QStringLiteral("Петров")},
                                                              {db::worker::BIRTHDAY, QStringLiteral("1990-01-01")},
                                                              {db::worker::GENDER, QStringLiteral("2")},
                                                              {db::worker::SNILS, QString()}})}));
    QCOMPARE(child<QLineEdit>("leSurname")->text(), QString());
    QCOMPARE(child<QLineEdit>("leSurname")->placeholderText(), Mixed);
    // Values all selected employees share are shown as they are.
    QCOMPARE(child<QLineEdit>("leName")->text(), QStringLiteral("Иван"));
    QCOMPARE(child<QLineEdit>("leName")->placeholderText(), QString());
    QVERIFY(child<NVDateEdit>("deBirthday")->isEmpty());
    QCOMPARE(child<NVDateEdit>("deBirthday")->text(), Mixed);
    QCOMPARE(child<NVComboBox>("cbGender")->currentText(), Mixed);
    QCOMPARE(child<NVComboBox>("cbGender")->currentData().toInt(), -1);
    QCOMPARE(child<SnilsEdit>("leSnils")->placeholderText(), Mixed);
    // Typing into a mixed field clears its placeholder, as in every other field.
    child<SnilsEdit>("leSnils")->setText(QStringLiteral("11223344595"));
    QCOMPARE(child<SnilsEdit>("leSnils")->placeholderText(), QString());

    m_view->setCurrent(selectionOf({employee(1)}));
    QCOMPARE(child<NVComboBox>("cbGender")->currentText(), QStringLiteral("Мужской"));
    QCOMPARE(child<QLineEdit>("leDbId")->text(), QStringLiteral("1"));
}

void TestWorkerPropertyView::untouchedMixedFieldsAreNeverWritten()
{
    m_view->setCurrent(selectionOf({employee(1), employee(2, {{db::worker::LAST_NAME, QStringLiteral("Петров")},
                                                              {db::worker::BIRTHDAY, QStringLiteral("1990-01-01")}})}));
    QVERIFY(applyAndCollect().isEmpty());

    // Leaving the mixed birthday without picking a date is no edit.
    emit child<NVDateEdit>("deBirthday")->editingFinished();
    QVERIFY(applyAndCollect().isEmpty());

    child<QLineEdit>("lePatronymic")->setText(QStringLiteral("Петрович"));
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 2);
    for (const TaskInfo &task : tasks) {
        QStringList properties;
        for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
            if (it.key().startsWith(QLatin1String("property-")))
                properties << it.key();
        }
        QCOMPARE(properties, QStringList{QStringLiteral("property-PT_PATRONYMIC")});
    }
}

void TestWorkerPropertyView::saveTaskFields()
{
    m_view->setCurrent(selectionOf({employee(7)}));
    child<QLineEdit>("leSurname")->setText(QStringLiteral("Сидоров"));
    child<QLineEdit>("leDocNumber")->setText(QStringLiteral("123456"));
    // Typing a value back to the stored one is no change.
    child<QLineEdit>("leName")->setText(QStringLiteral("Иван"));

    const qint64 before = TaskInfo::_nextid.loadRelaxed();
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    const TaskInfo &task = tasks.constFirst();
    QCOMPARE(task.id, before + 1);
    QCOMPARE(task.uid, 7u);
    QCOMPARE(task.command, QStringLiteral("save_object"));
    QCOMPARE(task.params.value(QStringLiteral("object_type")).toString(), OT_WORKER);
    QCOMPARE(task.params.value(QStringLiteral("parent")).toUInt(), 20u);
    QCOMPARE(task.params.value(QStringLiteral("property-PT_SURNAME")).toString(), QStringLiteral("Сидоров"));
    QCOMPARE(task.params.value(QStringLiteral("property-PT_DOC_NUMBER")).toString(), QStringLiteral("123456"));
    QCOMPARE(task.params.size(), 4);
    QCOMPARE(task.widget.data(), m_view);
    QCOMPARE(task.slot, QStringLiteral("saved"));
    // The name in the texts is the one stored, which the log can find.
    QCOMPARE(task.startMessage, QStringLiteral("Сохранение параметров сотрудника Иванов Иван Иванович"));
    QCOMPARE(task.errorMessage, QStringLiteral("Ошибка сохранения параметров сотрудника Иванов Иван Иванович"));
}

// A selection may name a uid twice (the hash is a multi-hash): one save,
// compared with the newest record.
void TestWorkerPropertyView::repeatedUidSendsOneTask()
{
    NVHash<unsigned int, ObjectInfo> selection;
    selection.insert(7, employee(7, {{db::worker::DOC_NUMBER, QStringLiteral("1")}}));
    selection.insert(7, employee(7, {{db::worker::DOC_NUMBER, QStringLiteral("2")}}));
    selection.insert(8, employee(8));
    m_view->setCurrent(selection);
    child<QLineEdit>("leDocNumber")->setText(QStringLiteral("2"));
    QCOMPARE(m_view->changedObjects().keys(), QList<unsigned int>{8});
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    QCOMPARE(tasks.constFirst().uid, 8u);
}

void TestWorkerPropertyView::nothingSelectedSendsNothing()
{
    m_view->setCurrent({});
    QVERIFY(!child<QLineEdit>("leSurname")->isEnabled());
    QVERIFY(applyAndCollect().isEmpty());
}

void TestWorkerPropertyView::citizenshipOrderAndHiddenRow()
{
    auto *box = child<NVFilterComboBox>("cbCitizenship");
    QCOMPARE(box->count(), 255);
    QCOMPARE(box->itemData(0).toString(), QStringLiteral("-1"));
    QCOMPARE(box->itemText(0), Mixed);
    QVERIFY(box->isRowHidden(0));
    QCOMPARE(box->itemText(1), QStringLiteral("Не задано"));
    QCOMPARE(box->itemData(1).toString(), QStringLiteral("0"));
    const QStringList near = NVDialogsUtils::getNearAbroadCodes();
    for (int row = 2; row < box->count(); ++row) {
        const bool isNear = near.contains(box->itemData(row).toString());
        QCOMPARE(isNear, row < 2 + near.size());
        if (row > 2 && row != 2 + near.size())
            QVERIFY2(!(box->itemText(row) < box->itemText(row - 1)), qPrintable(box->itemText(row)));
    }
    QCOMPARE(box->itemText(2), QStringLiteral("АЗЕРБАЙДЖАН"));
}

void TestWorkerPropertyView::citizenshipChoices_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("written");
    QTest::newRow("not chosen") << QString() << QString();
    QTest::newRow("not set") << QStringLiteral("0") << QStringLiteral("0");
    QTest::newRow("a country") << QStringLiteral("112") << QStringLiteral("112");
}

void TestWorkerPropertyView::citizenshipChoices()
{
    QFETCH(QString, chosen);
    QFETCH(QString, written);
    m_view->setCurrent(selectionOf({employee(1), employee(2, {{db::worker::CITIZENSHIP_CODE, QStringLiteral("398")}})}));
    auto *box = child<NVFilterComboBox>("cbCitizenship");
    QCOMPARE(box->currentIndex(), 0);
    if (!chosen.isEmpty()) {
        const int row = box->findData(chosen);
        box->setCurrentIndex(row);
        emit box->activated(row);
    }
    const QList<TaskInfo> tasks = applyAndCollect();
    if (written.isEmpty()) {
        QVERIFY(tasks.isEmpty());
        return;
    }
    QCOMPARE(tasks.size(), 2);
    for (const TaskInfo &task : tasks)
        QCOMPARE(task.params.value(QStringLiteral("property-PT_CITIZENSHIP_CODE")).toString(), written);
}

void TestWorkerPropertyView::photoBan()
{
    storeEmployeeWithPhoto();
    QVERIFY(LocalStorage::instance()->setDbSettings(
        ObjectInfo(2, OT_DB_SETTINGS, {{db::database::PD_DENY_STORE_USER_PHOTOS, QStringLiteral("true")}})));

    m_view->setCurrent(selectionOf({employee(1)}));
    auto *photo = child<PhotoWidget>("photoWidget");
    QVERIFY(!photo->hasPhoto());
    QCOMPARE(photo->defaultPicture().toImage(), QPixmap(QStringLiteral(":/accessctl/fz152")).toImage());

    // Even a photo that reaches the widget is not written.
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    photo->setPhoto(QPixmap::fromImage(image));
    emit photo->imageChanged(photo->photo());
    QVERIFY(applyAndCollect().isEmpty());

    // Allowed again: the stored photo shows, the default is the silhouette.
    QVERIFY(LocalStorage::instance()->setDbSettings(ObjectInfo(2, OT_DB_SETTINGS)));
    m_view->setCurrent(selectionOf({employee(1)}));
    QVERIFY(photo->hasPhoto());
    QCOMPARE(photo->photo().size(), QSize(40, 50));
    QCOMPARE(photo->defaultPicture().toImage(), QPixmap(QStringLiteral(":/accessctl/no_photo")).toImage());
}

// A new photo goes out as the picture and its preview; a cleared stored one
// as both keys empty, never as "unchanged".
void TestWorkerPropertyView::photoEditWritesBothKeys()
{
    storeEmployeeWithPhoto();
    m_view->setCurrent(selectionOf({employee(1)}));
    QImage image(300, 150, QImage::Format_RGB32);
    image.fill(Qt::blue);
    auto *photo = child<PhotoWidget>("photoWidget");
    QVERIFY(photo->hasPhoto());
    photo->setPhoto(QPixmap::fromImage(image));
    emit photo->imageChanged(photo->photo());
    QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    auto written = [&tasks](const char *key) {
        return NVGuiGlobals::imageFromDB(QByteArray::fromHex(tasks.at(0).params.value(QLatin1String(key)).toString().toLatin1()));
    };
    QCOMPARE(written("property-PT_PHOTO").size(), QSize(300, 150));
    QCOMPARE(written("property-PT_PHOTO_PREVIEW").size(), QSize(64, 32));

    m_view->rejectChanges();
    QVERIFY(photo->hasPhoto());
    photo->clearPhoto();
    tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    for (const char *key : {"property-PT_PHOTO", "property-PT_PHOTO_PREVIEW"}) {
        QVERIFY2(tasks.at(0).params.contains(QLatin1String(key)), key);
        QCOMPARE(tasks.at(0).params.value(QLatin1String(key)).toString(), QString());
    }
}

void TestWorkerPropertyView::saveEnabling_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<QString>("inn");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("surname cleared") << QString() << QStringLiteral("500500123491") << false;
    QTest::newRow("INN cleared") << QStringLiteral("Иванов") << QString() << true;
    QTest::newRow("INN of 11 digits") << QStringLiteral("Иванов") << QStringLiteral("50050012349") << false;
    QTest::newRow("INN with wrong check digit") << QStringLiteral("Иванов") << QStringLiteral("500500123492") << false;
    QTest::newRow("valid INN") << QStringLiteral("Иванов") << QStringLiteral("771366495512") << true;
    QTest::newRow("both wrong") << QString() << QStringLiteral("5005") << false;
}

void TestWorkerPropertyView::saveEnabling()
{
    QFETCH(QString, surname);
    QFETCH(QString, inn);
    QFETCH(bool, enabled);
    m_view->setCurrent(selectionOf({employee(1)}));
    QSignalSpy spy(m_view, &PropertyBaseWidget::enableSave);
    QSignalSpy critical(m_view, &PropertyBaseWidget::showCriticalMessage);
    QSignalSpy messages(m_view, &PropertyBaseWidget::showMessage);
    child<QLineEdit>("leInn")->setText(inn);
    child<QLineEdit>("leSurname")->setText(surname);
    QVERIFY(!spy.isEmpty());
    QCOMPARE(spy.last().at(0).toString(), QStringLiteral("WorkerPropertyView"));
    QCOMPARE(spy.last().at(1).toBool(), enabled);
    // The message line says why Save is off, and no longer once it is on.
    if (!enabled) {
        QVERIFY(!critical.isEmpty());
        QVERIFY(critical.last().at(0).toString().startsWith(QStringLiteral("Сохранение невозможно")));
        child<QLineEdit>("leSurname")->setText(QStringLiteral("Иванов"));
        child<QLineEdit>("leInn")->clear();
        QCOMPARE(spy.last().at(1).toBool(), true);
        QVERIFY(!messages.isEmpty());
        QCOMPARE(messages.last().at(0).toString(), QString());
    }
}

void TestWorkerPropertyView::personalDataRestrictions()
{
    using namespace db::database::json;
    m_view->setCurrent(selectionOf({employee(1)}));
    m_view->enablePersonalDataFields({{PERSONAL_DOCUMENT_INN, true}, {PERSONAL_GENERAL_SEX, true},
                                      {PERSONAL_GENERAL_NAME, false}});
    QVERIFY(!child<QLineEdit>("leInn")->isEnabled());
    QVERIFY(!child<NVComboBox>("cbGender")->isEnabled());
    QVERIFY(child<QLineEdit>("leName")->isEnabled());
    QVERIFY(child<QLineEdit>("leSurname")->isEnabled());
    QVERIFY(child<SnilsEdit>("leSnils")->isEnabled());
    // The restrictions survive showing another employee.
    m_view->setCurrent(selectionOf({employee(2)}));
    QVERIFY(!child<QLineEdit>("leInn")->isEnabled());
}

void TestWorkerPropertyView::dismissedEmployeeLocksControls()
{
    m_view->setCurrent(selectionOf({employee(1), employee(2, {{db::common::OBJECTSTATE, QStringLiteral("D")}})}));
    for (const char *name : {"leSurname", "leInn", "cbCitizenship", "deBirthday", "teDescription", "pbPrint"})
        QVERIFY2(!m_view->findChild<QWidget *>(QLatin1String(name))->isEnabled(), name);
    QVERIFY(m_view->findChild<QLabel *>(QStringLiteral("lb_leSurname"))->isEnabled());
}

// Whatever a view showed before (dismissed employees, several, none, other
// rights, read-only mode, failed and successful saves, Cancel, changes by
// another client), it must look and behave as a new view given the same
// selection. Clicks into the birth date must never change it.
void TestWorkerPropertyView::controlStatesDependOnlyOnTheLastSelection()
{
    using namespace db::database::json;
    LocalStorage *store = LocalStorage::instance();
    QList<ObjectInfo> pool;
    for (TYPE_ID uid = 1; uid <= 6; ++uid)
        pool << employee(uid, uid > 4 ? QHash<QString, QString>{{db::common::OBJECTSTATE, uid == 5 ? QStringLiteral("d") : QStringLiteral("D")}}
                                      : QHash<QString, QString>{{db::worker::CITIZENSHIP_CODE, QString::number(100 + uid)}});
    QVERIFY(store->putObjects(SUBJECT_DATANAME, pool));
    const QStringList restrictionNames = {PERSONAL_GENERAL_NAME, PERSONAL_GENERAL_SEX, PERSONAL_GENERAL_BIRTHDATE,
                                          PERSONAL_DOCUMENT_INN, PERSONAL_DOCUMENT_SNILS};
    QRandomGenerator random(20261123);
    QMap<QString, bool> restrictions;
    bool readOnly = false;
    for (int run = 0; run < 25; ++run) {
        for (int step = 0; step < 14; ++step) {
            switch (random.bounded(7)) {
            case 0: {
                NVHash<unsigned int, ObjectInfo> selection;
                for (int n = random.bounded(4); n > 0; --n) {
                    const TYPE_ID uid = TYPE_ID(random.bounded(1, 7));
                    if (!selection.contains(uid))
                        selection.insert(uid, store->object(uid));
                }
                m_view->setCurrent(selection);
                TestableView fresh;
                fresh.setReadOnly(readOnly);
                fresh.enablePersonalDataFields(restrictions);
                fresh.setCurrent(selection);
                QCOMPARE(controlStates(m_view), controlStates(&fresh));
                break;
            }
            case 1:
                readOnly = random.bounded(2) == 0;
                m_view->setReadOnly(readOnly);
                break;
            case 2:
                restrictions.clear();
                for (const QString &name : restrictionNames)
                    restrictions.insert(name, random.bounded(2) == 0);
                m_view->enablePersonalDataFields(restrictions);
                break;
            case 3: {
                child<QLineEdit>("lePatronymic")->setText(QStringLiteral("Отчество%1").arg(step));
                auto *birthday = child<NVDateEdit>("deBirthday");
                QTest::mouseClick(birthday->findChild<QLineEdit *>(), Qt::LeftButton, {}, QPoint(8, 8));
                emit birthday->editingFinished();
                const QList<TaskInfo> tasks = applyAndCollect();
                for (const TaskInfo &task : tasks)
                    answer(m_view, task, random.bounded(3) != 0);
                break;
            }
            case 4:
                m_view->rejectChanges();
                break;
            case 5: {
                // Another client renames someone, or dismisses or rehires them.
                ObjectInfo other = store->object(TYPE_ID(random.bounded(1, 7)));
                if (random.bounded(2))
                    other.setParameter(db::worker::FIRST_NAME, QStringLiteral("Имя%1").arg(step));
                else
                    other.setParameter(db::common::OBJECTSTATE, other.parameter(db::common::OBJECTSTATE).isEmpty()
                                                                    ? QStringLiteral("d") : QString());
                QVERIFY(store->putObjects(SUBJECT_DATANAME, {other}));
                QTest::qWait(1);
                break;
            }
            default:
                m_view->setCurrent({});
                break;
            }
        }
    }
    // Nothing ever edited the birth dates or the citizenships.
    for (TYPE_ID uid = 1; uid <= 6; ++uid) {
        QCOMPARE(store->object(uid).parameter(db::worker::BIRTHDAY), QStringLiteral("1980-02-29"));
        QCOMPARE(store->object(uid).parameter(db::worker::CITIZENSHIP_CODE), pool.at(int(uid) - 1).parameter(db::worker::CITIZENSHIP_CODE));
    }
}

void TestWorkerPropertyView::repliesOfSeveralSaves_data()
{
    QTest::addColumn<QList<bool>>("replies");
    QTest::newRow("all saved") << QList<bool>{true, true, true};
    QTest::newRow("first failed") << QList<bool>{false, true, true};
    QTest::newRow("last failed") << QList<bool>{true, true, false};
    QTest::newRow("one of one failed") << QList<bool>{false};
}

// The view hears of the end of a save only once every reply is in; a
// failure keeps the edits for the objects it concerns and never keeps the
// view from following the store afterwards.
void TestWorkerPropertyView::repliesOfSeveralSaves()
{
    QFETCH(QList<bool>, replies);
    QList<ObjectInfo> objects;
    for (int i = 0; i < replies.size(); ++i)
        objects << employee(TYPE_ID(i + 1));
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, objects));
    m_view->setCurrent(selectionOf(objects));
    child<QLineEdit>("leDocNumber")->setText(QStringLiteral("777"));
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), replies.size());

    QSignalSpy saved(m_view, &PropertyBaseWidget::dataSaved);
    QSignalSpy messages(m_view, &PropertyBaseWidget::showMessage);
    QSet<TYPE_ID> failed;
    for (int i = 0; i < tasks.size(); ++i) {
        QCOMPARE(saved.size(), 0);
        if (!replies.at(i))
            failed.insert(tasks.at(i).uid);
        answer(m_view, tasks.at(i), replies.at(i));
    }
    const bool allSaved = !replies.contains(false);
    QCOMPARE(saved.size(), allSaved ? 1 : 0);
    QCOMPARE(messages.size(), allSaved ? 1 : 0);
    if (allSaved)
        QCOMPARE(messages.at(0).at(0).toString(), QStringLiteral("Параметры сохранены"));

    // Save again: only what failed is sent.
    const QList<TaskInfo> retry = applyAndCollect();
    QCOMPARE(retry.size(), failed.size());
    for (const TaskInfo &task : retry)
        QVERIFY(failed.contains(task.uid));

    // Another client's change shows at once, the edits kept; after Cancel
    // the stored values show everywhere.
    for (const TaskInfo &task : retry)
        answer(m_view, task, false);
    for (const ObjectInfo &o : objects) {
        ObjectInfo updated = LocalStorage::instance()->object(o.uid());
        updated.setParameter(db::worker::DOC_TYPE, QStringLiteral("Паспорт"));
        QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, {updated}));
    }
    QTRY_COMPARE(child<QLineEdit>("leDocType")->text(), QStringLiteral("Паспорт"));
    QCOMPARE(child<QLineEdit>("leDocNumber")->text(), QStringLiteral("777"));
    m_view->rejectChanges();
    QCOMPARE(child<QLineEdit>("leDocNumber")->text(), failed.isEmpty() ? QStringLiteral("777") : QString());
}

void TestWorkerPropertyView::storeChangesShowWhileEditing()
{
    LocalStorage *store = LocalStorage::instance();
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {employee(1)}));
    m_view->setCurrent(selectionOf({employee(1)}));
    child<QLineEdit>("leSurname")->setText(QStringLiteral("Сидоров"));

    ObjectInfo other = store->object(1);
    other.setParameter(db::worker::MIDDLE_NAME, QStringLiteral("Петрович"));
    other.setParameter(db::worker::SNILS, QStringLiteral("11223344595"));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {other}));
    QTRY_COMPARE(child<QLineEdit>("lePatronymic")->text(), QStringLiteral("Петрович"));
    QCOMPARE(child<QLineEdit>("leSurname")->text(), QStringLiteral("Сидоров"));

    // Typing the value another client just stored is no change any more.
    child<QLineEdit>("lePatronymic")->setText(QStringLiteral("Петрович"));
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    QCOMPARE(tasks.at(0).params.value(QStringLiteral("property-PT_SURNAME")).toString(), QStringLiteral("Сидоров"));
    QVERIFY(!tasks.at(0).params.contains(QStringLiteral("property-PT_PATRONYMIC")));

    // Moved elsewhere while the host still hands the view the old record:
    // the save must not carry the old department back.
    ObjectInfo moved = store->object(1);
    moved.setParent(30);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {moved}));
    m_view->setCurrent(selectionOf({employee(1)}));
    child<QLineEdit>("leSurname")->setText(QStringLiteral("Кузнецов"));
    const QList<TaskInfo> afterMove = applyAndCollect();
    QCOMPARE(afterMove.size(), 1);
    QCOMPARE(afterMove.at(0).params.value(QStringLiteral("parent")).toUInt(), 30u);
}

void TestWorkerPropertyView::inputIsCleanedAndBounded_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("written");
    const QString longName(100000, QLatin1Char('a'));
    QTest::newRow("bidi override") << "leSurname" << QStringLiteral("Пет\u202Eвор") << db::worker::LAST_NAME
                                   << QStringLiteral("Петвор");
    QTest::newRow("isolate and mark") << "leName" << QStringLiteral("\u2067Петр\u200F") << db::worker::FIRST_NAME
                                      << QStringLiteral("Петр");
    QTest::newRow("control characters") << "lePatronymic" << QStringLiteral("Пет\x01рович\t") << db::worker::MIDDLE_NAME
                                        << QStringLiteral("Петрович");
    QTest::newRow("name too long") << "leSurname" << longName << db::worker::LAST_NAME << longName.left(100);
    QTest::newRow("document number too long") << "leDocNumber" << longName << db::worker::DOC_NUMBER << longName.left(50);
    QTest::newRow("description keeps lines") << "teDescription" << QStringLiteral("строка 1\nстрока\u202E 2\x7F")
                                             << db::worker::DESCRIPTION << QStringLiteral("строка 1\nстрока 2");
    QTest::newRow("description too long") << "teDescription" << longName << db::worker::DESCRIPTION << longName.left(4000);
}

void TestWorkerPropertyView::inputIsCleanedAndBounded()
{
    QFETCH(QString, field);
    QFETCH(QString, typed);
    QFETCH(QString, key);
    QFETCH(QString, written);
    m_view->setCurrent(selectionOf({employee(1)}));
    QWidget *w = m_view->findChild<QWidget *>(field);
    if (auto *edit = qobject_cast<QLineEdit *>(w)) {
        edit->selectAll();
        edit->insert(typed); // what typing or pasting does
    } else {
        qobject_cast<QPlainTextEdit *>(w)->setPlainText(typed);
    }
    // A text cut at the limit says so at the field.
    QCOMPARE(QToolTip::isVisible(), typed.size() > 1000);
    QToolTip::hideText();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    QCOMPARE(tasks.at(0).params.value(QStringLiteral("property-") + key).toString(), written);
}

void TestWorkerPropertyView::storedBirthdayOutsideBoundsIsShownMarked()
{
    auto *birthday = child<NVDateEdit>("deBirthday");
    m_view->setCurrent(selectionOf({employee(1, {{db::worker::BIRTHDAY, QStringLiteral("2099-05-01")}})}));
    QCOMPARE(birthday->text(), QStringLiteral("01.05.2099"));
    QVERIFY(!birthday->toolTip().isEmpty());
    QVERIFY(applyAndCollect().isEmpty());

    // What the operator enters is bounded: not in the future, not before 1900.
    m_view->setCurrent(selectionOf({employee(1)}));
    QVERIFY(birthday->toolTip().isEmpty());
    birthday->setDate(QDate(2099, 5, 1));
    QCOMPARE(birthday->date(), QDate::currentDate());
    birthday->setDate(QDate(1850, 5, 1));
    QVERIFY(birthday->isEmpty() || birthday->date() >= QDate(1900, 1, 1));
}

void TestWorkerPropertyView::invalidSnilsIsMarkedNotBlocked()
{
    m_view->setCurrent(selectionOf({employee(1)}));
    auto *snils = child<SnilsEdit>("leSnils");
    QVERIFY(!snils->isMarkedInvalid());
    QSignalSpy enable(m_view, &PropertyBaseWidget::enableSave);
    snils->setSnils(QStringLiteral("11223344596"));
    QVERIFY(snils->isMarkedInvalid());
    QVERIFY(!snils->toolTip().isEmpty());
    QVERIFY(enable.isEmpty() || enable.last().at(1).toBool());
    QCOMPARE(applyAndCollect().size(), 1);
    snils->setSnils(QStringLiteral("11223344595"));
    QVERIFY(!snils->isMarkedInvalid());
}

void TestWorkerPropertyView::unreadableValuesShowEmpty()
{
    m_view->setCurrent(selectionOf({employee(1, {{db::worker::BIRTHDAY, QStringLiteral("31.02.x")},
                                                 {db::worker::GENDER, QStringLiteral("abc")},
                                                 {db::worker::CITIZENSHIP_CODE, QStringLiteral("999")}})}));
    QVERIFY(child<NVDateEdit>("deBirthday")->isEmpty());
    QCOMPARE(child<NVComboBox>("cbGender")->currentText(), QStringLiteral("Не задан"));
    QCOMPARE(child<NVFilterComboBox>("cbCitizenship")->currentText(), QStringLiteral("Не задано"));
    // Shown is not written: nothing was edited.
    QVERIFY(applyAndCollect().isEmpty());
}

void TestWorkerPropertyView::printSheet()
{
    m_view->setCurrent(selectionOf({employee(1, {{db::worker::DESCRIPTION, QStringLiteral("<b>не жирный</b>")}})}));
    QTest::mouseClick(child<QPushButton>("pbPrint"), Qt::LeftButton);
    const QString sheet = m_view->printed;
    QVERIFY(sheet.contains(QStringLiteral("Иванов Иван Иванович")));
    QVERIFY(sheet.contains(QStringLiteral("29.02.1980")));
    QVERIFY(sheet.contains(QStringLiteral("РОССИЯ")));
    QVERIFY(sheet.contains(QStringLiteral("112-233-445 95")));
    QVERIFY(sheet.contains(QStringLiteral("500500123491")));
    QVERIFY(sheet.contains(QStringLiteral("<b>не жирный</b>"))); // text stays text
}

QTEST_MAIN(TestWorkerPropertyView)
#include "tst_workerpropertyview.moc"
