// One maker of recordings for every layout that the readers know. All write the same drives, so
// that every reader can be held against the truth.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "tools/recordings/ByteWriter.h"
#include "tools/recordings/Drive.h"
#include "tools/recordings/Mp4Builder.h"

namespace velmorant::recordings {

using DriveSeconds = std::vector<DriveSecond>;

enum class PlaceGrid { fine, floatMinutes }; // floats of degrees and minutes are metres apart
enum class Given { yes, no };

struct FamilyMaker {
    std::string_view name;
    std::string_view family; // the row of the table of families that reads it
    ByteVector (*make)(const DriveSeconds& drive);
    PlaceGrid places = PlaceGrid::fine;
    double placeGrid = 0;     // metres between two places that the layout can tell apart
    double speedGrid = 0;     // km/h between two speeds that the layout can tell apart
    Given speed = Given::yes; // without it the reader derives it from the places
    Given heading = Given::yes;
    Given acceleration = Given::yes;
    Given clock = Given::yes;    // without one the times count from the creation
    double accelerationGrid = 0; // g
    std::string_view extension = ".MP4";
};

std::span<const FamilyMaker> familyMakers();

// Building stones that several makers share.
namespace making {

using BlockOf = ByteVector (*)(const DriveSecond& second);

Mp4Plan planOf(const DriveSeconds& drive);
ByteVector withBlocks(const DriveSeconds& drive, BlockOf block,
                      Mp4Plan::Index index = Mp4Plan::Index::whole);
// The seconds that are written, as often as they are.
DriveSeconds asWritten(const DriveSeconds& drive);
// One sample a second, several where it is written more often; an empty one where it is lost.
void addSamples(const DriveSeconds& drive, BlockOf sample, TrackPlan& track);
ByteVector withTrack(const DriveSeconds& drive, std::string_view handler, std::string_view format,
                     BlockOf sample);

std::string rmc(const DriveSecond& second, char shift = 0);
std::string enciphered(const DriveSecond& second);
std::string ligoLine(const DriveSecond& second); // a record of LIGOGPSINFO without its counter
// A freeGPS block of 0x4000 bytes around a body that starts at `at`.
ByteVector blockAround(std::size_t at, const ByteVector& body);
std::int64_t whole(double value);
char north(const DriveSecond& second);
char east(const DriveSecond& second);
double latitudeMinutes(const DriveSecond& second);
double longitudeMinutes(const DriveSecond& second);
ByteWriter& time3(ByteWriter& out, const DriveSecond& second); // hour minute second, u32le each
ByteWriter& date3(ByteWriter& out, const DriveSecond& second); // year-2000 month day
ByteWriter& acceleration3(ByteWriter& out, const DriveSecond& second, double countsPerG);

// The makers by kind, each in a file of its own.
std::span<const FamilyMaker> blockMakers();
std::span<const FamilyMaker> trackMakers();
std::span<const FamilyMaker> boxMakers();
std::span<const FamilyMaker> streamMakers();

} // namespace making

} // namespace velmorant::recordings
