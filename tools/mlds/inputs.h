// The utterances of texts: one a line, long lines in parts.
#ifndef MLDS_PROGRAM_INPUTS_H
#define MLDS_PROGRAM_INPUTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mlds_program {

struct Utterance {
    int file = 0;             ///< counted from 0
    std::string name;         ///< of the file, as messages have it
    std::string stem;         ///< what files that are made of it are called after
    int line = 0;             ///< in the file, from 1
    std::size_t column = 1;   ///< of its first character in the line
    bool bContinues = false;  ///< a part of the line that the last utterance is from
    std::string text;

    std::string place() const { return name + ':' + std::to_string(line); }
};

/// Reads files one after the other, and no more of them than is needed: blank lines are passed
/// over, lines of more than kLongest characters are cut, behind a pause or at least a space.
class Inputs {
public:
    static constexpr std::size_t kLongest = 20000;

    /// Files, where "-" is standard input; none: standard input alone.
    explicit Inputs(std::vector<std::string> paths);
    /// The lines of a text.
    static Inputs OfText(std::string text) { return Inputs(OwnText{std::move(text)}); }
    ~Inputs() { Close(); }
    Inputs(const Inputs&) = delete;
    Inputs& operator=(const Inputs&) = delete;

    /// False at the end of the last file. Files that cannot be read are said and passed over.
    bool Next(Utterance& utterance);
    /// False once a file could not be read.
    bool ok() const { return m_bOk; }

    /// What is to be done before standard input is waited for.
    void SetBeforeWaiting(std::function<void()> action) { m_beforeWaiting = std::move(action); }

    /// How many bytes were read, and of how many; 0 where that is not known.
    std::uint64_t bytesRead() const { return m_nRead; }
    std::uint64_t bytesInAll() const { return m_nInAll; }

private:
    struct OwnText {
        std::string text;
    };

    explicit Inputs(OwnText own);
    bool OpenNext();
    void Close();
    void ReadMore();
    std::string_view TakePart(bool& bLineEnds);

    std::vector<std::string> m_paths;
    std::function<void()> m_beforeWaiting;
    std::size_t m_nOpened = 0;
    int m_descriptor = -1;
    bool m_bOpen = false;
    bool m_bAtEnd = false;  // of the open file: what is left is in the buffer
    bool m_bOk = true;
    std::string m_buffer;
    std::size_t m_at = 0;       // what is before it was handed out
    std::size_t m_scanned = 0;  // no line ends before it
    int m_line = 1;
    std::size_t m_column = 1;
    bool m_bPartGiven = false;  // of the line
    std::uint64_t m_nRead = 0;
    std::uint64_t m_nInAll = 0;
    bool m_bText = false;
};

}  // namespace mlds_program

#endif
