// The logger that the library ships for hosts without one: text lines to standard error or a sink.
#include "mlds/okulog.h"

#include <cstdarg>
#include <cstdio>

constinit OkuLog okuLog;

namespace {

constexpr int kLongestLine = 1024;

OkuLog::Sink g_pSink = nullptr;
void* g_pContext = nullptr;

void WriteLine(const char* line) {
    if (g_pSink != nullptr) {
        g_pSink(line, g_pContext);
    } else {
        std::fprintf(stderr, "%s\n", line);
    }
}

}  // namespace

void OkuLog::SetSink(Sink sink, void* context) {
    g_pSink = sink;
    g_pContext = context;
}

void OkuLog::logDebug(const char* module, const char* signature, const char* sourceFile, int line,
                      int kind, const char* format, ...) {
    char text[kLongestLine];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    char entry[2 * kLongestLine];
    std::snprintf(entry, sizeof entry, "%s: debug %d: %s:%d %s: %s", module, kind, sourceFile, line,
                  signature, text);
    WriteLine(entry);
}

void OkuLog::logError(const char* module, const char* signature, const char* sourceFile, int line,
                      int kind, int number, ...) {
    va_list args;
    va_start(args, number);
    const char* text = va_arg(args, const char*);
    va_end(args);
    char entry[2 * kLongestLine];
    std::snprintf(entry, sizeof entry, "%s: error %d (%d): %s:%d %s: %s", module, number, kind,
                  sourceFile, line, signature, text != nullptr ? text : "");
    WriteLine(entry);
}
