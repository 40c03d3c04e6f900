// Where what was made of utterances goes.
#include "outputs.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "mlds/io/svg.h"
#include "program.h"

namespace mlds_program {

namespace {

// A text in another script than the rules' has nothing but faults.
constexpr std::size_t kMostFaults = 3;

template <typename Writer>
bool WriteFile(const std::filesystem::path& path, Writer write) {
    errno = 0;
    std::ofstream out(path, std::ios::binary);
    if (out) write(out);
    out.close();
    if (out) return true;
    Complain("cannot write " + path.string() + ": " + Reason());
    return false;
}

}  // namespace

void Outputs::Say(const std::string& message) {
    m_progress.Clear();
    std::cerr << message << '\n';
}

void Outputs::SayFaults(const Utterance& utterance, const Rendered& rendered) {
    const char* severity = rendered.bDone ? ": warning: " : ": error: ";
    const std::size_t n = rendered.faults.size();
    for (std::size_t i = 0; i < std::min(n, kMostFaults); ++i) {
        const mlds::rules::TextFault& fault = rendered.faults[i];
        const std::size_t column = utterance.column + fault.column - 1;
        Say(utterance.place() + ':' + std::to_string(column) + severity + fault.what);
    }
    if (n > kMostFaults) {
        Say(utterance.place() + severity + "and " + std::to_string(n - kMostFaults) + " more");
    }
    if (rendered.bDone) return;
    m_bOk = false;
    if (!rendered.error.empty()) {
        Say(utterance.place() + ": error: " + rendered.error);
    } else if (n == 0) {
        Say(utterance.place() + ": error: the line could not be done");
    }
}

bool Outputs::Write(const Utterance& utterance, const Rendered& rendered) {
    if (m_bPerFile && utterance.file != m_file) {
        if (!WriteGridOfFile()) return false;
        m_file = utterance.file;
        m_stem = utterance.stem;
    }
    SayFaults(utterance, rendered);
    if (!rendered.bDone) return true;
    return IsTimed(m_format) ? WriteTimed(utterance, rendered) : WriteText(utterance, rendered);
}

bool Outputs::WriteText(const Utterance& utterance, const Rendered& rendered) {
    errno = 0;
    if (m_format == Format::tiers) {
        if (!m_bFirst) std::cout << '\n';
        // Parts of a line stand under one heading.
        const std::string place = utterance.place();
        if (!utterance.bContinues || place != m_lastPlace) std::cout << place << '\n';
        m_lastPlace = place;
    }
    m_bFirst = false;
    if (std::cout << rendered.text) return true;
    m_progress.Clear();
    return FlushOutput();
}

bool Outputs::WriteTimed(const Utterance& utterance, const Rendered& rendered) {
    if (rendered.timeline.end <= 0) {
        Say(utterance.place() + ": warning: nothing lasts here, so there is no time to show");
        return true;
    }
    if (m_bPerFile) {
        m_grid.Add(rendered.timeline);
        return true;
    }
    const std::string name = m_names.NameFor(utterance.stem, utterance.line);
    const std::filesystem::path path = std::filesystem::path(m_folder) / name;
    if (m_format == Format::svg) {
        return WriteFile(path.string() + ".svg", [&](std::ostream& out) {
            mlds::io::WriteSvg(rendered.timeline, utterance.text, out);
        });
    }
    return WriteFile(path.string() + ".TextGrid", [&](std::ostream& out) {
        mlds::io::TextGrid grid;
        grid.Add(rendered.timeline);
        grid.Write(out);
    });
}

bool Outputs::WriteGridOfFile() {
    if (m_grid.empty()) return true;
    const std::string name = m_names.NameFor(m_stem, 0) + ".TextGrid";
    return WriteFile(std::filesystem::path(m_folder) / name,
                     [&](std::ostream& out) { m_grid.Write(out); });
}

bool Outputs::Finish() {
    m_progress.Clear();
    return WriteGridOfFile() && FlushOutput();
}

}  // namespace mlds_program
