// Random drives on recorders that behave as badly as real ones, in every layout: no trusted second
// is wrong and hardly a valid one is lost. The daily tests take a few drives; VELMORANT_DRIVES asks
// for more.
#include <cstdlib>
#include <random>

#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

// What a second of the recording holds: its own reading, or one that is not true there.
struct Written {
    DriveSeconds seconds;
    std::vector<bool> own;
};

class Recorder {
  public:
    Recorder(const FamilyMaker& maker, unsigned seed) : maker_(maker), random_(seed) {
        // Records in a row tell neither their second nor what was lost between them.
        for (const std::string_view row :
             {"ligo_skip_box", "ligo_trailer", "ligo_starred_trailer", "ligo_shifted", "uuid_box",
              "gps0_binary", "gps0_behind_movie", "gps0_enciphered"}) {
            countsOnly_ = countsOnly_ || maker.name == row;
        }
    }

    Written write(const DriveSeconds& truth) {
        Written written{truth, std::vector<bool>(truth.size(), true)};
        start(written);
        const bool clocked = maker_.clock == Given::yes;
        // Records in a row tell their seconds by their number or by their clock, so that what falls
        // on both of them at once has no one answer.
        const std::size_t only = countsOnly_ ? between(0, 2) : 3;
        if ((only == 0 || only == 3) && chance(0.3)) {
            lose(written);
        }
        if (clocked && (only == 1 || only == 3)) {
            disturbClock(written);
        }
        if (clocked && (only == 2 || only == 3)) {
            repeat(written);
        }
        tunnel(written);
        if (clocked && chance(0.2)) { // set to local time
            for (DriveSecond& second : written.seconds) {
                second.time += 8 * 3600;
            }
        }
        return written;
    }

  private:
    bool chance(double share) {
        return random_() % 1000 < static_cast<std::uint64_t>(share * 1000);
    }
    std::size_t between(std::size_t least, std::size_t most) {
        return least + random_() % (most - least + 1);
    }

    void tunnel(Written& written) {
        auto& seconds = written.seconds;
        const std::size_t from = between(15, seconds.size() - 16);
        std::size_t to = from + between(3, 12);
        while (to + 1 < seconds.size() && !written.own[to + 1]) {
            ++to; // what would be written again there was never written
        }
        std::size_t entered = from - 1; // the last place that the recorder wrote
        while (entered > 12 && (!written.own[entered] || seconds[entered].written == 0)) {
            --entered;
        }
        const DriveSecond last = seconds[entered];
        constexpr double driving = 25; // km/h
        const bool freezes = maker_.speed == Given::yes && last.speed > driving &&
                             entered + 1 == from && chance(0.5);
        if (!chance(0.4)) {
            return;
        }
        for (std::size_t i = from; i <= to; ++i) {
            written.own[i] = false;
            if (countsOnly_) { // nothing tells two without a fix from one written again
                seconds[i].written = std::min(seconds[i].written, 1);
            }
            if (!freezes) {
                seconds[i].fix = false;
                continue;
            }
            const DriveSecond now = seconds[i];
            seconds[i] = last;
            seconds[i].time = now.time;
            seconds[i].written = now.written;
        }
    }

    // Without a fix and with a clock that was never set, or with the place of the last drive.
    void start(Written& written) {
        const std::size_t count = between(3, 12);
        const bool stale = chance(0.2);
        if (!stale && !chance(0.3)) {
            return;
        }
        const bool neverSet = chance(0.5);
        const double speed = chance(0.5) ? 0 : 47;
        const DriveSecond& first = written.seconds.front();
        constexpr double away = 0.06; // degrees, 6.7 km
        const Place left{first.latitude + (first.latitude > 0 ? -away : away), first.longitude};
        for (std::size_t i = 0; i < count; ++i) {
            DriveSecond& second = written.seconds[i];
            written.own[i] = false;
            if (stale) {
                second.latitude = left.latitude;
                second.longitude = left.longitude;
                second.speed = speed;
            } else {
                second.fix = false;
                second.time -= neverSet ? 8 * 3600 : 0;
            }
        }
    }

    void lose(Written& written) {
        for (std::size_t i = between(1, 3); i > 0; --i) {
            // Whoever only counts cannot know what is missing before the first clock or at the end.
            constexpr std::size_t longestStart = 12;
            const std::size_t lost =
                between(countsOnly_ ? longestStart + 1 : 1, written.seconds.size() - 2);
            written.seconds[lost].written = 0;
            written.own[lost] = false;
        }
    }

    void repeat(Written& written) {
        for (std::size_t i = chance(0.3) ? between(1, 3) : 0; i > 0; --i) {
            DriveSecond& second = written.seconds[between(0, written.seconds.size() - 1)];
            second.written = second.written == 1 && second.fix ? 2 : second.written;
        }
        if (!chance(0.3)) {
            return;
        }
        const std::size_t every = between(4, 9);
        for (std::size_t i = between(1, every); i < written.seconds.size(); i += every) {
            const DriveSecond& before = written.seconds[i - 1];
            if (before.written == 1 && before.fix && written.seconds[i].written == 1 &&
                written.own[i - 1]) {
                written.seconds[i] = before;
                written.own[i] = false;
            }
        }
    }

    void disturbClock(Written& written) {
        auto& seconds = written.seconds;
        if (chance(0.2)) { // it stumbles
            for (DriveSecond& second : seconds) {
                second.time -= chance(0.2) ? 1 : 0;
            }
        }
        if (chance(0.2)) {
            constexpr int leaps[] = {2, -2, -90, 3600, -3600};
            const std::size_t from = between(10, seconds.size() - 10);
            const int leap = leaps[random_() % std::size(leaps)];
            for (std::size_t i = from; i < seconds.size(); ++i) {
                seconds[i].time += leap;
            }
        }
    }

    const FamilyMaker& maker_;
    std::mt19937 random_;
    bool countsOnly_ = false;
};

DriveSeconds randomDrive(unsigned seed) {
    std::mt19937 random(seed);
    constexpr Place places[] = {{25.05, 121.5},    {48.1, 11.5},  {-22.9, -43.2},
                                {-16.8, 179.9985}, {64.1, -21.9}, {0.0004, 36.8}};
    constexpr std::int64_t beforeMidnight = 1718236770;
    const Place& place = places[random() % std::size(places)];
    const std::int64_t time = random() % 4 == 0 ? beforeMidnight : morning + random() % 40000;
    const int length = 45 + static_cast<int>(random() % 60);
    return Driver(place, static_cast<double>(random() % 360), seed).drive(time, length);
}

// The clock as it was written less the true one, and what is special about a second.
std::string around(const DriveSeconds& truth, const Written& written, std::size_t second) {
    std::string text;
    for (std::size_t i = second < 4 ? 0 : second - 4; i < truth.size() && i < second + 4; ++i) {
        const DriveSecond& now = written.seconds[i];
        text += " " + std::to_string(i) + ":" + std::to_string(now.time - truth[i].time) +
                (now.fix ? "" : "V") + (written.own[i] ? "" : "!") +
                (now.written == 1 ? "" : "x" + std::to_string(now.written));
    }
    return text;
}

struct Count {
    std::size_t valid = 0, lost = 0, wrong = 0;
};

double toleranceOf(const FamilyMaker& maker) {
    constexpr double floatGrid = 4;
    constexpr double startingCar = 2; // metres that one makes whose last reading is written again
    return startingCar + maker.placeGrid +
           (maker.places == PlaceGrid::floatMinutes ? floatGrid : 0);
}

void compare(const FamilyMaker& maker, const DriveSeconds& truth, const Written& written,
             const Telemetry& read, Count& count) {
    for (std::size_t i = 0; i < truth.size(); ++i) {
        const bool good = i < read.samples.size() && read.samples[i].state == FixState::good;
        count.valid += written.own[i] ? 1 : 0;
        count.lost += written.own[i] && !good ? 1 : 0;
        if (good) {
            const double off = distance(read.samples[i].latitude, read.samples[i].longitude,
                                        truth[i].latitude, truth[i].longitude);
            if (off > toleranceOf(maker)) {
                ++count.wrong;
                ADD_FAILURE() << maker.name << ": second " << i << " of " << truth.size() << " is "
                              << off << " m off at " << truth[i].speed
                              << " km/h:" << around(truth, written, i);
            }
        }
    }
}

unsigned drivesAsked() {
    const char* asked = std::getenv("VELMORANT_DRIVES");
    constexpr unsigned daily = 12;
    return asked != nullptr ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : daily;
}

} // namespace

TEST(RandomDrives, lose_hardly_a_second_and_show_none_that_is_wrong) {
    Count count;
    const unsigned drives = drivesAsked();
    ASSERT_GT(drives, 0U);
    for (unsigned drive = 0; drive < drives; ++drive) {
        const DriveSeconds truth = randomDrive(drive + 1);
        for (std::size_t m = 0; m < familyMakers().size(); ++m) {
            const FamilyMaker& maker = familyMakers()[m];
            SCOPED_TRACE("drive " + std::to_string(drive) + " as " + std::string(maker.name));
            const Written written =
                Recorder(maker, 1000 * drive + static_cast<unsigned>(m)).write(truth);
            const auto read = extractBytes(maker.make(written.seconds));
            ASSERT_TRUE(read) << describe(read.error());
            const Count before = count;
            compare(maker, truth, written, read.value(), count);
            if (count.lost > before.lost + 3) {
                std::printf("  drive %u as %s: %zu seconds lost\n", drive,
                            std::string(maker.name).c_str(), count.lost - before.lost);
            }
        }
    }
    std::printf("%u drives in %zu layouts: %zu of %zu valid seconds lost (%.3f %%), %zu wrong\n",
                drives, familyMakers().size(), count.lost, count.valid,
                100.0 * static_cast<double>(count.lost) / static_cast<double>(count.valid),
                count.wrong);
    EXPECT_EQ(count.wrong, 0U);
    EXPECT_LT(static_cast<double>(count.lost), 0.005 * static_cast<double>(count.valid));
}

} // namespace velmorant::telemetry
