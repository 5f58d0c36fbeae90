#include <employeecardsmodel.h>
#include <employeecardsview.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

namespace {

ObjectInfo card(TYPE_ID uid, TYPE_ID owner, const QString &number, const QDate &end = QDate())
{
    ObjectInfo c(uid, OT_CARD,
                 {{db::card::NUMBER, number},
                  {db::card::OWNER, QString::number(owner)},
                  {db::card::UID, QStringLiteral("04A1B2C3")},
                  {db::card::DATE_BEGIN, QStringLiteral("2026-01-01")},
                  {db::card::SMARTCARD_PROFILE, QStringLiteral("30")}});
    if (end.isValid())
        c.setParameter(db::card::DATE_END, end.toString(Qt::ISODate));
    c.setParent(owner);
    return c;
}

QStringList column(const QAbstractItemModel &model, int col)
{
    QStringList out;
    for (int row = 0; row < model.rowCount(); ++row)
        out << model.index(row, col).data().toString();
    return out;
}

} // namespace

class TestEmployeeCardsView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void followsTheStore();
    void numbersInTheSiteFormat_data();
    void numbersInTheSiteFormat();
    void qrCodeOfTheSelectedCard();

private:
    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
};

void TestEmployeeCardsView::init()
{
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {ObjectInfo(100, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Иванов")}}),
                                                 ObjectInfo(101, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Петров")}})}));
    QVERIFY(store->putObjects(SMARTCARD_PROFILE_DATANAME,
                              {ObjectInfo(30, OT_SMARTCARD_PROFILE, {{db::common::NAME, QStringLiteral("Проходная")}})}));
    QVERIFY(store->putObjects(CARD_DATANAME, {card(50, 100, QStringLiteral("77705923")), card(51, 101, QStringLiteral("5"))}));
}

void TestEmployeeCardsView::cleanup()
{
    store->close();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

// Cards issued, changed and withdrawn elsewhere show at once, and only the
// employee's own.
void TestEmployeeCardsView::followsTheStore()
{
    EmployeeCardsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setWorker(100);
    QCOMPARE(column(model, EmployeeCardsModel::NumberColumn), QStringList{QStringLiteral("77705923")});
    QCOMPARE(column(model, EmployeeCardsModel::ProfileColumn), QStringList{QStringLiteral("Проходная")});
    QCOMPARE(column(model, EmployeeCardsModel::StateColumn), QStringList{QStringLiteral("Действует")});

    QVERIFY(store->putObjects(CARD_DATANAME, {card(52, 100, QStringLiteral("9"), QDate::currentDate().addDays(-1))}));
    QCOMPARE(column(model, EmployeeCardsModel::NumberColumn), (QStringList{QStringLiteral("77705923"), QStringLiteral("9")}));
    QCOMPARE(column(model, EmployeeCardsModel::StateColumn).last(), QStringLiteral("Срок действия истек"));

    QVERIFY(store->putObjects(SMARTCARD_PROFILE_DATANAME,
                              {ObjectInfo(30, OT_SMARTCARD_PROFILE, {{db::common::NAME, QStringLiteral("Офис")}})}));
    QCOMPARE(column(model, EmployeeCardsModel::ProfileColumn).first(), QStringLiteral("Офис"));
    QVERIFY(store->removeObjects({30}));
    QCOMPARE(column(model, EmployeeCardsModel::ProfileColumn).first(), QStringLiteral("Профиль 30 удален"));

    QVERIFY(store->removeObjects({50}));
    QCOMPARE(column(model, EmployeeCardsModel::NumberColumn), QStringList{QStringLiteral("9")});
    model.setWorker(0);
    QCOMPARE(model.rowCount(), 0);
}

void TestEmployeeCardsView::numbersInTheSiteFormat_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("decimal") << int(NVGlobals::CardDecimal);
    QTest::newRow("hex") << int(NVGlobals::CardHex);
    QTest::newRow("wiegand 26") << int(NVGlobals::CardWiegand26);
    QTest::newRow("decimal 24") << int(NVGlobals::CardDecimal24);
}

void TestEmployeeCardsView::numbersInTheSiteFormat()
{
    QFETCH(int, format);
    EmployeeCardsModel model;
    model.setWorker(100);
    QVERIFY(store->setDbSettings(ObjectInfo(5, OT_DB_SETTINGS, {{db::database::CARD_VIEW_FORMAT, QString::number(format)}})));
    QCOMPARE(column(model, EmployeeCardsModel::NumberColumn), QStringList{NVGlobals::cardIdText(77705923, format)});
}

void TestEmployeeCardsView::qrCodeOfTheSelectedCard()
{
    EmployeeCardsView view;
    view.setWorker(100);
    QCOMPARE(view.selectedCard(), TYPE_ID(50));
    QCOMPARE(view.qrText(), QStringLiteral("CARD:77705923;UID:04A1B2C3;FROM:2026-01-01"));
    QVERIFY(!view.findChild<QLabel *>(QStringLiteral("qrLabel"))->pixmap(Qt::ReturnByValue).isNull());

    // The selection survives a reload; a withdrawn card leaves no code.
    QVERIFY(store->putObjects(CARD_DATANAME, {card(53, 100, QStringLiteral("12"))}));
    view.selectCard(53);
    QVERIFY(store->putObjects(CARD_DATANAME, {card(54, 100, QStringLiteral("13"))}));
    QCOMPARE(view.selectedCard(), TYPE_ID(53));
    QVERIFY(store->removeObjects({50, 53, 54}));
    QCOMPARE(view.selectedCard(), TYPE_ID(0));
    QVERIFY(view.qrText().isEmpty());

    // More than any QR code holds: no image, no exception.
    QVERIFY(EmployeeCardsView::qrImage(QString(8000, QLatin1Char('x')), 2).isNull());
    const QImage small = EmployeeCardsView::qrImage(QStringLiteral("CARD:1"), 3);
    QCOMPARE(small.width() % 3, 0);
    QCOMPARE(small.pixelColor(0, 0), QColor(Qt::white)); // the quiet zone
}

QTEST_MAIN(TestEmployeeCardsView)
#include "tst_employeecardsview.moc"
