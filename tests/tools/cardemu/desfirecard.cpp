#include "desfirecard.h"

#include <QList>
#include <QRandomGenerator>

#include <cstdio>

using namespace nvsmartcard::desfire;

namespace {

constexpr int FrameBytes = 59;
constexpr quint32 AppCost = 64; // application and its key set
constexpr quint32 BlockBytes = 32;

QByteArray status(uchar s)
{
    return QByteArray("\x91", 1) + char(s);
}

quint32 le(const QByteArray &bytes, int at, int n)
{
    quint32 v = 0;
    for (int i = n - 1; i >= 0; --i)
        v = v << 8 | uchar(bytes[at + i]);
    return v;
}

QByteArray xorBytes(QByteArray a, const QByteArray &b)
{
    for (int i = 0; i < a.size() && i < b.size(); ++i)
        a[i] = char(a[i] ^ b[i]);
    return a;
}

// What the reader deciphered in the native protocol, enciphered back.
QByteArray receiveNative(const BlockCipher &c, const QByteArray &data)
{
    QByteArray out;
    QByteArray previous(c.blockSize(), '\0');
    for (int at = 0; at + c.blockSize() <= data.size(); at += c.blockSize()) {
        const QByteArray block = data.mid(at, c.blockSize());
        out += xorBytes(c.encryptEcb(block), previous);
        previous = block;
    }
    return out;
}

QByteArray nativeMac(const BlockCipher &c, const QByteArray &data)
{
    QByteArray iv(c.blockSize(), '\0');
    return c.encryptCbc(zeroPad(data, c.blockSize()), iv).right(8).left(4);
}

QByteArray random(int n)
{
    QByteArray bytes(n, '\0');
    for (char &c : bytes)
        c = char(QRandomGenerator::global()->bounded(256));
    return bytes;
}

const char *cipherName(Cipher c)
{
    return c == Cipher::Aes ? "aes" : c == Cipher::ThreeKey3Des ? "3k3des" : "2k3des";
}

Cipher cipherNamed(const QByteArray &name)
{
    return name == "aes"   ? Cipher::Aes
        : name == "3k3des" ? Cipher::ThreeKey3Des
        : name == "2k3des" ? Cipher::TwoKey3Des
                           : Cipher::None;
}

int storedLength(Cipher c)
{
    return c == Cipher::ThreeKey3Des ? 24 : 16;
}

QByteArray versioned(Cipher c, const QByteArray &key)
{
    return c == Cipher::Aes ? key + '\0' : key;
}

} // namespace

bool DesfireCard::keyFromHex(const QByteArray &hex, Key &key)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    if (bytes.toHex() != hex.toLower())
        return false;
    if (bytes.size() == 8)
        key = Key { Cipher::TwoKey3Des, bytes + bytes };
    else if (bytes.size() == 16)
        key = Key { Cipher::Aes, bytes };
    else if (bytes.size() == 24)
        key = Key { Cipher::ThreeKey3Des, bytes };
    else
        return false;
    return true;
}

QByteArray DesfireCard::save() const
{
    QByteArray out = "desfire " + QByteArray::number(kilobytes) + "\nuid " + uid.toHex() + "\nmaster "
        + cipherName(master.cipher) + ' ' + master.bytes.toHex() + '\n';
    for (const auto &[aid, app] : apps) {
        QList<QByteArray> keys;
        for (const Key &k : app.keys)
            keys << k.bytes.toHex();
        out += "app " + QByteArray::number(aid, 16) + ' ' + QByteArray::number(app.settings, 16) + ' '
            + cipherName(app.cipher) + ' ' + keys.join(',') + '\n';
        for (const auto &[no, file] : app.files) {
            out += "file " + QByteArray::number(aid, 16) + ' ' + QByteArray::number(no) + ' '
                + QByteArray::number(file.comm, 16) + ' ' + QByteArray::number(file.access, 16) + ' '
                + (file.data.isEmpty() ? QByteArray("-") : file.data.toHex()) + '\n';
        }
    }
    return out;
}

bool DesfireCard::load(const QByteArray &text)
{
    apps.clear();
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> f = line.trimmed().split(' ');
        if (f.first().isEmpty())
            continue;
        bool ok = true;
        if (f.first() == "desfire" && f.size() == 2) {
            kilobytes = f[1].toInt(&ok);
        } else if (f.first() == "uid" && f.size() == 2) {
            uid = QByteArray::fromHex(f[1]);
        } else if (f.first() == "master" && f.size() == 3) {
            master = Key { cipherNamed(f[1]), QByteArray::fromHex(f[2]) };
            ok = master.cipher != Cipher::None;
        } else if (f.first() == "app" && f.size() == 5) {
            Application app;
            app.settings = uchar(f[2].toUInt(&ok, 16));
            app.cipher = cipherNamed(f[3]);
            for (const QByteArray &k : f[4].split(','))
                app.keys.push_back(Key { app.cipher, QByteArray::fromHex(k) });
            apps[f[1].toUInt(nullptr, 16)] = app;
            ok = ok && app.cipher != Cipher::None;
        } else if (f.first() == "file" && f.size() == 6) {
            auto it = apps.find(f[1].toUInt(nullptr, 16));
            if (it == apps.end())
                return false;
            File file;
            file.comm = uchar(f[3].toUInt(nullptr, 16));
            file.access = quint16(f[4].toUInt(nullptr, 16));
            file.data = f[5] == "-" ? QByteArray() : QByteArray::fromHex(f[5]);
            it->second.files[f[2].toInt()] = file;
        } else {
            return false;
        }
        if (!ok)
            return false;
    }
    return true;
}

void DesfireCard::dump() const
{
    if (dumpPath.empty())
        return;
    const std::string tmp = dumpPath + ".tmp";
    FILE *f = std::fopen(tmp.c_str(), "w");
    if (!f)
        return;
    const QByteArray text = save();
    std::fwrite(text.constData(), 1, size_t(text.size()), f);
    std::fclose(f);
    std::rename(tmp.c_str(), dumpPath.c_str());
}

void DesfireCard::reset()
{
    m_session = Session::None;
    m_keyNo = -1;
    m_selected = 0;
    m_authStage = 0;
    m_pendingCmd = 0;
    m_pending.clear();
    m_outFrames.clear();
}

quint32 DesfireCard::freeMemory() const
{
    quint32 used = 0;
    for (const auto &[aid, app] : apps) {
        used += AppCost;
        for (const auto &[no, file] : app.files)
            used += BlockBytes + (quint32(file.data.size()) + BlockBytes - 1) / BlockBytes * BlockBytes;
    }
    const quint32 total = quint32(kilobytes) * 1024;
    return used < total ? total - used : 0;
}

DesfireCard::Key *DesfireCard::keyFor(int keyNo)
{
    if (m_selected == 0)
        return keyNo == 0 ? &master : nullptr;
    auto it = apps.find(m_selected);
    if (it == apps.end() || keyNo < 0 || keyNo >= int(it->second.keys.size()))
        return nullptr;
    return &it->second.keys[size_t(keyNo)];
}

QByteArray DesfireCard::error(uchar s)
{
    m_session = Session::None;
    m_keyNo = -1;
    m_authStage = 0;
    m_pendingCmd = 0;
    return status(s);
}

QByteArray DesfireCard::frames(const QByteArray &data, uchar last)
{
    m_outFrames.clear();
    const int count = std::max(1, int((data.size() + FrameBytes - 1) / FrameBytes));
    for (int i = 0; i < count; ++i)
        m_outFrames.push_back(data.mid(i * FrameBytes, FrameBytes) + status(i + 1 < count ? 0xAF : last));
    const QByteArray first = m_outFrames.front();
    m_outFrames.erase(m_outFrames.begin());
    return first;
}

QByteArray DesfireCard::ok(const QByteArray &data, bool mac)
{
    QByteArray out = data;
    if (m_session == Session::Ev1 && mac)
        out += m_cipher.cmac(data + '\0', m_iv).left(8);
    return frames(out, 0x00);
}

bool DesfireCard::commandMacMoves(uchar cmd, const QByteArray &payload)
{
    if (m_session != Session::Ev1)
        return false;
    m_cipher.cmac(char(cmd) + payload, m_iv);
    return true;
}

QByteArray DesfireCard::answer(const QByteArray &apdu, bool &pull)
{
    if (apdu.size() < 5 || uchar(apdu[0]) != 0x90 || apdu[2] || apdu[3])
        return QByteArray::fromHex("6E00");
    QByteArray data;
    if (apdu.size() > 5) {
        const int lc = uchar(apdu[4]);
        if (apdu.size() != 6 + lc)
            return QByteArray::fromHex("6700");
        data = apdu.mid(5, lc);
    }
    const uchar ins = uchar(apdu[1]);
    if (ins == 0xAF) {
        if (!m_outFrames.empty()) {
            const QByteArray next = m_outFrames.front();
            m_outFrames.erase(m_outFrames.begin());
            return next;
        }
        if (m_authStage == 1)
            return finishAuthentication(data);
        if (m_pendingCmd == 0)
            return error(0x1C);
        if (pullAfter >= 0 && writes >= pullAfter) {
            pull = true;
            return QByteArray();
        }
        ++writes;
        m_pending += data;
        if (m_pending.size() < m_pendingNeed)
            return status(0xAF);
        const uchar cmd = m_pendingCmd;
        m_pendingCmd = 0;
        return process(cmd, m_pending, pull);
    }
    m_outFrames.clear();
    m_authStage = 0;
    m_pendingCmd = 0;
    if (plus && ins != 0x60)
        return error(0x1C);
    if (ins == 0x0A || ins == 0x1A || ins == 0xAA)
        return authenticate(ins, data);
    if (ins == 0x3D) {
        // Check what the first frame names before taking the rest.
        if (data.size() < 7)
            return error(0x7E);
        auto app = apps.find(m_selected);
        if (app == apps.end())
            return error(0x9D);
        auto file = app->second.files.find(uchar(data[0]));
        if (file == app->second.files.end())
            return error(0xF0);
        const quint16 a = file->second.access;
        const int w = (a >> 8) & 0xF, rw = (a >> 4) & 0xF;
        const bool allowed
            = w == 0xE || rw == 0xE || (m_session != Session::None && (m_keyNo == w || m_keyNo == rw));
        if (!allowed)
            return error(0x9D);
        const quint32 offset = le(data, 1, 3), length = le(data, 4, 3);
        if (quint64(offset) + length > quint64(file->second.data.size()))
            return error(0xBE);
        const int mac = file->second.comm != 1 ? 0
            : m_session == Session::Ev1        ? 8
            : m_session == Session::Native     ? 4
                                               : 0;
        if (pullAfter >= 0 && writes >= pullAfter) {
            pull = true;
            return QByteArray();
        }
        ++writes;
        m_pendingNeed = 7 + int(length) + mac;
        if (data.size() < m_pendingNeed) {
            m_pendingCmd = ins;
            m_pending = data;
            return status(0xAF);
        }
    }
    return process(ins, data, pull);
}

QByteArray DesfireCard::authenticate(uchar cmd, const QByteArray &payload)
{
    if (payload.size() != 1)
        return error(0x7E);
    const int keyNo = uchar(payload[0]);
    m_session = Session::None;
    m_keyNo = -1;
    Key *key = keyFor(keyNo);
    if (!key)
        return error(0x40);
    const bool fits = cmd == 0x0A ? key->cipher == Cipher::TwoKey3Des
        : cmd == 0xAA             ? key->cipher == Cipher::Aes
                                  : key->cipher != Cipher::Aes;
    if (!fits)
        return error(0xAE);
    const int n = cmd == 0x0A || key->cipher == Cipher::TwoKey3Des ? 8 : 16;
    const BlockCipher c(key->cipher, key->bytes);
    m_rndB = random(n);
    QByteArray iv(c.blockSize(), '\0');
    m_authSent = c.encryptCbc(m_rndB, iv);
    m_authCmd = cmd;
    m_authKeyNo = keyNo;
    m_authKey = *key;
    m_authStage = 1;
    return m_authSent + status(0xAF);
}

QByteArray DesfireCard::finishAuthentication(const QByteArray &token)
{
    m_authStage = 0;
    const int n = m_rndB.size();
    if (token.size() != 2 * n)
        return error(0x7E);
    const BlockCipher c(m_authKey.cipher, m_authKey.bytes);
    const bool native = m_authCmd == 0x0A;
    QByteArray iv = m_authSent.right(c.blockSize());
    const QByteArray plain = native ? receiveNative(c, token) : c.decryptCbc(token, iv);
    if (plain.mid(n) != rotateLeft(m_rndB))
        return error(0xAE);
    const QByteArray rndA = plain.left(n);
    if (native)
        iv.fill('\0');
    const QByteArray proof = c.encryptCbc(rotateLeft(rndA), iv);
    Cipher sessionCipher = m_authKey.cipher;
    if (sessionCipher == Cipher::TwoKey3Des && m_authKey.bytes.left(8) == m_authKey.bytes.mid(8))
        sessionCipher = Cipher::Des;
    m_cipher = BlockCipher(sessionCipher, sessionKey(sessionCipher, rndA, m_rndB));
    m_iv = QByteArray(m_cipher.blockSize(), '\0');
    m_session = native ? Session::Native : Session::Ev1;
    m_keyNo = m_authKeyNo;
    return proof + status(0x00);
}

QByteArray DesfireCard::process(uchar cmd, const QByteArray &payload, bool &pull)
{
    switch (cmd) {
    case 0x60: {
        commandMacMoves(cmd, payload);
        const uchar storage = uchar(kilobytes >= 8 ? 0x1A : kilobytes >= 4 ? 0x18 : 0x16);
        const QByteArray hw = QByteArray::fromHex("04000101000005");
        QByteArray first = hw, second = hw;
        first[1] = char(plus ? 0x02 : 0x01);
        first[5] = second[5] = char(storage);
        second[1] = 0x01;
        QByteArray third = uid + QByteArray::fromHex("BA653416402613");
        if (m_session == Session::Ev1)
            third += m_cipher.cmac(first + second + third + '\0', m_iv).left(8);
        m_outFrames = { second + status(0xAF), third + status(0x00) };
        return first + status(0xAF);
    }
    case 0x5A: {
        m_session = Session::None;
        m_keyNo = -1;
        if (payload.size() != 3)
            return error(0x7E);
        const quint32 aid = le(payload, 0, 3);
        if (aid != 0 && apps.find(aid) == apps.end())
            return error(0xA0);
        m_selected = aid;
        return status(0x00);
    }
    case 0xFC:
        if (m_selected != 0 || m_session == Session::None || m_keyNo != 0)
            return error(0xAE);
        commandMacMoves(cmd, payload);
        apps.clear();
        dump();
        return ok();
    case 0x6E:
        commandMacMoves(cmd, payload);
        return ok(littleEndian(freeMemory(), 3));
    case 0xCA: {
        if (m_selected != 0)
            return error(0x1C);
        if (payload.size() != 5)
            return error(0x7E);
        commandMacMoves(cmd, payload);
        const quint32 aid = le(payload, 0, 3);
        const int count = uchar(payload[4]) & 0x0F;
        if (aid == 0 || count < 1 || count > 14)
            return error(0x9E);
        if (apps.find(aid) != apps.end())
            return error(0xDE);
        if (freeMemory() < AppCost)
            return error(0x0E);
        Application app;
        app.settings = uchar(payload[3]);
        const uchar kind = uchar(payload[4]) & 0xC0;
        app.cipher = kind == 0x80 ? Cipher::Aes : kind == 0x40 ? Cipher::ThreeKey3Des : Cipher::TwoKey3Des;
        app.keys.assign(size_t(count), Key { app.cipher, QByteArray(storedLength(app.cipher), '\0') });
        apps[aid] = app;
        dump();
        return ok();
    }
    case 0xCD: {
        auto it = apps.find(m_selected);
        if (it == apps.end())
            return error(0x1C);
        if (payload.size() != 7)
            return error(0x7E);
        if (!(it->second.settings & 0x04) && (m_session == Session::None || m_keyNo != 0))
            return error(0x9D);
        commandMacMoves(cmd, payload);
        const int no = uchar(payload[0]);
        const quint32 size = le(payload, 4, 3);
        if (it->second.files.count(no))
            return error(0xDE);
        if (BlockBytes + (size + BlockBytes - 1) / BlockBytes * BlockBytes > freeMemory())
            return error(0x0E);
        File file;
        file.comm = uchar(payload[1]);
        file.access = quint16(le(payload, 2, 2));
        file.data = QByteArray(int(size), '\0');
        it->second.files[no] = file;
        dump();
        return ok();
    }
    case 0x3D:
        return writeData(payload, pull);
    case 0xBD:
        return readData(payload);
    case 0xC4:
        return changeKey(payload);
    default:
        return error(0x1C);
    }
}

QByteArray DesfireCard::writeData(const QByteArray &payload, bool &)
{
    File &file = apps[m_selected].files[uchar(payload[0])];
    const quint32 offset = le(payload, 1, 3), length = le(payload, 4, 3);
    const QByteArray data = payload.mid(7, int(length));
    const QByteArray mac = payload.mid(7 + int(length));
    if (m_session == Session::Ev1) {
        const QByteArray full = m_cipher.cmac(payload.left(7 + int(length)).prepend('\x3D'), m_iv);
        if (file.comm == 1 && full.left(8) != mac)
            return error(0x1E);
    } else if (m_session == Session::Native && file.comm == 1 && nativeMac(m_cipher, data) != mac) {
        return error(0x1E);
    }
    file.data.replace(int(offset), data.size(), data);
    dump();
    return ok();
}

QByteArray DesfireCard::readData(const QByteArray &payload)
{
    auto app = apps.find(m_selected);
    if (payload.size() != 7 || app == apps.end())
        return error(payload.size() != 7 ? 0x7E : 0x9D);
    auto file = app->second.files.find(uchar(payload[0]));
    if (file == app->second.files.end())
        return error(0xF0);
    const quint16 a = file->second.access;
    const int r = (a >> 12) & 0xF, rw = (a >> 4) & 0xF;
    if (!(r == 0xE || rw == 0xE || (m_session != Session::None && (m_keyNo == r || m_keyNo == rw))))
        return error(0x9D);
    const quint32 offset = le(payload, 1, 3);
    quint32 length = le(payload, 4, 3);
    const quint32 size = quint32(file->second.data.size());
    if (length == 0)
        length = offset <= size ? size - offset : 0;
    if (quint64(offset) + length > size)
        return error(0xBE);
    commandMacMoves(0xBD, payload);
    QByteArray data = file->second.data.mid(int(offset), int(length));
    if (m_session == Session::Native && file->second.comm == 1)
        data += nativeMac(m_cipher, data);
    return ok(data);
}

QByteArray DesfireCard::changeKey(const QByteArray &payload)
{
    if (m_session == Session::None)
        return error(0xAE);
    if (payload.size() < 2)
        return error(0x7E);
    const uchar keyNo = uchar(payload[0]);
    const int k = keyNo & 0x0F;
    Cipher cipher;
    if (m_selected == 0) {
        if ((keyNo & 0x3F) != 0)
            return error(0x40);
        if (m_keyNo != 0)
            return error(0x9D);
        cipher = keyNo & 0x80 ? Cipher::Aes : keyNo & 0x40 ? Cipher::ThreeKey3Des : Cipher::TwoKey3Des;
    } else {
        Application &app = apps[m_selected];
        if (k >= int(app.keys.size()))
            return error(0x40);
        const int rule = app.settings >> 4;
        const bool allowed = k == 0 ? m_keyNo == 0 && (app.settings & 0x01)
            : rule == 0xE           ? m_keyNo == k
            : rule == 0xF           ? false
                                    : m_keyNo == rule;
        if (!allowed)
            return error(0x9D);
        cipher = app.cipher;
    }
    Key *target = keyFor(k);
    const QByteArray crypt = payload.mid(1);
    if (crypt.size() % m_cipher.blockSize() != 0)
        return error(0x7E);
    const bool same = k == m_keyNo;
    const int length = storedLength(cipher) + (cipher == Cipher::Aes ? 1 : 0);
    QByteArray plain;
    if (m_session == Session::Ev1)
        plain = m_cipher.decryptCbc(crypt, m_iv);
    else
        plain = receiveNative(m_cipher, crypt);
    const QByteArray head = QByteArray(1, '\xC4') + char(keyNo);
    const QByteArray sent = plain.left(length);
    QByteArray fresh = same ? sent : xorBytes(sent, versioned(target->cipher, target->bytes));
    bool good;
    if (m_session == Session::Ev1) {
        good = plain.mid(length, 4) == littleEndian(crc32(head + sent), 4)
            && (same || plain.mid(length + 4, 4) == littleEndian(crc32(fresh.left(storedLength(cipher))), 4));
    } else {
        good = plain.mid(length, 2) == littleEndian(crc16(sent), 2)
            && (same || plain.mid(length + 2, 2) == littleEndian(crc16(fresh.left(storedLength(cipher))), 2));
    }
    if (!good || plain.size() < length)
        return error(0x1E);
    *target = Key { cipher, fresh.left(storedLength(cipher)) };
    dump();
    if (same) {
        m_session = Session::None;
        m_keyNo = -1;
        return status(0x00);
    }
    return ok();
}
