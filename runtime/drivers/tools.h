#ifndef RUNTIME_DRIVERS_TOOLS_H
#define RUNTIME_DRIVERS_TOOLS_H

/** All tools that the drivers share. */

#include "runtime/drivers/addresstext.h"
#include "runtime/drivers/bits.h"
#include "runtime/drivers/byteorder.h"
#include "runtime/drivers/checksums.h"
#include "runtime/drivers/counts.h"
#include "runtime/drivers/datapack.h"
#include "runtime/drivers/padding.h"
#include "runtime/drivers/projectdatabase.h"
#include "runtime/drivers/systemservices.h"
#include "runtime/drivers/txpackage.h"

#endif
