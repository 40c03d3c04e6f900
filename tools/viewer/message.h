// What engines send, as it comes over the wire, and the requests that go back.
#ifndef MLDS_VIEWER_TOOL_MESSAGE_H
#define MLDS_VIEWER_TOOL_MESSAGE_H

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace mlds_viewer {

/// A number by which messages name an object, a variable list or a variable's slot; 0 for none.
using Id = std::uint32_t;

/// A code of mlds::MessageCode and its text; the text of codes that have none is empty.
struct Message {
    int code;
    std::string text;
};

/// Bytes that cannot have come from an engine: nothing behind them can be understood.
class ProtocolError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Takes messages out of received bytes, which may be cut anywhere.
class MessageReader {
public:
    void Add(std::string_view bytes) { m_bytes.append(bytes); }
    /// The number that a greeting, 1 and a number, ends with; nothing while it is not whole.
    /// Throws ProtocolError for anything else.
    std::optional<int> TakeGreeting();
    /// The next message; nothing while it is not whole. Throws ProtocolError.
    std::optional<Message> TakeMessage();

private:
    bool Has(std::size_t n) const { return m_bytes.size() >= n; }
    std::uint32_t Word(std::size_t at) const;
    void ExpectInt(std::size_t at) const;

    std::string m_bytes;
};

/// One number as a packet: what a message is acknowledged with, and the request to disconnect.
std::string NumberPacket(int number);

/// The request to set a field of a token to a word.
std::string FieldPacket(Id token, int stream, int field, const std::string& word);

}  // namespace mlds_viewer

#endif
