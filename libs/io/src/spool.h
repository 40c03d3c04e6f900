// Text that waits until it can be written: in memory while it is short, then in a temporary file.
#ifndef MLDS_IO_SPOOL_H
#define MLDS_IO_SPOOL_H

#include <cstdio>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace mlds::io {

class Spool {
public:
    /// Throws std::runtime_error if the temporary file cannot be written.
    void Append(std::string_view text);
    void CopyTo(std::ostream& out);

private:
    struct Closer {
        void operator()(std::FILE* pFile) const { std::fclose(pFile); }
    };

    void Flush();

    std::string m_text;
    std::unique_ptr<std::FILE, Closer> m_pFile;
};

}  // namespace mlds::io

#endif
