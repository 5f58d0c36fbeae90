#include <cardtemplateswidget.h>

#include <pbpvssdk5.h>

#include <QLabel>
#include <QTableWidget>
#include <QtTest>

using nivaro::_TEMPLATE_DATA;

namespace {

_TEMPLATE_DATA tpl(quint32 id, int type, int size, quint16 finger = 1)
{
    _TEMPLATE_DATA t;
    t.id = id;
    t.worker = 500;
    t.type = type;
    t.finger = finger;
    t.data = QByteArray(size, char('a' + id % 26));
    t.created = QDateTime(QDate(2025, 3, 4), QTime(5, 6, 7), Qt::UTC);
    return t;
}

QString enabledRows(QTableWidget *table)
{
    QString rows;
    for (int row = 0; row < table->rowCount(); ++row)
        rows += (table->item(row, 0)->flags() & Qt::ItemIsEnabled) ? QLatin1Char('+') : QLatin1Char('-');
    return rows;
}

} // namespace

class TestCardTemplatesWidget : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void form();
    void enabling_data();
    void enabling();
    void checkedTemplatesComeBackWhole();
    void palmVeinCountsPackedSize();
};

void TestCardTemplatesWidget::cleanup()
{
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestCardTemplatesWidget::form()
{
    CardTemplatesWidget w;
    w.setTemplates({});
    QCOMPARE(w.findChild<QTableWidget *>(QStringLiteral("tableWidget"))->rowCount(), 0);
    w.setMaxUserDataSize(716);
    QCOMPARE(w.findChild<QLabel *>(QStringLiteral("lbSizeWarning"))->text(),
             QStringLiteral("На выбранную смарт-карту можно записать не более 716 байт"));
    QVERIFY(w.templates().isEmpty());
}

void TestCardTemplatesWidget::enabling_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QList<int>>("sizes");
    QTest::addColumn<QList<int>>("checked");
    QTest::addColumn<QString>("enabled");

    const QList<int> sizes{100, 200, 300};
    QTest::newRow("nothing checked: only those too big alone") << 250 << sizes << QList<int>() << "++-";
    QTest::newRow("exactly the limit alone") << 300 << sizes << QList<int>() << "+++";
    // 100 checked: 200 fits exactly into the 200 left, 300 does not.
    QTest::newRow("room equals size") << 300 << sizes << QList<int>{0} << "++-";
    QTest::newRow("one byte short") << 299 << sizes << QList<int>{0} << "+--";
    // A checked template stays enabled even when the limit drops below it.
    QTest::newRow("checked never disabled") << 50 << sizes << QList<int>{2} << "--+";
    QTest::newRow("no room") << 0 << sizes << QList<int>() << "---";
}

void TestCardTemplatesWidget::enabling()
{
    QFETCH(int, limit);
    QFETCH(QList<int>, sizes);
    QFETCH(QList<int>, checked);
    QFETCH(QString, enabled);

    CardTemplatesWidget w;
    auto *table = w.findChild<QTableWidget *>(QStringLiteral("tableWidget"));
    QList<_TEMPLATE_DATA> list;
    for (int i = 0; i < sizes.size(); ++i)
        list.append(tpl(quint32(i + 1), _TEMPLATE_DATA::Fingerprint, sizes.at(i)));
    w.setMaxUserDataSize(100000);
    w.setTemplates(list);
    for (const int row : checked)
        table->item(row, 0)->setCheckState(Qt::Checked);
    w.setMaxUserDataSize(limit);
    QCOMPARE(enabledRows(table), enabled);
}

void TestCardTemplatesWidget::checkedTemplatesComeBackWhole()
{
    CardTemplatesWidget w;
    w.setMaxUserDataSize(1000);
    const QList<_TEMPLATE_DATA> list{tpl(1, _TEMPLATE_DATA::Fingerprint, 10, 0),
                                     tpl(2, _TEMPLATE_DATA::Face, 20, 12), tpl(3, _TEMPLATE_DATA::FingerVein, 30, 6)};
    w.setTemplates(list);
    auto *table = w.findChild<QTableWidget *>(QStringLiteral("tableWidget"));
    QCOMPARE(table->item(1, 1)->text(), QStringLiteral("20"));
    table->item(2, 0)->setCheckState(Qt::Checked);
    table->item(0, 0)->setCheckState(Qt::Checked);
    QCOMPARE(w.templates(), (QList<_TEMPLATE_DATA>{list.at(0), list.at(2)}));
    // A new employee's templates replace the old ones, all unchecked.
    w.setTemplates({list.at(1)});
    QCOMPARE(table->rowCount(), 1);
    QVERIFY(w.templates().isEmpty());
}

void TestCardTemplatesWidget::palmVeinCountsPackedSize()
{
    CardTemplatesWidget w;
    const int packed = PBPVSSDK5::packedTemplateSize();
    w.setTemplates({tpl(1, _TEMPLATE_DATA::PalmVein, packed * 3 + 1, 10)});
    auto *table = w.findChild<QTableWidget *>(QStringLiteral("tableWidget"));
    QCOMPARE(table->item(0, 1)->text(), QString::number(packed));
    w.setMaxUserDataSize(packed);
    QCOMPARE(enabledRows(table), QStringLiteral("+"));
}

QTEST_MAIN(TestCardTemplatesWidget)
#include "tst_cardtemplateswidget.moc"
