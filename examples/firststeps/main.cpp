// First steps with mlds: three tiers, text in them, a rule with its test and its edit, a picture.
#include <mlds/mlds.h>
#include <mlds/testasm/plexaschema.h>
#include <mlds/testasm/testasm.h>

#include <cstdio>
#include <initializer_list>
#include <string>

// When the rule applies: to an s with a vowel on either side. Both contexts begin behind the s, so
// that to the left it comes first, as a token that may be any.
constexpr const char* kRules = R"(
test s_between_vowels %phone
    focus s
    left  before
    right vowel
s:      Adj at is_s
at:     Ptr ^at                          ; where the host asks
is_s:   NameEq %phone.name 's' then stop
stop:   AssignPtr ^end                   ; what the host learns
before: AngleBrkt then vowel
vowel:  Eq %phone.vowel 'yes'
end
)";

// A stream whose tokens have one of the names.
static CStream* Declare(CPlexa& plexa, const char* name, std::initializer_list<const char*> names) {
    CStream* stream = plexa.pStream(plexa.AddStream(name));
    stream->AddField("name")->SetPossibleValues(names.begin(), static_cast<int>(names.size()));
    return stream;
}

// A row, with a column for every mark of the letters; what is tied to the mark stands in it.
static void Print(CStream* stream, CSyncMark* letterMark) {
    std::string row;
    for (std::size_t column = 0; letterMark->GetNextStreamObj() != nullptr; column += 2) {
        if (row.size() <= column) row.resize(column + 1, ' ');
        if (CSyncMark* mark = letterMark->GetCorrespondingSyncMark(stream)) {
            row[column] = '|';
            CStreamObj* next = mark->GetNextStreamObj();
            if (next->GetObjectType(otToken)) row += static_cast<CToken*>(next)->GetNameField();
        }
        letterMark = letterMark->GetNextSyncMark();
    }
    std::printf("%-6s%s\n", stream->GetStreamName(), row.c_str());
}

int main() {
    // The schema. A phone's name says whether it is a vowel: the first set that holds the name
    // does.
    CPlexa plexa(nullptr);
    CStream* word = Declare(plexa, "word", {"casa"});
    CStream* inp = Declare(plexa, "inp", {"a", "c", "s"});
    CStream* phone = Declare(plexa, "phone", {"a", "k", "s", "z"});
    CField* vowel = phone->AddField("vowel");
    const char* const yesOrNo[] = {"yes", "no"};
    vowel->SetPossibleValues(yesOrNo, 2);
    vowel->CreateFieldValueSet("yes")->AddIncludeValue("a");
    vowel->CreateFieldValueSet("no")->AddExcludeValue("a");
    plexa.Initialize();

    // Text: a word between two marks, its letters, a phone for each of them. The marks that are
    // given are carried into the stream that is filled: so the tiers get tied.
    CSyncMark* left = plexa.CreateSyncMark(word);
    CSyncMark* right = plexa.CreateSyncMark(word);
    word->InsertStreamObj(left, word->pGetFirstStreamObj(), nullptr);
    word->InsertStreamObj(right, left, nullptr);
    plexa.InsertString("%word 'casa'", left, right);
    plexa.InsertString("{casa}", left, right);
    CSyncMark* const firstLetter = left->GetCorrespondingSyncMark(inp);
    CSyncMark* letter = firstLetter;
    for (const char* text : {"[k]", "[a]", "[s]", "[a]"}) {
        CSyncMark* next = letter->GetNextSyncMark();
        plexa.InsertString(text, letter, next);
        letter = next;
    }
    for (CStream* stream : {word, inp, phone}) Print(stream, firstLetter);

    // The rule's test, assembled for this container and these variables.
    CSyncMark* at = nullptr;
    CSyncMark* end = nullptr;
    CVarList variables(&plexa);
    variables.AddSyncMarkPtr("at", &at);
    variables.AddSyncMarkPtr("end", &end);
    const mlds_testasm::Assembler assembler(mlds_testasm::SchemaOf(plexa, &variables));
    const mlds_testasm::Assembly rules = assembler.Assemble(kRules, "rules");
    if (!rules.ok()) std::fputs(rules.diagnostics().Text().c_str(), stderr);
    const int base = rules.base("s_between_vowels");

    // Wherever it holds, the rule's edit.
    for (at = left->GetCorrespondingSyncMark(phone); at != nullptr; at = at->GetNextSyncMark()) {
        if (!plexa.Test("s_between_vowels", rules.instructions(), base)) continue;
        std::printf("\ns becomes z behind %s\n", phone->GetStr(nullptr, at, false));
        plexa.InsertString("[z]", at, end);
    }
    for (CStream* stream : {word, inp, phone}) Print(stream, firstLetter);
}
