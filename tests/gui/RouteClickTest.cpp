#include "tests/gui/ProgramTest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>

namespace velmorant {

namespace fs = std::filesystem;

namespace {

constexpr double unitsPerDegree = 1e7;
constexpr double turnInUnits = 360 * unitsPerDegree;
constexpr double metresPerUnit = 111194.9266 / unitsPerDegree;
constexpr double pi = 3.14159265358979323846;
/// So near a metre is more than a pixel and half, so that a click means one segment.
constexpr int streetZoom = 18;
/// A shorter segment lies within the width of a click.
constexpr double shortest = 6;

/// The way between two places, over the date line where that is shorter.
struct Way {
    Way(const TrackDot& from, const TrackDot& to)
        : east(std::remainder(double(to.x) - from.x, turnInUnits)), north(double(to.y) - from.y) {}
    double metres(double latitude) const {
        return std::hypot(east * std::cos(latitude * pi / 180), north) * metresPerUnit;
    }
    bool isExactlyAlongTheGrid() const { return east == 0 || north == 0; }
    double east;
    double north;
};

struct Target {
    int row = 0;
    int dot = 0;       ///< where its segment begins, from 1
    double along = 0;  ///< 0 .. 1 of the segment
    int tolerance = 0; ///< dots by which the program's hit test may be off
};

} // namespace

/// The sample card and recordings from all over the world; their routes do not touch each other.
class RouteClickTest : public ProgramTest {
  protected:
    /// The daily tests click a few places, the long ones many.
    static int clicks() {
        const char* const count = std::getenv("VELMORANT_CLICKS");
        return count == nullptr ? 20 : std::atoi(count);
    }

    std::vector<std::string> worldCard() const {
        const std::string card = folder() + "/world";
        const std::string command =
            std::string("'") + VELMORANT_MAKE_CARD + "' '" + card +
            "' --whole-world --recordings 8 --seconds 24 --one-picture --size 160x90 >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(card))
            if (entry.is_regular_file())
                found.push_back(entry.path().string());
        std::sort(found.begin(), found.end());
        return found;
    }

    const TrackDot& dot(int row, int index) { return driver().track(row)->dot(index); }

    /// Every segment that a click can tell apart, by rows; but the last one of each track, which
    /// the hit test leaves out.
    std::vector<std::vector<Target>> targets() {
        std::vector<std::vector<Target>> rows;
        for (int row = 1; row <= driver().rowCount(); ++row) {
            std::vector<Target> found;
            for (int i = 1; i <= driver().track(row)->count() - 2; ++i) {
                const Way way(dot(row, i), dot(row, i + 1));
                if (way.metres(dot(row, i).y / unitsPerDegree) >= shortest)
                    found.push_back({row, i, 0.5, way.isExactlyAlongTheGrid() ? 4 : 0});
            }
            if (!found.empty())
                rows.push_back(std::move(found));
        }
        return rows;
    }

    void click(const Target& target, int n) {
        const TrackDot& from = dot(target.row, target.dot);
        const Way way(from, dot(target.row, target.dot + 1));
        // On another spot than the last click, or both would be a double click.
        const QPoint aside(n % 3 * 30 - 30, n % 2 * 40 - 20);
        const auto pixel = driver().map().lookAt(
            (from.x + target.along * way.east) / unitsPerDegree,
            (from.y + target.along * way.north) / unitsPerDegree, streetZoom, aside);
        ASSERT_TRUE(pixel.has_value()) << "the page does not answer";
        driver().map().click(*pixel);
    }

    /// Waits until the player plays the target's recording from its second on.
    void expectPlayed(const Target& target) {
        const double second = dot(target.row, target.dot).second;
        double position = -1;
        EXPECT_TRUE(waitUntil(
            [&] {
                position = driver().position();
                return driver().playing(target.row) &&
                       position >= second - target.tolerance - 0.05 &&
                       position <= second + target.tolerance + 1.5;
            },
            10000))
            << "row " << target.row << ", dot " << target.dot << ", second " << second
            << ": the player is in " << player().url() << " at " << position;
    }
};

TEST_F(RouteClickTest, random_places_lead_to_their_recording_and_second) {
    std::vector<std::string> recordings = worldCard();
    ASSERT_EQ(recordings.size(), 8u);
    for (int number = 1; number <= 4; ++number)
        recordings.push_back(recording(number));
    showOnMap(recordings);
    const std::vector<std::vector<Target>> rows = targets();
    ASSERT_GE(rows.size(), 10u);
    std::mt19937 random(20120907);
    int straight = 0;
    for (int n = 0; n < clicks() && !HasFailure(); ++n) {
        // The rows take turns, so that a few clicks reach each.
        const std::vector<Target>& row = rows[std::size_t(n) % rows.size()];
        Target target = row[random() % row.size()];
        target.along = 0.3 + 0.4 * double(random() % 1000) / 1000;
        straight += target.tolerance > 0;
        SCOPED_TRACE("click " + std::to_string(n + 1));
        ASSERT_NO_FATAL_FAILURE(click(target, n));
        expectPlayed(target);
    }
    std::printf("%d clicks, %d of them on streets exactly along the grid\n", clicks(), straight);
}

} // namespace velmorant
