// Texts that may begin at a place, found all at once.
#include "text/prefixtree.h"

namespace mlds::rules {

namespace {

std::uint64_t EdgeKey(int node, char32_t c) {
    return (static_cast<std::uint64_t>(node) << 21) | c;
}

}  // namespace

int PrefixTree::Child(int node, char32_t c) const {
    if (node == 0 && c < kDirect) return m_first[c];
    const auto child = m_children.find(EdgeKey(node, c));
    return child == m_children.end() ? 0 : child->second;
}

int PrefixTree::Add(std::u32string_view text, int value) {
    if (text.empty()) return -1;
    int node = 0;
    for (const char32_t c : text) {
        int child = Child(node, c);
        if (child == 0) {
            child = static_cast<int>(m_nodes.size());
            m_nodes.emplace_back();
            m_nodes[static_cast<std::size_t>(node)].bLeaf = false;
            if (node == 0 && c < kDirect) {
                m_first[c] = child;
            } else {
                m_children.emplace(EdgeKey(node, c), child);
            }
        }
        node = child;
    }
    int& held = m_nodes[static_cast<std::size_t>(node)].value;
    if (held < 0) held = value;
    return held;
}

void PrefixTree::Find(std::u32string_view text, std::vector<Hit>& hits) const {
    hits.clear();
    int node = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        node = Child(node, text[at]);
        if (node == 0) return;
        const Node& reached = m_nodes[static_cast<std::size_t>(node)];
        if (reached.value >= 0) hits.push_back({reached.value, static_cast<int>(at) + 1});
        if (reached.bLeaf) return;
    }
}

}  // namespace mlds::rules
