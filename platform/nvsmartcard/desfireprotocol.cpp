#include "desfireprotocol.h"
#include "nvsmartcardlog_p.h"

#include <openssl/rand.h>

namespace nvsmartcard::desfire {

namespace {

// A native frame carries at most 60 bytes, the command byte included.
constexpr int FrameBytes = 59;
// More than any card holds: an answer that keeps chaining past it is broken.
constexpr int MaxAnswer = 64 * 1024;
constexpr int MacBytes = 8;
constexpr int NativeMacBytes = 4;

QByteArray aidBytes(quint32 aid)
{
    return littleEndian(aid, 3);
}

QByteArray xorBytes(const QByteArray &a, const QByteArray &b)
{
    QByteArray out = a;
    for (int i = 0; i < out.size() && i < b.size(); ++i)
        out[i] = char(out[i] ^ b[i]);
    return out;
}

// The key as ChangeKey sends it: stored form, AES keys followed by their version.
QByteArray keyPayload(Cipher cipher, const QByteArray &key)
{
    QByteArray bytes = storedKey(cipher, key);
    if (cipher == Cipher::Aes)
        bytes.append('\0');
    return bytes;
}

} // namespace

Frame parseAnswer(const QByteArray &answer)
{
    Frame frame;
    if (answer.size() < 2 || uchar(answer[answer.size() - 2]) != 0x91)
        return frame;
    frame.status = uchar(answer.back());
    frame.data = answer.left(answer.size() - 2);
    return frame;
}

QByteArray wrapCommand(uchar command, const QByteArray &data)
{
    QByteArray apdu;
    apdu.reserve(data.size() + 6);
    apdu.append('\x90');
    apdu.append(char(command));
    apdu.append('\0');
    apdu.append('\0');
    if (!data.isEmpty()) {
        apdu.append(char(data.size()));
        apdu.append(data);
    }
    apdu.append('\0');
    return apdu;
}

quint32 Version::memorySize() const
{
    const int exponent = storage >> 1;
    return exponent >= 8 && exponent <= 20 ? quint32(1) << exponent : 0;
}

bool parseVersion(const QByteArray &bytes, Version &version)
{
    if (bytes.size() != 28)
        return false;
    version.vendor = uchar(bytes[0]);
    version.type = uchar(bytes[1]);
    version.majorVersion = uchar(bytes[3]);
    version.storage = uchar(bytes[5]);
    version.uid = bytes.mid(14, 7);
    return version.memorySize() > 0;
}

quint16 accessRights(int keyNo)
{
    const quint16 k = quint16(keyNo & 0x0F);
    return quint16(k << 12 | k << 8 | k << 4 | k);
}

uchar keyCountByte(Cipher cipher, int keys)
{
    const uchar flags = cipher == Cipher::Aes ? 0x80 : cipher == Cipher::ThreeKey3Des ? 0x40 : 0x00;
    return uchar(flags | (keys & 0x0F));
}

Channel::Channel(Transport transport)
    : m_transport(std::move(transport))
{
}

void Channel::setRandom(std::function<QByteArray(int)> random)
{
    m_random = std::move(random);
}

QByteArray Channel::random(int n) const
{
    if (m_random)
        return m_random(n);
    QByteArray bytes(n, '\0');
    if (RAND_bytes(reinterpret_cast<uchar *>(bytes.data()), n) != 1)
        return QByteArray();
    return bytes;
}

void Channel::dropSession()
{
    m_kind = Session::None;
    m_keyNo = -1;
    m_session = BlockCipher();
    m_iv.clear();
}

int Channel::exchange(const QByteArray &apdu, Frame &frame)
{
    QByteArray answer;
    if (const int code = m_transport(apdu, answer); code != nvcm::OK) {
        dropSession();
        return code;
    }
    frame = parseAnswer(answer);
    if (frame.status == Malformed) {
        qCDebug(lcSmartCard) << "desfire: not a card answer:" << answer.toHex(' ');
        m_status = Malformed;
        dropSession();
        return nvcm::CommunicationError;
    }
    return nvcm::OK;
}

int Channel::statusCode(int status)
{
    m_status = status;
    dropSession(); // the card forgets the authentication on any error
    switch (status) {
    case AuthenticationError:
    case PermissionDenied:
        return nvcm::AuthError;
    case OutOfMemory:
    case BoundaryError:
        return nvcm::TooMuchData;
    default:
        return nvcm::CommunicationError;
    }
}

int Channel::command(uchar cmd, const QByteArray &payload, QByteArray &answer, int flags,
                     const ProgressCallback &progress)
{
    QByteArray body = payload;
    if (m_kind == Session::Ev1 && !(flags & Encrypted)) {
        // Every command moves the session IV on, whether its MAC travels or not.
        const QByteArray mac = m_session.cmac(char(cmd) + payload, m_iv);
        if (flags & MacCommand)
            body += mac.left(MacBytes);
    }
    const int frames = std::max(1, int((body.size() + FrameBytes - 1) / FrameBytes));
    Frame frame;
    for (int i = 0; i < frames; ++i) {
        if (const int code = exchange(
                wrapCommand(i == 0 ? cmd : uchar(AdditionalFrame), body.mid(i * FrameBytes, FrameBytes)),
                frame);
            code != nvcm::OK)
            return code;
        if (i + 1 < frames && frame.status != AdditionalFrame) {
            qCDebug(lcSmartCard) << "desfire: command" << Qt::hex << cmd << "stopped at frame" << Qt::dec
                                 << i + 1 << "of" << frames << "with status" << Qt::hex << frame.status;
            return statusCode(frame.status == Ok ? Malformed : frame.status);
        }
        if (progress)
            progress(i + 1, frames);
    }
    QByteArray data = frame.data;
    while (frame.status == AdditionalFrame) {
        if (const int code = exchange(wrapCommand(AdditionalFrame, QByteArray()), frame); code != nvcm::OK)
            return code;
        data += frame.data;
        if (data.size() > MaxAnswer)
            return statusCode(Malformed);
    }
    if (frame.status != Ok)
        return statusCode(frame.status);
    m_status = Ok;
    if (m_kind == Session::Ev1 && !(flags & NoAnswerMac)) {
        if (data.size() < MacBytes) {
            qCDebug(lcSmartCard) << "desfire: answer without its MAC:" << data.toHex(' ');
            return statusCode(Malformed);
        }
        const QByteArray mac = m_session.cmac(data.left(data.size() - MacBytes) + char(Ok), m_iv);
        if (mac.left(MacBytes) != data.right(MacBytes)) {
            qCDebug(lcSmartCard) << "desfire: the answer's MAC is wrong";
            return statusCode(Malformed);
        }
        data.chop(MacBytes);
    }
    answer = data;
    return nvcm::OK;
}

int Channel::getVersion(Version &version)
{
    QByteArray data;
    if (const int code = command(0x60, QByteArray(), data); code != nvcm::OK)
        return code;
    if (!parseVersion(data, version)) {
        qCDebug(lcSmartCard) << "desfire: not a version:" << data.toHex(' ');
        return statusCode(Malformed);
    }
    return nvcm::OK;
}

int Channel::selectApplication(quint32 aid)
{
    dropSession(); // selecting ends any authentication, on both sides
    QByteArray answer;
    return command(0x5A, aidBytes(aid), answer);
}

int Channel::authenticate(int keyNo, const Key &key)
{
    const Cipher cipher = cipherFor(key.type, key.data.size());
    if (cipher == Cipher::None) {
        qCDebug(lcSmartCard) << "desfire: a key of type" << key.type << "cannot be" << key.data.size()
                             << "bytes";
        return nvcm::NotSupported;
    }
    dropSession();
    const BlockCipher k(cipher, key.data);
    const bool native = cipher == Cipher::Des || cipher == Cipher::TwoKey3Des;
    const uchar cmd = native ? 0x0A : cipher == Cipher::Aes ? 0xAA : 0x1A;
    const int n = native ? 8 : 16;
    Frame frame;
    if (const int code = exchange(wrapCommand(cmd, QByteArray(1, char(keyNo))), frame); code != nvcm::OK)
        return code;
    if (frame.status != AdditionalFrame)
        return statusCode(frame.status);
    if (frame.data.size() != n)
        return statusCode(Malformed);
    QByteArray iv(k.blockSize(), '\0');
    const QByteArray rndB = k.decryptCbc(frame.data, iv);
    const QByteArray rndA = random(n);
    if (rndA.size() != n)
        return nvcm::CommunicationError;
    // The native protocol deciphers what it sends and starts each message
    // from a zero IV; the ISO and AES ones encrypt and chain the IV on.
    const QByteArray token
        = native ? k.decipherSend(rndA + rotateLeft(rndB)) : k.encryptCbc(rndA + rotateLeft(rndB), iv);
    if (const int code = exchange(wrapCommand(AdditionalFrame, token), frame); code != nvcm::OK)
        return code;
    if (frame.status != Ok)
        return statusCode(frame.status);
    if (frame.data.size() != n)
        return statusCode(Malformed);
    if (native)
        iv.fill('\0');
    if (k.decryptCbc(frame.data, iv) != rotateLeft(rndA)) {
        // The card does not know the key it just accepted: not a card to trust.
        qCDebug(lcSmartCard) << "desfire: the card's proof of the key is wrong";
        return statusCode(Malformed);
    }
    Cipher sessionCipher = cipher;
    if (cipher == Cipher::TwoKey3Des && key.data.left(8) == key.data.mid(8))
        sessionCipher = Cipher::Des;
    m_session = BlockCipher(sessionCipher, sessionKey(sessionCipher, rndA, rndB));
    m_iv = QByteArray(m_session.blockSize(), '\0');
    m_kind = native ? Session::Native : Session::Ev1;
    m_keyNo = keyNo;
    m_status = Ok;
    return nvcm::OK;
}

int Channel::formatPicc()
{
    QByteArray answer;
    return command(0xFC, QByteArray(), answer);
}

int Channel::getFreeMemory(quint32 &bytes)
{
    QByteArray answer;
    if (const int code = command(0x6E, QByteArray(), answer); code != nvcm::OK)
        return code;
    if (answer.size() != 3)
        return statusCode(Malformed);
    bytes = uchar(answer[0]) | quint32(uchar(answer[1])) << 8 | quint32(uchar(answer[2])) << 16;
    return nvcm::OK;
}

int Channel::createApplication(quint32 aid, uchar keySettings, uchar keyCount)
{
    QByteArray answer;
    return command(0xCA, aidBytes(aid) + char(keySettings) + char(keyCount), answer);
}

int Channel::createStdDataFile(int fileNo, quint16 access, quint32 size)
{
    // Communication mode 1: the data travels in clear with a MAC.
    QByteArray answer;
    return command(
        0xCD, QByteArray(1, char(fileNo)) + '\x01' + littleEndian(access, 2) + littleEndian(size, 3), answer);
}

int Channel::writeData(int fileNo, quint32 offset, const QByteArray &data, const ProgressCallback &progress)
{
    QByteArray payload = QByteArray(1, char(fileNo)) + littleEndian(offset, 3)
        + littleEndian(quint32(data.size()), 3) + data;
    if (m_kind == Session::Native) {
        QByteArray iv(m_session.blockSize(), '\0');
        payload
            += m_session.encryptCbc(zeroPad(data, m_session.blockSize()), iv).right(8).left(NativeMacBytes);
    }
    QByteArray answer;
    return command(0x3D, payload, answer, MacCommand, progress);
}

int Channel::readData(int fileNo, quint32 offset, quint32 length, QByteArray &data)
{
    QByteArray answer;
    if (const int code = command(
            0xBD, QByteArray(1, char(fileNo)) + littleEndian(offset, 3) + littleEndian(length, 3), answer);
        code != nvcm::OK)
        return code;
    if (m_kind == Session::Native) {
        if (answer.size() < NativeMacBytes)
            return statusCode(Malformed);
        const QByteArray bytes = answer.left(answer.size() - NativeMacBytes);
        QByteArray iv(m_session.blockSize(), '\0');
        if (m_session.encryptCbc(zeroPad(bytes, m_session.blockSize()), iv).right(8).left(NativeMacBytes)
            != answer.right(NativeMacBytes)) {
            qCDebug(lcSmartCard) << "desfire: the data's MAC is wrong";
            return statusCode(Malformed);
        }
        answer = bytes;
    }
    if (answer.size() != int(length))
        return statusCode(Malformed);
    data = answer;
    return nvcm::OK;
}

int Channel::changeKey(uchar keyNo, const Key &newKey, const Key &oldKey)
{
    const Cipher cipher = cipherFor(newKey.type, newKey.data.size());
    if (cipher == Cipher::None)
        return nvcm::NotSupported;
    if (m_kind == Session::None)
        return nvcm::AuthError;
    const bool same = (keyNo & 0x0F) == m_keyNo;
    const QByteArray fresh = keyPayload(cipher, newKey.data);
    QByteArray plain;
    QByteArray key = fresh;
    if (!same) {
        const Cipher oldCipher = cipherFor(oldKey.type, oldKey.data.size());
        const QByteArray old = keyPayload(oldCipher, oldKey.data);
        if (old.size() != fresh.size())
            return nvcm::NotSupported;
        key = xorBytes(fresh, old);
    }
    const int block = m_session.blockSize();
    QByteArray cryptogram;
    if (m_kind == Session::Ev1) {
        plain = key + littleEndian(crc32(QByteArray(1, '\xC4') + char(keyNo) + key), 4);
        if (!same)
            plain += littleEndian(crc32(storedKey(cipher, newKey.data)), 4);
        cryptogram = m_session.encryptCbc(zeroPad(plain, block), m_iv);
    } else {
        plain = key + littleEndian(crc16(key), 2);
        if (!same)
            plain += littleEndian(crc16(storedKey(cipher, newKey.data)), 2);
        cryptogram = m_session.decipherSend(zeroPad(plain, block));
    }
    QByteArray answer;
    const int code = command(0xC4, QByteArray(1, char(keyNo)) + cryptogram, answer,
                             Encrypted | (same ? NoAnswerMac : 0));
    if (code == nvcm::OK && same)
        dropSession(); // the key the session stood on is gone
    return code;
}

} // namespace nvsmartcard::desfire
