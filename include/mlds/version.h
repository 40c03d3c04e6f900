// The version of the library. It is written here and nowhere else: the build reads it from these
// lines.
#ifndef MLDS_VERSION_H
#define MLDS_VERSION_H

#define MLDS_VERSION_MAJOR 0
#define MLDS_VERSION_MINOR 1
#define MLDS_VERSION_PATCH 0

/// The version as text, "MAJOR.MINOR.PATCH": a string literal.
#define MLDS_VERSION \
    MLDS_VERSION_JOINED_(MLDS_VERSION_MAJOR, MLDS_VERSION_MINOR, MLDS_VERSION_PATCH)

// The numbers have to be replaced by their values before they become text, hence two macros.
#define MLDS_VERSION_JOINED_(major, minor, patch) MLDS_VERSION_TEXT_(major, minor, patch)
#define MLDS_VERSION_TEXT_(major, minor, patch) #major "." #minor "." #patch

#endif
