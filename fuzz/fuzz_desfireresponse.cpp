// Plays a hostile DESFire card: every answer the reader gets comes from the
// input, and the reader side runs the commands the backend sends (version,
// the three authentications, then reading, writing and changing keys in the
// session). Whatever the card says, the channel must answer with a result
// code, never read past an answer, and only ever hand back what was asked.
#include <desfireprotocol.h>

#include <cstdint>
#include <cstdlib>

using namespace nvsmartcard;
using namespace nvsmartcard::desfire;

namespace {

bool knownCode(int code)
{
    switch (code) {
    case nvcm::OK:
    case nvcm::AuthError:
    case nvcm::NotSupported:
    case nvcm::CommunicationError:
    case nvcm::TooMuchData:
        return true;
    default:
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));

    // One answer on its own: either a card status or nothing.
    const Frame frame = parseAnswer(input);
    if (frame.status != Malformed && (frame.status > 0xFF || frame.data.size() != input.size() - 2))
        abort();

    if (input.isEmpty())
        return 0;
    // First byte: which key; then answers, each a length byte and its bytes.
    static const Key keys[]
        = { Key(DesKey, QByteArray(8, '\0')), Key(DesKey, QByteArray(16, '\x11')),
            Key(TripleDesKey, QByteArray(24, '\x22')), Key(AesKey, QByteArray(16, '\0')) };
    const Key &key = keys[uchar(input[0]) % 4];
    int at = 1;
    Channel channel([&](const QByteArray &apdu, QByteArray &answer) {
        if (apdu.size() < 5 || uchar(apdu[0]) != 0x90)
            abort(); // the channel only ever sends wrapped commands
        if (at >= input.size())
            return int(nvcm::RemoveCard);
        const int n = uchar(input[at++]);
        answer = input.mid(at, n);
        at += n;
        return int(nvcm::OK);
    });
    channel.setRandom([](int n) { return QByteArray(n, '\x5A'); });

    Version version;
    int code = channel.getVersion(version);
    if (code == nvcm::OK && version.memorySize() == 0)
        abort();
    code = channel.authenticate(0, key);
    if (!knownCode(code) && code != nvcm::RemoveCard)
        abort();
    if (code != nvcm::OK)
        return 0;
    QByteArray read;
    code = channel.readData(1, 0, 40, read);
    if (code == nvcm::OK && read.size() != 40)
        abort();
    int frames = 0;
    code = channel.writeData(1, 0, QByteArray(130, 'w'), [&frames](int done, int total) {
        if (done != ++frames || done > total)
            abort();
    });
    quint32 free = 0;
    if (channel.getFreeMemory(free) == nvcm::OK && free > 0xFFFFFF)
        abort();
    code = channel.changeKey(0, key);
    if (!knownCode(code) && code != nvcm::RemoveCard)
        abort();
    return 0;
}
