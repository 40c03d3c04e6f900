// A small host that prints its tiers aligned.
#include <iostream>

#include "mlds/io/aligned.h"
#include "mlds/mlds.h"

int main() {
    CPlexa plexa(nullptr);
    CStream* phones = plexa.pStream(plexa.AddStream("phone"));
    const char* const names[] = {"a", "l", "o"};
    phones->AddField("name")->SetPossibleValues(names, 3);
    plexa.Initialize();
    CSyncMark* left = plexa.CreateSyncMark(phones);
    CSyncMark* right = plexa.CreateSyncMark(phones);
    phones->InsertStreamObj(left, phones->pGetFirstStreamObj(), nullptr);
    phones->InsertStreamObj(right, left, nullptr);
    if (!plexa.InsertString("[ola]", left, right)) return 1;
    mlds::io::PrintAligned(mlds::io::ViewOf(plexa), std::cout);
    return 0;
}
