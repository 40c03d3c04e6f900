// Rule files and their includes.
#include "load.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mlds::rules {

namespace {

// Nobody writes rules of that size; somebody may name a wrong file.
constexpr std::uintmax_t kLargestFile = 256u << 20;

// A file includes others, and none of those that are being read already.
class Loader {
public:
    Loader(Sources& sources, Diagnostics& diagnostics)
        : m_sources(sources), m_diagnostics(diagnostics) {}

    void Load(int file) {
        m_open.push_back(file);
        syntax::File read = syntax::ReadFile(m_sources, file, m_diagnostics);
        for (syntax::Statement& statement : read.statements) {
            if (const auto* pInclude = std::get_if<syntax::Include>(&statement)) {
                Include(file, pInclude->file);
            } else {
                statements.push_back(std::move(statement));
            }
        }
        m_open.pop_back();
    }

    std::vector<syntax::Statement> statements;

private:
    void Include(int from, const syntax::Word& name) {
        const std::string path = Beside(m_sources.At(from).name(), name.text);
        for (const int open : m_open) {
            if (m_sources.At(open).name() != path) continue;
            m_diagnostics.Error(m_sources, name.span, path + " includes itself");
            return;
        }
        // The same file from two places is read once: its names would be there already.
        for (int file = 0; file < m_sources.size(); ++file) {
            if (m_sources.At(file).name() == path) return;
        }
        std::string reason;
        std::optional<std::string> text = ReadWholeFile(path, &reason);
        if (!text) {
            m_diagnostics.Error(m_sources, name.span, "cannot read " + path + ": " + reason);
            return;
        }
        Load(m_sources.Add(path, std::move(*text)));
    }

    Sources& m_sources;
    Diagnostics& m_diagnostics;
    std::vector<int> m_open;
};

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::string* pReason) {
    std::error_code fault;
    if (std::filesystem::is_directory(path, fault)) {
        *pReason = "it is a folder";
        return std::nullopt;
    }
    const std::uintmax_t size = std::filesystem::file_size(path, fault);
    if (!fault && size > kLargestFile) {
        *pReason = "it is larger than 256 MB";
        return std::nullopt;
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || (file.peek() != std::ifstream::traits_type::eof() && !(text << file.rdbuf()))) {
        *pReason = errno != 0 ? std::strerror(errno) : "reading failed";
        return std::nullopt;
    }
    return std::move(text).str();
}

std::string Beside(const std::string& file, const std::string& name) {
    return (std::filesystem::path(file).parent_path() / name).lexically_normal().string();
}

std::vector<syntax::Statement> LoadStatements(Sources& sources, int file,
                                              Diagnostics& diagnostics) {
    Loader loader(sources, diagnostics);
    loader.Load(file);
    return std::move(loader.statements);
}

}  // namespace mlds::rules
