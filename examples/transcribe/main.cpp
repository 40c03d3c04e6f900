// transcribe: prints Spanish text with its letters, words and phones aligned.
#include <fcntl.h>
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "durations.h"
#include "latin1.h"
#include "letterrules.h"
#include "mlds/version.h"
#include "picture.h"
#include "tiers.h"
#include "timefiles.h"
#include "utterance.h"
#include "view.h"

namespace {

using transcribe::DecodedText;
using transcribe::Foreign;
using transcribe::Tiers;
using transcribe::View;

constexpr const char* kUsage = R"(usage: transcribe [OPTION...] [FILE...]

Reads Spanish text in UTF-8, one utterance per line, and prints for every utterance the characters
as typed, what is spoken of them, the words, the phones, the syllables and the milliseconds that the
phones last, aligned under each other.
Without FILE, or where FILE is -, reads standard input.

  -p, --phones  print the phones alone, an utterance a line
  -r, --rate PERCENT
                speak at that rate, from 25 to 400; 200 is twice as fast as normal
  -g, --textgrid DIR
                write a Praat TextGrid per utterance into the folder, with a tier per stream
  -s, --svg DIR write a drawing per utterance into the folder, the streams over a time axis
      --strict  skip lines with characters that are not in Latin-1; without, such characters are left
                out with a warning
      --rules FILE
                take the rules for letters from the file
      --schema  print what rules may name, for mlds-testasm --schema
  -t, --trace   print to standard error which rules were tried at every letter, and what came of it
  -v, --view    let a viewer watch: one that runs here, or where plexaview.cfg says
      --step    the same, and wait for Enter after every rule and every stream
  -h, --help    print this help and exit
      --version print the version and exit

The exit status is 0 if everything was transcribed, 1 if a file or a line was skipped or the rules are
faulty, and 2 if the
command line was wrong.
)";

// A longer line is worked on in parts. The tiers of a character take about 1.5 KB, and every tier
// is made by a walk along another: what does not fit into the caches of the processor costs two to
// three times as much a character.
constexpr std::size_t kLongestPart = 2000;

// How much of a text makes the next part: all of it, or as much as fits, up to the space behind a
// pause, where durations do not change by the cut, or at least up to a space, if possible.
std::size_t PartLength(std::string_view text) {
    if (text.size() <= kLongestPart) return text.size();
    for (std::size_t i = kLongestPart; i-- > 1;) {
        constexpr std::string_view kPauses = ".,:;?!";
        if (text[i] == ' ' && kPauses.find(text[i - 1]) != std::string_view::npos) return i + 1;
    }
    const std::size_t space = text.rfind(' ', kLongestPart - 1);
    return space != std::string_view::npos ? space + 1 : kLongestPart;
}

struct Options {
    bool bPhones = false;
    bool bTrace = false;
    bool bView = false;
    bool bStep = false;
    bool bStrict = false;
    int rate = transcribe::kNormalRate;
    std::string textGridFolder;
    std::string svgFolder;
    std::string rules;  // a file, or empty for the program's own
};

class Program {
public:
    /// In steps, Enter is read from the given descriptor.
    Program(const Options& options, int keys)
        : m_rules(m_tiers,
                  options.rules.empty() ? transcribe::OwnRules()
                                        : transcribe::RulesFromFile(options.rules),
                  options.bTrace ? &std::clog : nullptr),
          m_files(options.textGridFolder, options.svgFolder),
          m_foreign(options.bStrict ? Foreign::isFault : Foreign::isLeftOut),
          m_bPhones(options.bPhones),
          m_rate(options.rate) {
        if (options.bView) m_view.emplace(m_tiers.plexa, options.bStep, keys);
        m_rules.SetView(view());
    }

    /// True if every line of the file was transcribed. "-" is standard input.
    bool TranscribeFile(const std::string& path) {
        const bool bStdin = path == "-";
        const std::string name = bStdin ? "<stdin>" : path;
        errno = 0;
        std::ifstream file;
        if (!bStdin) file.open(path, std::ios::binary);
        std::istream& in = bStdin ? std::cin : file;

        bool bAll = true;
        int number = 0;
        for (std::string line; std::getline(in, line);) {
            ++number;
            bAll &= TranscribeLine(WithoutFrame(line, number == 1), name, path, number);
        }
        if (in.eof()) return bAll;
        std::cerr << "transcribe: " << name << ": " << std::strerror(errno) << '\n';
        return false;
    }

private:
    // Takes off what a line may have from other systems: the byte order mark and half a line end.
    static std::string_view WithoutFrame(std::string_view line, bool bFirst) {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (bFirst && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
        if (line.ends_with('\r')) line.remove_suffix(1);
        return line;
    }

    // One line, however many there are: a text in another script has nothing else.
    static void WarnOfLeftOut(const std::string& place, const DecodedText& decoded) {
        std::cerr << place << ':' << decoded.leftOut->column
                  << ": warning: " << decoded.leftOut->what << "; left out";
        if (decoded.nLeftOut > 1) std::cerr << ", like " << decoded.nLeftOut - 1 << " behind it";
        std::cerr << '\n';
    }

    View* view() { return m_view ? &*m_view : nullptr; }

    bool TranscribeLine(std::string_view line, const std::string& name, const std::string& path,
                        int number) {
        const std::string place = name + ':' + std::to_string(number);
        const DecodedText decoded = transcribe::FromUtf8(line, m_foreign);
        if (decoded.fault) {
            std::cerr << place << ':' << decoded.fault->column << ": " << decoded.fault->what
                      << "; line skipped\n";
            return false;
        }
        if (decoded.leftOut) WarnOfLeftOut(place, decoded);
        std::string_view text = decoded.latin1;
        if (text.find_first_not_of(' ') == std::string_view::npos) return true;
        if (!m_bPhones) std::cout << (m_bFirst ? "" : "\n") << place << '\n';
        m_bFirst = false;
        bool bAll = true;
        while (!text.empty()) {
            const std::size_t n = PartLength(text);
            transcribe::Transcribe(m_tiers, m_rules, std::string(text.substr(0, n)), m_rate,
                                   view());
            text.remove_prefix(n);
            bAll &= m_files.Write(m_tiers, path, number);
            if (m_bPhones) {
                transcribe::PrintPhones(m_tiers, std::cout);
            } else {
                transcribe::PrintPicture(m_tiers, std::cout);
                if (!text.empty()) std::cout << '\n';
            }
        }
        return bAll;
    }

    Tiers m_tiers;
    transcribe::LetterRules m_rules;
    transcribe::TimeFiles m_files;
    std::optional<View> m_view;
    Foreign m_foreign;
    bool m_bPhones;
    int m_rate;
    bool m_bFirst = true;
};

}  // namespace

namespace {

// Digits alone: no sign, no unit, nothing behind.
bool ReadRate(std::string_view text, int& rate) {
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), rate);
    return error == std::errc{} && pEnd == text.data() + text.size() &&
           rate >= transcribe::kSlowestRate && rate <= transcribe::kFastestRate;
}

bool IsFolder(const std::string& path) {
    if (std::filesystem::is_directory(path)) return true;
    std::cerr << "transcribe: '" << mlds_testasm::Shortened(path) << "' is no folder\n";
    return false;
}

// False if the command line is wrong, which is then said. An answer is all that was asked for.
bool ReadOptions(int argc, char** argv, Options& read, std::string& answer) {
    enum { kStep = 1000, kStrict, kRules, kSchema, kVersion };
    const option options[] = {{"phones", no_argument, nullptr, 'p'},
                              {"rate", required_argument, nullptr, 'r'},
                              {"textgrid", required_argument, nullptr, 'g'},
                              {"svg", required_argument, nullptr, 's'},
                              {"trace", no_argument, nullptr, 't'},
                              {"view", no_argument, nullptr, 'v'},
                              {"step", no_argument, nullptr, kStep},
                              {"strict", no_argument, nullptr, kStrict},
                              {"rules", required_argument, nullptr, kRules},
                              {"schema", no_argument, nullptr, kSchema},
                              {"help", no_argument, nullptr, 'h'},
                              {"version", no_argument, nullptr, kVersion},
                              {}};
    for (int c = 0; (c = getopt_long(argc, argv, "pr:g:s:tvh", options, nullptr)) != -1;) {
        switch (c) {
            case 'p': read.bPhones = true; break;
            case 't': read.bTrace = true; break;
            case kStep: read.bStep = true; [[fallthrough]];
            case 'v': read.bView = true; break;
            case kStrict: read.bStrict = true; break;
            case kRules: read.rules = optarg; break;
            case 'h': answer = kUsage; return true;
            case kSchema: answer = transcribe::NamesForRules(); return true;
            case kVersion: answer = "transcribe " MLDS_VERSION "\n"; return true;
            case 'r':
                if (ReadRate(optarg, read.rate)) break;
                std::cerr << "transcribe: '" << mlds_testasm::Shortened(optarg)
                          << "' is no rate: a number from " << transcribe::kSlowestRate << " to "
                          << transcribe::kFastestRate << '\n';
                return false;
            case 'g':
                read.textGridFolder = optarg;
                if (IsFolder(optarg)) break;
                return false;
            case 's':
                read.svgFolder = optarg;
                if (IsFolder(optarg)) break;
                return false;
            default: return false;
        }
    }
    return true;
}

bool FlushOutput() {
    if (std::cout.flush()) return true;
    std::cerr << "transcribe: the output could not be written\n";
    return false;
}

}  // namespace

int main(int argc, char** argv) try {
    Options options;
    std::string answer;
    if (!ReadOptions(argc, argv, options, answer)) {
        std::cerr << "Try 'transcribe --help'.\n";
        return 2;
    }
    if (!answer.empty()) {
        std::cout << answer;
        return FlushOutput() ? 0 : 1;
    }
    std::vector<const char*> paths(argv + optind, argv + argc);
    if (paths.empty()) paths.push_back("-");

    // Where the text comes from standard input, Enter comes from the terminal.
    const bool bKeysTaken =
        std::ranges::any_of(paths, [](const char* path) { return std::string_view(path) == "-"; });
    const int keys =
        options.bStep && bKeysTaken ? ::open("/dev/tty", O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (keys < 0) {
        std::cerr << "transcribe: --step needs a terminal, or the text in a FILE\n";
        return 2;
    }

    std::ios::sync_with_stdio(false);
    okuLog.m_nLevel = 1;  // what the library refuses is worth knowing
    Program program(options, keys);
    bool bAll = true;
    for (const char* path : paths) bAll &= program.TranscribeFile(path);
    return FlushOutput() && bAll ? 0 : 1;
} catch (const transcribe::RulesError& e) {
    std::cerr << e.what();
    return 1;
} catch (const std::exception& e) {
    std::cerr << "transcribe: " << e.what() << '\n';
    return 1;
}
