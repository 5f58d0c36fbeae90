#include "referenceindex.h"

#include <trie>

#include <QMap>
#include <QRandomGenerator>
#include <QSet>
#include <QtTest>

namespace {

using Trie = TrieStatic<unsigned int>;

QSet<unsigned> find(const ReferenceIndex &reference, const QString &prefix)
{
    QSet<unsigned> result;
    reference.contains(prefix, result);
    return result;
}

QSet<unsigned> find(const Trie &trie, const QString &prefix)
{
    Trie::Set found;
    trie.contains(prefix, found);
    for (int i = 1; i < found.size(); ++i) {
        if (found.values()[i - 1] >= found.values()[i])
            qFatal("TrieStatic answer is not strictly ascending");
    }
    return found.toQSet();
}

using Values = QList<unsigned>;
QSet<unsigned> set(const Values &values)
{
    return QSet<unsigned>(values.cbegin(), values.cend());
}

} // namespace

class TstTrieStatic : public QObject
{
    Q_OBJECT

private slots:
    void prefixes_data();
    void prefixes();
    void removal();
    void repeatedAddIsOnePair();
    void valueUnderSeveralMatchingKeysComesOnce_data();
    void valueUnderSeveralMatchingKeysComesOnce();
    void emptyPrefix();
    void emptyKeyIsFiledButNeverFound();
    void copiesAreIndependent();
    void qsetOverload();
    void matchesReference_data();
    void matchesReference();
};

void TstTrieStatic::prefixes_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<Values>("expected");

    QTest::newRow("common prefix") << "ivan" << Values{7, 8};
    QTest::newRow("one letter") << "p" << Values{7};
    QTest::newRow("case matters") << "Ivan" << Values{};
    QTest::newRow("whole key") << "ivanov" << Values{7, 8};
    QTest::newRow("whole longer key") << "ivanova" << Values{8};
    QTest::newRow("longer than every key") << "ivanovaaa" << Values{};
    QTest::newRow("after every key") << "z" << Values{};
    QTest::newRow("before every key") << "0" << Values{};
    QTest::newRow("cyrillic") << QStringLiteral("ив") << Values{3};
    QTest::newRow("cyrillic upper") << QStringLiteral("Ив") << Values{};
    QTest::newRow("digits, five units") << "12345" << Values{11};
    QTest::newRow("digits, four units") << "1234" << Values{11, 12};
    QTest::newRow("embedded nul") << QString::fromUtf16(u"ab\u0000", 3) << Values{21};
    QTest::newRow("nul prefix of short key") << QString::fromUtf16(u"a\u0000", 2) << Values{};
}

void TstTrieStatic::prefixes()
{
    QFETCH(QString, prefix);
    QFETCH(Values, expected);

    Trie trie;
    trie.add(QStringLiteral("ivanov"), 7);
    trie.add(QStringLiteral("ivanova"), 8);
    trie.add(QStringLiteral("petrov"), 7);
    trie.add(QStringLiteral("иванов"), 3);
    trie.add(QStringLiteral("123456"), 11);
    trie.add(QStringLiteral("1234"), 12);
    trie.add(QString::fromUtf16(u"ab\u0000", 3), 21);
    trie.add(QStringLiteral("a"), 22);
    trie.add(QStringLiteral("ab"), 22);
    QCOMPARE(find(trie, prefix), set(expected));
}

void TstTrieStatic::removal()
{
    Trie trie;
    trie.add(QStringLiteral("ivanov"), 7);
    trie.add(QStringLiteral("ivanova"), 8);
    trie.add(QStringLiteral("petrov"), 7);
    trie.remove(7);
    QCOMPARE(find(trie, QStringLiteral("ivan")), set({8}));
    QCOMPARE(trie.keys(), QStringList({QStringLiteral("ivanova")}));

    trie.remove(42); // never added: nothing changes
    QCOMPARE(trie.keys(), QStringList({QStringLiteral("ivanova")}));
    trie.remove(8);
    QVERIFY(trie.isEmpty());
    QCOMPARE(find(trie, QStringLiteral("i")), QSet<unsigned>());
}

void TstTrieStatic::repeatedAddIsOnePair()
{
    Trie trie;
    trie.add(QStringLiteral("x"), 5);
    trie.add(QStringLiteral("x"), 5);
    trie.remove(5);
    QVERIFY(trie.keys().isEmpty());

    // The same with a key that holds several values.
    trie.add(QStringLiteral("x"), 5);
    trie.add(QStringLiteral("x"), 6);
    trie.add(QStringLiteral("x"), 5);
    trie.remove(5);
    QCOMPARE(find(trie, QStringLiteral("x")), set({6}));
    trie.remove(6);
    QVERIFY(trie.keys().isEmpty());
}

// An employee filed under "ab" and "abc" is one hit for "a", whether the
// answer is merged from a few keys or sorted from many.
void TstTrieStatic::valueUnderSeveralMatchingKeysComesOnce_data()
{
    QTest::addColumn<int>("keys");
    QTest::newRow("two keys") << 2;
    QTest::newRow("many keys") << 300;
}

void TstTrieStatic::valueUnderSeveralMatchingKeysComesOnce()
{
    QFETCH(int, keys);
    Trie trie;
    QString key = QStringLiteral("a");
    for (int i = 0; i < keys; ++i) {
        key += QLatin1Char(char('a' + i % 26));
        trie.add(key, 1);
        trie.add(key + QStringLiteral("z"), unsigned(100 + i));
    }
    Trie::Set found;
    QVERIFY(trie.contains(QStringLiteral("a"), found));
    QCOMPARE(found.size(), keys + 1);
    QCOMPARE(found.values().front(), 1u);
    QCOMPARE(found.values()[1], 100u);
}

void TstTrieStatic::emptyPrefix()
{
    Trie trie;
    trie.add(QStringLiteral("ivanov"), 7);
    Trie::Set found{1, 2, 3};
    QTest::ignoreMessage(QtDebugMsg, "TrieStatic<Data>: key is empty");
    QVERIFY(!trie.contains(QString(), found));
    QVERIFY(found.isEmpty());
}

void TstTrieStatic::emptyKeyIsFiledButNeverFound()
{
    Trie trie;
    trie.add(QString(), 9);
    QCOMPARE(trie.keyCount(), 1);
    QTest::ignoreMessage(QtDebugMsg, "TrieStatic<Data>: key is empty");
    QCOMPARE(find(trie, QString()), QSet<unsigned>());
    trie.remove(9);
    QVERIFY(trie.isEmpty());
}

void TstTrieStatic::copiesAreIndependent()
{
    Trie a;
    a.add(QStringLiteral("ivanov"), 7);
    Trie b = a;
    b.add(QStringLiteral("ivanova"), 8);
    a.remove(7);
    QCOMPARE(find(a, QStringLiteral("ivan")), QSet<unsigned>());
    QCOMPARE(find(b, QStringLiteral("ivan")), set({7, 8}));
}

void TstTrieStatic::qsetOverload()
{
    Trie trie;
    trie.add(QStringLiteral("ab"), 1);
    trie.add(QStringLiteral("ac"), 2);
    QSet<unsigned> found{99};
    QVERIFY(trie.contains(QStringLiteral("a"), found));
    QCOMPARE(found, set({1, 2}));
    QVERIFY(!trie.contains(QStringLiteral("b"), found));
    QVERIFY(found.isEmpty());
}

// Random work loads, checked query by query against the ordered map. The
// shapes stress what the index is built on: chunks splitting and emptying
// (many keys), keys moving between one value and a list (few keys), keys
// arriving in order, and the arena and reverse lists being compacted after
// mass removals.
void TstTrieStatic::matchesReference_data()
{
    QTest::addColumn<int>("operations");
    QTest::addColumn<int>("keySpace");
    QTest::addColumn<int>("valueSpace");
    QTest::addColumn<int>("removePercent");
    QTest::addColumn<bool>("ordered");

    QTest::newRow("many keys") << 40000 << 100000 << 5000 << 10 << false;
    QTest::newRow("few keys, many values") << 20000 << 30 << 3000 << 15 << false;
    QTest::newRow("churn") << 30000 << 2000 << 400 << 45 << false;
    QTest::newRow("keys in order") << 20000 << 0 << 20000 << 5 << true;
    QTest::newRow("large values") << 10000 << 5000 << 0 << 20 << false;
}

void TstTrieStatic::matchesReference()
{
    QFETCH(int, operations);
    QFETCH(int, keySpace);
    QFETCH(int, valueSpace);
    QFETCH(int, removePercent);
    QFETCH(bool, ordered);

    QRandomGenerator rng(20261122u + quint32(operations));
    const QString alphabet = QStringLiteral("abcабв0129");
    auto randomText = [&](int maxLength) {
        QString s;
        const int length = 1 + rng.bounded(maxLength);
        for (int i = 0; i < length; ++i)
            s.append(alphabet.at(rng.bounded(alphabet.size())));
        return s;
    };
    auto randomValue = [&]() { return valueSpace ? unsigned(rng.bounded(valueSpace)) : rng.generate(); };

    Trie trie;
    ReferenceIndex reference;
    QList<unsigned> added;
    int checked = 0;
    for (int op = 0; op < operations; ++op) {
        if (!added.isEmpty() && rng.bounded(100) < removePercent) {
            const unsigned value = added.at(rng.bounded(added.size()));
            trie.remove(value);
            reference.remove(value);
        } else {
            QString key;
            unsigned value;
            if (ordered) {
                key = QStringLiteral("%1").arg(op, 7, 10, QLatin1Char('0'));
                value = unsigned(op);
            } else {
                key = keySpace < 1000 ? QString::number(rng.bounded(keySpace)) : randomText(8);
                value = randomValue();
            }
            trie.add(key, value);
            reference.add(key, value);
            added.append(value);
        }
        if (op % 97 == 0) {
            const QString prefix = ordered ? QString::number(rng.bounded(10)) : randomText(3);
            QCOMPARE(find(trie, prefix), find(reference, prefix));
            ++checked;
        }
    }
    QCOMPARE(trie.keys(), reference.forward.keys());
    const QStringList prefixes{QStringLiteral("a"), QStringLiteral("0"), QStringLiteral("б"), QStringLiteral("1"),
                               QStringLiteral("00"), QStringLiteral("ab")};
    for (const QString &prefix : prefixes)
        QCOMPARE(find(trie, prefix), find(reference, prefix));
    QVERIFY(checked > 0);

    // Withdrawing every value leaves nothing behind.
    for (unsigned value : qAsConst(added))
        trie.remove(value);
    QVERIFY(trie.isEmpty());
    QVERIFY(trie.keys().isEmpty());
}

QTEST_APPLESS_MAIN(TstTrieStatic)
#include "tst_triestatic.moc"
