#include <departmentselectiondialog.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

using namespace nivaro;

using Uids = QList<TYPE_ID>;

// Root 1 { 10 Firm { 20 Склад { 22 Охрана }, 21 Цех }, 11 Firm2 }, workers 101 in 20.
class TestDepartmentSelectionDialog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { store->close(); }
    void choiceIsAcceptedOrRefused_data();
    void choiceIsAcceptedOrRefused();
    void filterKeepsThePathToMatches_data();
    void filterKeepsThePathToMatches();

private:
    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
};

namespace {

// Every uid the view shows, expanded or not.
QSet<TYPE_ID> shown(const QAbstractItemModel *model, const QModelIndex &parent = {})
{
    QSet<TYPE_ID> uids;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        uids.insert(index.data(ObjectTreeModel::UidRole).toUInt());
        uids.unite(shown(model, index));
    }
    return uids;
}

} // namespace

void TestDepartmentSelectionDialog::initTestCase()
{
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    auto make = [](TYPE_ID uid, const QString &type, TYPE_ID parent, const QString &name) {
        ObjectInfo o(uid, type, {{db::common::NAME, name}});
        o.setParent(parent);
        return o;
    };
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME,
                              {ObjectInfo(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}}),
                               make(10, OT_FIRM, SUBJECT_ROOT_UID, QStringLiteral("Фирма")),
                               make(11, OT_FIRM, SUBJECT_ROOT_UID, QStringLiteral("Фирма-2")),
                               make(20, OT_DEPARTMENT, 10, QStringLiteral("Склад")),
                               make(21, OT_DEPARTMENT, 10, QStringLiteral("Цех")),
                               make(22, OT_DEPARTMENT, 20, QStringLiteral("Охрана"))}));
    ObjectInfo worker(101, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Складов")}});
    worker.setParent(20);
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {worker}));
}

void TestDepartmentSelectionDialog::choiceIsAcceptedOrRefused_data()
{
    QTest::addColumn<bool>("multiple");
    QTest::addColumn<QStringList>("selectable");
    QTest::addColumn<Uids>("excluded");
    QTest::addColumn<Uids>("chosen");
    QTest::addColumn<Uids>("expected");
    QTest::addColumn<QString>("refusal"); // empty: OK is enabled

    const QStringList both{OT_FIRM, OT_DEPARTMENT};
    QTest::newRow("nothing") << false << both << Uids{} << Uids{} << Uids{} << QStringLiteral("Выберите подразделение");
    QTest::newRow("department") << false << both << Uids{} << Uids{21} << Uids{21} << QString();
    QTest::newRow("root is not a department") << false << both << Uids{} << Uids{SUBJECT_ROOT_UID}
                                              << Uids{SUBJECT_ROOT_UID} << QStringLiteral("«Организация» нельзя выбрать");
    QTest::newRow("firms only") << false << QStringList{OT_FIRM} << Uids{} << Uids{20} << Uids{20}
                                << QStringLiteral("«Склад» не организация");
    QTest::newRow("excluded itself") << false << both << Uids{20} << Uids{20} << Uids{20}
                                     << QStringLiteral("Нельзя перевести «Склад» в себя или ниже себя");
    QTest::newRow("below excluded") << false << both << Uids{20} << Uids{22} << Uids{22}
                                    << QStringLiteral("Нельзя перевести «Охрана» в себя или ниже себя");
    QTest::newRow("sibling of excluded") << false << both << Uids{20} << Uids{21} << Uids{21} << QString();
    QTest::newRow("single keeps one") << false << both << Uids{} << Uids{21, 22} << Uids{21} << QString();
    QTest::newRow("several") << true << both << Uids{} << Uids{22, 11} << Uids{11, 22} << QString();
    QTest::newRow("one of several refused") << true << both << Uids{10} << Uids{11, 22} << Uids{11, 22}
                                            << QStringLiteral("Нельзя перевести «Охрана» в себя или ниже себя");
    QTest::newRow("employees are never offered") << false << both << Uids{} << Uids{101} << Uids{}
                                                 << QStringLiteral("Выберите подразделение");
}

void TestDepartmentSelectionDialog::choiceIsAcceptedOrRefused()
{
    QFETCH(bool, multiple);
    QFETCH(QStringList, selectable);
    QFETCH(Uids, excluded);
    QFETCH(Uids, chosen);
    QFETCH(Uids, expected);
    QFETCH(QString, refusal);

    DepartmentSelectionDialog dialog;
    QAbstractItemModelTester tester(dialog.view()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    dialog.setMultipleSelection(multiple);
    dialog.setSelectableTypes(selectable);
    dialog.setExcluded(excluded, QStringLiteral("Нельзя перевести «%1» в себя или ниже себя"));
    dialog.setSelectedUids(chosen);

    QCOMPARE(dialog.selectedUids(), expected);
    QCOMPARE(dialog.selectedUid(), expected.value(0));
    QCOMPARE(dialog.refusal(), refusal);
    auto *buttons = dialog.findChild<QDialogButtonBox *>();
    QCOMPARE(buttons->button(QDialogButtonBox::Ok)->isEnabled(), refusal.isEmpty());
    // A refusal is shown only once something was chosen.
    const QString shownReason = dialog.findChild<QLabel *>(QStringLiteral("lbReason"))->text();
    QCOMPARE(shownReason, expected.isEmpty() ? QString() : refusal);
}

void TestDepartmentSelectionDialog::filterKeepsThePathToMatches_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<Uids>("visible");
    QTest::newRow("none") << QString() << Uids{1, 10, 11, 20, 21, 22};
    QTest::newRow("deep match keeps its ancestors") << QStringLiteral("охр") << Uids{1, 10, 20, 22};
    QTest::newRow("employee names do not match") << QStringLiteral("складов") << Uids{};
    QTest::newRow("firms") << QStringLiteral("фирма") << Uids{1, 10, 11};
}

void TestDepartmentSelectionDialog::filterKeepsThePathToMatches()
{
    QFETCH(QString, filter);
    QFETCH(Uids, visible);
    DepartmentSelectionDialog dialog;
    QAbstractItemModelTester tester(dialog.view()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    dialog.setFilterText(filter);
    QCOMPARE(shown(dialog.view()->model()), QSet<TYPE_ID>(visible.cbegin(), visible.cend()));
    // Clearing the filter brings back the whole structure.
    dialog.setFilterText(QString());
    QCOMPARE(shown(dialog.view()->model()).size(), 6);
}

QTEST_MAIN(TestDepartmentSelectionDialog)
#include "tst_departmentselectiondialog.moc"
