// Streams: sections that are cut out, put back and compared. Not available yet.
#include "mlds/stream.h"

void CStream::DeSyncSection(CSyncMark*, CSyncMark*) {}

bool CStream::ExciseSection(CSyncMark*, CSyncMark*, CStreamObj**, CStreamObj**,
                            BufferSyncMarkInsertionType) {
    return false;
}

bool CStream::InsertSection(CStreamObj*, CStreamObj*, CSyncMark**, CSyncMark**) {
    return false;
}

bool CStream::CompareSection(CSyncMark*, CSyncMark*, CSyncMark*, CSyncMark*) {
    return false;
}
