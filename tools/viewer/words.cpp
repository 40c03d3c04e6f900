// Messages in words.
#include "words.h"

#include "report/messages.h"
#include "text.h"

namespace mlds_viewer {

namespace {

constexpr std::size_t kLongestQuote = 300;

class Speaker {
public:
    explicit Speaker(const Mirror& before) : m_before(before) {}

    std::string operator()(const Inserted& event) const {
        std::string text = What(event.object, event.body) + " inserted ";
        text += event.left == 0 ? "at the beginning" : "behind " + m_before.Describe(event.left);
        if (const Ties* pTies = std::get_if<Ties>(&event.body)) text += Tied(*pTies);
        return text;
    }

    std::string operator()(const Changed& event) const {
        std::string text = What(event.object, event.body) + " changed";
        if (const Ties* pTies = std::get_if<Ties>(&event.body)) return text + Tied(*pTies);
        const std::vector<std::string> values = Values(event.object, event.body);
        const Object* pOld = m_before.Find(event.object.id);
        const char* separator = ": ";
        for (std::size_t i = 0; pOld != nullptr && i < values.size(); ++i) {
            const std::string old = i < pOld->values.size() ? pOld->values[i] : "";
            if (old == values[i]) continue;
            text += separator + InLine(FieldName(event.object.stream, i)) + " " + InLine(old) +
                    " -> " + InLine(values[i]);
            separator = ", ";
        }
        return text;
    }

    std::string operator()(const Removed& event) const {
        return m_before.Describe(event.object.id) + " removed";
    }
    std::string operator()(const StreamDescribed& event) const {
        return "stream " + std::to_string(event.stream) + " is " + InLine(event.name) + " with " +
               std::to_string(event.fields.size()) + " fields";
    }
    std::string operator()(const LanguageTold& event) const {
        return "language " + InLine(event.language);
    }
    std::string operator()(const ListMade& event) const {
        return "variable list " + HandleText(event.list) + " made";
    }
    std::string operator()(const ListGone& event) const {
        return "variable list " + HandleText(event.list) + " gone";
    }
    std::string operator()(const VariableTold& event) const {
        return "variable " + InLine(event.name) + (event.bDeclared ? " declared" : " used") + ": " +
               m_before.Describe(event.content);
    }
    std::string operator()(const Said& event) const {
        return "text: " + Isolated(Shown(event.text, kLongestQuote));
    }

    std::string operator()(const Signal& event) const {
        const mlds::MessageKind* pKind = mlds::FindMessage(event.code);
        return pKind != nullptr ? pKind->when : "message " + std::to_string(event.code);
    }

    std::string operator()(const Unintelligible& event) const {
        return "message " + std::to_string(event.message.code) +
               " is not understood: " + Isolated(Shown(event.message.text, kLongestQuote));
    }

private:
    const Stream* StreamOf(int stream) const {
        const auto i = static_cast<std::size_t>(stream);
        return i < m_before.streams().size() ? &m_before.streams()[i] : nullptr;
    }

    std::string FieldName(int stream, std::size_t i) const {
        const Stream* p = StreamOf(stream);
        return p != nullptr && i < p->fields.size() ? p->fields[i].name : std::to_string(i);
    }

    std::vector<std::string> Values(const ObjectHead& head, const Body& body) const {
        const Stream* p = StreamOf(head.stream);
        return PartValues(std::get<std::string>(body), p != nullptr ? p->fields.size() : 0);
    }

    std::string What(const ObjectHead& head, const Body& body) const {
        std::string text = "mark " + HandleText(head.id);
        if (std::holds_alternative<std::string>(body)) {
            const std::vector<std::string> values = Values(head, body);
            text = "token " + (values.empty() ? "" : InLine(values.front()));
        }
        const Stream* p = StreamOf(head.stream);
        return text + " of " + (p != nullptr ? InLine(p->name) : std::to_string(head.stream));
    }

    std::string Tied(const Ties& ties) const {
        if (ties.size() < 2) return "";
        std::string text;
        for (const auto& [stream, mark] : ties) {
            const Stream* p = StreamOf(stream);
            text += (text.empty() ? ", tied in " : " ") +
                    (p != nullptr ? InLine(p->name) : std::to_string(stream));
        }
        return text;
    }

    const Mirror& m_before;
};

struct ObjectFinder {
    Id operator()(const Inserted& event) const { return event.object.id; }
    Id operator()(const Changed& event) const { return event.object.id; }
    Id operator()(const Removed& event) const { return event.object.id; }
    Id operator()(const VariableTold& event) const { return event.content; }
    template <typename Other>
    Id operator()(const Other&) const {
        return 0;
    }
};

}  // namespace

std::string InWords(const Event& event, const Mirror& before) {
    return std::visit(Speaker(before), event);
}

Id ObjectOf(const Event& event) {
    return std::visit(ObjectFinder{}, event);
}

}  // namespace mlds_viewer
