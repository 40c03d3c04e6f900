// A small host: one stream, filled from text and printed.
#include <cstdio>
#include <cstring>
#include <new>

#include "mlds/mlds.h"

namespace {

int Fail(const char* what) {
    std::fprintf(stderr, "consumer: %s\n", what);
    return 1;
}

}  // namespace

int main() {
    std::printf("mlds %s\n", MLDS_VERSION);
    CPlexa plexa(nullptr);
    CStream* phones = plexa.pStream(plexa.AddStream("phone"));
    if (phones == nullptr) return Fail("no stream");

    const char* const names[] = {"a", "h", "l", "o"};
    CField* name = phones->AddField("name");
    if (name == nullptr) return Fail("no field");
    name->SetPossibleValues(names, 4);
    plexa.Initialize();

    // Tokens stand between marks of their own, never beside an end of the stream.
    CSyncMark* left = plexa.CreateSyncMark(phones);
    CSyncMark* right = plexa.CreateSyncMark(phones);
    if (!phones->InsertStreamObj(left, phones->pGetFirstStreamObj(), nullptr) ||
        !phones->InsertStreamObj(right, left, nullptr)) {
        return Fail("the marks were refused");
    }
    if (!plexa.InsertString("[hola]", left, right)) return Fail("the text was refused");

    const char* tiers = phones->GetStr(nullptr, nullptr, true);
    std::printf("%s\n", tiers);
    if (std::strcmp(tiers, "||h|o|l|a||") != 0) return Fail("expected ||h|o|l|a||");

    // A token beside the start of the stream is refused, and the logger is told.
    okuLog.m_nLevel = 1;
    CToken* token = new (std::nothrow) CToken(phones, "a");
    if (phones->InsertStreamObj(token, phones->pGetFirstStreamObj(), nullptr)) {
        return Fail("a token was taken beside the start of the stream");
    }
    CStream::DiscardStreamObj(token);
    return 0;
}
