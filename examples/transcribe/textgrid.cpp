// Praat's format for annotated time: the long text form.
#include "textgrid.h"

#include <cstdio>
#include <ostream>

namespace transcribe {

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

void WriteTier(const TimedTier& tier, std::size_t number, std::ostream& out) {
    out << "    item [" << number << "]:\n"
        << "        class = \"IntervalTier\"\n"
        << "        name = " << Quoted(tier.name) << '\n'
        << "        xmin = 0\n"
        << "        xmax = " << Seconds(tier.labels.back().end) << '\n'
        << "        intervals: size = " << tier.labels.size() << '\n';
    std::size_t i = 0;
    for (const TimedLabel& label : tier.labels) {
        out << "        intervals [" << ++i << "]:\n"
            << "            xmin = " << Seconds(label.begin) << '\n'
            << "            xmax = " << Seconds(label.end) << '\n'
            << "            text = " << Quoted(label.text) << '\n';
    }
}

}  // namespace

void WriteTextGrid(const std::vector<TimedTier>& timeline, std::ostream& out) {
    out << "File type = \"ooTextFile\"\n"
        << "Object class = \"TextGrid\"\n\n"
        << "xmin = 0\n"
        << "xmax = " << Seconds(timeline.front().labels.back().end) << '\n'
        << "tiers? <exists>\n"
        << "size = " << timeline.size() << '\n'
        << "item []:\n";
    std::size_t number = 0;
    for (const TimedTier& tier : timeline) WriteTier(tier, ++number, out);
}

}  // namespace transcribe
