// What comes from a viewer: packets of any bytes, read in any order, and requests of any bytes, cut
// anywhere, to a container that is connected.
#include <vector>

#include "input.h"
#include "support/tiers.h"
#include "viewer/fakeviewer.h"

using mlds_fuzz::Input;
using mlds_fuzz::Require;

namespace {

constexpr std::size_t kMostBytes = 600;

// Reads a packet by operators in any order. What is read is inside, and the cursor only grows.
void ReadPacket(Input in, std::vector<char> bytes) {
    CPacket packet(bytes.data(), static_cast<unsigned int>(bytes.size()));
    CPacket other(static_cast<unsigned int>(bytes.size() / 2));
    std::vector<char> text(bytes.size() + 1);
    while (!in.IsOver()) {
        char c = 0, *pText = text.data();
        short s = 0;
        int i = 0;
        long l = 0;
        unsigned long u = 0;
        switch (in.Below(12)) {
            case 0: packet >> c; break;
            case 1: packet >> s; break;
            case 2: packet >> i; break;
            case 3: packet >> l; break;
            case 4: packet >> u; break;
            case 5: packet >> pText; break;
            case 6: packet << i << c << s << "text"; break;
            case 7: packet.AddData(text.data(), static_cast<int>(in.Byte())); break;
            case 8: other = packet; break;
            case 9: packet = other; break;
            case 10: packet = CPacket(packet); break;
            case 11: packet.Reset();
        }
        const int size = packet.GetItemSize();
        Require(size >= 0 && static_cast<std::size_t>(size) < text.size(), "an item is too long");
        packet.GetItemType();
    }
}

// Sends the bytes in pieces, and polls after each.
void SendRequests(Input in, const std::vector<char>& bytes) {
    static mlds_test::FakeViewer viewer;
    static const mlds_test::ConfigFolder folder(viewer.Config());
    mlds_test::Tiers t{{"p", "||a|b||", {"a", "b"}}, {"q", "||x||"}};
    CStream* pStream = t["p"];
    pStream->AddField("stress")->SetFieldType(fvInt);
    pStream->AddField("pitch")->SetFieldType(fvFloat);
    mlds_test::Fill(pStream, "||a|b||");
    if (!t.plexa.StartMessageEngine()) return;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t n = std::min<std::size_t>(bytes.size() - at, 1 + in.Byte());
        viewer.Request({bytes.data() + at, n});
        at += n;
        t.plexa.ProcessRecvMsg();
        if (in.Below(8) == 0 && pStream->GetNumTokens() > 0)
            pStream->RemoveStreamObj(mlds_test::Object(pStream, 1), true);
        viewer.Take();
        // The viewer may have said goodbye.
        t.plexa.sendMessage("still there?");
        if (viewer.Take().empty()) break;
    }
    const std::string wrong = mlds_test::CheckStructure(t.plexa, {.bTokensApart = false});
    Require(wrong.empty(), wrong);
}

}  // namespace

// The first byte says what is fuzzed, the second how many bytes steer it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > kMostBytes) return 0;
    const std::size_t nSteering = std::min<std::size_t>(data[1], size - 2);
    const Input in(data + 2, nSteering);
    const std::vector<char> bytes(data + 2 + nSteering, data + size);
    data[0] % 2 == 0 ? ReadPacket(in, bytes) : SendRequests(in, bytes);
    return 0;
}
