// Files with what an utterance is like over time.
#ifndef TRANSCRIBE_TIMEFILES_H
#define TRANSCRIBE_TIMEFILES_H

#include <set>
#include <string>

#include "tiers.h"

namespace transcribe {

/// Writes a file per utterance into folders that exist.
class TimeFiles {
public:
    /// An empty folder: no files of that kind.
    TimeFiles(std::string textGridFolder, std::string svgFolder)
        : m_textGridFolder(std::move(textGridFolder)), m_svgFolder(std::move(svgFolder)) {}

    /// Writes the files of an utterance, "saludo-1.TextGrid" and "saludo-1.svg" for the first line
    /// of a file "saludo.txt". Says on standard error what cannot be written. True if all was
    /// well.
    bool Write(Tiers& tiers, const std::string& path, int line);

private:
    std::string NameFor(const std::string& path, int line);

    std::string m_textGridFolder;
    std::string m_svgFolder;
    std::set<std::string> m_names;  // taken
};

}  // namespace transcribe

#endif
