// Files with what an utterance is like over time.
#include "timefiles.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "latin1.h"
#include "svg.h"
#include "textgrid.h"

namespace transcribe {

namespace {

template <typename Writer>
bool WriteFile(const std::filesystem::path& path, Writer write) {
    errno = 0;
    std::ofstream out(path, std::ios::binary);
    write(out);
    if (out.flush()) return true;
    std::cerr << "transcribe: " << path.string() << ": " << std::strerror(errno) << '\n';
    return false;
}

}  // namespace

// Files of one name may come from several folders, and a long line in parts.
std::string TimeFiles::NameFor(const std::string& path, int line) {
    const std::string stem = path == "-" ? "stdin" : std::filesystem::path(path).stem().string();
    const std::string name = stem + '-' + std::to_string(line);
    std::string unused = name;
    for (int n = 2; !m_names.insert(unused).second; ++n) unused = name + '-' + std::to_string(n);
    return unused;
}

bool TimeFiles::Write(Tiers& tiers, const std::string& path, int line) {
    if (m_textGridFolder.empty() && m_svgFolder.empty()) return true;
    const std::string name = NameFor(path, line);
    const std::vector<TimedTier> timeline = Timeline(tiers);
    if (timeline.front().labels.empty()) {
        std::cerr << "transcribe: " << name << ": nothing is spoken, so there is no time to show\n";
        return true;
    }
    bool bAll = true;
    if (!m_textGridFolder.empty()) {
        bAll &= WriteFile(std::filesystem::path(m_textGridFolder) / (name + ".TextGrid"),
                          [&](std::ostream& out) { WriteTextGrid(timeline, out); });
    }
    if (!m_svgFolder.empty()) {
        const std::string title = ToUtf8(tiers.pRaw->GetStr(nullptr, nullptr, false));
        bAll &= WriteFile(std::filesystem::path(m_svgFolder) / (name + ".svg"),
                          [&](std::ostream& out) { WriteSvg(timeline, title, out); });
    }
    return bAll;
}

}  // namespace transcribe
