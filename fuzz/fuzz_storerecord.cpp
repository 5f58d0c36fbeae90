// Feeds arbitrary bytes to the store file's row decoders; the first byte
// picks the kind of row. A row that decodes must encode back to bytes that
// decode to the same record: a store that loads must save what it loaded.
#include <storerecordcodec.h>
#include <stringpool.h>

#include <cstdint>
#include <cstdlib>

using namespace nivaro;

namespace {

template<typename Record, typename Decode, typename Encode>
void roundTrip(const QByteArray &bytes, Decode decode, Encode encode)
{
    Record record;
    QString error;
    if (!decode(bytes, &record, &error)) {
        if (error.isEmpty())
            abort(); // a refusal must say why
        return;
    }
    Record again;
    if (!decode(encode(record), &again, &error) || !(again == record))
        abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data) + 1, int(size - 1));
    switch (data[0] % 5) {
    case 0: {
        StringPool pool;
        ObjectInfo object;
        QString error;
        if (StoreRecordCodec::decodeObject(bytes, &pool, &object, &error)
            && !StoreRecordCodec::decodeObject(object.serialize(), &pool, &object, &error))
            abort();
        break;
    }
    case 1:
        roundTrip<SCHEDULE_DATA>(bytes, StoreRecordCodec::decodeSchedule, StoreRecordCodec::encodeSchedule);
        break;
    case 2:
        roundTrip<QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>>(bytes, StoreRecordCodec::decodeScheduleHistory,
                                                             StoreRecordCodec::encodeScheduleHistory);
        break;
    case 3:
        roundTrip<_WORKER_ABSENCE_REASON>(bytes, StoreRecordCodec::decodeAbsences, StoreRecordCodec::encodeAbsences);
        break;
    default:
        roundTrip<QList<_TEMPLATE_DATA>>(bytes, StoreRecordCodec::decodeTemplates, StoreRecordCodec::encodeTemplates);
        break;
    }
    return 0;
}
