// The host's logger, as the library sees it.
#ifndef MLDS_OKULOG_H
#define MLDS_OKULOG_H

#include "mlds/export.h"

/// The logger. The library ships a small one that writes text lines; a host that has its own
/// builds the library without it and defines this class's operations and `okuLog` itself.
class MLDS_API OkuLog {
public:
    /// Receives one finished line, without its line feed.
    typedef void (*Sink)(const char* line, void* context);

    constexpr OkuLog() : m_nLevel(0) {}

    /// An entry for people who follow what the library does. Callers write it at level 4 or more;
    /// `format` is a printf format for what follows it.
    void logDebug(const char* module, const char* signature, const char* sourceFile, int line,
                  int kind, const char* format, ...);
    /// An error entry: a number that says what happened, and one text that says where. Callers
    /// write it at level 1 or more.
    void logError(const char* module, const char* signature, const char* sourceFile, int line,
                  int kind, int number, ...);

    /// Sends the lines of the shipped logger elsewhere; null for standard error, as at first.
    static void SetSink(Sink sink, void* context);

    /// What is logged: nothing at 0, errors from 1, everything from 4.
    int m_nLevel;
};

/// The logger that the library writes to.
extern MLDS_API OkuLog okuLog;

#endif
