// Where the viewer is.
#ifndef MLDS_VIEWER_LINK_VIEWERCONFIG_H
#define MLDS_VIEWER_LINK_VIEWERCONFIG_H

#include <cstdint>

namespace mlds {

struct ViewerConfig {
    char host[256] = "127.0.0.1";  // dotted; names are not looked up
    std::int32_t port = 4801;
};

/// What "plexaview.cfg" in the current directory says; the defaults where it says nothing.
ViewerConfig ReadViewerConfig();

}  // namespace mlds

#endif
