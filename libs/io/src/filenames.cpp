// Names for files that are made of the lines of a text.
#include "mlds/io/filenames.h"

#include <filesystem>

namespace mlds::io {

std::string FileNames::NameFor(const std::string& path, int line) {
    std::string name = std::filesystem::path(path).stem().string();
    if (name.empty()) name = "text";
    if (line > 0) name += '-' + std::to_string(line);
    std::string unused = name;
    for (int n = 2; !m_names.insert(unused).second; ++n) unused = name + '-' + std::to_string(n);
    return unused;
}

}  // namespace mlds::io
