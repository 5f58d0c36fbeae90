// DESFire's ciphers against published answers and against OpenSSL's own
// CMAC, and the authentications against a card played here with nothing
// but single-block operations, so that a chaining or key derivation fault
// on the reader side cannot hide behind the same fault on the card side.
#include <desfirecrypto.h>
#include <desfireprotocol.h>

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>

#include <QRandomGenerator>
#include <QtTest>

using namespace nvsmartcard;
using namespace nvsmartcard::desfire;

Q_DECLARE_METATYPE(nvsmartcard::desfire::Cipher)

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', ""));
}

const char *evpCmacCipher(Cipher cipher)
{
    return cipher == Cipher::Aes         ? "AES-128-CBC"
        : cipher == Cipher::ThreeKey3Des ? "DES-EDE3-CBC"
                                         : "DES-EDE-CBC";
}

// The standard CMAC (zero IV) through OpenSSL's MAC interface.
QByteArray evpCmac(Cipher cipher, const QByteArray &key, const QByteArray &message)
{
    const QByteArray k = cipher == Cipher::Des ? key + key : key;
    EVP_MAC *mac = EVP_MAC_fetch(nullptr, "CMAC", nullptr);
    EVP_MAC_CTX *ctx = EVP_MAC_CTX_new(mac);
    OSSL_PARAM params[] = { OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_CIPHER,
                                                             const_cast<char *>(evpCmacCipher(cipher)), 0),
                            OSSL_PARAM_construct_end() };
    unsigned char out[16];
    size_t length = 0;
    const bool ok
        = EVP_MAC_init(ctx, reinterpret_cast<const uchar *>(k.constData()), size_t(k.size()), params) == 1
        && EVP_MAC_update(ctx, reinterpret_cast<const uchar *>(message.constData()), size_t(message.size()))
            == 1
        && EVP_MAC_final(ctx, out, &length, sizeof out) == 1;
    EVP_MAC_CTX_free(ctx);
    EVP_MAC_free(mac);
    return ok ? QByteArray(reinterpret_cast<const char *>(out), int(length)) : QByteArray();
}

QByteArray xorBlock(QByteArray a, const QByteArray &b)
{
    for (int i = 0; i < a.size(); ++i)
        a[i] = char(a[i] ^ b[i]);
    return a;
}

// A card's side of the three authentications, one block at a time.
class AuthCard
{
public:
    AuthCard(Cipher cipher, const QByteArray &key, const QByteArray &rndB)
        : m_key(cipher, key)
        , m_rndB(rndB)
    {
    }

    int answer(const QByteArray &apdu, QByteArray &reply)
    {
        apdus.append(apdu);
        const int n = m_rndB.size();
        const int b = m_key.blockSize();
        if (apdus.size() == 1) {
            m_native = uchar(apdu[1]) == 0x0A;
            // E(RndB), chained from a zero IV.
            QByteArray prev(b, '\0');
            m_sent.clear();
            for (int i = 0; i < n; i += b)
                m_sent += prev = m_key.encryptEcb(xorBlock(m_rndB.mid(i, b), prev));
            reply = m_sent + QByteArray::fromHex("91AF");
            return 0;
        }
        if (apdus.size() == 2) {
            const QByteArray token = apdu.mid(5, 2 * n);
            QByteArray plain;
            // Native: the reader deciphered, so the card enciphers back;
            // otherwise plain CBC decryption from the last block it sent.
            QByteArray prev = m_native ? QByteArray(b, '\0') : m_sent.right(b);
            for (int i = 0; i < token.size(); i += b) {
                const QByteArray c = token.mid(i, b);
                plain += xorBlock(m_native ? m_key.encryptEcb(c) : m_key.decryptEcb(c), prev);
                prev = c;
            }
            rndA = plain.left(n);
            if (plain.mid(n) != rotateLeft(m_rndB)) {
                reply = QByteArray::fromHex("91AE");
                return 0;
            }
            QByteArray chain = m_native ? QByteArray(b, '\0') : token.right(b);
            const QByteArray proof = rotateLeft(rndA);
            QByteArray out;
            for (int i = 0; i < n; i += b)
                out += chain = m_key.encryptEcb(xorBlock(proof.mid(i, b), chain));
            reply = out + QByteArray::fromHex("9100");
            return 0;
        }
        reply = QByteArray::fromHex("9100"); // whatever follows: no MAC, so the channel refuses it
        return 0;
    }

    QList<QByteArray> apdus;
    QByteArray rndA;

private:
    BlockCipher m_key;
    QByteArray m_rndB;
    QByteArray m_sent;
    bool m_native = false;
};

} // namespace

class TestDesfireCrypto : public QObject
{
    Q_OBJECT
private slots:
    void knownAnswers_data();
    void knownAnswers();
    void cmacVectors_data();
    void cmacVectors();
    void cmacMatchesOpenSsl_data();
    void cmacMatchesOpenSsl();
    void sessionKeys_data();
    void sessionKeys();
    void authentication_data();
    void authentication();
    void checksums();
    void answersAndVersion();
};

void TestDesfireCrypto::knownAnswers_data()
{
    QTest::addColumn<Cipher>("cipher");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("encrypted");
    QTest::newRow("DES, 'Now is t'") << Cipher::Des << hex("0123456789ABCDEF") << hex("4E6F772069732074")
                                     << hex("3FA40E8A984D4815");
    QTest::newRow("DES, textbook") << Cipher::Des << hex("133457799BBCDFF1") << hex("0123456789ABCDEF")
                                   << hex("85E813540F0AB405");
    // Two equal halves are single DES, which is how the card stores DES keys.
    QTest::newRow("2K3DES, equal halves") << Cipher::TwoKey3Des << hex("133457799BBCDFF1 133457799BBCDFF1")
                                          << hex("0123456789ABCDEF") << hex("85E813540F0AB405");
    QTest::newRow("TDEA, three keys")
        << Cipher::ThreeKey3Des << hex("0123456789ABCDEF 23456789ABCDEF01 456789ABCDEF0123")
        << QByteArray("The qufck brown fox jump")
        << hex("A826FD8CE53B855F CCE21C8112256FE6 68D5C05DD9B6B900");
    QTest::newRow("AES-128") << Cipher::Aes << hex("000102030405060708090A0B0C0D0E0F")
                             << hex("00112233445566778899AABBCCDDEEFF")
                             << hex("69C4E0D86A7B0430D8CDB78070B4C55A");
}

void TestDesfireCrypto::knownAnswers()
{
    QFETCH(Cipher, cipher);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, encrypted);
    const BlockCipher c(cipher, key);
    QVERIFY(c.isValid());
    QCOMPARE(c.encryptEcb(plain).toHex(), encrypted.toHex());
    QCOMPARE(c.decryptEcb(encrypted).toHex(), plain.toHex());
    // CBC from a zero IV is ECB on the first block, and chains the rest.
    QByteArray iv(c.blockSize(), '\0');
    const QByteArray cbc = c.encryptCbc(plain + plain, iv);
    QCOMPARE(cbc.left(c.blockSize()), encrypted.left(c.blockSize()));
    QCOMPARE(iv, cbc.right(c.blockSize()));
    QByteArray back(c.blockSize(), '\0');
    QCOMPARE(c.decryptCbc(cbc, back), plain + plain);
    // Keys of the wrong length are refused, not truncated or padded.
    QVERIFY(!BlockCipher(cipher, key + 'x').isValid());
    QVERIFY(BlockCipher(cipher, key + 'x').encryptEcb(plain).isEmpty());
}

void TestDesfireCrypto::cmacVectors_data()
{
    QTest::addColumn<Cipher>("cipher");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("mac");
    const QByteArray m = hex("6BC1BEE22E409F96E93D7E117393172A AE2D8A571E03AC9C9EB76FAC45AF8E51"
                             "30C81C46A35CE411E5FBC1191A0A52EF F69F2445DF4F9B17AD2B417BE66C3710");
    const QByteArray aes = hex("2B7E151628AED2A6ABF7158809CF4F3C");
    QTest::newRow("AES, empty") << Cipher::Aes << aes << QByteArray()
                                << hex("BB1D6929E95937287FA37D129B756746");
    QTest::newRow("AES, 16") << Cipher::Aes << aes << m.left(16) << hex("070A16B46B4D4144F79BDD9DD04A287C");
    QTest::newRow("AES, 40") << Cipher::Aes << aes << m.left(40) << hex("DFA66747DE9AE63030CA32611497C827");
    QTest::newRow("AES, 64") << Cipher::Aes << aes << m << hex("51F0BEBF7E3B9D92FC49741779363CFE");
}

void TestDesfireCrypto::cmacVectors()
{
    QFETCH(Cipher, cipher);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, mac);
    QByteArray iv(blockSize(cipher), '\0');
    QCOMPARE(BlockCipher(cipher, key).cmac(message, iv).toHex(), mac.toHex());
    QCOMPARE(iv.toHex(), mac.toHex());
}

void TestDesfireCrypto::cmacMatchesOpenSsl_data()
{
    QTest::addColumn<Cipher>("cipher");
    QTest::newRow("DES") << Cipher::Des;
    QTest::newRow("2K3DES") << Cipher::TwoKey3Des;
    QTest::newRow("3K3DES") << Cipher::ThreeKey3Des;
    QTest::newRow("AES") << Cipher::Aes;
}

// Every length around the block boundaries, against EVP_MAC; and the
// card's chained IV is the standard CMAC of the message with the IV
// folded into its first block.
void TestDesfireCrypto::cmacMatchesOpenSsl()
{
    QFETCH(Cipher, cipher);
    QRandomGenerator rng(7);
    const int b = blockSize(cipher);
    for (int length = 0; length <= 4 * b + 1; ++length) {
        QByteArray key(keyLength(cipher), '\0');
        QByteArray message(length, '\0');
        rng.fillRange(reinterpret_cast<quint32 *>(key.data()), key.size() / 4);
        for (char &c : message)
            c = char(rng.bounded(256));
        const BlockCipher c(cipher, key);
        QByteArray zero(b, '\0');
        const QByteArray expected = evpCmac(cipher, key, message);
        QVERIFY(!expected.isEmpty());
        QCOMPARE(c.cmac(message, zero).toHex(), expected.toHex());
        if (length >= b) {
            QByteArray iv(b, '\0');
            for (char &x : iv)
                x = char(rng.bounded(256));
            QByteArray folded = message;
            folded.replace(0, b, xorBlock(message.left(b), iv));
            QCOMPARE(c.cmac(message, iv).toHex(), evpCmac(cipher, key, folded).toHex());
        }
    }
}

void TestDesfireCrypto::sessionKeys_data()
{
    QTest::addColumn<Cipher>("cipher");
    QTest::addColumn<QByteArray>("rndA");
    QTest::addColumn<QByteArray>("rndB");
    QTest::addColumn<QByteArray>("key");
    const QByteArray a8 = hex("A0A1A2A3A4A5A6A7");
    const QByteArray b8 = hex("B0B1B2B3B4B5B6B7");
    const QByteArray a16 = hex("A0A1A2A3A4A5A6A7A8A9AAABACADAEAF");
    const QByteArray b16 = hex("B0B1B2B3B4B5B6B7B8B9BABBBCBDBEBF");
    QTest::newRow("DES") << Cipher::Des << a8 << b8 << hex("A0A1A2A3B0B1B2B3");
    QTest::newRow("2K3DES") << Cipher::TwoKey3Des << a8 << b8 << hex("A0A1A2A3B0B1B2B3A4A5A6A7B4B5B6B7");
    QTest::newRow("3K3DES") << Cipher::ThreeKey3Des << a16 << b16
                            << hex("A0A1A2A3B0B1B2B3A6A7A8A9B6B7B8B9ACADAEAFBCBDBEBF");
    QTest::newRow("AES") << Cipher::Aes << a16 << b16 << hex("A0A1A2A3B0B1B2B3ACADAEAFBCBDBEBF");
    QTest::newRow("AES, short numbers") << Cipher::Aes << a8 << b8 << QByteArray();
}

void TestDesfireCrypto::sessionKeys()
{
    QFETCH(Cipher, cipher);
    QFETCH(QByteArray, rndA);
    QFETCH(QByteArray, rndB);
    QFETCH(QByteArray, key);
    QCOMPARE(sessionKey(cipher, rndA, rndB).toHex(), key.toHex());
}

void TestDesfireCrypto::authentication_data()
{
    QTest::addColumn<int>("keyType");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("rndA");
    QTest::addColumn<QByteArray>("rndB");
    QTest::addColumn<QByteArray>("session");
    QTest::addColumn<bool>("native");
    QTest::newRow("DES, native") << int(DesKey) << hex("0011223344556677") << hex("1122334455667788")
                                 << hex("99AABBCCDDEEFF00") << hex("1122334499AABBCC") << true;
    // A 2K3DES key of two equal halves runs a single DES session.
    QTest::newRow("2K3DES as DES") << int(DesKey) << hex("00112233445566770011223344556677")
                                   << hex("1122334455667788") << hex("99AABBCCDDEEFF00")
                                   << hex("1122334499AABBCC") << true;
    QTest::newRow("2K3DES, native") << int(DesKey) << hex("00112233445566778899AABBCCDDEEFF")
                                    << hex("1122334455667788") << hex("99AABBCCDDEEFF00")
                                    << hex("1122334499AABBCC55667788DDEEFF00") << true;
    QTest::newRow("3K3DES, ISO") << int(TripleDesKey)
                                 << hex("000102030405060708090A0B0C0D0E0F1011121314151617")
                                 << hex("000102030405060708090A0B0C0D0E0F")
                                 << hex("F0F1F2F3F4F5F6F7F8F9FAFBFCFDFEFF")
                                 << hex("00010203F0F1F2F306070809F6F7F8F90C0D0E0FFCFDFEFF") << false;
    QTest::newRow("AES") << int(AesKey) << hex("00000000000000000000000000000000")
                         << hex("000102030405060708090A0B0C0D0E0F") << hex("F0F1F2F3F4F5F6F7F8F9FAFBFCFDFEFF")
                         << hex("00010203F0F1F2F30C0D0E0FFCFDFEFF") << false;
}

// The reader side against the card side above; the session key is proven
// by the MAC the first data command carries, recomputed with OpenSSL.
void TestDesfireCrypto::authentication()
{
    QFETCH(int, keyType);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, rndA);
    QFETCH(QByteArray, rndB);
    QFETCH(QByteArray, session);
    QFETCH(bool, native);
    const Cipher cipher = cipherFor(keyType, key.size());
    AuthCard card(cipher, key, rndB);
    Channel channel(
        [&card](const QByteArray &apdu, QByteArray &answer) { return card.answer(apdu, answer); });
    channel.setRandom([&rndA](int n) { return rndA.left(n); });
    QCOMPARE(channel.authenticate(0, Key(keyType, key)), int(nvcm::OK));
    QCOMPARE(card.rndA, rndA);
    QCOMPARE(uchar(card.apdus.first()[1]), uchar(native ? 0x0A : cipher == Cipher::Aes ? 0xAA : 0x1A));

    const QByteArray data("abc");
    // The card here answers without a MAC: only the native channel, which
    // carries none on plain answers, takes that.
    QCOMPARE(channel.writeData(1, 0, data, ProgressCallback()),
             int(native ? nvcm::OK : nvcm::CommunicationError));
    const QByteArray apdu = card.apdus.last();
    const QByteArray sent = apdu.mid(5, uchar(apdu[4]));
    const Cipher sessionCipher = session.size() == 8 ? Cipher::Des : cipher;
    if (native) {
        // Native MAC: the first 4 bytes of the last CBC block over the data.
        QByteArray iv(8, '\0');
        const QByteArray cbc = BlockCipher(sessionCipher, session).encryptCbc(zeroPad(data, 8), iv);
        QCOMPARE(sent.right(4).toHex(), cbc.right(8).left(4).toHex());
    } else {
        // The session starts from a zero IV, so its first CMAC is the standard one.
        const QByteArray command = QByteArray(1, '\x3D') + sent.left(sent.size() - 8);
        QCOMPARE(sent.right(8).toHex(), evpCmac(sessionCipher, session, command).left(8).toHex());
    }

    // A wrong key is refused by the card as an authorisation failure.
    AuthCard other(cipher, key, rndB);
    Channel refused(
        [&other](const QByteArray &bytes, QByteArray &answer) { return other.answer(bytes, answer); });
    QByteArray wrong = key;
    wrong[0] = char(wrong[0] ^ 0x02);
    QCOMPARE(refused.authenticate(0, Key(keyType, wrong)), int(nvcm::AuthError));
    QVERIFY(!refused.authenticated());
}

void TestDesfireCrypto::checksums()
{
    // The channel's CRC-32 is the IEEE one without the final inversion.
    QCOMPARE(crc32("123456789"), ~quint32(0xCBF43926));
    QCOMPARE(crc16(QByteArray()), quint16(0x6363));
    QCOMPARE(crc16(hex("0000")), quint16(0x1EA0));
    QCOMPARE(crc16(hex("1234")), quint16(0xCF26));
    QCOMPARE(littleEndian(0x00ABCDEF, 3), hex("EFCDAB"));
}

void TestDesfireCrypto::answersAndVersion()
{
    QCOMPARE(parseAnswer(hex("01029100")).status, 0);
    QCOMPARE(parseAnswer(hex("01029100")).data, hex("0102"));
    QCOMPARE(parseAnswer(hex("91AF")).status, 0xAF);
    QCOMPARE(parseAnswer(hex("9000")).status, int(Malformed));
    QCOMPARE(parseAnswer(hex("91")).status, int(Malformed));
    QCOMPARE(wrapCommand(0x60, QByteArray()), hex("9060000000"));
    QCOMPARE(wrapCommand(0x5A, hex("010203")), hex("905A00000301020300"));
    Version v;
    QVERIFY(parseVersion(hex("04010101001A05 04010101001A05 04112233445566 BA65341640 2613"), v));
    QVERIFY(v.isDesfire());
    QCOMPARE(v.memorySize(), 8192u);
    QCOMPARE(v.uid, hex("04112233445566"));
    QVERIFY(!parseVersion(hex("04010101001A05"), v));
}

QTEST_GUILESS_MAIN(TestDesfireCrypto)
#include "tst_desfirecrypto.moc"
