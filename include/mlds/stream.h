// Streams: the tiers of the structure, with their tokens and sync marks.
#ifndef MLDS_STREAM_H
#define MLDS_STREAM_H

#include "mlds/classes/stream.h"
#include "mlds/inline.h"

#endif
