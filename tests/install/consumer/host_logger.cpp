// A logger of the host's own, for a library that was built without one.
#include <cstdio>

#include "mlds/okulog.h"

OkuLog okuLog;

void OkuLog::logDebug(const char*, const char* signature, const char*, int, int, const char*, ...) {
    std::printf("host logger: debug: %s\n", signature);
}

void OkuLog::logError(const char*, const char* signature, const char*, int, int, int number, ...) {
    std::printf("host logger: error %d: %s\n", number, signature);
}
