// Tokens: the stream objects that carry field values.
#ifndef MLDS_TOKEN_H
#define MLDS_TOKEN_H

#include "mlds/classes/token.h"
#include "mlds/inline.h"

#endif
