#ifndef DESFIREPROTOCOL_H
#define DESFIREPROTOCOL_H

#include "desfirecrypto.h"
#include "readerbackend.h"

#include <functional>

// The DESFire native commands as a reader sends them: wrapped in ISO 7816
// APDUs (CLA 90, the command as INS, answers ending in 91 and the card's
// status), long commands and answers split into frames joined by status
// AF. Nothing here touches a reader: the channel talks through a function,
// so tests and the fuzzer can play the card.

namespace nvsmartcard::desfire {

// Status bytes of the card that the backend acts on.
enum Status : int {
    Ok = 0x00,
    OutOfMemory = 0x0E,
    PermissionDenied = 0x9D,
    ApplicationNotFound = 0xA0,
    AuthenticationError = 0xAE,
    AdditionalFrame = 0xAF,
    BoundaryError = 0xBE,
    DuplicateError = 0xDE,
    FileNotFound = 0xF0,
    Malformed = -1, // not a DESFire answer at all
};

struct NVSMARTCARD_EXPORT Frame
{
    int status = Malformed;
    QByteArray data;
};

// One answer to a wrapped command: the card's bytes, then 91 and its status.
NVSMARTCARD_EXPORT Frame parseAnswer(const QByteArray &answer);
NVSMARTCARD_EXPORT QByteArray wrapCommand(uchar command, const QByteArray &data);

/** What GetVersion tells: maker, kind and size of the chip. */
struct NVSMARTCARD_EXPORT Version
{
    uchar vendor = 0;
    uchar type = 0; // 1 DESFire, 2 Plus
    uchar majorVersion = 0;
    uchar storage = 0; // 2^(n/2) bytes, a little more when n is odd
    QByteArray uid;

    bool isDesfire() const { return type == 0x01; }
    bool isPlus() const { return type == 0x02; }
    quint32 memorySize() const;
};
// The 28 bytes of the three GetVersion frames; false when they are not.
NVSMARTCARD_EXPORT bool parseVersion(const QByteArray &bytes, Version &version);

using Transport = std::function<int(const QByteArray &apdu, QByteArray &answer)>;

// Access rights of a file: every right for one key.
NVSMARTCARD_EXPORT quint16 accessRights(int keyNo);
// Key settings and key count byte of an application whose keys are of this cipher.
NVSMARTCARD_EXPORT uchar keyCountByte(Cipher cipher, int keys);

/**
 * One card's command channel and its secure session. Results are nvcm
 * codes; the card's own status of the last command is lastStatus(). Keys
 * authenticate with the command their cipher needs: DES and two-key 3DES
 * with the native one (the data channel then carries the native 4-byte
 * MAC), three-key 3DES with the ISO one and AES with the AES one (the
 * data channel then carries CMACs chained by the session IV, and every
 * answer is checked against the card's CMAC).
 */
class NVSMARTCARD_EXPORT Channel
{
public:
    explicit Channel(Transport transport);

    // Random bytes for the challenges; OpenSSL's generator by default.
    void setRandom(std::function<QByteArray(int)> random);

    int lastStatus() const { return m_status; }
    bool authenticated() const { return m_kind != Session::None; }
    int authenticatedKey() const { return m_keyNo; }
    void dropSession();

    int getVersion(Version &version);
    int selectApplication(quint32 aid);
    int authenticate(int keyNo, const Key &key);
    int formatPicc();
    int getFreeMemory(quint32 &bytes);
    int createApplication(quint32 aid, uchar keySettings, uchar keyCount);
    int createStdDataFile(int fileNo, quint16 access, quint32 size);
    // Written in frames of at most 59 bytes; progress counts frames.
    int writeData(int fileNo, quint32 offset, const QByteArray &data, const ProgressCallback &progress);
    int readData(int fileNo, quint32 offset, quint32 length, QByteArray &data);
    // `keyNo` with the key type bits for the card master key (0x80 AES,
    // 0x40 three-key 3DES). `oldKey` is needed when the key changed is not
    // the one the session authenticated with.
    int changeKey(uchar keyNo, const Key &newKey, const Key &oldKey = Key());

private:
    enum class Session { None, Native, Ev1 };
    enum Flags { Plain = 0, MacCommand = 1, NoAnswerMac = 2, Encrypted = 4 };

    int exchange(const QByteArray &apdu, Frame &frame);
    int command(uchar cmd, const QByteArray &payload, QByteArray &answer, int flags = Plain,
                const ProgressCallback &progress = ProgressCallback());
    int statusCode(int status);
    QByteArray random(int n) const;

    Transport m_transport;
    std::function<QByteArray(int)> m_random;
    int m_status = Ok;
    Session m_kind = Session::None;
    int m_keyNo = -1;
    BlockCipher m_session;
    QByteArray m_iv;
};

} // namespace nvsmartcard::desfire

#endif
