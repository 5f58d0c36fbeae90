#ifndef CARDEMU_DESFIRECARD_H
#define CARDEMU_DESFIRECARD_H

// The card side of a DESFire EV1 (and of a Plus in level 3 as far as
// GetVersion goes) for the emulator: native commands wrapped in APDUs,
// the three authentications, secure messaging, applications, standard
// data files and key changes. Only the ciphers are shared with the
// library; every protocol rule is written here again from the card's side.

#include <desfirecrypto.h>

#include <map>
#include <string>
#include <vector>

class DesfireCard
{
public:
    struct Key
    {
        nvsmartcard::desfire::Cipher cipher = nvsmartcard::desfire::Cipher::TwoKey3Des;
        QByteArray bytes; // stored form: DES doubled to 16 bytes
    };
    struct File
    {
        uchar comm = 0;
        quint16 access = 0;
        QByteArray data;
    };
    struct Application
    {
        uchar settings = 0x0F;
        nvsmartcard::desfire::Cipher cipher = nvsmartcard::desfire::Cipher::TwoKey3Des;
        std::vector<Key> keys;
        std::map<int, File> files;
    };

    int kilobytes = 8;
    bool plus = false; // a Plus in level 3: answers GetVersion only
    QByteArray uid = QByteArray::fromHex("04C0DE12345680");
    Key master { nvsmartcard::desfire::Cipher::TwoKey3Des, QByteArray(16, '\0') };
    std::map<quint32, Application> apps;

    // Writes after which the card leaves (WriteData frames); -1 never.
    long pullAfter = -1;
    long writes = 0;
    std::string dumpPath;

    static bool keyFromHex(const QByteArray &hex, Key &key);
    bool load(const QByteArray &text);
    QByteArray save() const;
    void dump() const;

    // The answer to one APDU with CLA 90; `pull` set when the card leaves instead.
    QByteArray answer(const QByteArray &apdu, bool &pull);
    // Power off, on or reset: the session and half-done commands go.
    void reset();

private:
    enum class Session { None, Native, Ev1 };

    QByteArray process(uchar cmd, const QByteArray &payload, bool &pull);
    QByteArray authenticate(uchar cmd, const QByteArray &payload);
    QByteArray finishAuthentication(const QByteArray &token);
    QByteArray ok(const QByteArray &data = QByteArray(), bool mac = true);
    QByteArray error(uchar status);
    QByteArray frames(const QByteArray &data, uchar status);
    QByteArray changeKey(const QByteArray &payload);
    QByteArray writeData(const QByteArray &payload, bool &pull);
    QByteArray readData(const QByteArray &payload);
    bool commandMacMoves(uchar cmd, const QByteArray &payload);
    quint32 freeMemory() const;
    Key *keyFor(int keyNo);

    quint32 m_selected = 0;
    Session m_session = Session::None;
    int m_keyNo = -1;
    nvsmartcard::desfire::BlockCipher m_cipher;
    QByteArray m_iv;

    // Authentication under way.
    int m_authStage = 0;
    uchar m_authCmd = 0;
    int m_authKeyNo = -1;
    Key m_authKey;
    QByteArray m_rndB;
    QByteArray m_authSent;

    // A command coming in frames, and an answer going out in frames.
    uchar m_pendingCmd = 0;
    QByteArray m_pending;
    int m_pendingNeed = 0;
    std::vector<QByteArray> m_outFrames;
};

#endif
