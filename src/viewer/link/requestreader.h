// Requests of the viewer as they come: a stream of bytes that may be cut anywhere.
#ifndef MLDS_VIEWER_LINK_REQUESTREADER_H
#define MLDS_VIEWER_LINK_REQUESTREADER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mlds {

/// What the viewer asks for.
enum RequestCode { reqDisconnect = 4, reqSetField = 1004 };

struct Request {
    int code;
    std::string text;  // of reqSetField; up to its first NUL
};

struct RequestBatch {
    std::vector<Request> requests;
    std::string_view rest;    // the beginning of another request
    bool bMalformed = false;  // what came behind the requests is none: it is lost
};

/// Reads requests up to the first thing that is none. Codes of others come back as they are.
RequestBatch ReadRequests(std::string_view bytes);

/// What a reqSetField says.
struct FieldEdit {
    std::uint32_t handle;
    int kind;
    int field;
    std::string value;  // one word
};

/// False if the text is not of the form "handle kind number field value".
bool ReadFieldEdit(const char* text, FieldEdit& edit);

}  // namespace mlds

#endif
