// Feeds arbitrary bytes to the template decoding of NVDataStream, as the
// template chooser reads back what it stored in its rows. Whatever decodes
// must encode and decode again to the same template.
#include <nvdatastream.h>
#include <templatedata.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    nivaro::_TEMPLATE_DATA tpl;
    {
        nivaro::NVDataStream in(bytes);
        in >> tpl;
        if (in.status() != QDataStream::Ok)
            return 0;
    }
    QByteArray again;
    {
        nivaro::NVDataStream out(&again, QIODevice::WriteOnly);
        out << tpl;
    }
    nivaro::_TEMPLATE_DATA back;
    nivaro::NVDataStream in(again);
    in >> back;
    if (in.status() != QDataStream::Ok || back != tpl)
        abort();
    return 0;
}
