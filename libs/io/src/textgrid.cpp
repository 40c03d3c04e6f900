// Praat's format for annotated time: the long text form.
#include "mlds/io/textgrid.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <ostream>

#include "spool.h"

namespace mlds::io {

namespace {

std::string Seconds(double milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", milliseconds / 1000);
    std::string seconds = text;
    seconds.erase(seconds.find_last_not_of('0') + 1);
    if (seconds.back() == '.') seconds.pop_back();
    return seconds;
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

}  // namespace

struct TextGrid::Parts {
    struct Tier {
        std::string name;
        std::size_t nLabels = 0;
        Spool labels;
    };
    std::deque<Tier> tiers;
    double end = 0;
};

TextGrid::TextGrid() : m_pParts(std::make_unique<Parts>()) {}
TextGrid::~TextGrid() = default;

bool TextGrid::empty() const {
    return m_pParts->tiers.empty();
}

void TextGrid::Add(const Timeline& timeline) {
    if (timeline.end <= 0) return;
    std::deque<Parts::Tier>& tiers = m_pParts->tiers;
    if (tiers.empty()) {
        for (const TimedTier& timed : timeline.tiers) tiers.emplace_back().name = timed.name;
    }
    const double offset = m_pParts->end;
    for (std::size_t i = 0; i < std::min(tiers.size(), timeline.tiers.size()); ++i) {
        for (const TimedLabel& label : timeline.tiers[i].labels) {
            std::string text;
            text += "        intervals [" + std::to_string(++tiers[i].nLabels) + "]:\n";
            text += "            xmin = " + Seconds(offset + label.begin) + '\n';
            text += "            xmax = " + Seconds(offset + label.end) + '\n';
            text += "            text = " + Quoted(label.text) + '\n';
            tiers[i].labels.Append(text);
        }
    }
    m_pParts->end += timeline.end;
}

void TextGrid::Write(std::ostream& out) {
    const std::string end = Seconds(m_pParts->end);
    out << "File type = \"ooTextFile\"\n"
        << "Object class = \"TextGrid\"\n\n"
        << "xmin = 0\n"
        << "xmax = " << end << '\n'
        << "tiers? <exists>\n"
        << "size = " << m_pParts->tiers.size() << '\n'
        << "item []:\n";
    std::size_t number = 0;
    for (Parts::Tier& tier : m_pParts->tiers) {
        out << "    item [" << ++number << "]:\n"
            << "        class = \"IntervalTier\"\n"
            << "        name = " << Quoted(tier.name) << '\n'
            << "        xmin = 0\n"
            << "        xmax = " << end << '\n'
            << "        intervals: size = " << tier.nLabels << '\n';
        tier.labels.CopyTo(out);
    }
    m_pParts = std::make_unique<Parts>();
}

}  // namespace mlds::io
