#include <nvdialogsutils.h>
#include <workeruniqueparamchecker.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QtTest>

using namespace nivaro;

class TestNVDialogsUtils : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { LocalStorage::instance()->close(); }
    void registryShape();
    void untranslatedStateComesBackAsIs();
    void disableChildrenIfFired_data();
    void disableChildrenIfFired();
    void employeesNameByParameters_data();
    void employeesNameByParameters();
};

// The registry is the ISO 3166-1 numeric list (the system's names) with
// four codes of its own at the end.
void TestNVDialogsUtils::registryShape()
{
    const QList<StateRegistryInfo> registry = NVDialogsUtils::getStatesRegistry();
    QCOMPARE(registry.size(), 253);
    const QStringList tailCodes = {QStringLiteral("895"), QStringLiteral("896"), QStringLiteral("897"), QStringLiteral("898")};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(registry.at(249 + i).code, tailCodes.at(i));
    QCOMPARE(registry.at(251).name, QStringLiteral("ДНР"));
    QCOMPARE(registry.at(252).name, QStringLiteral("ЛНР"));
    for (int i = 0; i < registry.size(); ++i) {
        const StateRegistryInfo &s = registry.at(i);
        QVERIFY2(s.code.size() == 3 && s.code.toInt() > 0, qPrintable(s.code));
        QVERIFY2(s.name == s.name.toUpper() && !s.name.isEmpty(), qPrintable(s.name));
        if (i > 0)
            QVERIFY2(registry.at(i - 1).code < s.code, qPrintable(s.code));
    }
    // Russia is there under its short name: citizenship lists show it first.
    QVERIFY(std::any_of(registry.cbegin(), registry.cend(), [](const StateRegistryInfo &s) {
        return s.code == QLatin1String("643") && s.name == QStringLiteral("РОССИЯ");
    }));

    QFile file(QStringLiteral("/usr/share/iso-codes/json/iso_3166-1.json"));
    if (!file.open(QIODevice::ReadOnly))
        QSKIP("iso-codes is not installed");
    const QJsonArray countries = QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("3166-1")).toArray();
    QStringList iso;
    for (const QJsonValue &c : countries)
        iso << c.toObject().value(QStringLiteral("numeric")).toString();
    std::sort(iso.begin(), iso.end());
    QStringList ours;
    for (int i = 0; i < 249; ++i)
        ours << registry.at(i).code;
    QCOMPARE(ours, iso);
}

void TestNVDialogsUtils::untranslatedStateComesBackAsIs()
{
    QCOMPARE(NVDialogsUtils::translateState(QStringLiteral("АНДОРРА")), QStringLiteral("АНДОРРА"));
    QCOMPARE(NVDialogsUtils::translateState(QStringLiteral("НЕТ ТАКОЙ СТРАНЫ")), QStringLiteral("НЕТ ТАКОЙ СТРАНЫ"));
}

void TestNVDialogsUtils::disableChildrenIfFired_data()
{
    QTest::addColumn<QStringList>("states");
    QTest::addColumn<bool>("locked");
    QTest::newRow("in service") << QStringList{QString(), QStringLiteral("a")} << false;
    QTest::newRow("one dismissed, lower case") << QStringList{QString(), QStringLiteral("d")} << true;
    QTest::newRow("one dismissed, upper case") << QStringList{QStringLiteral("D"), QString()} << true;
    QTest::newRow("state that merely starts with d") << QStringList{QStringLiteral("deleted")} << false;
    QTest::newRow("nothing selected") << QStringList{} << false;
}

void TestNVDialogsUtils::disableChildrenIfFired()
{
    QFETCH(QStringList, states);
    QFETCH(bool, locked);
    NVHash<unsigned int, ObjectInfo> selection;
    for (int i = 0; i < states.size(); ++i)
        selection.insert(100 + i, ObjectInfo(100 + i, OT_WORKER, {{db::common::OBJECTSTATE, states.at(i)}}));

    QWidget form;
    auto *layout = new QVBoxLayout(&form);
    auto *group = new QGroupBox(QStringLiteral("Личные данные"));
    auto *inner = new QVBoxLayout(group);
    auto *label = new QLabel(QStringLiteral("Фамилия"));
    auto *edit = new QLineEdit;
    auto *combo = new QComboBox;
    auto *date = new QDateEdit;
    auto *text = new QPlainTextEdit;
    auto *check = new QCheckBox;
    auto *restricted = new QLineEdit;
    restricted->setEnabled(false); // the form's own rule, e.g. the operator's rights
    for (QWidget *w : QList<QWidget *>{label, edit, combo, date, text, check, restricted})
        inner->addWidget(w);
    layout->addWidget(group);

    NVDialogsUtils::DisableChildrenIfFired(selection, &form);
    for (QWidget *w : QList<QWidget *>{edit, combo, date, text, check})
        QCOMPARE(w->isEnabled(), !locked);
    QVERIFY(label->isEnabled());
    QVERIFY(group->isEnabled());

    // It never gives back what was taken: the view re-enables on a new selection.
    NVDialogsUtils::DisableChildrenIfFired({}, &form);
    QCOMPARE(edit->isEnabled(), !locked);

    // Giving back restores exactly what it took, inner widgets included,
    // and leaves what the form disabled itself.
    NVDialogsUtils::EnableChildrenDisabledIfFired(&form);
    for (QWidget *w : form.findChildren<QWidget *>())
        QCOMPARE(w->isEnabled(), w != restricted);
}

void TestNVDialogsUtils::employeesNameByParameters_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two of five") << 2 << QStringLiteral("Андреев Олег, Борисов Иван и еще сотрудников: 3");
    QTest::newRow("all") << -1 << QStringLiteral("Андреев Олег, Борисов Иван, Волков Петр, Громов Илья, Дымов Лев");
    QTest::newRow("exactly all") << 5 << QStringLiteral("Андреев Олег, Борисов Иван, Волков Петр, Громов Илья, Дымов Лев");
    QTest::newRow("none listed") << 0 << QStringLiteral(" и еще сотрудников: 5");
    QTest::newRow("negative lists none") << -7 << QStringLiteral(" и еще сотрудников: 5");
}

void TestNVDialogsUtils::employeesNameByParameters()
{
    QFETCH(int, limit);
    QFETCH(QString, expected);
    const QStringList names = {QStringLiteral("Громов Илья"), QStringLiteral("Андреев Олег"), QStringLiteral("Дымов Лев"),
                               QStringLiteral("Волков Петр"), QStringLiteral("Борисов Иван")};
    QList<ObjectInfo> workers;
    TYPE_ID uid = 100;
    for (const QString &name : names) {
        const QStringList parts = name.split(QLatin1Char(' '));
        workers << ObjectInfo(uid++, OT_WORKER, {{db::worker::LAST_NAME, parts.at(0)}, {db::worker::FIRST_NAME, parts.at(1)},
                                                 {db::worker::PIN, QStringLiteral("1234")}});
    }
    // Same PIN but another value, and a dismissed holder: neither is named.
    workers << ObjectInfo(uid++, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Абрамов")}, {db::worker::PIN, QStringLiteral("12345")}});
    QVERIFY(LocalStorage::instance()->putObjects(SUBJECT_DATANAME, workers));
    QVERIFY(LocalStorage::instance()->putObjects(
        SUBJECT_FIRED_DATANAME, {ObjectInfo(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Аааев")},
                                                             {db::worker::PIN, QStringLiteral("1234")},
                                                             {db::common::OBJECTSTATE, QStringLiteral("d")}})}));

    QCOMPARE(WorkerUniqueParamChecker::employeesNameByParameters(db::worker::PIN, QStringLiteral("1234"), limit), expected);
    QCOMPARE(WorkerUniqueParamChecker::employeesNameByParameters(db::worker::PIN, QStringLiteral("0000"), limit), QString());
}

QTEST_MAIN(TestNVDialogsUtils)
#include "tst_nvdialogsutils.moc"
