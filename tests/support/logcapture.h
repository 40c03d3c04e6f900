// What the library logs, kept while an object of this class lives.
#ifndef MLDS_TESTS_SUPPORT_LOGCAPTURE_H
#define MLDS_TESTS_SUPPORT_LOGCAPTURE_H

#include <string>
#include <utility>
#include <vector>

#include "mlds/okulog.h"

namespace mlds_test {

class LogCapture {
public:
    /// Sets the logger's level; the old level and standard error come back at the end.
    explicit LogCapture(int level) : m_oldLevel(okuLog.m_nLevel) {
        okuLog.m_nLevel = level;
        OkuLog::SetSink([](const char* line, void* p) { static_cast<LogCapture*>(p)->Add(line); },
                        this);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() {
        okuLog.m_nLevel = m_oldLevel;
        OkuLog::SetSink(nullptr, nullptr);
    }

    /// The lines since the last call.
    std::vector<std::string> Take() { return std::exchange(m_lines, {}); }

private:
    void Add(const char* line) { m_lines.emplace_back(line); }

    int m_oldLevel;
    std::vector<std::string> m_lines;
};

}  // namespace mlds_test

#endif
