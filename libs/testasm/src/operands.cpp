// Text to model: the operands of instructions.
#include "operands.h"

#include <algorithm>
#include <climits>
#include <iterator>

#include "mlds/testasm/text.h"
#include "ruletest/opcodes.h"

using mlds::OperandKind;

namespace mlds_testasm {

namespace {

struct Keyword {
    const char* word;
    OperandKind kind;
};
constexpr Keyword kKeywords[] = {{"then", OperandKind::next},
                                 {"limit", OperandKind::limit},
                                 {"leftward", OperandKind::direction},
                                 {"direction", OperandKind::direction},
                                 {"norecord", OperandKind::flag}};

const Keyword* KeywordAt(const Line& line) {
    for (const Keyword& keyword : kKeywords) {
        if (line.IsWord(keyword.word)) return &keyword;
    }
    return nullptr;
}

bool HasKeyword(OperandKind kind) {
    return std::any_of(std::begin(kKeywords), std::end(kKeywords),
                       [&](const Keyword& keyword) { return keyword.kind == kind; });
}

int OpcodeOf(const char* mnemonic) {
    return FindMnemonic(mnemonic)->number;
}

}  // namespace

void Operands::ReadLabel(Line& line, NodeId id) {
    const std::string& label = line.Peek().text;
    if (!line.Is(Lex::word) || label == "_" || KeywordAt(line) != nullptr) {
        line.Expected("a label (a word that has no meaning of its own)");
    } else if (const auto [entry, bNew] = m_labels.emplace(label, id); !bNew) {
        const int first = m_test.At(entry->second).place.line;
        line.Expected("a new label, as line " + std::to_string(first) + " has this one");
    }
}

// First those that stand in a row, as the bytes do, then in any order those with a keyword.
void Operands::ReadAll(Line& line, NodeId id) {
    const mlds::OpcodeInfo& info = *m_test.At(id).pInfo;
    for (std::size_t i = 0; i < 4; ++i) {
        Node& node = m_test.At(id);
        node.places[i] = line.place();
        if (info.operands[i] == OperandKind::selector) node.operands[i] = kWholeToken;
        if (info.operands[i] == OperandKind::none || HasKeyword(info.operands[i])) continue;
        if (line.AtEnd() || KeywordAt(line) != nullptr) continue;
        if (line.SkipWord("_")) continue;
        if (!Read(line, id, i)) return;
    }
    while (!line.AtEnd()) {
        const int i = KeywordOperand(line, m_test.At(id));
        if (i < 0) {
            line.Expected(Syntax(info));
            return;
        }
        if (!ReadKeyword(line, id, static_cast<std::size_t>(i))) return;
    }
}

// The operand that is introduced by the next word, -1 if there is none.
int Operands::KeywordOperand(const Line& line, const Node& node) const {
    const Keyword* pKeyword = KeywordAt(line);
    for (int i = 0; pKeyword != nullptr && i < 4; ++i) {
        if (node.pInfo->operands[i] == pKeyword->kind) return i;
    }
    return -1;
}

bool Operands::ReadKeyword(Line& line, NodeId id, std::size_t i) {
    const bool bNumbered = line.IsWord("direction");
    line.Next();
    Node& node = m_test.At(id);
    node.places[i] = line.place();
    const OperandKind kind = node.pInfo->operands[i];
    if (kind != OperandKind::direction && kind != OperandKind::flag) return Read(line, id, i);
    node.operands[i] = 1;
    if (!bNumbered && !line.Is(Lex::number)) return true;
    return ReadNumber(line, "a number", 0, 255, &node.operands[i]);
}

bool Operands::Read(Line& line, NodeId id, std::size_t i) {
    Node& node = m_test.At(id);
    node.places[i] = line.place();
    int* pOperand = &node.operands[i];
    const OperandKind kind = node.pInfo->operands[i];
    switch (kind) {
        case OperandKind::tokenByte:
        case OperandKind::tokenShort: return ReadVariable(line, false, true, pOperand);
        case OperandKind::markShort:
        case OperandKind::markInt: return ReadVariable(line, true, false, pOperand);
        case OperandKind::integer: return ReadInteger(line, pOperand, &node.naming);
        case OperandKind::field:
        case OperandKind::selector:
            node.naming.kind = NameKind::field;
            return ReadField(line, pOperand, &node.naming.stream);
        default: return IsLink(kind) ? ReadLink(line, id, i) : true;
    }
}

// A label, or what an instruction of its own is made of.
bool Operands::ReadLink(Line& line, NodeId id, std::size_t i) {
    if (line.Is(Lex::word) && KeywordAt(line) == nullptr) {
        m_pending.push_back({id, i, line.Next().text, true});
        return true;
    }
    const Place place = line.place();
    int number = 0;
    switch (m_test.At(id).pInfo->operands[i]) {
        case OperandKind::value: return ReadValue(line, id, i);
        case OperandKind::stream:
        case OperandKind::maybeStream:
            if (!ReadStream(line, &number)) return false;
            number = m_test.AddShared(OpcodeOf("Stream"), number, {NameKind::stream}, place);
            break;
        case OperandKind::limit:
        case OperandKind::varLink: {
            const bool bLimit = m_test.At(id).pInfo->operands[i] == OperandKind::limit;
            if (!ReadVariable(line, true, !bLimit, &number)) return false;
            number = m_test.AddShared(OpcodeOf("ConstInt"), number, {NameKind::variable}, place);
            if (bLimit) number = m_test.AddShared(OpcodeOf("ParentPtr"), number, {}, place);
            break;
        }
        default: return line.Expected("the label of a pattern");
    }
    m_test.At(id).operands[i] = number;
    return true;
}

bool Operands::ReadValue(Line& line, NodeId id, std::size_t i) {
    const Place place = line.place();
    if (line.Is(Lex::text)) {
        m_pending.push_back({id, i, line.Next().text, false});
        return true;
    }
    int number = 0;
    Naming naming;
    // "%stream.field" reads the field; a ':' makes it the value.
    if (line.Is(Lex::stream) && line.Peek(1).kind == Lex::dot && line.Peek(3).kind != Lex::colon) {
        naming.kind = NameKind::field;
        if (!ReadField(line, &number, &naming.stream)) return false;
        number = m_test.AddShared(OpcodeOf("Field"), number, naming, place);
    } else if (line.Is(Lex::number) || line.Is(Lex::stream)) {
        if (!ReadInteger(line, &number, &naming)) return false;
        const char* opcode = naming.kind == NameKind::value    ? "Enum"
                             : naming.kind == NameKind::stream ? "Stream"
                                                               : "ConstInt";
        number = m_test.AddShared(OpcodeOf(opcode), number, naming, place);
    } else {
        return line.Expected(
            "a value (a label, a number, %stream.field, or a text to compare it "
            "with)");
    }
    m_test.At(id).operands[i] = number;
    return true;
}

bool Operands::ReadInteger(Line& line, int* pNumber, Naming* pNaming) {
    if (line.Is(Lex::mark) || line.Is(Lex::token)) {
        pNaming->kind = NameKind::variable;
        return ReadVariable(line, true, true, pNumber);
    }
    if (!line.Is(Lex::stream)) return ReadNumber(line, "a number", INT_MIN, INT_MAX, pNumber);
    if (line.Peek(1).kind != Lex::dot) {
        pNaming->kind = NameKind::stream;
        return ReadStream(line, pNumber);
    }
    pNaming->kind = NameKind::value;
    if (!ReadField(line, &pNaming->field, &pNaming->stream)) return false;
    if (!line.Skip(Lex::colon)) return line.Expected("':' and a value of the field");
    std::string expected;
    const Lexeme& value = line.Peek();
    const bool bNumber = value.kind == Lex::number;
    if (!bNumber && value.kind != Lex::word && value.kind != Lex::text) {
        return line.Expected("a value of the field");
    }
    const std::string text = bNumber ? std::to_string(value.number) : value.text;
    const auto number = m_schema.ValueOf(pNaming->stream, pNaming->field, text, &expected);
    if (!number) return line.Expected(expected);
    *pNumber = *number;
    line.Next();
    return true;
}

bool Operands::ReadNumber(Line& line, const char* what, int low, int high, int* pNumber) {
    if (!line.Is(Lex::number)) return line.Expected(what);
    if (line.Peek().number < low || line.Peek().number > high) {
        return line.Expected("a number from " + std::to_string(low) + " to " +
                             std::to_string(high));
    }
    *pNumber = line.Next().number;
    return true;
}

// `bAny`: something of the kind is declared.
bool Operands::ExpectedDeclared(Line& line, bool bAny, const char* one, const char* all) {
    if (bAny) return line.Expected(std::string(one) + " that is declared");
    m_bUndeclared = true;
    return line.Expected(std::string("declarations of ") + all +
                         ", in a schema (--schema) or before the first test");
}

bool Operands::ReadStream(Line& line, int* pStream) {
    if (!line.Is(Lex::stream)) return line.Expected("a stream (%name)");
    *pStream = m_schema.FindStream(line.Peek().text);
    if (*pStream < 0) {
        return ExpectedDeclared(line, !m_schema.streams.empty(), "a stream", "streams");
    }
    line.Next();
    return true;
}

bool Operands::ReadField(Line& line, int* pField, int* pStream) {
    if (line.Is(Lex::number)) return ReadNumber(line, "a field", INT_MIN, INT_MAX, pField);
    if (!line.Is(Lex::stream)) return line.Expected("a field (%stream.field)");
    if (!ReadStream(line, pStream)) return false;
    if (!line.Skip(Lex::dot)) return line.Expected("'.' and a field of the stream");
    if (line.Is(Lex::word) || line.Is(Lex::text)) {
        *pField = m_schema.FindField(*pStream, line.Peek().text);
        if (*pField >= 0) return line.Next(), true;
        *pField = 0;
    }
    return line.Expected(
        "a field of stream " +
        Shortened(Quoted(m_schema.streams[static_cast<std::size_t>(*pStream)].name)));
}

bool Operands::ReadVariable(Line& line, bool bMark, bool bToken, int* pVariable) {
    if (line.Is(Lex::number)) return ReadNumber(line, "a variable", INT_MIN, INT_MAX, pVariable);
    const bool bIsToken = line.Is(Lex::token);
    if (bIsToken ? !bToken : !bMark || !line.Is(Lex::mark)) {
        return line.Expected(bMark && bToken ? "a variable (^mark or $token)"
                             : bMark         ? "a mark variable (^name)"
                                             : "a token variable ($name)");
    }
    *pVariable = m_schema.FindVariable(line.Peek().text);
    const SchemaVariable* pKnown = m_schema.VariableAt(*pVariable);
    if (pKnown == nullptr || pKnown->bToken != bIsToken) {
        *pVariable = 0;
        return ExpectedDeclared(line, !m_schema.variables.empty(),
                                bIsToken ? "a token variable" : "a mark variable", "variables");
    }
    line.Next();
    return true;
}

void Operands::ReadBytes(Line& line, Bytes& bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        int byte = 0;
        if (!ReadNumber(line, count == 1 ? "a byte" : "five bytes", 0, 255, &byte)) return;
        bytes[i] = static_cast<unsigned char>(byte);
    }
    line.ExpectEnd();
}

bool Operands::IsPending(NodeId id, std::size_t i) const {
    return std::any_of(m_pending.begin(), m_pending.end(), [&](const Pending& pending) {
        return pending.node == id && pending.operand == i;
    });
}

void Operands::Resolve() {
    for (const Pending& pending : m_pending) {
        if (!pending.bLabel) continue;
        const auto found = m_labels.find(pending.text);
        Node& node = m_test.At(pending.node);
        if (found != m_labels.end()) {
            node.operands[pending.operand] = found->second;
        } else {
            m_diagnostics.Error(PlaceOf(node, pending.operand),
                                "expected a label of this test, found " + Shortened(pending.text));
        }
    }
    for (const Pending& pending : m_pending) {
        if (!pending.bLabel) ResolveValue(pending);
    }
}

// What the text means is up to the field on the other side of the comparison.
void Operands::ResolveValue(const Pending& pending) {
    const Node& node = m_test.At(pending.node);
    const Place place = PlaceOf(node, pending.operand);
    const bool bCompares = node.pInfo->operands[2] == OperandKind::value && !node.pInfo->bValue;
    const Node& other = m_test.At(node.operands[bCompares ? 3 - pending.operand : 0]);
    const int field = other.operands[0];
    std::string expected = "%stream.field:value, as nothing here tells the field";
    if (bCompares && other.pInfo != nullptr && other.pInfo->operands[0] == OperandKind::field) {
        const int stream = other.naming.stream;
        if (const auto number = m_schema.ValueOf(stream, field, pending.text, &expected)) {
            const NodeId value = m_test.AddShared(OpcodeOf("Enum"), *number,
                                                  {NameKind::value, stream, field}, place);
            m_test.At(pending.node).operands[pending.operand] = value;
            return;
        }
    }
    m_diagnostics.Error(place, "expected " + expected + ", found the text " +
                                   Shortened(Quoted(pending.text, true)));
}

}  // namespace mlds_testasm
