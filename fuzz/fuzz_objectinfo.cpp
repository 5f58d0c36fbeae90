// Feeds arbitrary bytes to the object record decoder. Whatever it accepts
// must serialize back to exactly the same bytes (the byte form is canonical:
// parameters sorted, no slack), and nothing may crash or allocate wildly.
#include <objectinfo.h>
#include <stringpool.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    nivaro::StringPool pool;
    const nivaro::ObjectInfo object = nivaro::ObjectInfo::deserialize(bytes, &pool);
    if (!object.isValid())
        return 0;
    const QByteArray again = object.serialize();
    // Invalid UTF-8 is replaced on decoding, and duplicate keys collapse, so
    // only a re-decode of the re-encoding has to be stable.
    if (nivaro::ObjectInfo(again) != object || nivaro::ObjectInfo(again).serialize() != again)
        abort();
    return 0;
}
