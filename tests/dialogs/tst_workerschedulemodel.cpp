#include <workerschedulemodel.h>
#include <workerscheduleproxymodel.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>

#include <QAbstractItemModelTester>
#include <QFont>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

namespace {

using Assignment = _WORKER_SCHEDULE_HISTORY_RECORD_V2;
using Absence = _WORKER_ABSENCE_REASON_RECORD;

Assignment assignment(int schedule, const QDate &start, const QDate &end, const QDate &loopStart = QDate())
{
    Assignment a;
    a.scheduleId = schedule;
    a.startDate = start;
    a.endDate = end;
    a.loopStartDate = loopStart;
    return a;
}

Absence absence(quint32 reason, const QDate &start, const QDate &end, quint32 id = 0)
{
    Absence r;
    r.id = id;
    r.reason = reason;
    r.start = QDateTime(start, QTime(9, 0));
    r.end = QDateTime(end, QTime(18, 0));
    return r;
}

// "reason:first..last" per record, in list order, for readable failures.
QStringList describe(const QList<Absence> &records)
{
    QStringList out;
    for (const Absence &r : records)
        out << QStringLiteral("%1:%2..%3").arg(r.reason).arg(r.start.date().toString(Qt::ISODate), r.end.date().toString(Qt::ISODate));
    return out;
}

QDate may(int day)
{
    return QDate(2024, 5, day);
}

} // namespace

class TestWorkerScheduleModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { LocalStorage::instance()->close(); }
    void init();
    void monthRows_data();
    void monthRows();
    void onlyOwnMonthDaysAreSelectable();
    void predicates_data();
    void predicates();
    void scheduleForDate_data();
    void scheduleForDate();
    void loopStartForDate_data();
    void loopStartForDate();
    void rolesAndTooltips();
    void mergingReasons_data();
    void mergingReasons();
    void reasonChangeSignalsItsDays();
    void lookUpsKeptAsTheyWere();
    void indexByDateAgreesWithASearch_data();
    void indexByDateAgreesWithASearch();
    void headers();
    void proxyShowsWholeYears();

private:
    QTemporaryDir m_dir;
    QScopedPointer<WorkerScheduleModel> m_model;
    QScopedPointer<QAbstractItemModelTester> m_tester;
};

void TestWorkerScheduleModel::initTestCase()
{
    LocalStorage *store = LocalStorage::instance();
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    auto schedule = [](int id, const QString &name, int type, const QDate &start) {
        SCHEDULE_DATA s;
        s.id = id;
        s.name = name;
        s.type = type;
        s.startDate = start;
        return s;
    };
    QVERIFY(store->putSchedules({schedule(1, QStringLiteral("Пятидневка"), SCHEDULE_DATA::Weekly, QDate()),
                                 schedule(2, QStringLiteral("Сменный"), SCHEDULE_DATA::Cyclic, QDate(2024, 1, 1)),
                                 schedule(3, QStringLiteral("Март"), SCHEDULE_DATA::Monthly, QDate(2024, 3, 15)),
                                 schedule(4, QStringLiteral("Мартовский сменный"), SCHEDULE_DATA::Cyclic, QDate(2024, 3, 15))}));
    ObjectInfo vacation(500, OT_REASON, {{db::reason::NAME, QStringLiteral("Отпуск")}, {db::reason::MARK, QStringLiteral("ОТ")}});
    QVERIFY(store->putObjects(REASON_DATANAME, {vacation}));
}

void TestWorkerScheduleModel::init()
{
    m_tester.reset();
    m_model.reset(new WorkerScheduleModel);
    m_tester.reset(new QAbstractItemModelTester(m_model.data(), QAbstractItemModelTester::FailureReportingMode::Fatal));
}

void TestWorkerScheduleModel::monthRows_data()
{
    QTest::addColumn<int>("month");
    QTest::addColumn<QDate>("firstCell");
    // 1 January 2024 is a Monday, 1 September 2024 a Sunday.
    QTest::newRow("1st on Monday") << 1 << QDate(2024, 1, 1);
    QTest::newRow("1st on Sunday") << 9 << QDate(2024, 8, 26);
    QTest::newRow("1st on Wednesday") << 5 << QDate(2024, 4, 29);
}

void TestWorkerScheduleModel::monthRows()
{
    QFETCH(int, month);
    QFETCH(QDate, firstCell);
    m_model->setInterval(QDate(2024, 6, 1), QDate(2024, 6, 30));
    QCOMPARE(m_model->rowCount(), 13);
    QCOMPARE(m_model->columnCount(), 43);
    QCOMPARE(m_model->index(0, 0).data().toString(), QStringLiteral("year2024"));
    QCOMPARE(m_model->index(0, 0).data(Qt::UserRole).toDate(), QDate(2024, 1, 1));
    QCOMPARE(m_model->item(0, 1)->data(Qt::UserRole).toDate(), QDate());
    QVERIFY(!m_model->item(0, 6));

    const int row = month; // the year row comes first
    QCOMPARE(m_model->index(row, 0).data().toString(), QStringLiteral("month%1").arg(month));
    QCOMPARE(m_model->index(row, 0).data(Qt::UserRole).toDate(), QDate(2024, month, 1));
    for (int k = 1; k <= 42; ++k) {
        QCOMPARE(m_model->index(row, k).data(Qt::UserRole).toDate(), firstCell.addDays(k - 1));
        QCOMPARE(m_model->index(row, k).data(Qt::UserRole).toDate().dayOfWeek(), (k - 1) % 7 + 1);
        QVERIFY(m_model->index(row, k).data().toString().isEmpty());
    }
    QCOMPARE(m_model->index(row, 42).data(Qt::UserRole).toDate().month(), month % 12 + 1);
}

void TestWorkerScheduleModel::onlyOwnMonthDaysAreSelectable()
{
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    const QModelIndex inJanuary = m_model->indexByDate(QDate(2024, 1, 31));
    QCOMPARE(inJanuary.row(), 1);
    QCOMPARE(m_model->flags(inJanuary), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QVERIFY(!m_model->data(inJanuary, Qt::ToolTipRole).toString().isEmpty());

    // 1 February 2024 is a Thursday: the row starts on Monday 29 January.
    const QModelIndex inFebruary = m_model->index(2, 3);
    QCOMPARE(inFebruary.data(Qt::UserRole).toDate(), QDate(2024, 1, 31));
    QCOMPARE(m_model->flags(inFebruary), Qt::NoItemFlags);
    QVERIFY(!m_model->data(inFebruary, Qt::ToolTipRole).isValid());

    // A cell's date written through the model is what the cell then holds.
    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    QVERIFY(m_model->setData(inFebruary, QDate(2024, 2, 10), Qt::UserRole));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_model->flags(inFebruary), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QVERIFY(m_model->setData(inFebruary, QDate(2024, 2, 10), Qt::UserRole));
    QCOMPARE(changed.size(), 1); // the same value again changes nothing

    QCOMPARE(m_model->flags(m_model->index(0, 1)), Qt::NoItemFlags); // year row
    QCOMPARE(m_model->flags(m_model->index(2, 0)), Qt::ItemIsEnabled);
    QCOMPARE(m_model->flags(QModelIndex()), Qt::NoItemFlags);
}

void TestWorkerScheduleModel::predicates_data()
{
    QTest::addColumn<QDate>("start");
    QTest::addColumn<QDate>("end");
    QTest::addColumn<QString>("holds"); // line, openLeft, openRight, segment, rayRight
    QTest::newRow("both open") << QDate() << QDate() << QStringLiteral("10000");
    QTest::newRow("end only") << QDate() << may(1) << QStringLiteral("01001");
    QTest::newRow("start only") << may(1) << QDate() << QStringLiteral("00101");
    QTest::newRow("both set") << may(1) << may(2) << QStringLiteral("00010");
}

void TestWorkerScheduleModel::predicates()
{
    QFETCH(QDate, start);
    QFETCH(QDate, end);
    QFETCH(QString, holds);
    const Assignment a = assignment(1, start, end);
    const QString got = QStringLiteral("%1%2%3%4%5")
                            .arg(int(isLine(a)))
                            .arg(int(isOpenLeft(a)))
                            .arg(int(isOpenRight(a)))
                            .arg(int(isSegment(a)))
                            .arg(int(isRayRight(a)));
    QCOMPARE(got, holds);
}

void TestWorkerScheduleModel::scheduleForDate_data()
{
    QTest::addColumn<QList<Assignment>>("assignments");
    QTest::addColumn<QList<int>>("personal");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<int>("schedule");
    const QList<Assignment> overlapping{assignment(2, may(10), may(20)), assignment(1, QDate(), QDate())};
    QTest::newRow("nothing assigned") << QList<Assignment>{} << QList<int>{} << may(1) << -1;
    QTest::newRow("first added wins") << overlapping << QList<int>{} << may(15) << 2;
    QTest::newRow("outside the first") << overlapping << QList<int>{} << may(21) << 1;
    QTest::newRow("last day included") << overlapping << QList<int>{} << may(20) << 2;
    QTest::newRow("open to the past") << QList<Assignment>{assignment(2, QDate(), may(1))} << QList<int>{} << QDate(1990, 1, 1) << 2;
    QTest::newRow("before the start") << QList<Assignment>{assignment(2, may(2), QDate())} << QList<int>{} << may(1) << -1;
    QTest::newRow("month-bound personal, its month") << overlapping << QList<int>{3} << QDate(2024, 3, 1) << 3;
    QTest::newRow("month-bound personal, same month next year") << overlapping << QList<int>{3} << QDate(2025, 3, 15) << 1;
    QTest::newRow("other personal types never apply") << overlapping << QList<int>{4} << QDate(2024, 3, 15) << 1;
    QTest::newRow("unknown personal id") << overlapping << QList<int>{77} << QDate(2024, 3, 15) << 1;
}

void TestWorkerScheduleModel::scheduleForDate()
{
    QFETCH(QList<Assignment>, assignments);
    QFETCH(QList<int>, personal);
    QFETCH(QDate, date);
    QFETCH(int, schedule);
    for (const Assignment &a : qAsConst(assignments))
        m_model->addSchedule(a);
    m_model->setPersonalSchedules(QSet<int>(personal.cbegin(), personal.cend()));
    QCOMPARE(m_model->scheduleForDate(date), schedule);
}

void TestWorkerScheduleModel::loopStartForDate_data()
{
    QTest::addColumn<QList<Assignment>>("assignments");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QDate>("loopStart");
    const QDate own(2020, 2, 2);
    QTest::newRow("schedule's own start") << QList<Assignment>{assignment(2, QDate(), QDate(), own)} << may(1) << QDate(2024, 1, 1);
    QTest::newRow("schedule without start") << QList<Assignment>{assignment(1, QDate(), QDate(), own)} << may(1) << own;
    QTest::newRow("schedule not in the store") << QList<Assignment>{assignment(77, QDate(), QDate(), own)} << may(1) << own;
    QTest::newRow("no assignment that day") << QList<Assignment>{assignment(2, may(2), may(3), own)} << may(1) << QDate();
    QTest::newRow("the first covering one")
        << QList<Assignment>{assignment(2, may(10), may(20)), assignment(1, QDate(), QDate(), own)} << may(5) << own;
}

void TestWorkerScheduleModel::loopStartForDate()
{
    QFETCH(QList<Assignment>, assignments);
    QFETCH(QDate, date);
    QFETCH(QDate, loopStart);
    for (const Assignment &a : qAsConst(assignments))
        m_model->addSchedule(a);
    // A month-bound personal schedule changes the day's schedule, not the
    // cycle it counts in.
    m_model->setPersonalSchedules({3});
    QCOMPARE(m_model->loopStartForDate(date), loopStart);
    QCOMPARE(m_model->loopStartForDate(QDate(2024, 3, 10)), m_model->loopStartForDate(QDate(2024, 2, 10)));
}

void TestWorkerScheduleModel::rolesAndTooltips()
{
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    const QModelIndex day = m_model->indexByDate(may(6));
    QCOMPARE(day.data(Qt::ToolTipRole).toString(), QStringLiteral("График работ: Не назначен"));
    QVERIFY(!day.data(Qt::UserRole + 1).isValid());
    QVERIFY(!day.data(Qt::UserRole + 2).isValid());
    QVERIFY(!day.data(Qt::UserRole + 3).isValid());

    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    m_model->addSchedule(assignment(2, QDate(), QDate()));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), m_model->index(0, 0));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), m_model->index(12, 42));
    m_model->addReason(absence(500, may(6), may(6)));
    m_model->addReason(absence(501, may(7), may(7)));
    QCOMPARE(day.data(Qt::UserRole + 1), QVariant(2));
    QCOMPARE(day.data(Qt::UserRole + 2), QVariant(500u));
    QCOMPARE(day.data(Qt::UserRole + 3), QVariant(QDate(2024, 1, 1)));
    QCOMPARE(day.data(Qt::ToolTipRole).toString(), QStringLiteral("График работ: Сменный\r\nПричина отсутствия: Отпуск"));
    const QStringList unknownReason = m_model->indexByDate(may(7)).data(Qt::ToolTipRole).toString().split(QStringLiteral("\r\n"));
    QCOMPARE(unknownReason, (QStringList{QStringLiteral("График работ: Сменный"), QStringLiteral("Причина отсутствия: ")}));

    m_model->clearSchedules();
    m_model->clearReasons();
    QVERIFY(!day.data(Qt::UserRole + 1).isValid());
    QVERIFY(!day.data(Qt::UserRole + 2).isValid());
    m_model->addSchedule(assignment(77, QDate(), QDate()));
    QCOMPARE(day.data(Qt::ToolTipRole).toString(), QStringLiteral("График работ: "));
}

void TestWorkerScheduleModel::mergingReasons_data()
{
    QTest::addColumn<QList<Absence>>("existing");
    QTest::addColumn<Absence>("added");
    QTest::addColumn<QStringList>("result");
    const Absence wholeMay = absence(1, may(1), may(31));
    QTest::newRow("inside splits") << QList<Absence>{wholeMay} << absence(2, may(10), may(12))
                                   << QStringList{QStringLiteral("1:2024-05-01..2024-05-09"), QStringLiteral("1:2024-05-13..2024-05-31"),
                                                  QStringLiteral("2:2024-05-10..2024-05-12")};
    QTest::newRow("covering removes, overlapping start trims")
        << QList<Absence>{absence(1, may(5), may(6)), absence(3, QDate(2024, 4, 30), may(2))} << absence(2, may(1), may(31))
        << QStringList{QStringLiteral("3:2024-04-30..2024-04-30"), QStringLiteral("2:2024-05-01..2024-05-31")};
    QTest::newRow("overlapping end trims") << QList<Absence>{absence(1, may(20), QDate(2024, 6, 5))} << absence(2, may(1), may(31))
                                           << QStringList{QStringLiteral("1:2024-06-01..2024-06-05"), QStringLiteral("2:2024-05-01..2024-05-31")};
    QTest::newRow("reason 0 clears its days") << QList<Absence>{wholeMay} << absence(0, may(3), may(4))
                                              << QStringList{QStringLiteral("1:2024-05-01..2024-05-02"), QStringLiteral("1:2024-05-05..2024-05-31")};
    QTest::newRow("same span replaces") << QList<Absence>{wholeMay} << absence(2, may(1), may(31))
                                        << QStringList{QStringLiteral("2:2024-05-01..2024-05-31")};
    QTest::newRow("neighbours stay") << QList<Absence>{absence(1, may(1), may(9)), absence(3, may(13), may(14))} << absence(2, may(10), may(12))
                                     << QStringList{QStringLiteral("1:2024-05-01..2024-05-09"), QStringLiteral("3:2024-05-13..2024-05-14"),
                                                    QStringLiteral("2:2024-05-10..2024-05-12")};
}

void TestWorkerScheduleModel::mergingReasons()
{
    QFETCH(QList<Absence>, existing);
    QFETCH(Absence, added);
    QFETCH(QStringList, result);
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    for (const Absence &r : qAsConst(existing))
        m_model->addReason(r);
    m_model->addReason(added);
    QCOMPARE(describe(m_model->reasons()), result);

    // A split piece keeps everything but its start, times of day included.
    for (const Absence &r : m_model->reasons()) {
        QCOMPARE(r.start.time(), QTime(9, 0));
        QCOMPARE(r.end.time(), QTime(18, 0));
    }
    // And the cells agree with the list, day by day.
    for (QDate d = may(1).addDays(-3); d <= QDate(2024, 6, 6); d = d.addDays(1)) {
        quint32 expected = 0;
        for (const Absence &r : m_model->reasons()) {
            if (r.start.date() <= d && d <= r.end.date())
                expected = r.reason;
        }
        QCOMPARE(m_model->indexByDate(d).data(Qt::UserRole + 2).toUInt(), expected);
    }
}

void TestWorkerScheduleModel::reasonChangeSignalsItsDays()
{
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    // 30 April to 2 May: April's row (from Monday 1 April) holds the 30th
    // in column 30; 1 May is a Wednesday, so May's row holds the 1st and
    // 2nd in columns 3 and 4. The rectangle spans both rows.
    m_model->addReason(absence(1, QDate(2024, 4, 30), may(2)));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), m_model->index(4, 3));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), m_model->index(5, 30));
}

void TestWorkerScheduleModel::lookUpsKeptAsTheyWere()
{
    // No tester here: the change signal for days outside the calendar
    // starts at an invalid index on purpose.
    m_tester.reset();
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    m_model->addReason(absence(1, QDate(2023, 12, 30), QDate(2024, 1, 2)));
    QCOMPARE(changed.size(), 1);
    QVERIFY(!changed.at(0).at(0).toModelIndex().isValid());
    QCOMPARE(changed.at(0).at(1).toModelIndex(), m_model->indexByDate(QDate(2024, 1, 2)));
    QCOMPARE(m_model->reasons().size(), 1); // stored all the same

    QVERIFY(!m_model->indexByDate(QDate(2025, 1, 1)).isValid());
    // An invalid date matches the first cell holding no date: a year cell.
    QCOMPARE(m_model->indexByDate(QDate()), m_model->index(0, 1));

    WorkerScheduleModel reversed;
    reversed.setInterval(QDate(2025, 1, 1), QDate(2024, 1, 1));
    QCOMPARE(reversed.rowCount(), 0);
}

void TestWorkerScheduleModel::indexByDateAgreesWithASearch_data()
{
    // Rows the schedule table's owner may take out afterwards, by position.
    QTest::addColumn<QString>("removed");
    QTest::newRow("none") << QString();
    QTest::newRow("first") << QStringLiteral("first");
    QTest::newRow("a month") << QStringLiteral("month");
    QTest::newRow("last") << QStringLiteral("last");
}

void TestWorkerScheduleModel::indexByDateAgreesWithASearch()
{
    QFETCH(QString, removed);
    // The look-up as a plain search over the model states it.
    auto search = [this](const QDate &d) {
        const QModelIndexList rows = m_model->match(m_model->index(0, 0), Qt::UserRole, QDate(d.year(), d.month(), 1), -1,
                                                    Qt::MatchStartsWith | Qt::MatchWrap);
        for (const QModelIndex &row : rows) {
            for (int c = 1; c < m_model->columnCount(); ++c) {
                if (m_model->index(row.row(), c).data(Qt::UserRole).toDate() == d)
                    return m_model->index(row.row(), c);
            }
        }
        return QModelIndex();
    };
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 1, 1));
    m_model->setInterval(QDate(2024, 1, 1), QDate(2025, 1, 1));
    QCOMPARE(m_model->indexByDate(QDate(2024, 7, 15)), search(QDate(2024, 7, 15))); // the look-up is built
    const int rows = m_model->rowCount();
    if (removed == QLatin1String("first"))
        QVERIFY(m_model->removeRow(0));
    else if (removed == QLatin1String("month"))
        QVERIFY(m_model->removeRow(m_model->indexByDate(QDate(2024, 5, 6)).row()));
    else if (removed == QLatin1String("last"))
        QVERIFY(m_model->removeRow(rows - 1));
    for (QDate d(2023, 12, 1); d <= QDate(2026, 1, 31); d = d.addDays(1))
        QCOMPARE(m_model->indexByDate(d), search(d));
}

void TestWorkerScheduleModel::headers()
{
    m_model->setInterval(QDate(2024, 1, 1), QDate(2024, 12, 31));
    const QLocale locale;
    QCOMPARE(m_model->headerData(0, Qt::Horizontal).toString(), QString());
    QCOMPARE(m_model->headerData(1, Qt::Horizontal).toString(), locale.dayName(1, QLocale::ShortFormat));
    QCOMPARE(m_model->headerData(14, Qt::Horizontal).toString(), locale.dayName(7, QLocale::ShortFormat));
    QList<int> red;
    for (int s = 0; s < m_model->columnCount(); ++s) {
        if (m_model->headerData(s, Qt::Horizontal, Qt::ForegroundRole).value<QColor>() == QColor(Qt::red))
            red << s;
    }
    QCOMPARE(red, (QList<int>{6, 7, 13, 14, 20, 21, 27, 28, 34, 35, 41, 42}));

    QCOMPARE(m_model->headerData(0, Qt::Vertical).toString(), QStringLiteral("2024"));
    QCOMPARE(m_model->headerData(0, Qt::Vertical, Qt::FontRole).value<QFont>().weight(), 75);
    QCOMPARE(m_model->headerData(0, Qt::Vertical, Qt::TextAlignmentRole).toInt(), 132);
    QCOMPARE(m_model->headerData(12, Qt::Vertical).toString(),
             QStringLiteral("%1 2024").arg(locale.standaloneMonthName(12, QLocale::ShortFormat)));
    QVERIFY(!m_model->headerData(12, Qt::Vertical, Qt::FontRole).isValid());
}

void TestWorkerScheduleModel::proxyShowsWholeYears()
{
    m_model->setInterval(QDate(2024, 1, 1), QDate(2026, 12, 31));
    WorkerScheduleProxyModel proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::Fatal);
    proxy.setSourceModel(m_model.data());
    QCOMPARE(proxy.rowCount(), 39);
    proxy.setMinimumYear(2025);
    proxy.setMaximumYear(2025);
    QCOMPARE(proxy.rowCount(), 13);
    QCOMPARE(proxy.index(0, 0).data().toString(), QStringLiteral("year2025"));
    QCOMPARE(proxy.index(12, 0).data().toString(), QStringLiteral("month12"));
    QCOMPARE(proxy.columnCount(), 43);
    proxy.setMinimumYear(2027);
    QCOMPARE(proxy.rowCount(), 0);
}

QTEST_MAIN(TestWorkerScheduleModel)
#include "tst_workerschedulemodel.moc"
