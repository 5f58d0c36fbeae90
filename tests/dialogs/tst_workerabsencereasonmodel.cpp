#include <workerabsencereasonmodel.h>
#include <workerabsencereasonproxy.h>

#include <dbparams.h>
#include <objecttypes.h>

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace nivaro;
using Record = _WORKER_ABSENCE_REASON_RECORD;

namespace {

Record period(quint32 id, quint32 reason, const QDate &start, const QDate &end, bool withTime = false)
{
    Record r;
    r.id = id;
    r.reason = reason;
    r.start = QDateTime(start, QTime(8, 30));
    r.end = QDateTime(end, QTime(17, 0));
    r.withTime = withTime;
    r.comment = QStringLiteral("запись %1").arg(id);
    r.created = QDateTime(QDate(2024, 1, 2), QTime(10, 0));
    return r;
}

QDate march(int day)
{
    return QDate(2024, 3, day);
}

} // namespace

class TestWorkerAbsenceReasonModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void columns();
    void rowsOutOfRange();
    void editsNotifyViews();
    void removingARowKeepsTheOthers_data();
    void removingARowKeepsTheOthers();
    void window_data();
    void window();

private:
    QScopedPointer<WorkerAbsenceReasonModel> m_model;
    QScopedPointer<QAbstractItemModelTester> m_tester;
};

void TestWorkerAbsenceReasonModel::init()
{
    m_tester.reset();
    m_model.reset(new WorkerAbsenceReasonModel);
    m_tester.reset(new QAbstractItemModelTester(m_model.data(), QAbstractItemModelTester::FailureReportingMode::Fatal));
    _WORKER_ABSENCE_REASON reasons;
    reasons.worker = 100;
    reasons.records = {period(1, 500, march(10), march(12)), period(2, 17, march(1), march(2), true),
                       period(3, 501, march(5), march(5))};
    m_model->setWorkerReasons(reasons);
    NVHash<unsigned int, ObjectInfo> objects;
    objects.insert(500, ObjectInfo(500, OT_REASON, {{db::reason::NAME, QStringLiteral("Отпуск")}, {db::reason::MARK, QStringLiteral("ОТ")}}));
    objects.insert(501, ObjectInfo(501, OT_REASON, {{db::reason::NAME, QStringLiteral("Болезнь")}}));
    m_model->setAbsenceReasons(objects);
}

void TestWorkerAbsenceReasonModel::columns()
{
    QCOMPARE(m_model->columnCount(), 6);
    QVERIFY(!m_model->headerData(0, Qt::Vertical).isValid());

    auto cell = [this](int row, int column) { return m_model->index(row, column).data(); };
    QCOMPARE(cell(0, 0).toString(), QStringLiteral("ОТ"));
    QCOMPARE(cell(0, 1).toString(), QStringLiteral("Отпуск"));
    QCOMPARE(cell(0, 2), QVariant(march(10))); // whole days: the date alone
    QCOMPARE(cell(0, 3), QVariant(march(12)));
    QCOMPARE(cell(0, 4), QVariant(QDateTime(QDate(2024, 1, 2), QTime(10, 0))));
    QCOMPARE(cell(0, 5).toString(), QStringLiteral("запись 1"));
    QCOMPARE(cell(1, 0).toString(), QStringLiteral("??? 17"));
    QCOMPARE(cell(1, 1).toString(), QStringLiteral("??? 17"));
    QCOMPARE(cell(1, 2), QVariant(QDateTime(march(1), QTime(8, 30))));
    QCOMPARE(cell(2, 0).toString(), QString()); // no mark given
    QVERIFY(!m_model->index(0, 1).data(Qt::EditRole).isValid());
    QCOMPARE(m_model->workerReasons().worker, 100u);
}

void TestWorkerAbsenceReasonModel::rowsOutOfRange()
{
    for (int row : {-1, 3, 100}) {
        const Record r = m_model->workerReason(row);
        QCOMPARE(r.id, 4294967295u);
        QCOMPARE(r.reason, 0u);
        QVERIFY(!r.start.isValid() && !r.end.isValid());
        QVERIFY(!r.withTime);
        QVERIFY(r.comment.isEmpty());
    }
    QCOMPARE(m_model->workerReason(2).id, 3u);

    m_model->addReason(period(1, 501, march(20), march(21)));
    QCOMPARE(m_model->row(1), 0u); // the first of two
    QCOMPARE(m_model->row(3), 2u);
    QCOMPARE(m_model->row(99), 4294967295u);

    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    m_model->setWorkerReason(-1, period(9, 500, march(1), march(1)));
    m_model->setWorkerReason(m_model->rowCount(), period(9, 500, march(1), march(1)));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(m_model->rowCount(), 4);

    QVERIFY(!m_model->removeRow(-1, QModelIndex()));
    QVERIFY(!m_model->removeRow(4, QModelIndex()));
    QVERIFY(!m_model->removeRow(0, m_model->index(0, 0)));
    QCOMPARE(m_model->rowCount(), 4);
}

void TestWorkerAbsenceReasonModel::editsNotifyViews()
{
    QSignalSpy inserted(m_model.data(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(m_model.data(), &QAbstractItemModel::dataChanged);
    QSignalSpy removed(m_model.data(), &QAbstractItemModel::rowsRemoved);

    m_model->addReason(period(4, 500, march(20), march(21)));
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.at(0).at(1).toInt(), 3);
    QCOMPARE(inserted.at(0).at(2).toInt(), 3);

    m_model->setWorkerReason(1, period(2, 500, march(1), march(3)));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), m_model->index(1, 0));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), m_model->index(1, 5));
    QCOMPARE(m_model->index(1, 1).data().toString(), QStringLiteral("Отпуск"));

    QVERIFY(m_model->removeRow(0, QModelIndex()));
    m_model->removeReason(0);
    QCOMPARE(removed.size(), 2);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->workerReason(0).id, 3u);

    // New reason names reach every shown row.
    m_model->setAbsenceReasons({});
    QCOMPARE(changed.size(), 2);
    QCOMPARE(m_model->index(0, 1).data().toString(), QStringLiteral("??? 501"));
}

void TestWorkerAbsenceReasonModel::removingARowKeepsTheOthers_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<unsigned int>>("left");
    QTest::newRow("first") << 0 << QList<unsigned int>{2, 3};
    QTest::newRow("middle") << 1 << QList<unsigned int>{1, 3};
    QTest::newRow("last") << 2 << QList<unsigned int>{1, 2};
}

void TestWorkerAbsenceReasonModel::removingARowKeepsTheOthers()
{
    QFETCH(int, row);
    QFETCH(QList<unsigned int>, left);
    QSignalSpy removed(m_model.data(), &QAbstractItemModel::rowsRemoved);
    m_model->removeReason(row);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(1).toInt(), row);
    QList<unsigned int> ids;
    for (int r = 0; r < m_model->rowCount(); ++r)
        ids << m_model->workerReason(r).id;
    QCOMPARE(ids, left);
    QCOMPARE(m_model->workerReasons().records.size(), left.size());
}

void TestWorkerAbsenceReasonModel::window_data()
{
    // The model holds 10-12 March, 1-2 March and 5 March.
    QTest::addColumn<QDate>("min");
    QTest::addColumn<QDate>("max");
    QTest::addColumn<QList<quint32>>("shown");
    QTest::newRow("no window") << QDate() << QDate() << QList<quint32>{1, 2, 3};
    QTest::newRow("last day of a period") << march(12) << march(20) << QList<quint32>{1};
    QTest::newRow("the day after") << march(13) << march(20) << QList<quint32>{};
    QTest::newRow("first day of a period") << march(1) << march(10) << QList<quint32>{1, 2, 3};
    QTest::newRow("one day") << march(5) << march(5) << QList<quint32>{3};
    QTest::newRow("only the first day set") << march(1) << QDate() << QList<quint32>{};
    QTest::newRow("only the last day set") << QDate() << march(4) << QList<quint32>{2};
}

void TestWorkerAbsenceReasonModel::window()
{
    QFETCH(QDate, min);
    QFETCH(QDate, max);
    QFETCH(QList<quint32>, shown);
    WorkerAbsenceReasonProxy proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::Fatal);
    proxy.setSourceModel(m_model.data());
    proxy.setDateRange(min, max);
    QCOMPARE(proxy.minDate(), min);
    QCOMPARE(proxy.maxDate(), max);
    QList<quint32> ids;
    for (int row = 0; row < proxy.rowCount(); ++row)
        ids << m_model->workerReason(proxy.mapToSource(proxy.index(row, 0)).row()).id;
    QCOMPARE(ids, shown);

    // Periods added later are filtered as they come.
    m_model->addReason(period(7, 500, march(4), march(30)));
    const bool overlaps = (!min.isValid() && !max.isValid()) || (!(march(4) > max) && !(min > march(30)));
    QCOMPARE(proxy.rowCount(), shown.size() + (overlaps ? 1 : 0));
}

QTEST_MAIN(TestWorkerAbsenceReasonModel)
#include "tst_workerabsencereasonmodel.moc"
