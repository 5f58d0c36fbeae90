#include "desfirecrypto.h"

#include <openssl/evp.h>

#include <memory>

namespace nvsmartcard::desfire {

namespace {

const EVP_CIPHER *evpCipher(Cipher cipher, bool cbc)
{
    switch (cipher) {
    case Cipher::Des:
    case Cipher::TwoKey3Des:
        return cbc ? EVP_des_ede_cbc() : EVP_des_ede_ecb();
    case Cipher::ThreeKey3Des:
        return cbc ? EVP_des_ede3_cbc() : EVP_des_ede3_ecb();
    case Cipher::Aes:
        return cbc ? EVP_aes_128_cbc() : EVP_aes_128_ecb();
    case Cipher::None:
        break;
    }
    return nullptr;
}

struct CtxFree
{
    void operator()(EVP_CIPHER_CTX *ctx) const { EVP_CIPHER_CTX_free(ctx); }
};
using Ctx = std::unique_ptr<EVP_CIPHER_CTX, CtxFree>;

// Shift left by one bit over the whole block; the subkeys of CMAC.
QByteArray shiftLeft(const QByteArray &block)
{
    QByteArray out(block.size(), '\0');
    for (int i = 0; i < block.size(); ++i) {
        const uchar next = i + 1 < block.size() ? uchar(block[i + 1]) : 0;
        out[i] = char((uchar(block[i]) << 1) | (next >> 7));
    }
    return out;
}

QByteArray subkey(const QByteArray &block)
{
    QByteArray k = shiftLeft(block);
    if (uchar(block[0]) & 0x80)
        k[k.size() - 1] = char(uchar(k.back()) ^ (block.size() == 16 ? 0x87 : 0x1B));
    return k;
}

void xorInto(char *target, const char *with, int length)
{
    for (int i = 0; i < length; ++i)
        target[i] = char(target[i] ^ with[i]);
}

} // namespace

Cipher cipherFor(int keyType, int keyLength)
{
    switch (keyType) {
    case DesKey:
        return keyLength == 8 ? Cipher::Des : keyLength == 16 ? Cipher::TwoKey3Des : Cipher::None;
    case TripleDesKey:
        return keyLength == 24 ? Cipher::ThreeKey3Des : Cipher::None;
    case AesKey:
        return keyLength == 16 ? Cipher::Aes : Cipher::None;
    default:
        return Cipher::None;
    }
}

int blockSize(Cipher cipher)
{
    return cipher == Cipher::Aes ? 16 : cipher == Cipher::None ? 0 : 8;
}

int keyLength(Cipher cipher)
{
    switch (cipher) {
    case Cipher::Des:
        return 8;
    case Cipher::TwoKey3Des:
    case Cipher::Aes:
        return 16;
    case Cipher::ThreeKey3Des:
        return 24;
    case Cipher::None:
        break;
    }
    return 0;
}

BlockCipher::BlockCipher(Cipher cipher, const QByteArray &key)
{
    if (cipher == Cipher::None || key.size() != keyLength(cipher))
        return;
    m_cipher = cipher;
    m_key = cipher == Cipher::Des ? key + key : key;
}

QByteArray BlockCipher::run(const QByteArray &data, bool encrypt, bool cbc, QByteArray *iv) const
{
    const int block = blockSize();
    if (!isValid() || data.size() % block != 0 || (iv && iv->size() != block))
        return QByteArray();
    if (data.isEmpty())
        return data;
    Ctx ctx(EVP_CIPHER_CTX_new());
    if (!ctx
        || EVP_CipherInit_ex(ctx.get(), evpCipher(m_cipher, cbc), nullptr,
                             reinterpret_cast<const uchar *>(m_key.constData()),
                             iv ? reinterpret_cast<const uchar *>(iv->constData()) : nullptr, encrypt ? 1 : 0)
            != 1)
        return QByteArray();
    EVP_CIPHER_CTX_set_padding(ctx.get(), 0);
    QByteArray out(data.size() + block, '\0');
    int length = 0;
    if (EVP_CipherUpdate(ctx.get(), reinterpret_cast<uchar *>(out.data()), &length,
                         reinterpret_cast<const uchar *>(data.constData()), data.size())
        != 1)
        return QByteArray();
    int tail = 0;
    if (EVP_CipherFinal_ex(ctx.get(), reinterpret_cast<uchar *>(out.data()) + length, &tail) != 1)
        return QByteArray();
    out.truncate(length + tail);
    if (iv)
        *iv = (encrypt ? out : data).right(block);
    return out;
}

QByteArray BlockCipher::encryptEcb(const QByteArray &data) const
{
    return run(data, true, false, nullptr);
}

QByteArray BlockCipher::decryptEcb(const QByteArray &data) const
{
    return run(data, false, false, nullptr);
}

QByteArray BlockCipher::encryptCbc(const QByteArray &data, QByteArray &iv) const
{
    return run(data, true, true, &iv);
}

QByteArray BlockCipher::decryptCbc(const QByteArray &data, QByteArray &iv) const
{
    return run(data, false, true, &iv);
}

QByteArray BlockCipher::decipherSend(const QByteArray &data) const
{
    const int block = blockSize();
    if (!isValid() || data.size() % block != 0)
        return QByteArray();
    QByteArray out;
    out.reserve(data.size());
    QByteArray previous(block, '\0');
    for (int at = 0; at < data.size(); at += block) {
        QByteArray x = data.mid(at, block);
        xorInto(x.data(), previous.constData(), block);
        previous = decryptEcb(x);
        if (previous.isEmpty())
            return QByteArray();
        out += previous;
    }
    return out;
}

QByteArray BlockCipher::cmac(const QByteArray &data, QByteArray &iv) const
{
    const int block = blockSize();
    if (!isValid() || iv.size() != block)
        return QByteArray();
    const QByteArray k1 = subkey(encryptEcb(QByteArray(block, '\0')));
    QByteArray message = data;
    const bool whole = !data.isEmpty() && data.size() % block == 0;
    if (!whole) {
        message.append('\x80');
        message.append(QByteArray((block - message.size() % block) % block, '\0'));
    }
    const QByteArray k = whole ? k1 : subkey(k1);
    xorInto(message.data() + message.size() - block, k.constData(), block);
    const QByteArray out = encryptCbc(message, iv);
    return out.isEmpty() ? QByteArray() : iv;
}

QByteArray sessionKey(Cipher cipher, const QByteArray &rndA, const QByteArray &rndB)
{
    const int n = cipher == Cipher::Aes || cipher == Cipher::ThreeKey3Des ? 16 : 8;
    if (rndA.size() != n || rndB.size() != n)
        return QByteArray();
    switch (cipher) {
    case Cipher::Des:
        return rndA.left(4) + rndB.left(4);
    case Cipher::TwoKey3Des:
        return rndA.left(4) + rndB.left(4) + rndA.mid(4, 4) + rndB.mid(4, 4);
    case Cipher::ThreeKey3Des:
        return rndA.left(4) + rndB.left(4) + rndA.mid(6, 4) + rndB.mid(6, 4) + rndA.mid(12, 4)
            + rndB.mid(12, 4);
    case Cipher::Aes:
        return rndA.left(4) + rndB.left(4) + rndA.mid(12, 4) + rndB.mid(12, 4);
    case Cipher::None:
        break;
    }
    return QByteArray();
}

QByteArray rotateLeft(const QByteArray &bytes)
{
    return bytes.isEmpty() ? bytes : bytes.mid(1) + bytes.left(1);
}

QByteArray zeroPad(const QByteArray &bytes, int block)
{
    if (block <= 0)
        return bytes;
    return bytes + QByteArray((block - bytes.size() % block) % block, '\0');
}

QByteArray storedKey(Cipher cipher, const QByteArray &key)
{
    return cipher == Cipher::Des ? key + key : key;
}

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : bytes) {
        crc ^= uchar(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return crc;
}

quint16 crc16(const QByteArray &bytes)
{
    quint16 crc = 0x6363;
    for (const char c : bytes) {
        uchar b = uchar(c) ^ uchar(crc & 0xFF);
        b = uchar(b ^ (b << 4));
        crc = quint16((crc >> 8) ^ (quint16(b) << 8) ^ (quint16(b) << 3) ^ (b >> 4));
    }
    return crc;
}

QByteArray littleEndian(quint32 value, int bytes)
{
    QByteArray out(bytes, '\0');
    for (int i = 0; i < bytes; ++i)
        out[i] = char((value >> (8 * i)) & 0xFF);
    return out;
}

} // namespace nvsmartcard::desfire
