// Setting a field on every token between two marks. Not available yet.
#include "mlds/plexa.h"

bool CPlexa::Mark(CStream*, const char*, int, CSyncMark*, CSyncMark*) {
    return false;
}

bool CPlexa::Mark(CStream*, const char*, const char*, CSyncMark*, CSyncMark*) {
    return false;
}

bool CPlexa::Mark(CStream*, const char*, CSyncMark*, CSyncMark*) {
    return false;
}

bool CPlexa::Mark(const char*, CSyncMark*, CSyncMark*) {
    return false;
}
