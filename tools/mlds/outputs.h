// Where what was made of utterances goes: standard output, or files in a folder.
#ifndef MLDS_PROGRAM_OUTPUTS_H
#define MLDS_PROGRAM_OUTPUTS_H

#include <string>

#include "formats.h"
#include "inputs.h"
#include "mlds/io/filenames.h"
#include "mlds/io/textgrid.h"
#include "progress.h"

namespace mlds_program {

/// Takes the utterances in their order, and says what was wrong with them.
class Outputs {
public:
    /// A folder is for formats that show time alone.
    Outputs(Format format, std::string folder, bool bPerFile, Progress& progress)
        : m_format(format),
          m_folder(std::move(folder)),
          m_bPerFile(bPerFile),
          m_progress(progress) {}

    /// False if the output cannot be written: then it makes no sense to go on.
    bool Write(const Utterance& utterance, const Rendered& rendered);
    /// To be called behind the last utterance. False as above.
    bool Finish();

    /// False once an utterance was not done.
    bool ok() const { return m_bOk; }

private:
    void Say(const std::string& message);
    void SayFaults(const Utterance& utterance, const Rendered& rendered);
    bool WriteText(const Utterance& utterance, const Rendered& rendered);
    bool WriteTimed(const Utterance& utterance, const Rendered& rendered);
    bool WriteGridOfFile();

    Format m_format;
    std::string m_folder;
    bool m_bPerFile;
    Progress& m_progress;
    bool m_bOk = true;
    bool m_bFirst = true;
    std::string m_lastPlace;  // that has its heading
    mlds::io::FileNames m_names;
    // Of the file that utterances come from, with m_bPerFile.
    mlds::io::TextGrid m_grid;
    int m_file = -1;
    std::string m_stem;
};

}  // namespace mlds_program

#endif
