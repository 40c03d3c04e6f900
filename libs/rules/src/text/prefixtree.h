// Texts that may begin at a place, found all at once.
#ifndef MLDS_RULES_PREFIXTREE_H
#define MLDS_RULES_PREFIXTREE_H

#include <array>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace mlds::rules {

/// A set of texts with a value each.
class PrefixTree {
public:
    struct Hit {
        int value = -1;
        int length = 0;  ///< in code points
    };

    /// The value that holds for the text: this one, or that of the first who added it.
    int Add(std::u32string_view text, int value);
    bool empty() const { return m_nodes.size() == 1; }
    /// All texts that `text` begins with, the shortest first.
    void Find(std::u32string_view text, std::vector<Hit>& hits) const;

private:
    struct Node {
        int value = -1;
        bool bLeaf = true;
    };
    int Child(int node, char32_t c) const;

    // Nearly every look-up is at the root, and most scripts' letters lie here.
    static constexpr char32_t kDirect = 0x600;
    std::vector<Node> m_nodes = std::vector<Node>(1);
    std::array<int, kDirect> m_first{};
    std::unordered_map<std::uint64_t, int> m_children;
};

}  // namespace mlds::rules

#endif
