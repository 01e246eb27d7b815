#include "tools/card/Card.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "telemetry/UtcTime.h"
#include "tools/card/Interleave.h"
#include "tools/card/Picture.h"

namespace velmorant::recordings {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t firstStart = 1718188245; // 2024-06-12 10:30:45 UTC
constexpr std::int64_t midnight = 1718236800;   // the day's end

enum class Kind { ordinary, lateFix, withoutGps, powerLoss };

struct Entry {
    std::int64_t start;
    Kind kind;
    bool locked;
};

enum class Street { winding, tunnel, northSouth, eastWest };

struct WorldDrive {
    Place start;
    double direction;
    Street street;
};

constexpr WorldDrive worldDrives[] = {
    {{22.6300, 120.3010}, 65, Street::tunnel},     {{-33.4450, -70.6600}, 200, Street::winding},
    {{40.7500, -73.9900}, 20, Street::northSouth}, {{-16.8000, 179.9996}, 75, Street::winding},
    {{65.0000, -179.9992}, 285, Street::winding},  {{-33.9200, 18.4200}, 110, Street::eastWest},
    {{51.5000, -0.0006}, 80, Street::winding},     {{0.0004, 32.5800}, 200, Street::winding},
};

// A stretch of four seconds in the middle of the drive on which only one coordinate changes: so
// short that a click still finds a segment beside it.
void straighten(std::vector<DriveSecond>& drive, double DriveSecond::*kept) {
    const std::size_t first = drive.size() / 2;
    const std::size_t last = std::min(drive.size(), first + 5);
    for (std::size_t i = first + 1; i < last; ++i) {
        drive[i].*kept = drive[first].*kept;
    }
}

void shape(std::vector<DriveSecond>& drive, Street street) {
    if (street == Street::tunnel) {
        loseFix(drive, drive.size() / 2, drive.size() / 2 + 3);
    } else if (street == Street::northSouth) {
        straighten(drive, &DriveSecond::longitude);
    } else if (street == Street::eastWest) {
        straighten(drive, &DriveSecond::latitude);
    }
}

// The special recordings stand at fixed places, so that the same card comes out every time.
std::vector<Entry> entriesOf(const CardPlan& plan) {
    std::vector<Entry> entries;
    std::int64_t start = firstStart;
    for (int i = 0; i < plan.recordings; ++i) {
        Entry entry{start, Kind::ordinary, i % 5 == 2};
        if (plan.recordings >= 6 && plan.places == DrivenPlaces::oneTown) {
            const int fromEnd = plan.recordings - 1 - i;
            entry.kind = i == 1         ? Kind::lateFix
                         : fromEnd == 2 ? Kind::withoutGps
                         : fromEnd == 1 ? Kind::powerLoss
                                        : Kind::ordinary;
            if (fromEnd == 0) {
                entry.start = std::max(start, midnight - plan.seconds / 2);
            }
        }
        entries.push_back(entry);
        start += plan.seconds;
    }
    return entries;
}

fs::path pathOf(const fs::path& folder, const Entry& entry) {
    const auto time = telemetry::civilFromMilliseconds(entry.start * 1000);
    char day[32];
    char name[32];
    std::snprintf(day, sizeof day, "%04d%02d%02d", time.year, time.month, time.day);
    std::snprintf(name, sizeof name, "%02d%02d%02d%s.MP4", time.hour, time.minute,
                  static_cast<int>(time.second), entry.locked ? "_P" : "");
    return folder / day / name;
}

ByteVector readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::optional<std::string> writeAll(const fs::path& path, const ByteVector& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    out.close();
    return out ? std::nullopt : std::optional(path.string() + ": cannot be written");
}

class CardWriter {
  public:
    explicit CardWriter(const CardPlan& plan) : m_plan(plan), m_driver(Place{}, 65, 20240612) {}

    std::optional<std::string> write() {
        int number = 0;
        for (const Entry& entry : entriesOf(m_plan)) {
            if (auto problem = write(entry, number++)) {
                return problem;
            }
        }
        return std::nullopt;
    }

  private:
    std::vector<DriveSecond> driveOf(const Entry& entry, int number) {
        if (m_plan.places == DrivenPlaces::oneTown) {
            return m_driver.drive(entry.start, m_plan.seconds);
        }
        const WorldDrive& world =
            worldDrives[static_cast<std::size_t>(number) % std::size(worldDrives)];
        Driver driver(world.start, world.direction, static_cast<unsigned>(number) + 1);
        auto drive = driver.drive(entry.start, m_plan.seconds);
        shape(drive, world.street);
        return drive;
    }

    std::optional<std::string> write(const Entry& entry, int number) {
        const fs::path path = pathOf(m_plan.folder, entry);
        fs::create_directories(path.parent_path());
        if (m_picture.empty() || m_plan.pictures == PictureUse::ownForEach) {
            const fs::path raw = path.string() + ".part";
            const auto problem =
                encodePicture({entry.start, m_plan.seconds, m_plan.pictureSize, m_plan.pictureRate},
                              raw.string());
            if (problem) {
                return problem;
            }
            m_picture = readAll(raw);
            fs::remove(raw);
        }
        auto drive = driveOf(entry, number);
        if (entry.kind == Kind::lateFix) {
            loseFix(drive, 0, static_cast<std::size_t>(std::min(20, m_plan.seconds / 3)) - 1);
        }
        std::vector<ByteVector> blocks;
        for (const DriveSecond& second : drive) {
            blocks.push_back(freeGpsBlock(second, m_plan.layout));
        }
        if (entry.kind == Kind::withoutGps) {
            blocks.clear();
        }
        auto recording = interleave(m_picture, blocks);
        if (!recording) {
            return "ffmpeg wrote a file of an unexpected shape";
        }
        setCreation(*recording, entry.start);
        if (entry.kind == Kind::powerLoss) {
            recording = cutOff(*recording, 0.6);
        }
        std::cout << path.string() << '\n';
        return writeAll(path, *recording);
    }

    const CardPlan& m_plan;
    Driver m_driver;
    ByteVector m_picture;
};

} // namespace

std::optional<std::string> writeCard(const CardPlan& plan) {
    try {
        return CardWriter(plan).write();
    } catch (const fs::filesystem_error& error) {
        return error.what();
    }
}

} // namespace velmorant::recordings
