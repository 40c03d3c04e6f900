// Packets: items as bytes, and what is made of bytes that are none.
#include <gmock/gmock.h>

#include "mlds/mlds.h"
#include "viewer/fakeviewer.h"

using namespace mlds_test;

namespace {

Bytes Written(CPacket& packet) {
    return {reinterpret_cast<char*>(packet.GetData()), static_cast<std::size_t>(packet.GetSize())};
}

CPacket Over(Bytes bytes) {
    return {bytes.data(), static_cast<unsigned int>(bytes.size())};
}

TEST(Packet, WritesItems) {
    CPacket packet(200);
    char bytes[] = "\x01\x00\xff";
    packet << 1004 << "abc" << -2 << 0x1234567ul << "";
    packet.AddData(bytes, 3);
    EXPECT_EQ(Written(packet), IntItem(1004) + TextItem("abc") + IntItem(0xFFFFFFFE) +
                                   IntItem(0x1234567) + TextItem("") + Word(24) + Word(3) +
                                   Bytes(bytes, 3));
    EXPECT_EQ(packet.GetItemType(), 0) << "at its end";

    packet.Reset();  // the high-order bytes of chars and shorts
    packet << 'a' << '\x80' << short{0x1234} << short{-1};
    EXPECT_EQ(Written(packet), Word(17) + Bytes("\0", 1) + Word(17) + "\xff" + Word(2) +
                                   Bytes("\0\0", 2) + Word(2) + "\xff\xff");
    packet.Reset();
    packet << static_cast<const char*>(nullptr);
    packet.AddData(nullptr, 3);
    packet.AddData(bytes, -1);
    EXPECT_EQ(Written(packet), TextItem("")) << "null is a text without characters";
}

TEST(Packet, DropsWhatDoesNotFit) {
    CPacket one(8), text(12), none(0);
    one << 1 << 2;
    EXPECT_EQ(Written(one), IntItem(1));
    text << "12345"
         << "1234" << 1;
    EXPECT_EQ(Written(text), TextItem("1234"));
    none << 1;
    EXPECT_EQ(none.GetSize(), 0);
    // An item that takes the place of one that was read counts as well, but no byte is beyond.
    CPacket used = Over(IntItem(1));
    used << 2 << 3;
    EXPECT_EQ(used.GetSize(), 16);
    CPacket copy(used);
    int value = 0;
    copy >> value;
    EXPECT_EQ(value, 2);
    copy >> value;
    EXPECT_EQ(value, 0);
}

TEST(Packet, ReadsItemsInOrder) {
    CPacket packet = Over(IntItem(0xFFFFFFFF) + IntItem(0xFFFFFFFF) + IntItem(7) + TextItem("ab") +
                          Word(17) + "z" + Word(2) + "\x01\x02" + Word(24) + Word(2) + "xy");
    long l = 0;
    unsigned long u = 0;
    int i = 0;
    short s = 0;
    char c = 0, text[8] = "old", *pText = text;
    packet >> l >> u;
    EXPECT_EQ(l, -1);
    EXPECT_EQ(u, 0xFFFFFFFF);
    EXPECT_EQ(packet.GetItemSize(), 0);
    packet >> pText >> s;  // neither is next
    EXPECT_STREQ(text, "");
    EXPECT_EQ(s, 0);
    packet >> i;
    EXPECT_EQ(packet.GetItemSize(), 2);
    packet >> pText >> c >> s >> u;
    EXPECT_STREQ(text, "ab");
    EXPECT_EQ(i * 1000 + c, 7000 + 'z');
    EXPECT_EQ(s, 0x0102);
    EXPECT_EQ(u, 0u) << "data can only be looked at";
    EXPECT_EQ(packet.GetItemType(), 24);
    EXPECT_EQ(packet.GetItemSize(), 2);
    CPacket other = Over(IntItem(5) + IntItem(6));
    other >> i >> i;
    other = packet;
    other >> i;
    EXPECT_EQ(i, -1) << "from the start";
}

// Every beginning of a packet, in memory of just that size.
TEST(Packet, ReadsNothingThatIsNotThere) {
    for (const Bytes& whole : {IntItem(5), TextItem("ab"), Word(17) + "z", Word(2) + "ab",
                               Word(24) + Word(3) + "abc", Word(8) + Word(0xFFFFFFFF)}) {
        for (std::size_t n = 0; n < whole.size(); ++n) {
            CPacket packet = Over(whole.substr(0, n));
            int i = 9;
            short s = 9;
            char c = 9, text[8] = "old", *pText = text;
            packet >> i >> s >> c >> pText;
            EXPECT_TRUE(i == 0 && s == 0 && c == 0 && text[0] == '\0') << n;
            EXPECT_EQ(packet.GetItemSize(), 0) << n;
            EXPECT_EQ(packet.GetItemType() != 0, n >= 4) << n;
        }
    }
    CPacket none(nullptr, 5);
    EXPECT_EQ(none.GetSize(), 0);
}

}  // namespace
