#include "telemetry/FamilyTable.h"

#include "telemetry/families/Camm.h"
#include "telemetry/families/FixedRecords.h"
#include "telemetry/families/FreeGps.h"
#include "telemetry/families/FrontTrack.h"
#include "telemetry/families/Gpmf.h"
#include "telemetry/families/GpsBox.h"
#include "telemetry/families/LigoText.h"
#include "telemetry/families/OtherGpmd.h"
#include "telemetry/families/PackedRecords.h"
#include "telemetry/families/StampedLines.h"
#include "telemetry/families/TextTracks.h"
#include "telemetry/families/TrackFiles.h"
#include "telemetry/families/TransportStream.h"
#include "telemetry/families/UuidBox.h"

namespace velmorant::telemetry {

std::span<const Family> families() {
    // A text in freeGPS blocks is asked for before the blocks' own layouts; searching the media
    // data for blocks without an index costs most and comes last of what the recording itself
    // holds.
    static constexpr Family table[] = {
        {"transport stream", readTransportStream},
        {"LIGOGPSINFO text", readLigo},
        {"freeGPS blocks", readFreeGps},
        {"GPMF", readGpmf},
        {"camera motion metadata", readCamm},
        {"packed records", readSsmd},
        {"text track", readTextTracks},
        {"sentence track", readSentenceTracks},
        {"records in gpmd", readOtherGpmd},
        {"fixed records", readFixedRecords},
        {"GPS box", readGpsBox},
        {"stamped lines", readFreeBox},
        {"uuid box", readUuidBox},
        {"packed records in a box", readGps0},
        {"freeGPS blocks without index", searchFreeGps},
        {"files beside the recording", readSidecars},
        {"front recording", readFrontTrack},
        {"track file beside the recording", readTrackFiles},
    };
    return table;
}

} // namespace velmorant::telemetry
