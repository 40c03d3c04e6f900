// Sync marks: the boundaries of a stream, and what ties streams together.
#ifndef MLDS_SYNCMARK_H
#define MLDS_SYNCMARK_H

#include "mlds/classes/syncmark.h"
#include "mlds/inline.h"

#endif
