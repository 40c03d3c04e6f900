// Reading the texts of messages.
#include "event.h"

#include <algorithm>
#include <charconv>

#include "report/messages.h"

namespace mlds_viewer {

namespace {

// No container has more streams, and no stream more fields.
constexpr int kMostStreams = 50;
constexpr int kMostFields = 10000;

struct Unreadable {};

void Expect(bool bAsExpected) {
    if (!bAsExpected) throw Unreadable();
}

// Reads a text from the front: numbers with spaces in front of them, and rests.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    int Number() { return Parse<int>(10); }
    int Number(int least, int most) {
        const int n = Number();
        Expect(n >= least && n <= most);
        return n;
    }
    bool Flag() { return Number(0, 1) == 1; }
    int Stream() { return Number(0, kMostStreams - 1); }
    Kind ObjectKind() { return Flag() ? Kind::mark : Kind::token; }
    // "0x0000002a"; nothing is written as zeros alone.
    Id Handle() {
        SkipSpaces();
        if (m_text.starts_with("0x")) m_text.remove_prefix(2);
        return Parse<Id>(16);
    }
    void Character(char c) {
        Expect(!m_text.empty() && m_text.front() == c);
        m_text.remove_prefix(1);
    }
    std::string_view Rest() const { return m_text; }
    // What stands up to the character, or all.
    std::string_view Until(char c) {
        const std::string_view part = m_text.substr(0, m_text.find(c));
        m_text.remove_prefix(part.size());
        return part;
    }
    bool AtEnd() {
        SkipSpaces();
        return m_text.empty();
    }

private:
    void SkipSpaces() {
        m_text.remove_prefix(std::min(m_text.find_first_not_of(' '), m_text.size()));
    }
    template <typename T>
    T Parse(int base) {
        SkipSpaces();
        T value{};
        const auto [pEnd, error] =
            std::from_chars(m_text.data(), m_text.data() + m_text.size(), value, base);
        Expect(error == std::errc{});
        m_text.remove_prefix(static_cast<std::size_t>(pEnd - m_text.data()));
        return value;
    }

    std::string_view m_text;
};

Body ReadBody(Scanner& text, Kind kind) {
    if (kind == Kind::token) {
        text.Character(' ');
        Expect(text.Rest().empty() || text.Rest().front() == '|');
        return std::string(text.Rest());
    }
    Ties ties;
    for (int n = text.Number(0, kMostStreams); n > 0; --n) {
        const int stream = text.Stream();
        ties.emplace_back(stream, text.Handle());
    }
    Expect(text.AtEnd());
    return ties;
}

Event ReadInserted(Scanner text) {
    const bool bDelayed = text.Flag();
    const Id left = text.Handle();
    const int stream = text.Stream();
    const Id id = text.Handle();
    const Kind kind = text.ObjectKind();
    return Inserted{{bDelayed, stream, id, kind}, left, ReadBody(text, kind)};
}

ObjectHead ReadHead(Scanner& text) {
    const bool bDelayed = text.Flag();
    const int stream = text.Stream();
    const Id id = text.Handle();
    return {bDelayed, stream, id, text.ObjectKind()};
}

Event ReadChanged(Scanner text) {
    const ObjectHead head = ReadHead(text);
    return Changed{head, ReadBody(text, head.kind)};
}

// "NAME TYPE COUNT " and as many values, each behind a newline. Names may hold spaces.
Field ReadField(Scanner& text) {
    const std::string_view whole = text.Rest();
    const std::string_view head = whole.substr(0, whole.find_first_of("|\n"));
    Expect(head.ends_with(' '));
    const std::size_t count = head.rfind(' ', head.size() - 2);
    Expect(count != std::string_view::npos && count > 0);
    const std::size_t type = head.rfind(' ', count - 1);
    Expect(type != std::string_view::npos);
    Field field{std::string(head.substr(0, type)), Scanner(head.substr(type)).Number(), {}};
    int nValues = Scanner(head.substr(count)).Number(0, kMostFields);
    text = Scanner(whole.substr(head.size()));
    for (; nValues > 0; --nValues) {
        text.Character('\n');
        // The last one ends where the next field begins.
        field.values.emplace_back(text.Until(nValues > 1 ? '\n' : '|'));
    }
    return field;
}

std::vector<Field> ReadFields(Scanner text, int nFields) {
    std::vector<Field> fields;
    if (nFields > 0) fields.push_back({"name", std::nullopt, {}});
    for (int i = 1; i < nFields; ++i) {
        text.Character('|');
        fields.push_back(ReadField(text));
    }
    Expect(text.AtEnd());
    return fields;
}

Event ReadStream(Scanner text) {
    StreamDescribed described{text.Stream(), "", {}};
    const int nFields = text.Number(0, kMostFields);
    text.Character(' ');
    described.name = text.Until('|');
    try {
        described.fields = ReadFields(text, nFields);
    } catch (const Unreadable&) {
        // Names and values with bars in them. How many fields there are is known all the same.
        for (int i = 0; i < nFields; ++i) {
            described.fields.push_back({"field " + std::to_string(i), std::nullopt, {}});
        }
    }
    return described;
}

Event ReadVariable(Scanner text, bool bDeclared) {
    VariableTold told{};
    told.bDeclared = bDeclared;
    told.bDelayed = text.Flag();
    told.list = text.Handle();
    told.index = text.Number();
    told.slot = text.Handle();
    text.Character(' ');
    const std::string_view rest = text.Rest();
    const std::size_t space = rest.rfind(' ');
    Expect(space != std::string_view::npos);
    told.name = rest.substr(0, space);
    told.content = Scanner(rest.substr(space)).Handle();
    return told;
}

Event Read(const Message& message) {
    const mlds::MessageKind* pKind = mlds::FindMessage(message.code);
    if (pKind == nullptr) return Signal{message.code};
    Scanner text(message.text);
    switch (pKind->payload) {
        case mlds::Payload::inserted: return ReadInserted(text);
        case mlds::Payload::changed: return ReadChanged(text);
        case mlds::Payload::removed: return Removed{ReadHead(text)};
        case mlds::Payload::stream: return ReadStream(text);
        case mlds::Payload::language: return LanguageTold{message.text};
        case mlds::Payload::list:
            if (message.code == mlds::msgListMade) return ListMade{text.Handle()};
            return ListGone{text.Handle()};
        case mlds::Payload::variable: return ReadVariable(text, message.code == mlds::msgVarAdded);
        case mlds::Payload::text: return Said{message.text};
        case mlds::Payload::none: break;
    }
    return Signal{message.code};
}

}  // namespace

Event Understand(const Message& message) {
    try {
        return Read(message);
    } catch (const Unreadable&) {
        return Unintelligible{message};
    }
}

}  // namespace mlds_viewer
