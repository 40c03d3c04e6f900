// What somebody keeps for as long as a connection to a viewer lasts.
//
// The connection knows bytes and sockets and nothing of streams; who speaks over it knows both.
// What that one has to remember of the viewer hangs on the connection, which ends it with itself.
#ifndef MLDS_VIEWER_LINK_VIEWERLINK_H
#define MLDS_VIEWER_LINK_VIEWERLINK_H

namespace mlds {

/// Owned by the CMessageSocket that it is given to, and destroyed when that disconnects.
struct ViewerLink {
    ViewerLink() = default;
    ViewerLink(const ViewerLink&) = delete;
    ViewerLink& operator=(const ViewerLink&) = delete;
    virtual ~ViewerLink() = default;
};

}  // namespace mlds

#endif
