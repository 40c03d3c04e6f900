// From a file to its statements.
#include <algorithm>

#include "nearestname.h"
#include "syntax/elements.h"
#include "syntax/statements.h"

namespace mlds::rules::syntax {

namespace {

const std::vector<std::string> kStatements = {"language", "read",    "tier",   "lexicon",
                                              "class",    "pattern", "show",   "ipa",
                                              "block",    "assert",  "include"};
bool Holds(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// ---- blocks ----

// In any order, each once: who reads the head of a block does not care which comes first.
void ReadOption(Cursor& cursor, Block* pBlock) {
    const bool bFirst = cursor.IsWord("first");
    if (cursor.IsWord("within") && !pBlock->within) {
        cursor.Next();
        pBlock->within = cursor.ExpectName("the name of a tier behind 'within'");
    } else if ((bFirst || cursor.IsWord("each")) && !pBlock->first.has_value()) {
        cursor.Next();
        pBlock->first = bFirst;
    } else if (cursor.IsWord("leftward") && !pBlock->bLeftward) {
        cursor.Next();
        pBlock->bLeftward = true;
    } else {
        cursor.ExpectedWord("'within TIER', 'first' or 'each', 'leftward' or the end of the line",
                            {"within", "first", "each", "leftward"});
    }
}

void ReadBlockHead(Cursor& cursor, Block* pBlock) {
    const Span begin = cursor.Next().word.span;
    const char* const kForm = "as in block sounds : letters -> phone";
    pBlock->name = cursor.ExpectName("the name of the block", kForm);
    pBlock->span = cursor.Since(begin);
    cursor.ExpectSign(':', "':' behind the block's name", kForm);
    pBlock->from = cursor.ExpectName("the tier of the block");
    if (cursor.Is(Lex::arrow)) {
        cursor.Next();
        pBlock->to = cursor.ExpectName("the tier that the block fills, behind '->'");
    }
    while (!cursor.AtEnd()) ReadOption(cursor, pBlock);
    pBlock->span = cursor.Since(begin);
}

// ---- what stands outside of everything ----

bool HasAction(const std::vector<Lexeme>& lexemes) {
    return std::any_of(lexemes.begin(), lexemes.end(), [](const Lexeme& lexeme) {
        return lexeme.kind == Lex::arrow || lexeme.kind == Lex::assign ||
               (lexeme.kind == Lex::sign && lexeme.sign == '~');
    });
}

std::string MessageOfStranger(const std::vector<Lexeme>& lexemes) {
    const Lexeme& first = lexemes.front();
    if (first.kind == Lex::word && Holds(TierPartNames(), first.word.text)) {
        return Described(first) + " stands indented below its tier";
    }
    if (HasAction(lexemes)) return "a rule stands indented below its block";
    // As comments of other languages begin.
    const bool bComment = first.kind == Lex::sign && (first.sign == '#' || first.sign == '/');
    return "expected a statement (tier, block, class, ...), found " + Described(first) +
           (bComment ? "; a comment begins with ';'" : "");
}

// ---- the file ----

class FileReader {
public:
    FileReader(const Sources& sources, int file, Diagnostics& diagnostics)
        : m_reporter(sources, file, diagnostics) {}

    File Read() {
        for (const StatementLines& lines : SplitStatements(m_reporter)) {
            if (lines.bUnread) continue;
            try {
                ReadStatement(lines);
            } catch (const Fault& fault) {
                m_reporter.Report(fault);
            }
        }
        return std::move(m_file);
    }

private:
    void ReadStatement(const StatementLines& lines) {
        if (lines.number == 0) {
            const Line line = SplitParts(m_reporter, lines).front();
            throw Fault{Lexer(line).Next().word.span,
                        "an indented line belongs to the statement above it, and there is none"};
        }
        // What continues it belongs to some statements only, so the first line says which it is.
        const Line head = HeadLine(m_reporter, lines, 0);
        const Lexeme first = Lexer(head).Next();
        std::string keyword = first.kind == Lex::word ? first.word.text : std::string();
        if (!Holds(kStatements, keyword)) {
            keyword = ReportStranger(head, first);
            if (keyword.empty()) return;
        } else {
            m_bStrangerBefore = false;
        }
        if (keyword == "tier") {
            Keep(ReadTier(lines, m_reporter));
        } else if (keyword == "block") {
            Keep(ReadBlock(lines, m_reporter));
        } else {
            const Line whole = HeadLine(m_reporter, lines, lines.indented.size());
            m_file.statements.push_back(ReadOneLine(keyword, whole));
        }
    }

    template <typename Kind>
    void Keep(std::optional<Kind> statement) {
        if (statement) m_file.statements.push_back(std::move(*statement));
    }

    // The keyword that was meant: the statement is read as that, so that its parts are not lost and
    // nothing is reported that only follows from the misspelling.
    std::string ReportStranger(const Line& head, const Lexeme& first) {
        const std::vector<Lexeme> lexemes = Lexemes(head);
        const std::string& word = first.word.text;
        const bool bNameBehind =
            lexemes.size() > 1 && (lexemes[1].kind == Lex::word || lexemes[1].kind == Lex::text);
        // "blok -> x" is a rule that stands in the wrong place.
        if (first.kind == Lex::word && bNameBehind && !Holds(TierPartNames(), word)) {
            const std::string keyword(NearestName(word, kStatements));
            if (!keyword.empty()) {
                m_reporter.Report({first.word.span, "there is no statement '" + word + "'" +
                                                        DidYouMean(word, kStatements)});
                m_reporter.Mute(first.word.span.line);
                m_bStrangerBefore = false;
                return keyword;
            }
        }
        // Rules that stand below each other without indentation are one fault.
        if (!m_bStrangerBefore || !HasAction(lexemes)) {
            m_reporter.Report({first.word.span, MessageOfStranger(lexemes)});
        }
        m_bStrangerBefore = HasAction(lexemes);
        return {};
    }

    Reporter m_reporter;
    File m_file;
    bool m_bStrangerBefore = false;
};

}  // namespace

bool IsStatementName(std::string_view word) {
    return Holds(kStatements, word);
}

std::optional<Block> ReadBlock(const StatementLines& lines, Reporter& reporter) {
    Block block;
    try {
        Cursor cursor(Lexemes(HeadLine(reporter, lines, 0)));
        ReadBlockHead(cursor, &block);
    } catch (const Fault& fault) {
        reporter.Report(fault);
    }
    for (const Line& line : SplitParts(reporter, lines)) {
        for (Rule& rule : ReadRules(line, reporter)) block.rules.push_back(std::move(rule));
    }
    // Its rules were read all the same, for what is wrong in them.
    if (!block.name || !block.from) return std::nullopt;
    return block;
}

File ReadFile(const Sources& sources, int file, Diagnostics& diagnostics) {
    return FileReader(sources, file, diagnostics).Read();
}

}  // namespace mlds::rules::syntax
