// Statements that are one line.
#include "syntax/statements.h"

#include "syntax/elements.h"

namespace mlds::rules::syntax {

namespace {

Language ReadLanguage(Cursor& cursor) {
    return {cursor.ExpectToken("the name of a language, such as es or \"pt_BR\"")};
}

void ExpectAs(Cursor& cursor) {
    if (!cursor.TakeWord("as")) cursor.Expected("'as' and what it is read as");
}

Read ReadRead(Cursor& cursor) {
    Read read;
    read.from = cursor.ExpectToken("characters of the text behind 'read'");
    ExpectAs(cursor);
    read.to = cursor.ExpectToken("the characters that they are read as");
    return read;
}

Lexicon ReadLexicon(Cursor& cursor) {
    Lexicon lexicon;
    lexicon.file = cursor.ExpectText("the name of a file in quotes");
    cursor.ExpectSign(':', "':' behind the file's name, as in lexicon \"es.lex\" : word -> phone");
    lexicon.from = cursor.ExpectName("the tier of the words");
    if (!cursor.Is(Lex::arrow)) cursor.Expected("'->' between the two tiers");
    cursor.Next();
    lexicon.to = cursor.ExpectName("the tier that is filled from the lexicon");
    return lexicon;
}

template <typename Definition>
Definition ReadDefinition(Cursor& cursor, const std::string& what) {
    Definition definition;
    definition.name = cursor.ExpectName("the name of the " + what);
    cursor.ExpectSign('=', "'=' behind the name of the " + what);
    definition.pattern = ReadWholePattern(cursor);
    return definition;
}

Statement ReadShow(Cursor& cursor) {
    const Word tier = cursor.ExpectName("the name of a tier behind 'show'");
    if (cursor.TakeWord("by"))
        return ShowBy{tier, cursor.ExpectName("the name of a tier behind 'by'")};
    if (!cursor.TakeWord("with")) cursor.Expected("'with' and a mark, or 'by' and a tier");
    ShowMark show;
    show.tier = tier;
    show.mark = cursor.ExpectToken("a mark behind 'with'");
    show.bBefore = cursor.IsWord("before");
    if (!show.bBefore && !cursor.IsWord("after"))
        cursor.Expected("'before' or 'after' behind the mark");
    cursor.Next();
    show.condition = ReadCondition(cursor);
    if (cursor.TakeWord("in")) {
        if (!cursor.TakeWord("ipa")) cursor.Expected("'ipa' behind 'in'");
        show.bIpa = true;
    }
    return show;
}

Ipa ReadIpa(Cursor& cursor) {
    Ipa ipa;
    ipa.tier = cursor.ExpectName("the name of a tier behind 'ipa'");
    cursor.ExpectSign(':', "':' behind the tier's name");
    do {
        Ipa::Entry entry;
        entry.token = cursor.ExpectToken("a token of the tier");
        cursor.ExpectSign('=', "'=' behind the token");
        entry.text = cursor.ExpectToken("what the token is written as in IPA");
        ipa.entries.push_back(std::move(entry));
    } while (cursor.TakeSign('|'));
    if (!cursor.AtEnd()) cursor.Expected("'|' between two tokens");
    return ipa;
}

Include ReadInclude(Cursor& cursor) {
    return {cursor.ExpectText("the name of a file in quotes")};
}

}  // namespace

Statement ReadOneLine(std::string_view keyword, const Line& line) {
    if (keyword == "assert") return ReadAssert(line);
    Cursor cursor = PatternCursor(line);
    cursor.Next();
    const auto Ended = [&](Statement statement) {
        cursor.ExpectEnd();
        return statement;
    };
    if (keyword == "language") return Ended(ReadLanguage(cursor));
    if (keyword == "read") return Ended(ReadRead(cursor));
    if (keyword == "lexicon") return Ended(ReadLexicon(cursor));
    if (keyword == "class") return ReadDefinition<ClassDefinition>(cursor, "class");
    if (keyword == "pattern") return ReadDefinition<PatternDefinition>(cursor, "pattern");
    if (keyword == "show") return Ended(ReadShow(cursor));
    if (keyword == "ipa") return ReadIpa(cursor);
    return Ended(ReadInclude(cursor));
}

}  // namespace mlds::rules::syntax
