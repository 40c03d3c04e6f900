// Everything the library exports.
#ifndef MLDS_MLDS_H
#define MLDS_MLDS_H

#include "mlds/export.h"
#include "mlds/field.h"
#include "mlds/messagesocket.h"
#include "mlds/okulog.h"
#include "mlds/packet.h"
#include "mlds/plexa.h"
#include "mlds/plexatest.h"
#include "mlds/stream.h"
#include "mlds/streamobj.h"
#include "mlds/syncmark.h"
#include "mlds/token.h"
#include "mlds/varlist.h"
#include "mlds/version.h"

#endif
