#include "telemetry/FamilyTable.h"

#include "telemetry/families/FreeGps.h"
#include "telemetry/families/Gpmf.h"

namespace velmorant::telemetry {

std::span<const Family> families() {
    static constexpr Family table[] = {
        {"freeGPS blocks", readFreeGps},
        {"GPMF", readGpmf},
    };
    return table;
}

} // namespace velmorant::telemetry
