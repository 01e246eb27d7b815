#include "recordings/clsDot.h"
#include "track/TrackFileReader.h"
#include "xml/ExpatDocument.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

// Each search stands beside the plain loop that describes it, so that one run gives their ratio.
namespace velmorant {
namespace {

constexpr int tenHours = 36000;

/// A drive of curves: each dot about 15 m from the one before, every tenth minute standing.
clsDot drive(int dots) {
    clsDot track;
    double longitude = 121.5;
    double latitude = 25.04;
    for (int i = 0; i < dots; ++i) {
        const bool standing = i / 60 % 10 == 9;
        if (!standing) {
            longitude += 0.00015 * std::cos(i * 0.01 + std::sin(i * 0.003));
            latitude += 0.00014 * std::sin(i * 0.01 + std::sin(i * 0.003));
        }
        track.SetDot("2012/9/7 08:05:09", "00:00", static_cast<std::int16_t>(standing ? 0 : 54), i,
                     std::to_string(longitude), std::to_string(latitude), 1.0, 90, 0.1, 0.0, 1.0);
    }
    return track;
}

std::int32_t plainForcePlayLocal(const clsDot& track, std::int32_t second) {
    for (std::int32_t i = 1; i <= track.count() - 2; ++i)
        if (track.dot(i).second <= second && track.dot(i + 1).second >= second)
            return i;
    return 0;
}

std::int32_t plainPtLocal(const clsDot& track, std::int32_t x, std::int32_t y) {
    for (std::int32_t i = 1; i <= track.count() - 2; ++i) {
        const TrackDot& a = track.dot(i);
        const TrackDot& b = track.dot(i + 1);
        if (std::min(a.x, b.x) <= x && x < std::max(a.x, b.x) && std::min(a.y, b.y) <= y &&
            y < std::max(a.y, b.y))
            return i;
    }
    return 0;
}

void ForcePlayLocal(benchmark::State& state) {
    clsDot track = drive(tenHours);
    std::int32_t second = 0;
    for (auto _ : state) {
        track.ForcePlayLocal(second);
        benchmark::DoNotOptimize(track.lPlayLocal());
        second = (second + 7919) % tenHours;
    }
}
BENCHMARK(ForcePlayLocal);

void ForcePlayLocalPlainLoop(benchmark::State& state) {
    const clsDot track = drive(tenHours);
    std::int32_t second = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(plainForcePlayLocal(track, second));
        second = (second + 7919) % tenHours;
    }
}
BENCHMARK(ForcePlayLocalPlainLoop)->Unit(benchmark::kMicrosecond);

void lPtLocal(benchmark::State& state) {
    const clsDot track = drive(tenHours);
    std::int32_t index = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(track.lPtLocal(track.dot(index).x + 1, track.dot(index).y + 1));
        index = (index + 7919) % tenHours + 1;
    }
}
BENCHMARK(lPtLocal);

void lPtLocalPlainLoop(benchmark::State& state) {
    const clsDot track = drive(tenHours);
    std::int32_t index = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            plainPtLocal(track, track.dot(index).x + 1, track.dot(index).y + 1));
        index = (index + 7919) % tenHours + 1;
    }
}
BENCHMARK(lPtLocalPlainLoop)->Unit(benchmark::kMicrosecond);

/// A track file as the extractor writes it, removed at the end.
class TrackFile {
  public:
    explicit TrackFile(int samples)
        : m_path(
              (std::filesystem::temp_directory_path() / "velmorant-track-benchmark.kml").string()) {
        std::ofstream file(m_path, std::ios::binary);
        file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "<track recording=\"/card/103045.MP4\" family=\"a\" time_base=\"utc\">\n";
        for (int i = 0; i < samples; ++i)
            file << "<gpsinfo>\n<utc_Year>2012</utc_Year>\n<utc_Month>9</utc_Month>\n"
                    "<utc_Day>7</utc_Day>\n<utc_Hour>"
                 << 8 + i / 3600 << "</utc_Hour>\n<utc_Minute>" << i / 60 % 60
                 << "</utc_Minute>\n<utc_Second>" << i % 60
                 << "</utc_Second>\n<Latitude>+25.0412345</Latitude>\n"
                    "<Longitude>+121.5012345</Longitude>\n<Angle>89.50</Angle>\n"
                    "<Speed>60.40</Speed>\n<G_sum>1.0110</G_sum>\n<G_x>0.1250</G_x>\n"
                    "<G_y>-0.2000</G_y>\n<G_z>0.9800</G_z>\n<fix>yes</fix>\n"
                    "<altitude>12.5</altitude>\n<G_max>1.2345</G_max>\n"
                    "<time_recorded>2012-09-07T08:05:09.100</time_recorded>\n</gpsinfo>\n";
        file << "</track>\n";
    }
    ~TrackFile() { std::filesystem::remove(m_path); }
    TrackFile(const TrackFile&) = delete;
    TrackFile& operator=(const TrackFile&) = delete;

    const std::string& path() const { return m_path; }

  private:
    std::string m_path;
};

void readTrackFile(benchmark::State& state) {
    const TrackFile file(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ExpatDocument document;
        TrackFileReader reader(document);
        reader.load(file.path());
        const std::shared_ptr<clsDot> track = reader.read();
        if (track->count() != state.range(0))
            state.SkipWithError("not all samples were read");
    }
}
BENCHMARK(readTrackFile)->Arg(3600)->Arg(tenHours)->Unit(benchmark::kMillisecond);

/// What the parser alone takes of it.
void loadTrackFileOnly(benchmark::State& state) {
    const TrackFile file(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ExpatDocument document;
        document.load(file.path());
        benchmark::DoNotOptimize(document.selectElements("gpsinfo"));
    }
}
BENCHMARK(loadTrackFileOnly)->Arg(3600)->Arg(tenHours)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmorant
