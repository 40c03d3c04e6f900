// Taking messages out of received bytes, and putting packets together.
#include "message.h"

#include <cstdio>

#include "report/messages.h"
#include "viewer/link/requestreader.h"
#include "viewer/link/wire.h"

namespace mlds_viewer {

namespace wire = mlds::wire;

namespace {

constexpr std::size_t kHeadSize = 8;  // of a text: type and length
// No stream of a container has a description as long as this.
constexpr std::uint32_t kLongestText = 1 << 24;

void AppendItem(std::string& packet, std::uint32_t type, const void* pValue, std::size_t n) {
    const auto length = static_cast<std::uint32_t>(n);
    const std::size_t size = wire::ItemSize(type, pValue, length);
    const std::size_t end = packet.size();
    packet.resize(end + size);
    wire::PutItem(reinterpret_cast<unsigned char*>(packet.data()) + end, type, pValue, length);
}

}  // namespace

std::uint32_t MessageReader::Word(std::size_t at) const {
    return wire::GetWord(reinterpret_cast<const unsigned char*>(m_bytes.data()) + at);
}

void MessageReader::ExpectInt(std::size_t at) const {
    if (Word(at) != wire::itemInt) {
        throw ProtocolError("expected a number, found an item of type " + std::to_string(Word(at)));
    }
}

std::optional<int> MessageReader::TakeGreeting() {
    constexpr std::size_t kSize = 2 * wire::kIntItemSize;
    if (Has(kHeadSize)) {
        ExpectInt(0);
        if (Word(4) != 1) throw ProtocolError("expected the greeting of an engine");
    }
    if (!Has(kSize)) return std::nullopt;
    ExpectInt(kHeadSize);
    const auto greeting = static_cast<int>(Word(kHeadSize + 4));
    m_bytes.erase(0, kSize);
    return greeting;
}

std::optional<Message> MessageReader::TakeMessage() {
    if (!Has(wire::kIntItemSize)) return std::nullopt;
    ExpectInt(0);
    const auto code = static_cast<int>(Word(4));
    const mlds::MessageKind* pKind = mlds::FindMessage(code);
    if (pKind == nullptr) {
        throw ProtocolError("there is no message with the code " + std::to_string(code));
    }
    std::size_t end = wire::kIntItemSize;
    Message message{code, ""};
    if (pKind->payload != mlds::Payload::none) {
        const std::size_t text = end + kHeadSize;
        if (!Has(text)) return std::nullopt;
        if (Word(end) != wire::itemString || Word(end + 4) > kLongestText) {
            throw ProtocolError("expected the text of message " + std::to_string(code));
        }
        const std::size_t length = Word(end + 4);
        if (!Has(text + length)) return std::nullopt;
        message.text = m_bytes.substr(text, length);
        end = text + length;
    }
    m_bytes.erase(0, end);
    return message;
}

std::string NumberPacket(int number) {
    std::string packet;
    AppendItem(packet, wire::itemInt, &number, sizeof number);
    return packet;
}

std::string FieldPacket(Id token, int stream, int field, const std::string& word) {
    char head[64];
    std::snprintf(head, sizeof head, "%#010x 0 %d %d ", token, stream, field);
    const std::string text = head + word;
    std::string packet = NumberPacket(mlds::reqSetField);
    AppendItem(packet, wire::itemString, text.data(), text.size());
    return packet;
}

}  // namespace mlds_viewer
