// What an engine could send to a viewer: any bytes, and any texts behind the codes of messages. The
// mirror stays whole, and everything that is made of it can be made.
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "journal.h"
#include "terminal.h"

namespace {

using namespace mlds_viewer;

void Expect(bool bTrue, const char* what) {
    if (bTrue) return;
    std::cerr << what << '\n';
    std::abort();
}

void ReadAsBytes(std::string_view bytes) {
    MessageReader reader;
    try {
        for (std::size_t i = 0; i < bytes.size(); i += 7) {
            reader.Add(bytes.substr(i, 7));
            while (reader.TakeMessage()) {
            }
        }
    } catch (const ProtocolError&) {
    }
}

// The chains hold every object once, and lead back.
void Check(const Mirror& mirror) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < mirror.streams().size(); ++i) {
        Id left = 0;
        for (const Id id : mirror.Chain(static_cast<int>(i))) {
            const Object& object = *mirror.Find(id);
            Expect(object.left == left && object.chain == static_cast<int>(i), "a broken chain");
            left = id;
            ++n;
        }
        Expect(mirror.streams()[i].last == left, "a wrong end");
    }
    Expect(n == mirror.nObjects(), "objects in no chain");
}

// Lines: a letter for the code, and the text.
void ReadAsMessages(std::string_view text) {
    Journal journal;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\f'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.empty()) continue;
        journal.Add({1000 + (line.front() - 'a') % 14, std::string(line.substr(1))});
        Check(journal.now());
    }
    TiersText(journal.now(), 40);
    StreamsText(journal.now());
    VariablesText(journal.now());
    Check(*Rebuild(journal.ExcerptAt(journal.last() / 2)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ReadAsBytes(bytes);
    ReadAsMessages(bytes);
    return 0;
}
