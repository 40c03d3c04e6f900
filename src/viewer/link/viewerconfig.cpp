// The file that says where the viewer is: lines with "host" or "port" anywhere, and a value behind
// the first '='.
#include "viewer/link/viewerconfig.h"

#include <cstdio>
#include <cstring>

#include "platform/numbertext.h"

namespace mlds {

namespace {

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void ToLower(char* text) {
    for (; *text != '\0'; ++text) {
        if (*text >= 'A' && *text <= 'Z') *text = static_cast<char>(*text - 'A' + 'a');
    }
}

// Leaves `word` as it is if the text has none. It has room for any part of a line.
void TakeWord(const char* text, char* word) {
    while (IsSpace(*text)) ++text;
    if (*text == '\0') return;
    while (*text != '\0' && !IsSpace(*text)) *word++ = *text++;
    *word = '\0';
}

void TakeLine(char* line, ViewerConfig& config) {
    ToLower(line);
    const bool bHost = std::strstr(line, "host") != nullptr;
    if (!bHost && std::strstr(line, "port") == nullptr) return;
    const char* pEquals = std::strchr(line, '=');
    if (pEquals == nullptr) return;
    if (bHost) {
        TakeWord(pEquals + 1, config.host);
    } else {
        platform::ScanInt(pEquals + 1, config.port);
    }
}

}  // namespace

ViewerConfig ReadViewerConfig() {
    ViewerConfig config;
    char line[255];  // what is longer counts as several lines
    static_assert(sizeof line < sizeof config.host);
    if (std::FILE* pFile = std::fopen("plexaview.cfg", "r")) {
        while (std::fgets(line, sizeof line, pFile) != nullptr) TakeLine(line, config);
        std::fclose(pFile);
    }
    return config;
}

}  // namespace mlds
