#include "telemetry/families/CardTable.h"

#include <algorithm>
#include <string>
#include <utility>

#include "telemetry/ClockEvidence.h"
#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"
#include "telemetry/Pieces.h"

namespace velmorant::telemetry {

namespace {

// Where the rows stand in the recording. Each names its recording, so the first is the first second
// unless the recording's name has an earlier time: then rows are missing. The clock carries over
// gaps; where it leaps the next row counts as the next second.
class RowPlaces {
  public:
    RowPlaces(std::string_view recording, double duration)
        : named_(timeInName(recording)), duration_(duration) {}

    double next(double clock) {
        const double step = clock - clock_;
        if (!known(clock_)) {
            place_ = named_ ? clock - static_cast<double>(*named_) : 0;
            // A second or two is what the two need to look at the clock.
            place_ = place_ > 2 && place_ < duration_ ? place_ : 0;
        } else {
            const double furthest = std::max(duration_, place_ + 1) + 2;
            place_ += step >= 0 && place_ + step < furthest ? step : 1;
        }
        clock_ = known(clock) ? clock : clock_ + 1;
        return place_;
    }

  private:
    std::optional<std::int64_t> named_;
    double duration_;
    double clock_ = unknown;
    double place_ = 0;
};

void readRow(std::string_view row, std::string_view recording, RowPlaces& places,
             Collector& collector) {
    const std::string_view named = field(row, 9);
    const std::size_t slash = named.find_last_of("/\\");
    if (named.substr(slash == std::string_view::npos ? 0 : slash + 1) != recording) {
        return;
    }
    Fix fix;
    fix.state = field(row, 1) == "A" ? FixState::good : FixState::noFix;
    double seconds = decimal(field(row, 0));
    if (seconds > 315532800 && seconds < 4102444800) {
        fix.time = std::llround(seconds * 1000);
        fix.base = TimeBase::camera;
    } else {
        seconds = unknown;
    }
    fix.mediaTime = places.next(seconds);
    fix.latitude = decimal(field(row, 2));
    fix.longitude = decimal(field(row, 3));
    fix.heading = decimal(field(row, 4)) / 100;
    fix.speed = decimal(field(row, 5)) / 100 * kmhPerMetrePerSecond;
    collector.add(fix);
    const Acceleration acceleration{decimal(field(row, 6)) / 100, decimal(field(row, 7)) / 100,
                                    decimal(field(row, 8)) / 100};
    if (std::isfinite(acceleration.x + acceleration.y + acceleration.z)) {
        collector.add(fix.mediaTime, acceleration);
    }
}

void readTable(ByteSource& table, std::string_view recording, double duration,
               Collector& collector) {
    constexpr std::size_t longestRow = 1024;
    RowPlaces places(recording, duration);
    bool first = true;
    forEachPiece(table, '\n', longestRow, [&](std::string_view row) {
        if (std::exchange(first, false)) {
            return row.starts_with("$V02");
        }
        while (row.ends_with('\r')) {
            row.remove_suffix(1);
        }
        readRow(row, recording, places, collector);
        return true;
    });
}

} // namespace

bool readCardTables(Recording& recording, Collector& collector) {
    const std::string& path = recording.input.name();
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    for (const auto& table : recording.siblings->cardTables()) {
        readTable(*table, name, recording.movie ? recording.movie->duration : 0, collector);
    }
    return !collector.empty();
}

} // namespace velmorant::telemetry
