// Names for files that are made of the lines of a text.
#ifndef MLDS_IO_FILENAMES_H
#define MLDS_IO_FILENAMES_H

#include <set>
#include <string>
#include <string_view>

namespace mlds::io {

/// Gives no name twice: files of one name may come from several folders, and a long line in parts.
class FileNames {
public:
    /// "saludo-3" for line 3 of "texts/saludo.txt", "saludo" for line 0, which is all of it;
    /// another time "saludo-3-2", and so on.
    std::string NameFor(const std::string& path, int line);

private:
    std::set<std::string, std::less<>> m_names;  // taken
};

}  // namespace mlds::io

#endif
