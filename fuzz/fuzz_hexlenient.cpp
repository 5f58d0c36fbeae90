// Feeds arbitrary text to the lenient hex decoder that reads the keys of
// smart-card profiles. It must agree with a plain decode of the text's hex
// digits alone, whatever surrounds them.
#include <cardblocks_p.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    QByteArray digits;
    for (const char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c)))
            digits.append(c);
    }
    digits.chop(digits.size() % 2);
    const QByteArray bytes = cardblocks::fromHexLenient(text);
    if (bytes != QByteArray::fromHex(digits))
        abort();
    if (cardblocks::fromHexLenient(bytes.toHex(':')) != bytes)
        abort();
    return 0;
}
