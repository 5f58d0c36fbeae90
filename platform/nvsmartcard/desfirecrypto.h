#ifndef DESFIRECRYPTO_H
#define DESFIRECRYPTO_H

#include "nvsmartcardtypes.h"

// The ciphers of DESFire cards and the few constructions built on them:
// CBC in both directions, the card's CMAC (which, unlike the standard one,
// starts from the session's running IV), the native "send mode" of the
// old DES authentication, session key derivation and the two checksums.
// Everything runs on OpenSSL's default provider: single DES is done as
// DES-EDE with K1 = K2, which gives the same blocks.

namespace nvsmartcard::desfire {

enum class Cipher {
    None,
    Des, // 8-byte key
    TwoKey3Des, // 16-byte key K1 K2 (K1 == K2 acts as single DES)
    ThreeKey3Des, // 24-byte key
    Aes, // AES-128
};

// The cipher a key of this type and length is for; None when they do not fit.
NVSMARTCARD_EXPORT Cipher cipherFor(int keyType, int keyLength);
NVSMARTCARD_EXPORT int blockSize(Cipher cipher);
NVSMARTCARD_EXPORT int keyLength(Cipher cipher);

/** One key of one cipher; operations on whole blocks only (no padding). */
class NVSMARTCARD_EXPORT BlockCipher
{
public:
    BlockCipher() = default;
    BlockCipher(Cipher cipher, const QByteArray &key);

    // False for a key of the wrong length; every operation then gives
    // an empty result.
    bool isValid() const { return m_cipher != Cipher::None; }
    Cipher cipher() const { return m_cipher; }
    int blockSize() const { return desfire::blockSize(m_cipher); }

    QByteArray encryptEcb(const QByteArray &data) const;
    QByteArray decryptEcb(const QByteArray &data) const;
    // `iv` is the chaining value on entry and the last ciphertext block
    // on return, as the card keeps it between commands.
    QByteArray encryptCbc(const QByteArray &data, QByteArray &iv) const;
    QByteArray decryptCbc(const QByteArray &data, QByteArray &iv) const;
    // The sending side of the native DES protocol: every block is
    // deciphered after being XORed with the previous result (IV zero).
    QByteArray decipherSend(const QByteArray &data) const;
    // CMAC of `data` chained from `iv`; `iv` becomes the full MAC, which
    // is what the card chains the next command from. With a zero IV this
    // is the CMAC of NIST SP 800-38B.
    QByteArray cmac(const QByteArray &data, QByteArray &iv) const;

private:
    QByteArray run(const QByteArray &data, bool encrypt, bool cbc, QByteArray *iv) const;

    Cipher m_cipher = Cipher::None;
    QByteArray m_key; // as OpenSSL wants it (single DES doubled)
};

// Session key from the two random numbers of an authentication.
NVSMARTCARD_EXPORT QByteArray sessionKey(Cipher cipher, const QByteArray &rndA, const QByteArray &rndB);
// The first byte moved to the end, as both sides prove knowledge of the other's number.
NVSMARTCARD_EXPORT QByteArray rotateLeft(const QByteArray &bytes);
// Bytes padded with zeros to whole blocks (nothing added when already whole).
NVSMARTCARD_EXPORT QByteArray zeroPad(const QByteArray &bytes, int block);
// A DES key as the card stores it: 16 bytes, single DES doubled.
NVSMARTCARD_EXPORT QByteArray storedKey(Cipher cipher, const QByteArray &key);

// CRC-32 of the secure channel: IEEE polynomial, preset all ones, no
// final inversion, sent little-endian.
NVSMARTCARD_EXPORT quint32 crc32(const QByteArray &bytes);
// CRC-16 of ISO 14443-3 type A (preset 6363), used by the native protocol.
NVSMARTCARD_EXPORT quint16 crc16(const QByteArray &bytes);
NVSMARTCARD_EXPORT QByteArray littleEndian(quint32 value, int bytes);

} // namespace nvsmartcard::desfire

#endif
