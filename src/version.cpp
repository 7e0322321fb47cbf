// The version query.
#include "types.h"

static_assert(sizeof(zvpStatus) == 4 && zvpStatus(-1) < 0);
static_assert(sizeof(zvpSize) == 8 && offsetof(zvpSize, width) == 0 && offsetof(zvpSize, height) == 4);
static_assert(sizeof(zvpPoint) == 8 && offsetof(zvpPoint, x) == 0 && offsetof(zvpPoint, y) == 4);
static_assert(sizeof(zvpRect) == 16 && offsetof(zvpRect, x) == 0 && offsetof(zvpRect, y) == 4 &&
              offsetof(zvpRect, width) == 8 && offsetof(zvpRect, height) == 12);
static_assert(sizeof(zvpVersionRecord) == 48 && offsetof(zvpVersionRecord, major) == 0 &&
              offsetof(zvpVersionRecord, minor) == 4 && offsetof(zvpVersionRecord, majorBuild) == 8 &&
              offsetof(zvpVersionRecord, build) == 12 && offsetof(zvpVersionRecord, targetCpu) == 16 &&
              offsetof(zvpVersionRecord, Name) == 24 && offsetof(zvpVersionRecord, Version) == 32 &&
              offsetof(zvpVersionRecord, BuildDate) == 40);

namespace {
constexpr zvpVersionRecord versionRecord = {
    6, 1, 137, 799, {'m', 'x', 0, 0}, "libzvpvcmx.so.6.1", "6.1 build 137.56", "Mar 17 2010"};
}

const zvpVersionRecord* zvpvcGetLibVersion(void) { return &versionRecord; }
