#include "mainwindow.h"
#include "searchpage.h"
#include "studiostartup.h"

#include <datanames.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttypes.h>
#include <workersearchdialog.h>

#include <QAction>
#include <QComboBox>
#include <QImage>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

using nivaro::LocalStorage;

class TestSearchPage : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void findOpensTheDialogAndGoesToTheObject();
    void sampleEmployeesCarryCustomParameters();
    void screenshotShowsTheSearch();

private:
    void openSample(int employees);
    QTemporaryDir m_dir;
};

void TestSearchPage::openSample(int employees)
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), m_dir.filePath(QStringLiteral("s%1.store").arg(employees)),
                                      employees, &error),
             qPrintable(error));
}

void TestSearchPage::cleanup()
{
    LocalStorage::instance()->close();
    WorkerSearchDialog::resetSavedState();
}

void TestSearchPage::findOpensTheDialogAndGoesToTheObject()
{
    openSample(60);
    MainWindow window(LocalStorage::instance());
    SearchPage::install(&window);
    auto *find = window.findChild<QAction *>(QStringLiteral("searchAction"));
    QVERIFY(find);
    QCOMPARE(find->shortcut(), QKeySequence(QKeySequence::Find));
    find->trigger();
    auto *dialog = window.findChild<WorkerSearchDialog *>(QStringLiteral("workerSearchDialog"));
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    find->trigger(); // the same dialog again
    QCOMPARE(window.findChildren<WorkerSearchDialog *>().size(), 1);

    const nivaro::TYPE_ID uid = window.firstEmployee();
    emit dialog->selectObject(uid);
    QCOMPARE(window.selectedObjects(), QList<nivaro::TYPE_ID>{uid});
    dialog->close();
}

void TestSearchPage::sampleEmployeesCarryCustomParameters()
{
    openSample(60);
    const QStringList keys = SearchPage::workerType().customParamKeys();
    QCOMPARE(keys.size(), 3);
    QHash<QString, int> filled;
    for (const nivaro::ObjectInfo &o : *LocalStorage::instance()->constObjects(nivaro::SUBJECT_DATANAME)) {
        for (const QString &key : keys)
            filled[key] += o.hasParameter(key) ? 1 : 0;
    }
    for (const QString &key : keys)
        QVERIFY2(filled.value(key) > 0, qPrintable(key));
}

void TestSearchPage::screenshotShowsTheSearch()
{
    openSample(60);
    MainWindow window(LocalStorage::instance());
    SearchPage::install(&window);
    window.show();
    const QString file = m_dir.filePath(QStringLiteral("search.png"));
    QString error;
    QVERIFY2(SearchPage::saveScreenshot(&window, QStringLiteral("а"), file, &error), qPrintable(error));
    QVERIFY(!QImage(file).isNull());
    auto *dialog = window.findChild<WorkerSearchDialog *>(QStringLiteral("workerSearchDialog"));
    QCOMPARE(dialog->findChild<QLineEdit *>(QStringLiteral("searchEdit"))->text(), QStringLiteral("а"));
    QVERIFY(!dialog->shownUids().isEmpty());
    auto *view = dialog->findChild<QTreeView *>(QStringLiteral("resultView"));
    QVERIFY(view->rootIndex().isValid());
    QVERIFY(view->model()->rowCount(view->rootIndex()) > 0);
    QVERIFY(view->visualRect(view->model()->index(0, 0, view->rootIndex())).isValid());
    dialog->close();
    window.close();
}

QTEST_MAIN(TestSearchPage)
#include "tst_searchpage.moc"
