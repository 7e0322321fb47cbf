// The version query.
#include "types.h"

namespace {
constexpr zvpVersionRecord versionRecord = {
    6, 1, 137, 799, {'m', 'x', 0, 0}, "libzvpvcmx.so.6.1", "6.1 build 137.56", "Mar 17 2010"};
}

const zvpVersionRecord* zvpvcGetLibVersion(void) { return &versionRecord; }
