#include <nvcombobox.h>
#include <nvdateedit.h>
#include <nvfiltercombobox.h>
#include <photowidget.h>

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTemporaryDir>
#include <QtTest>

class TestInputWidgets : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void comboHiddenRowStaysCurrent();
    void readOnlyComboRefusesKeys();
    void filterComboFilters_data();
    void filterComboFilters();
    void filterComboActivatesFullListRow();
    void filterComboRestoresHalfTypedText();
    void dateEditEmptyAndSpecialText();
    void photoBrokenFileLeavesPhoto();
    void photoLoadAndClearSignal();
};

namespace {
void fillCountries(QComboBox &box)
{
    box.addItem(QStringLiteral("(разные значения)"), QStringLiteral("-1"));
    box.addItem(QStringLiteral("Не задано"), QStringLiteral("0"));
    box.addItem(QStringLiteral("РОССИЯ"), QStringLiteral("643"));
    box.addItem(QStringLiteral("БЕЛАРУСЬ"), QStringLiteral("112"));
    box.addItem(QStringLiteral("КАЗАХСТАН"), QStringLiteral("398"));
    box.addItem(QStringLiteral("АВСТРИЯ"), QStringLiteral("040"));
}
} // namespace

void TestInputWidgets::comboHiddenRowStaysCurrent()
{
    NVComboBox box;
    fillCountries(box);
    box.setRowHidden(0, true);
    QVERIFY(box.isRowHidden(0));
    box.setCurrentIndex(0); // a mixed selection shows the hidden row
    QCOMPARE(box.currentText(), QStringLiteral("(разные значения)"));
    QVERIFY(box.setCurrentData(QStringLiteral("398")));
    QCOMPARE(box.currentIndex(), 4);
    QVERIFY(!box.setCurrentData(QStringLiteral("999")));
    QCOMPARE(box.currentIndex(), 4);
}

void TestInputWidgets::readOnlyComboRefusesKeys()
{
    NVComboBox box;
    fillCountries(box);
    box.setCurrentIndex(2);
    box.setReadOnly(true);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QTest::keyClick(&box, Qt::Key_Down);
    QTest::keyClick(&box, Qt::Key_End);
    QCOMPARE(box.currentIndex(), 2);
    box.setReadOnly(false);
    QTest::keyClick(&box, Qt::Key_Down);
    QCOMPARE(box.currentIndex(), 3);
}

void TestInputWidgets::filterComboFilters_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("middle of a word, any case") << QStringLiteral("ст") << QStringList{QStringLiteral("КАЗАХСТАН"), QStringLiteral("АВСТРИЯ")};
    QTest::newRow("no match") << QStringLiteral("zz") << QStringList{};
    QTest::newRow("empty shows all") << QString() << QStringList{QStringLiteral("(разные значения)"), QStringLiteral("Не задано"),
                                                                 QStringLiteral("РОССИЯ"), QStringLiteral("БЕЛАРУСЬ"),
                                                                 QStringLiteral("КАЗАХСТАН"), QStringLiteral("АВСТРИЯ")};
}

void TestInputWidgets::filterComboFilters()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, shown);
    NVFilterComboBox box;
    fillCountries(box);
    box.setFilterText(typed);
    QStringList rows;
    for (int row = 0; row < box.filterModel()->rowCount(); ++row)
        rows << box.filterModel()->index(row, 0).data().toString();
    QCOMPARE(rows, shown);
}

void TestInputWidgets::filterComboActivatesFullListRow()
{
    NVFilterComboBox box;
    fillCountries(box);
    QSignalSpy activated(&box, qOverload<int>(&QComboBox::activated));
    box.setFilterText(QStringLiteral("австр"));
    QCOMPARE(box.filterModel()->rowCount(), 1);
    // Choosing the only row of the filtered popup picks row 5 of the list.
    QAbstractItemModel *popup = box.completer()->completionModel();
    QCOMPARE(popup->index(0, 0).data().toString(), QStringLiteral("АВСТРИЯ"));
    emit box.completer()->activated(popup->index(0, 0));
    QCOMPARE(box.currentIndex(), 5);
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.at(0).at(0).toInt(), 5);
}

void TestInputWidgets::filterComboRestoresHalfTypedText()
{
    NVFilterComboBox box;
    fillCountries(box);
    box.setCurrentIndex(2);
    QSignalSpy activated(&box, qOverload<int>(&QComboBox::activated));
    box.lineEdit()->setText(QStringLiteral("Росс"));
    emit box.lineEdit()->editingFinished();
    QCOMPARE(box.currentIndex(), 2);
    QCOMPARE(box.lineEdit()->text(), QStringLiteral("РОССИЯ"));
    QCOMPARE(activated.size(), 0);
    // A whole name typed in any case is a choice.
    box.lineEdit()->setText(QStringLiteral("беларусь"));
    emit box.lineEdit()->editingFinished();
    QCOMPARE(box.currentIndex(), 3);
    QCOMPARE(activated.size(), 1);
}

void TestInputWidgets::dateEditEmptyAndSpecialText()
{
    NVDateEdit edit;
    QVERIFY(edit.isEmpty());
    QVERIFY(!edit.dateOrNull().isValid());
    QCOMPARE(edit.text().trimmed(), QString());
    edit.setDateOrClear(QDate(1980, 2, 29));
    QCOMPARE(edit.text(), QStringLiteral("29.02.1980"));
    QCOMPARE(edit.dateOrNull(), QDate(1980, 2, 29));
    edit.setDateOrClear(QDate());
    QVERIFY(edit.isEmpty());
    edit.setSpecialValueText(QStringLiteral("(разные значения)"));
    QCOMPARE(edit.text(), QStringLiteral("(разные значения)"));
    edit.setDateOrClear(QDate(2000, 1, 1));
    edit.clear();
    QVERIFY(edit.isEmpty());
}

void TestInputWidgets::photoBrokenFileLeavesPhoto()
{
    QTemporaryDir dir;
    const QString broken = dir.filePath(QStringLiteral("photo.jpg"));
    QFile f(broken);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("\xff\xd8\xff\xe0 this is no jpeg");
    f.close();

    PhotoWidget widget;
    QPixmap original(10, 10);
    original.fill(Qt::red);
    widget.setPhoto(original);
    QSignalSpy changed(&widget, &PhotoWidget::imageChanged);
    QString error;
    QVERIFY(!widget.loadFromFile(broken, &error));
    QVERIFY(error.contains(broken));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(widget.photo().toImage(), original.toImage());
    QVERIFY(!widget.loadFromFile(dir.filePath(QStringLiteral("missing.png")), &error));
}

void TestInputWidgets::photoLoadAndClearSignal()
{
    QTemporaryDir dir;
    QImage image(30, 40, QImage::Format_RGB32);
    image.fill(Qt::blue);
    const QString file = dir.filePath(QStringLiteral("p.png"));
    QVERIFY(image.save(file));

    PhotoWidget widget;
    QSignalSpy changed(&widget, &PhotoWidget::imageChanged);
    widget.setPhoto(QPixmap(5, 5)); // from code: no signal
    QCOMPARE(changed.size(), 0);
    QVERIFY(widget.loadFromFile(file));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(widget.photo().size(), QSize(30, 40));
    widget.clearPhoto();
    QCOMPARE(changed.size(), 2);
    QVERIFY(changed.last().at(0).value<QPixmap>().isNull());
    QVERIFY(!widget.hasPhoto());
    widget.clearPhoto(); // nothing to clear: nothing changes
    QCOMPARE(changed.size(), 2);
}

QTEST_MAIN(TestInputWidgets)
#include "tst_inputwidgets.moc"
