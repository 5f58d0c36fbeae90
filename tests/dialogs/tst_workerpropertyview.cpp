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

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
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
    void savedUpdatesStoredValues();
    void failedSaveKeepsEdits();
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

    // One employee again: the mixed row of the sex list is gone.
    m_view->setCurrent(selectionOf({employee(1)}));
    QCOMPARE(child<NVComboBox>("cbGender")->count(), 3);
    QCOMPARE(child<NVComboBox>("cbGender")->currentText(), QStringLiteral("Мужской"));
    QCOMPARE(child<NVDateEdit>("deBirthday")->text(), QStringLiteral("29.02.1980"));
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
    QImage stored(40, 50, QImage::Format_RGB32);
    stored.fill(Qt::green);
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, {employee(1)}));
    QVERIFY(LocalStorage::instance()->setBlob(1, db::worker::PHOTO, NVGuiGlobals::imageToDB(stored, 90).toHex()));
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

void TestWorkerPropertyView::photoEditWritesBothKeys()
{
    m_view->setCurrent(selectionOf({employee(1)}));
    QImage image(300, 150, QImage::Format_RGB32);
    image.fill(Qt::blue);
    auto *photo = child<PhotoWidget>("photoWidget");
    photo->setPhoto(QPixmap::fromImage(image));
    emit photo->imageChanged(photo->photo());
    const QList<TaskInfo> tasks = applyAndCollect();
    QCOMPARE(tasks.size(), 1);
    const QImage full = NVGuiGlobals::imageFromDB(
        QByteArray::fromHex(tasks.at(0).params.value(QStringLiteral("property-PT_PHOTO")).toString().toLatin1()));
    const QImage preview = NVGuiGlobals::imageFromDB(
        QByteArray::fromHex(tasks.at(0).params.value(QStringLiteral("property-PT_PHOTO_PREVIEW")).toString().toLatin1()));
    QCOMPARE(full.size(), QSize(300, 150));
    QCOMPARE(preview.size(), QSize(64, 32));
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
    child<QLineEdit>("leInn")->setText(inn);
    child<QLineEdit>("leSurname")->setText(surname);
    QVERIFY(!spy.isEmpty());
    QCOMPARE(spy.last().at(0).toString(), QStringLiteral("WorkerPropertyView"));
    QCOMPARE(spy.last().at(1).toBool(), enabled);
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
    m_view->setCurrent(selectionOf({employee(1)}));
    QVERIFY(child<QLineEdit>("leSurname")->isEnabled());
    QVERIFY(child<QPushButton>("pbPrint")->isEnabled());
}

void TestWorkerPropertyView::savedUpdatesStoredValues()
{
    m_view->setCurrent(selectionOf({employee(1)}));
    child<QLineEdit>("leSurname")->setText(QStringLiteral("Сидоров"));
    QCOMPARE(applyAndCollect().size(), 1);
    QSignalSpy messages(m_view, &PropertyBaseWidget::showMessage);
    m_view->saved(1);
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.at(0).at(0).toString(), QStringLiteral("Параметры сохранены"));
    // What was saved is the stored value now: nothing more to send.
    QVERIFY(applyAndCollect().isEmpty());
}

void TestWorkerPropertyView::failedSaveKeepsEdits()
{
    m_view->setCurrent(selectionOf({employee(1)}));
    child<QLineEdit>("leSurname")->setText(QStringLiteral("Сидоров"));
    QCOMPARE(applyAndCollect().size(), 1);
    m_view->saved(0);
    QCOMPARE(child<QLineEdit>("leSurname")->text(), QStringLiteral("Сидоров"));
    QCOMPARE(applyAndCollect().size(), 1);
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
