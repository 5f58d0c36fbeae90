#include <innvalidator.h>
#include <snilsedit.h>

#include <QtTest>

class TestValidators : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void inn_data();
    void inn();
    void snilsCheckSum_data();
    void snilsCheckSum();
    void snilsEditRoundTrip();
};

void TestValidators::inn_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("state");
    const int personal = INNValidator::Personal;
    const int organisation = INNValidator::Organisation;
    const int any = INNValidator::Any;
    QTest::newRow("empty") << personal << QString() << int(QValidator::Intermediate);
    QTest::newRow("11 digits block saving") << personal << QStringLiteral("50050012349") << int(QValidator::Intermediate);
    QTest::newRow("valid personal") << personal << QStringLiteral("500500123491") << int(QValidator::Acceptable);
    QTest::newRow("personal, wrong 11th digit") << personal << QStringLiteral("500500123481") << int(QValidator::Intermediate);
    QTest::newRow("personal, wrong 12th digit") << personal << QStringLiteral("500500123492") << int(QValidator::Intermediate);
    QTest::newRow("13 digits") << personal << QStringLiteral("5005001234910") << int(QValidator::Invalid);
    QTest::newRow("letter") << personal << QStringLiteral("50050a") << int(QValidator::Invalid);
    QTest::newRow("space") << personal << QStringLiteral("500 500") << int(QValidator::Invalid);
    QTest::newRow("organisation number is not personal") << personal << QStringLiteral("7707083893") << int(QValidator::Intermediate);
    QTest::newRow("valid organisation") << organisation << QStringLiteral("7707083893") << int(QValidator::Acceptable);
    QTest::newRow("organisation, wrong check") << organisation << QStringLiteral("7707083894") << int(QValidator::Intermediate);
    QTest::newRow("organisation, 11 digits") << organisation << QStringLiteral("77070838930") << int(QValidator::Invalid);
    QTest::newRow("any takes 10") << any << QStringLiteral("7707083893") << int(QValidator::Acceptable);
    QTest::newRow("any takes 12") << any << QStringLiteral("500500123491") << int(QValidator::Acceptable);
}

void TestValidators::inn()
{
    QFETCH(int, kind);
    QFETCH(QString, input);
    QFETCH(int, state);
    INNValidator validator{INNValidator::Kind(kind)};
    int pos = 0;
    QCOMPARE(int(validator.validate(input, pos)), state);
}

void TestValidators::snilsCheckSum_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<bool>("valid");
    QTest::newRow("sum below 100") << QStringLiteral("11223344595") << true;
    QTest::newRow("sum below 100, wrong") << QStringLiteral("11223344596") << false;
    QTest::newRow("sum above 101 -> mod 101") << QStringLiteral("11223346801") << true;
    QTest::newRow("sum exactly 100 -> 00") << QStringLiteral("11223345800") << true;
    QTest::newRow("sum exactly 100, written as 100") << QStringLiteral("11223345810") << false;
    QTest::newRow("old number without check sum") << QStringLiteral("00100199899") << true;
    QTest::newRow("too short") << QStringLiteral("1122334459") << false;
    QTest::newRow("letters") << QStringLiteral("1122334459a") << false;
}

void TestValidators::snilsCheckSum()
{
    QFETCH(QString, digits);
    QFETCH(bool, valid);
    QCOMPARE(SnilsEdit::isValidSnils(digits), valid);
}

void TestValidators::snilsEditRoundTrip()
{
    SnilsEdit edit;
    QSignalSpy changed(&edit, &SnilsEdit::snilsChanged);
    QCOMPARE(edit.snils(), QString());
    edit.setSnils(QStringLiteral("112-233-445 95"));
    QCOMPARE(edit.snils(), QStringLiteral("11223344595"));
    QCOMPARE(edit.text(), QStringLiteral("112-233-445 95"));
    QVERIFY(edit.isAcceptable());
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed.last().at(0).toString(), QStringLiteral("11223344595"));
    edit.setSnils(QString());
    QCOMPARE(edit.snils(), QString());
    QVERIFY(!edit.isAcceptable());
}

QTEST_MAIN(TestValidators)
#include "tst_validators.moc"
