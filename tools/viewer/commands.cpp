// The commands, and a line for each entry of the journal.
#include "commands.h"

#include <charconv>
#include <cstdio>
#include <functional>
#include <sstream>

#include "terminal.h"
#include "text.h"

namespace mlds_viewer {

namespace {

using Words = std::vector<std::string>;

constexpr std::size_t kEntriesShown = 20;

// What is wrong with a command line.
struct Fault {
    std::string what;
};

class Interpreter {
public:
    Interpreter(Viewer& viewer, std::size_t nColumns)
        : m_viewer(viewer), m_nColumns(nColumns), m_pMirror(viewer.StructureAt(Newest())) {}

    std::string Tiers(const Words&) const { return TiersText(m_mirror, m_nColumns); }
    std::string Streams(const Words&) const { return StreamsText(m_mirror); }
    std::string Variables(const Words&) const { return VariablesText(m_mirror); }
    std::string Tokens(const Words& words) const {
        return TokensText(m_mirror, StreamNamed(words.at(1)));
    }
    std::string Fields(const Words& words) const {
        return FieldsText(m_mirror, Token(words.at(1), words.at(2)));
    }
    std::string Set(const Words& words) const {
        const Id token = Token(words.at(1), words.at(2));
        const int field = FieldNamed(m_mirror.Find(token)->stream, words.at(3));
        return Answer(m_viewer.SetField(token, field, words.at(4)));
    }
    std::string Log(const Words&) const {
        const std::size_t last = m_viewer.status().last;
        std::string text;
        const std::size_t from = last > kEntriesShown ? last - kEntriesShown + 1 : 1;
        for (const EntryPtr& pEntry : m_viewer.Entries(from, kEntriesShown)) {
            text += EntryText(*pEntry);
        }
        return text;
    }
    std::string Disconnect(const Words&) const { return Answer(m_viewer.Disconnect()); }

private:
    static std::size_t Newest() { return static_cast<std::size_t>(-1); }
    static std::string Answer(const std::string& why) {
        if (!why.empty()) throw Fault{why};
        return "asked; the engine answers when it polls its requests\n";
    }

    int StreamNamed(const std::string& name) const {
        const std::vector<Stream>& streams = m_mirror.streams();
        for (std::size_t i = 0; i < streams.size(); ++i) {
            if (Shown(streams[i].name) == name) return static_cast<int>(i);
        }
        // By its number: a name may hold spaces, or be none.
        const std::optional<std::size_t> index = NumberIn(name);
        if (index && *index < streams.size()) return static_cast<int>(*index);
        throw Fault{"there is no stream " + name};
    }

    static std::optional<std::size_t> NumberIn(const std::string& text) {
        std::size_t n = 0;
        const char* pEnd = text.data() + text.size();
        const auto [p, error] = std::from_chars(text.data(), pEnd, n);
        return error == std::errc{} && p == pEnd ? std::optional(n) : std::nullopt;
    }

    Id Token(const std::string& stream, const std::string& number) const {
        const std::optional<std::size_t> wanted = NumberIn(number);
        if (!wanted) throw Fault{number + " is no number"};
        std::size_t n = *wanted;
        for (const Id id : m_mirror.Chain(StreamNamed(stream))) {
            if (m_mirror.Find(id)->kind == Kind::token && --n == 0) return id;
        }
        throw Fault{"stream " + stream + " has no token " + number};
    }

    int FieldNamed(int stream, const std::string& name) const {
        const std::vector<Field>& fields =
            m_mirror.streams()[static_cast<std::size_t>(stream)].fields;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (Shown(fields[i].name) == name) return static_cast<int>(i);
        }
        throw Fault{"there is no field " + name};
    }

    Viewer& m_viewer;
    std::size_t m_nColumns;
    MirrorPtr m_pMirror;
    const Mirror& m_mirror = *m_pMirror;
};

struct Command {
    const char* name;
    const char* arguments;
    const char* what;
    std::size_t nArguments;
    std::string (Interpreter::*run)(const Words&) const;
};

constexpr Command kCommands[] = {
    {"tiers", "", "the streams, aligned", 0, &Interpreter::Tiers},
    {"streams", "", "the streams and their fields", 0, &Interpreter::Streams},
    {"variables", "", "the variables and what they are bound to", 0, &Interpreter::Variables},
    {"tokens", "STREAM", "the tokens of a stream with their numbers", 1, &Interpreter::Tokens},
    {"fields", "STREAM NUMBER", "the fields of a token", 2, &Interpreter::Fields},
    {"set", "STREAM NUMBER FIELD VALUE", "ask the engine to set a field of a token", 4,
     &Interpreter::Set},
    {"log", "", "the last messages", 0, &Interpreter::Log},
    {"disconnect", "", "ask the engine to close the link", 0, &Interpreter::Disconnect}};

std::string Help() {
    std::string text;
    const auto add = [&](const std::string& usage, const char* what) {
        char line[160];
        std::snprintf(line, sizeof line, "  %-30s %s\n", usage.c_str(), what);
        text += line;
    };
    for (const Command& c : kCommands) {
        add(std::string(c.name) + (*c.arguments != '\0' ? " " : "") + c.arguments, c.what);
    }
    add("help", "this list");
    add("quit", "end the viewer; the engine goes on");
    return text;
}

Words WordsOf(const std::string& line) {
    std::istringstream in(line);
    Words words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

}  // namespace

std::optional<std::string> CarryOut(const std::string& line, Viewer& viewer, std::size_t nColumns) {
    const Words words = WordsOf(line);
    if (words.empty()) return "";
    if (words[0] == "quit") return std::nullopt;
    if (words[0] == "help") return Help();
    for (const Command& command : kCommands) {
        if (words[0] != command.name) continue;
        if (words.size() != command.nArguments + 1) {
            return "usage: " + words[0] + ' ' + command.arguments + '\n';
        }
        try {
            return (Interpreter(viewer, nColumns).*command.run)(words);
        } catch (const Fault& fault) {
            return fault.what + '\n';
        }
    }
    return "there is no command " + words[0] + "; help lists them\n";
}

std::string EntryText(const Entry& entry) {
    char number[48];
    const int code = entry.message.code;
    if (code < 0) {
        std::snprintf(number, sizeof number, "%6zu       ", entry.number);
    } else {
        std::snprintf(number, sizeof number, "%6zu  %4d ", entry.number, code);
    }
    return number + entry.words + '\n';
}

}  // namespace mlds_viewer
