#include "telemetry/families/CardTable.h"

#include <algorithm>
#include <string>

#include "telemetry/Geometry.h"
#include "telemetry/Nmea.h"

namespace velmorant::telemetry {

namespace {

void readLine(std::string_view line, std::string_view recording, Collector& collector) {
    const std::string_view named = field(line, 9);
    const std::size_t slash = named.find_last_of("/\\");
    if (named.substr(slash == std::string_view::npos ? 0 : slash + 1) != recording) {
        return;
    }
    Fix fix;
    fix.state = field(line, 1) == "A" ? FixState::good : FixState::noFix;
    const double seconds = decimal(field(line, 0));
    if (seconds > 315532800 && seconds < 4102444800) {
        fix.time = std::llround(seconds * 1000);
        fix.base = TimeBase::utc;
    }
    fix.latitude = decimal(field(line, 2));
    fix.longitude = decimal(field(line, 3));
    fix.heading = decimal(field(line, 4)) / 100;
    fix.speed = decimal(field(line, 5)) / 100 * kmhPerMetrePerSecond;
    collector.add(fix);
    const Acceleration acceleration{decimal(field(line, 6)) / 100, decimal(field(line, 7)) / 100,
                                    decimal(field(line, 8)) / 100};
    if (std::isfinite(acceleration.x + acceleration.y + acceleration.z)) {
        collector.addToLast(acceleration);
    }
}

// Line by line through one window, since a table covers many drives.
void readTable(ByteSource& table, std::string_view recording, Collector& collector) {
    constexpr std::size_t window = 65536;
    std::string text(window, '\0');
    std::string rest;
    for (std::uint64_t at = 0; at < table.size(); at += window) {
        const std::size_t got =
            table.readAt(at, std::span(reinterpret_cast<std::uint8_t*>(text.data()), text.size()));
        if (at == 0 && !text.starts_with("$V02")) {
            return;
        }
        std::string_view left(text.data(), got);
        for (std::size_t end = left.find('\n'); end != std::string_view::npos;
             end = left.find('\n')) {
            rest.append(left.substr(0, end));
            while (!rest.empty() && rest.back() == '\r') {
                rest.pop_back();
            }
            readLine(rest, recording, collector);
            rest.clear();
            left.remove_prefix(end + 1);
        }
        if (rest.size() + left.size() < window) {
            rest.append(left); // a longer line is none of this table
        }
    }
    readLine(rest, recording, collector);
}

} // namespace

bool readCardTables(Recording& recording, Collector& collector) {
    const std::string& path = recording.input.name();
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    for (const auto& table : recording.siblings->cardTables()) {
        readTable(*table, name, collector);
    }
    return !collector.empty();
}

} // namespace velmorant::telemetry
