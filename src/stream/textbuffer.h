// The growth step of a stream's text buffer.
#ifndef MLDS_STREAM_TEXTBUFFER_H
#define MLDS_STREAM_TEXTBUFFER_H

namespace mlds {

constexpr int kTextStep = 8000;  // bytes, at first and at every growth

}  // namespace mlds

#endif
