// A contactless card on the virtual PC/SC reader (vpcd): connects to the
// reader driver's TCP port and answers what pcscd sends through it.
// Classic and Plus in level 1: the reader side of the storage card
// commands (load key, general authenticate, read and update binary) is
// played here too, with Crypto1 reduced to comparing the loaded key with
// the sector trailer's. DESFire EV1: native commands wrapped in APDUs with
// real authentication and secure messaging (desfirecard.cpp). Plus in
// level 3 answers GetVersion only.
//
// Options:
//   --port N          vpcd's port (35963)
//   --type T          1k, 4k (Classic), plus2k, plus4k (Plus level 1),
//                     desfire2k, desfire4k, desfire8k, plussl3 (1k)
//   --uid HEX         UID: 4 bytes for Classic (01020304), 7 for the others
//   --key-a HEX, --key-b HEX   keys of every sector trailer (FF..FF)
//   --master-key HEX  DESFire card master key: 8 bytes DES, 16 AES,
//                     24 three-key 3DES (8 zero bytes)
//   --pull-after N    after N written blocks (DESFire: WriteData frames),
//                     vanish on the next write
//   --delay MS        answer every APDU this much later
//   --dump FILE       the whole memory, rewritten after every write: hex
//                     for block cards, a line per key, application and file
//                     for DESFire (see DesfireCard::save)
//   --memory FILE     start with this memory (as --dump writes it)
//   --connect-ms MS   how long to retry connecting to vpcd (5000)
// Exits when vpcd closes the connection or the card is pulled.

#include "desfirecard.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

struct Card
{
    Bytes memory;
    Bytes uid{0x01, 0x02, 0x03, 0x04};
    size_t memSize = 1024;
    unsigned char cardName = 0x01; // PC/SC card name code in the ATR
    DesfireCard *desfire = nullptr;
    Bytes loadedKey;
    int authSector = -1;
    long writes = 0;
    long pullAfter = -1;
    std::string dumpPath;
};

bool parseHex(const std::string &text, Bytes &out)
{
    if (text.size() % 2)
        return false;
    out.clear();
    for (size_t i = 0; i < text.size(); i += 2) {
        char *end = nullptr;
        const std::string pair = text.substr(i, 2);
        const long v = std::strtol(pair.c_str(), &end, 16);
        if (*end)
            return false;
        out.push_back((unsigned char)v);
    }
    return true;
}

int sectorOf(int block) { return block < 128 ? block / 4 : 32 + (block - 128) / 16; }
int trailerOf(int block) { return block < 128 ? (block | 3) : 128 + (block - 128) / 16 * 16 + 15; }
bool isTrailer(int block) { return trailerOf(block) == block; }

void dump(const Card &card)
{
    if (card.dumpPath.empty())
        return;
    const std::string tmp = card.dumpPath + ".tmp";
    FILE *f = std::fopen(tmp.c_str(), "w");
    if (!f)
        return;
    for (unsigned char c : card.memory)
        std::fprintf(f, "%02x", c);
    std::fprintf(f, "\n");
    std::fclose(f);
    std::rename(tmp.c_str(), card.dumpPath.c_str());
}

void format(Card &card, const Bytes &keyA, const Bytes &keyB)
{
    card.memory.assign(card.memSize, 0);
    unsigned char bcc = 0;
    for (size_t i = 0; i < card.uid.size(); ++i) {
        card.memory[i] = card.uid[i];
        bcc ^= card.uid[i];
    }
    if (card.uid.size() == 4) {
        card.memory[4] = bcc;
        card.memory[5] = card.memSize > 1024 ? 0x18 : 0x08; // SAK
    } else {
        card.memory[7] = card.memSize > 2048 ? 0x18 : 0x08;
    }
    const int blocks = int(card.memory.size() / 16);
    const unsigned char access[4] = {0xFF, 0x07, 0x80, 0x69};
    for (int b = 0; b < blocks; ++b) {
        if (!isTrailer(b))
            continue;
        unsigned char *t = &card.memory[size_t(b) * 16];
        std::memcpy(t, keyA.data(), 6);
        std::memcpy(t + 6, access, 4);
        std::memcpy(t + 10, keyB.data(), 6);
    }
}

Bytes atr(const Card &card)
{
    Bytes a{0x3B, 0x8F, 0x80, 0x01, 0x80, 0x4F, 0x0C, 0xA0, 0x00, 0x00, 0x03, 0x06,
            0x03, 0x00, card.cardName, 0x00, 0x00, 0x00, 0x00};
    if (card.desfire)
        a = Bytes{0x3B, 0x81, 0x80, 0x01, 0x80}; // ISO 14443-4, ATS historical byte 80
    unsigned char tck = 0;
    for (size_t i = 1; i < a.size(); ++i)
        tck ^= a[i];
    a.push_back(tck);
    return a;
}

Bytes sw(unsigned char a, unsigned char b) { return Bytes{a, b}; }

// The answer to one APDU; `pull` is set when the card leaves instead.
Bytes answer(Card &card, const Bytes &apdu, bool &pull)
{
    const int blocks = int(card.memory.size() / 16);
    if (card.desfire && apdu.size() >= 4 && apdu[0] == 0x90) {
        const QByteArray reply =
            card.desfire->answer(QByteArray(reinterpret_cast<const char *>(apdu.data()), int(apdu.size())), pull);
        return Bytes(reply.begin(), reply.end());
    }
    if (apdu.size() < 4 || apdu[0] != 0xFF)
        return sw(0x6E, 0x00);
    const unsigned char ins = apdu[1];
    if (ins == 0xCA && apdu[2] == 0x00) {
        Bytes r = card.uid;
        r.push_back(0x90);
        r.push_back(0x00);
        return r;
    }
    if (card.desfire)
        return sw(0x6D, 0x00);
    if (ins == 0x82 && apdu.size() == 11 && apdu[4] == 6) {
        card.loadedKey.assign(apdu.begin() + 5, apdu.end());
        return sw(0x90, 0x00);
    }
    if (ins == 0x86 && apdu.size() == 10 && apdu[4] == 5 && apdu[5] == 0x01) {
        const int block = apdu[7];
        const unsigned char type = apdu[8];
        card.authSector = -1;
        if (block >= blocks || card.loadedKey.size() != 6 || (type != 0x60 && type != 0x61))
            return sw(0x63, 0x00);
        const unsigned char *t = &card.memory[size_t(trailerOf(block)) * 16];
        const unsigned char *key = type == 0x60 ? t : t + 10;
        if (std::memcmp(key, card.loadedKey.data(), 6) != 0)
            return sw(0x63, 0x00);
        card.authSector = sectorOf(block);
        return sw(0x90, 0x00);
    }
    if (ins == 0xB0 && apdu.size() == 5) {
        const int block = apdu[3];
        if (block >= blocks || sectorOf(block) != card.authSector)
            return sw(0x69, 0x82);
        Bytes r(card.memory.begin() + block * 16, card.memory.begin() + block * 16 + 16);
        if (isTrailer(block))
            std::fill(r.begin(), r.begin() + 6, 0); // key A never reads back
        r.push_back(0x90);
        r.push_back(0x00);
        return r;
    }
    if (ins == 0xD6 && apdu.size() == 21 && apdu[4] == 16) {
        const int block = apdu[3];
        if (block == 0 || block >= blocks || sectorOf(block) != card.authSector)
            return sw(0x69, 0x82);
        if (card.pullAfter >= 0 && card.writes >= card.pullAfter) {
            pull = true;
            return Bytes();
        }
        std::memcpy(&card.memory[size_t(block) * 16], &apdu[5], 16);
        ++card.writes;
        dump(card);
        return sw(0x90, 0x00);
    }
    return sw(0x6D, 0x00);
}

bool readAll(int fd, unsigned char *buffer, size_t length)
{
    while (length > 0) {
        // vpcd sends the length and the payload in separate segments; without
        // quick acks every exchange waits for the delayed ACK timer.
        int one = 1;
        setsockopt(fd, IPPROTO_TCP, TCP_QUICKACK, &one, sizeof one);
        const ssize_t n = recv(fd, buffer, length, 0);
        if (n <= 0)
            return false;
        buffer += n;
        length -= size_t(n);
    }
    return true;
}

bool sendMessage(int fd, const Bytes &payload)
{
    Bytes frame{(unsigned char)(payload.size() >> 8), (unsigned char)(payload.size() & 0xFF)};
    frame.insert(frame.end(), payload.begin(), payload.end());
    return send(fd, frame.data(), frame.size(), MSG_NOSIGNAL) == ssize_t(frame.size());
}

int usage(const char *why)
{
    std::fprintf(stderr, "cardemu: %s\n", why);
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    Card card;
    int port = 35963;
    int delayMs = 0;
    int connectMs = 5000;
    Bytes keyA(6, 0xFF), keyB(6, 0xFF);
    DesfireCard desfire;
    std::string type = "1k";
    bool uidGiven = false;
    std::string memoryPath;
    for (int i = 1; i < argc; ++i) {
        const std::string opt = argv[i];
        if (i + 1 >= argc)
            return usage(("missing value for " + opt).c_str());
        const std::string value = argv[++i];
        if (opt == "--port")
            port = std::atoi(value.c_str());
        else if (opt == "--type")
            type = value;
        else if (opt == "--uid") {
            if (!parseHex(value, card.uid) || (card.uid.size() != 4 && card.uid.size() != 7))
                return usage("--uid takes 4 or 7 bytes of hex");
            uidGiven = true;
        } else if (opt == "--master-key") {
            if (!DesfireCard::keyFromHex(QByteArray::fromStdString(value), desfire.master))
                return usage("--master-key takes 8, 16 or 24 bytes of hex");
        } else if (opt == "--key-a" || opt == "--key-b") {
            Bytes &key = opt == "--key-a" ? keyA : keyB;
            if (!parseHex(value, key) || key.size() != 6)
                return usage("keys are 6 bytes of hex");
        } else if (opt == "--pull-after")
            card.pullAfter = std::atol(value.c_str());
        else if (opt == "--delay")
            delayMs = std::atoi(value.c_str());
        else if (opt == "--dump")
            card.dumpPath = value;
        else if (opt == "--memory")
            memoryPath = value;
        else if (opt == "--connect-ms")
            connectMs = std::atoi(value.c_str());
        else
            return usage(("unknown option " + opt).c_str());
    }
    if (type == "4k") {
        card.memSize = 4096;
        card.cardName = 0x02;
    } else if (type == "plus2k" || type == "plus4k") {
        card.memSize = type == "plus2k" ? 2048 : 4096;
        card.cardName = type == "plus2k" ? 0x36 : 0x37;
        if (!uidGiven)
            card.uid = Bytes{0x04, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66};
    } else if (type.rfind("desfire", 0) == 0 || type == "plussl3") {
        card.desfire = &desfire;
        desfire.plus = type == "plussl3";
        desfire.kilobytes = type == "desfire2k" ? 2 : type == "desfire4k" || type == "plussl3" ? 4 : 8;
        if (uidGiven)
            desfire.uid = QByteArray(reinterpret_cast<const char *>(card.uid.data()), int(card.uid.size()));
        card.uid.assign(desfire.uid.begin(), desfire.uid.end());
        desfire.pullAfter = card.pullAfter;
        desfire.dumpPath = card.dumpPath;
    } else if (type != "1k") {
        return usage("--type is 1k, 4k, plus2k, plus4k, desfire2k, desfire4k, desfire8k or plussl3");
    }
    if (card.uid.size() != (card.desfire || card.cardName >= 0x36 ? 7u : 4u))
        return usage("--uid has the wrong length for this card");
    format(card, keyA, keyB);
    if (card.desfire && !memoryPath.empty()) {
        FILE *f = std::fopen(memoryPath.c_str(), "r");
        if (!f)
            return usage(("cannot read " + memoryPath).c_str());
        QByteArray text;
        char buffer[4096];
        size_t n = 0;
        while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
            text.append(buffer, int(n));
        std::fclose(f);
        if (!desfire.load(text))
            return usage("--memory must hold a DESFire card as --dump writes it");
        card.uid.assign(desfire.uid.begin(), desfire.uid.end());
    } else if (!memoryPath.empty()) {
        // The card put back on the reader: everything as it was left.
        FILE *f = std::fopen(memoryPath.c_str(), "r");
        if (!f)
            return usage(("cannot read " + memoryPath).c_str());
        std::string text;
        char buffer[4096];
        size_t n = 0;
        while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
            text.append(buffer, n);
        std::fclose(f);
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        Bytes memory;
        if (!parseHex(text, memory) || memory.size() != card.memory.size())
            return usage("--memory must hold the whole card as hex");
        card.memory = memory;
        card.uid.assign(memory.begin(), memory.begin() + long(card.uid.size()));
    }
    if (card.desfire)
        desfire.dump();
    else
        dump(card);

    int fd = -1;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(connectMs);
    while (true) {
        fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(uint16_t(port));
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) == 0)
            break;
        close(fd);
        if (std::chrono::steady_clock::now() >= deadline) {
            std::fprintf(stderr, "cardemu: no virtual reader on port %d\n", port);
            return 1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);

    while (true) {
        unsigned char head[2];
        if (!readAll(fd, head, 2))
            break;
        Bytes message(size_t(head[0]) << 8 | head[1]);
        if (!message.empty() && !readAll(fd, message.data(), message.size()))
            break;
        if (message.size() == 1) {
            if (message[0] == 4 && !sendMessage(fd, atr(card)))
                break;
            if (message[0] != 4) {
                card.authSector = -1; // power off, on or reset drop the authentication
                desfire.reset();
            }
            continue;
        }
        if (delayMs > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
        bool pull = false;
        const Bytes reply = answer(card, message, pull);
        if (pull)
            break;
        if (!sendMessage(fd, reply))
            break;
    }
    close(fd);
    return 0;
}
