#include <departmentpropertyview.h>
#include <firmpropertyview.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QtTest>

#include <memory>

using namespace nivaro;

namespace {

const QString Mixed = QStringLiteral("(разные значения)");
using Properties = QHash<QString, QString>;

ObjectInfo firm(TYPE_ID uid, const Properties &extra = {})
{
    ObjectInfo o(uid, OT_FIRM,
                 {{db::firm::NAME, QStringLiteral("Альфа")},
                  {db::orgstructure::common::INN, QStringLiteral("7707083893")},
                  {db::firm::KPP, QStringLiteral("773601001")}});
    o.setParent(SUBJECT_ROOT_UID);
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        o.setParameter(it.key(), it.value());
    return o;
}

ObjectInfo department(TYPE_ID uid, const Properties &extra = {})
{
    ObjectInfo o(uid, OT_DEPARTMENT, {{db::orgstructure::NAME, QStringLiteral("Склад")}});
    o.setParent(10);
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        o.setParameter(it.key(), it.value());
    return o;
}

// Puts the objects in the store and shows them.
void show(OrgPropertyView *view, const QList<ObjectInfo> &objects)
{
    QVERIFY(LocalStorage::instance()->putObjects(ORGSTRUCTURE_DATANAME, objects));
    NVHash<unsigned int, ObjectInfo> selection;
    for (const ObjectInfo &o : objects)
        selection.insert(o.uid(), o);
    view->setCurrent(selection);
}

void type(OrgPropertyView *view, const QString &field, const QString &text)
{
    if (auto *line = view->findChild<QLineEdit *>(field))
        line->setText(text);
    else
        view->findChild<QPlainTextEdit *>(field)->setPlainText(text);
}

QList<TaskInfo> apply(OrgPropertyView *view)
{
    QList<TaskInfo> tasks;
    QObject guard;
    QObject::connect(view, &PropertyBaseWidget::appendTask, &guard, [&tasks](const TaskInfo &t) { tasks.append(t); });
    view->applyChanges();
    return tasks;
}

// The "property-" entries of a task, by key.
Properties properties(const TaskInfo &task)
{
    Properties out;
    for (auto it = task.params.cbegin(); it != task.params.cend(); ++it) {
        if (it.key().startsWith(QLatin1String("property-")))
            out.insert(it.key().mid(9), it.value().toString());
    }
    return out;
}

std::unique_ptr<OrgPropertyView> makeView(const QString &kind)
{
    if (kind == QLatin1String("firm"))
        return std::make_unique<FirmPropertyView>();
    return std::make_unique<DepartmentPropertyView>();
}

} // namespace

class TestOrgPropertyViews : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<TaskInfo>(); }
    void init() { LocalStorage::instance()->close(); }
    void cleanup();
    void validity_data();
    void validity();
    void mixedSelectionWritesOnlyWhatWasTouched_data();
    void mixedSelectionWritesOnlyWhatWasTouched();
    void saveTaskRunsThroughTheExecutor();
    void failedSaveKeepsTheEdits();
    void followsTheStore();
    void readOnly();
};

void TestOrgPropertyViews::cleanup()
{
    LocalStorage::instance()->close();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

// What typed into which field allows Save, and the reason shown beside
// the field when it does not.
void TestOrgPropertyViews::validity_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reason"); // empty: Save allowed

    const QString innReason = QStringLiteral("ИНН организации состоит из 10 цифр с верной контрольной цифрой");
    const QString ogrnReason = QStringLiteral("ОГРН состоит из 13 цифр с верной контрольной цифрой");
    QTest::newRow("department name") << QStringLiteral("department") << QStringLiteral("leName") << QStringLiteral("Экспедиция") << QString();
    QTest::newRow("department name emptied") << QStringLiteral("department") << QStringLiteral("leName") << QStringLiteral("  ")
                                             << QStringLiteral("Название подразделения не может быть пустым");
    QTest::newRow("department number") << QStringLiteral("department") << QStringLiteral("leNumber") << QStringLiteral("А-17") << QString();
    QTest::newRow("department description") << QStringLiteral("department") << QStringLiteral("teDescription") << QStringLiteral("Второй этаж") << QString();
    QTest::newRow("firm name emptied") << QStringLiteral("firm") << QStringLiteral("leName") << QStringLiteral("")
                                       << QStringLiteral("Краткое название организации не может быть пустым");
    QTest::newRow("firm full name") << QStringLiteral("firm") << QStringLiteral("leFullName") << QStringLiteral("ПАО Альфа") << QString();
    QTest::newRow("INN of a legal entity") << QStringLiteral("firm") << QStringLiteral("leInn") << QStringLiteral("7728168971") << QString();
    QTest::newRow("INN cleared") << QStringLiteral("firm") << QStringLiteral("leInn") << QStringLiteral("") << QString();
    QTest::newRow("INN wrong check digit") << QStringLiteral("firm") << QStringLiteral("leInn") << QStringLiteral("7728168972") << innReason;
    QTest::newRow("INN too short") << QStringLiteral("firm") << QStringLiteral("leInn") << QStringLiteral("77281689") << innReason;
    QTest::newRow("INN of a person") << QStringLiteral("firm") << QStringLiteral("leInn") << QStringLiteral("500100732259") << innReason;
    QTest::newRow("KPP") << QStringLiteral("firm") << QStringLiteral("leKpp") << QStringLiteral("772801001") << QString();
    QTest::newRow("KPP too short") << QStringLiteral("firm") << QStringLiteral("leKpp") << QStringLiteral("77280100") << QStringLiteral("КПП состоит из 9 цифр");
    QTest::newRow("KPP with a letter") << QStringLiteral("firm") << QStringLiteral("leKpp") << QStringLiteral("77280100A") << QStringLiteral("КПП состоит из 9 цифр");
    QTest::newRow("OGRN") << QStringLiteral("firm") << QStringLiteral("leOgrn") << QStringLiteral("1027700132195") << QString();
    QTest::newRow("OGRN wrong check digit") << QStringLiteral("firm") << QStringLiteral("leOgrn") << QStringLiteral("1027700132196") << ogrnReason;
    QTest::newRow("OGRN too short") << QStringLiteral("firm") << QStringLiteral("leOgrn") << QStringLiteral("102770013219") << ogrnReason;
    QTest::newRow("address") << QStringLiteral("firm") << QStringLiteral("leAddress") << QStringLiteral("Москва, ул. Вавилова, 19") << QString();
}

void TestOrgPropertyViews::validity()
{
    QFETCH(QString, kind);
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(QString, reason);
    const auto view = makeView(kind);
    show(view.get(), {kind == QLatin1String("firm") ? firm(10) : department(20)});
    QSignalSpy save(view.get(), &PropertyBaseWidget::enableSave);
    QSignalSpy edited(view.get(), &PropertyBaseWidget::dataEdited);
    type(view.get(), field, text);
    QCOMPARE(edited.size(), 1);
    QVERIFY(!save.isEmpty());
    QCOMPARE(save.constLast().at(0).toString(), view->widgetUid());
    QCOMPARE(save.constLast().at(1).toBool(), reason.isEmpty());
    QCOMPARE(view->saveBlock(), reason);
    if (auto *problem = view->findChild<QLabel *>(field + QStringLiteral("Problem"))) {
        QCOMPARE(problem->text(), reason);
        QCOMPARE(problem->isVisibleTo(view.get()), !reason.isEmpty());
    }
    // An emptied field says what it wants.
    if (auto *line = view->findChild<QLineEdit *>(field); line && text.isEmpty())
        QCOMPARE(line->placeholderText(), field == QLatin1String("leInn") ? QStringLiteral("10 цифр") : QString());
    // A blocked view sends nothing; an allowed one sends what was typed.
    const QList<TaskInfo> tasks = apply(view.get());
    QCOMPARE(tasks.size(), reason.isEmpty() ? 1 : 0);

    // Fixing the field takes the reason away again.
    if (!reason.isEmpty()) {
        view->rejectChanges();
        QCOMPARE(save.constLast().at(1).toBool(), true);
        QCOMPARE(view->saveBlock(), QString());
    }
}

// Two firms that agree on some values and differ on others: only the
// fields the operator touched are written, and only to the objects whose
// value differs from what was typed.
void TestOrgPropertyViews::mixedSelectionWritesOnlyWhatWasTouched_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<TYPE_ID>>("written");

    QTest::newRow("nothing touched") << QString() << QString() << QString() << QList<TYPE_ID>{};
    QTest::newRow("the address both lack") << QStringLiteral("leAddress") << db::firm::ADDRESS << QStringLiteral("Тверь") << QList<TYPE_ID>{10, 11};
    QTest::newRow("the shared KPP retyped") << QStringLiteral("leKpp") << db::firm::KPP << QStringLiteral("773601001") << QList<TYPE_ID>{};
    QTest::newRow("the differing name") << QStringLiteral("leName") << db::firm::NAME << QStringLiteral("Альфа") << QList<TYPE_ID>{11};
    QTest::newRow("the differing INN") << QStringLiteral("leInn") << db::orgstructure::common::INN << QStringLiteral("7728168971")
                                       << QList<TYPE_ID>{10, 11};
    QTest::newRow("a description") << QStringLiteral("teDescription") << db::common::DESCRIPTION << QStringLiteral("Головная") << QList<TYPE_ID>{10, 11};
}

void TestOrgPropertyViews::mixedSelectionWritesOnlyWhatWasTouched()
{
    QFETCH(QString, field);
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(QList<TYPE_ID>, written);
    FirmPropertyView view;
    show(&view, {firm(10), firm(11, {{db::firm::NAME, QStringLiteral("Бета")},
                                     {db::orgstructure::common::INN, QStringLiteral("500100732259")}})});
    auto *name = view.findChild<QLineEdit *>(QStringLiteral("leName"));
    QCOMPARE(name->text(), QString());
    QCOMPARE(name->placeholderText(), Mixed);
    QCOMPARE(view.findChild<QLineEdit *>(QStringLiteral("leInn"))->placeholderText(), Mixed);
    QCOMPARE(view.findChild<QLineEdit *>(QStringLiteral("leKpp"))->text(), QStringLiteral("773601001"));
    if (!field.isEmpty())
        type(&view, field, text);

    const QList<TaskInfo> tasks = apply(&view);
    QList<TYPE_ID> uids;
    for (const TaskInfo &task : tasks) {
        uids.append(task.uid);
        QCOMPARE(properties(task), (Properties{{key, text}}));
    }
    std::sort(uids.begin(), uids.end());
    QCOMPARE(uids, written);
}

void TestOrgPropertyViews::saveTaskRunsThroughTheExecutor()
{
    DepartmentPropertyView view;
    show(&view, {department(20, {{db::orgstructure::DEPARTNUM, QStringLiteral("7")}})});
    TaskExecutor executor(LocalStorage::instance());
    connect(&view, &PropertyBaseWidget::appendTask, &executor, &TaskExecutor::execute);
    QSignalSpy message(&view, &PropertyBaseWidget::showMessage);
    QSignalSpy savedSpy(&view, &PropertyBaseWidget::dataSaved);
    QSignalSpy tasks(&view, &PropertyBaseWidget::appendTask);
    type(&view, QStringLiteral("leName"), QStringLiteral("Склад готовой продукции"));
    type(&view, QStringLiteral("teDescription"), QStringLiteral("Корпус 2"));
    view.applyChanges();

    QCOMPARE(tasks.size(), 1);
    const TaskInfo task = tasks.at(0).at(0).value<TaskInfo>();
    QVERIFY(task.id > 0);
    QCOMPARE(task.uid, 20u);
    QCOMPARE(task.command, QStringLiteral("save_object"));
    QCOMPARE(task.params.value(QStringLiteral("object_type")).toString(), OT_DEPARTMENT);
    QCOMPARE(task.params.value(QStringLiteral("parent")).toUInt(), 10u);
    QCOMPARE(properties(task), (Properties{{db::orgstructure::NAME, QStringLiteral("Склад готовой продукции")},
                                           {db::common::DESCRIPTION, QStringLiteral("Корпус 2")}}));
    QCOMPARE(task.widget.data(), &view);
    QCOMPARE(task.slot, QStringLiteral("saved"));
    QCOMPARE(task.startMessage, QStringLiteral("Сохранение параметров подразделения Склад"));
    QCOMPARE(task.errorMessage, QStringLiteral("Ошибка сохранения параметров подразделения Склад"));

    QTRY_COMPARE(savedSpy.size(), 1);
    QCOMPARE(message.constLast().at(0).toString(), QStringLiteral("Параметры сохранены"));
    const ObjectInfo stored = LocalStorage::instance()->object(20);
    QCOMPARE(stored.parameter(db::orgstructure::NAME), QStringLiteral("Склад готовой продукции"));
    QCOMPARE(stored.parameter(db::orgstructure::DEPARTNUM), QStringLiteral("7"));
    // Saved values count as stored: nothing is left to send.
    QVERIFY(view.changedObjects().isEmpty());
    QCOMPARE(view.findChild<QLineEdit *>(QStringLiteral("leName"))->text(), QStringLiteral("Склад готовой продукции"));
}

void TestOrgPropertyViews::failedSaveKeepsTheEdits()
{
    FirmPropertyView view;
    show(&view, {firm(10)});
    QSignalSpy savedSpy(&view, &PropertyBaseWidget::dataSaved);
    type(&view, QStringLiteral("leAddress"), QStringLiteral("Тверь"));
    QCOMPARE(apply(&view).size(), 1);
    view.saved(0);
    QCOMPARE(savedSpy.size(), 0);
    QCOMPARE(view.changedObjects().value(10), (Properties{{db::firm::ADDRESS, QStringLiteral("Тверь")}}));
    QCOMPARE(apply(&view).size(), 1); // Save sends it again
}

// Another save or client changes a shown firm: the view shows it, and an
// edit the operator has not saved stays as typed.
void TestOrgPropertyViews::followsTheStore()
{
    FirmPropertyView view;
    show(&view, {firm(10), firm(11)});
    auto *address = view.findChild<QLineEdit *>(QStringLiteral("leAddress"));
    auto *kpp = view.findChild<QLineEdit *>(QStringLiteral("leKpp"));
    LocalStorage *store = LocalStorage::instance();
    QVERIFY(store->updateParameters(11, {{db::firm::ADDRESS, QStringLiteral("Тверь")}}));
    QTRY_COMPARE(address->placeholderText(), Mixed);

    type(&view, QStringLiteral("leKpp"), QStringLiteral("772801001"));
    QVERIFY(store->updateParameters(10, {{db::firm::ADDRESS, QStringLiteral("Тверь")}}));
    QTRY_COMPARE(address->text(), QStringLiteral("Тверь"));
    QCOMPARE(kpp->text(), QStringLiteral("772801001"));
    QCOMPARE(view.changedObjects().size(), 2);
    // Objects not shown leave the view alone.
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {firm(12, {{db::firm::KPP, QStringLiteral("111111111")}})}));
    QTest::qWait(10);
    QCOMPARE(kpp->text(), QStringLiteral("772801001"));
}

void TestOrgPropertyViews::readOnly()
{
    DepartmentPropertyView view;
    show(&view, {department(20)});
    QSignalSpy save(&view, &PropertyBaseWidget::enableSave);
    view.setReadOnly(true);
    QVERIFY(view.isReadOnly());
    QVERIFY(view.findChild<QLineEdit *>(QStringLiteral("leName"))->isReadOnly());
    QVERIFY(view.findChild<QPlainTextEdit *>(QStringLiteral("teDescription"))->isReadOnly());
    QCOMPARE(save.constLast().at(1).toBool(), false);
    type(&view, QStringLiteral("leName"), QStringLiteral("Экспедиция"));
    QVERIFY(apply(&view).isEmpty());
    view.setReadOnly(false);
    QVERIFY(!view.findChild<QLineEdit *>(QStringLiteral("leName"))->isReadOnly());
    QCOMPARE(apply(&view).size(), 1);
}

QTEST_MAIN(TestOrgPropertyViews)
#include "tst_orgpropertyviews.moc"
