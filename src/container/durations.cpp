// Durations between marks. Not available yet; every form already comes down to the full one.
#include "mlds/plexa.h"

int CPlexa::Duration(CStream*, CSyncMark*, int, CSyncMark*, int) {
    return -1;
}

int CPlexa::Duration(CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(GetDefaultTimeStream(), pLeft, 0, pRight, 0);
}

int CPlexa::Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(GetDefaultTimeStream(), pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(GetDefaultTimeStream(), pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight, int rightOffset) {
    return Duration(GetDefaultTimeStream(), pLeft, leftOffset, pRight, rightOffset);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(pTime, pLeft, 0, pRight, 0);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(pTime, pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(pTime, pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(pStream(streamName), pLeft, 0, pRight, 0);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(pStream(streamName), pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(pStream(streamName), pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight,
                     int rightOffset) {
    return Duration(pStream(streamName), pLeft, leftOffset, pRight, rightOffset);
}

bool CPlexa::SetDuration(CStream*, CSyncMark*, CSyncMark*, int) {
    return false;
}

bool CPlexa::SetDuration(CSyncMark* pLeft, CSyncMark* pRight, int newDuration) {
    return SetDuration(GetDefaultTimeStream(), pLeft, pRight, newDuration);
}
