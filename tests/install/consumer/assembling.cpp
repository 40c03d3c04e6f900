// A small host that assembles a rule test of its own and runs it.
#include <cstdio>

#include "mlds/mlds.h"
#include "mlds/testasm/plexaschema.h"
#include "mlds/testasm/testasm.h"

namespace {

constexpr const char* kRules = R"(test a_vowel %phone
    focus f
f:      Adj at vowel
at:     Ptr ^at
vowel:  AngleBrkt is_a_or_o
is_a_or_o: Or is_a is_o
is_a:   Eq %phone.name 'a'
is_o:   Eq %phone.name 'o'
end
)";

}  // namespace

int main() {
    CPlexa plexa(nullptr);
    CStream* phones = plexa.pStream(plexa.AddStream("phone"));
    const char* const names[] = {"a", "h", "l", "o"};
    phones->AddField("name")->SetPossibleValues(names, 4);
    plexa.Initialize();
    CSyncMark* left = plexa.CreateSyncMark(phones);
    CSyncMark* right = plexa.CreateSyncMark(phones);
    phones->InsertStreamObj(left, phones->pGetFirstStreamObj(), nullptr);
    phones->InsertStreamObj(right, left, nullptr);
    if (!plexa.InsertString("[hola]", left, right)) return 1;

    CSyncMark* at = nullptr;
    CVarList variables(&plexa);
    variables.AddSyncMarkPtr("at", &at);
    const mlds_testasm::Assembler assembler(mlds_testasm::SchemaOf(plexa, &variables));
    const mlds_testasm::Assembly rules = assembler.Assemble(kRules, "rules");
    std::fputs(rules.diagnostics().Text().c_str(), stderr);
    if (!rules.ok()) return 1;

    // Asked at the mark before every token.
    std::printf("vowels:");
    for (CStreamObj* object = phones->pGetFirstStreamObj(); object != nullptr;
         object = object->GetAdjacentStreamObj(sdRight)) {
        if (object->GetObjectType() != otToken) continue;
        at = static_cast<CSyncMark*>(object->GetAdjacentStreamObj(sdLeft));
        if (plexa.Test("a_vowel", rules.instructions(), rules.base("a_vowel"))) {
            std::printf(" %s", static_cast<CToken*>(object)->GetFieldValueString(0));
        }
    }
    std::printf("\n");
    return 0;
}
