// Files beside a recording that itself holds nothing.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/builders/TemporaryFolder.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

namespace fs = std::filesystem;

class Sidecars : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(m_folder / "Normal" / "Front");
        drive_ = Driver({}, 70, 5).drive(morning, 30);
        loseFix(drive_, 10, 14);
        Mp4Plan plan = making::planOf(drive_);
        write(recording(), buildMp4(plan));
    }

    fs::path recording() const { return m_folder / "Normal" / "Front" / "N0001.MP4"; }
    static void write(const fs::path& path, const ByteVector& bytes) {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    static void write(const fs::path& path, const std::string& text) {
        write(path, ByteVector(text.begin(), text.end()));
    }
    void expectDrive(bool accelerated) {
        const auto read = extractFile(recording().string());
        ASSERT_TRUE(read);
        EXPECT_EQ(read.value().family, "files beside the recording");
        expectTruth(read.value(), drive_, {0.1, 0.1, 0.1, 0.01});
        if (accelerated) {
            expectAcceleration(read.value(), drive_);
        }
    }

    const builders::TemporaryFolder m_temporary;
    const fs::path m_folder = m_temporary.path();
    DriveSeconds drive_;
};

} // namespace

TEST_F(Sidecars, stamped_sentences_and_accelerations_are_read) {
    std::string lines;
    ByteWriter accelerations;
    for (const DriveSecond& second : drive_) {
        lines +=
            "[" + std::to_string(second.time * 1000 + 120) + "]" + making::rmc(second) + "\r\n\r\n";
        for (std::uint64_t i = 0; i < 9; ++i) {
            const auto since = static_cast<std::uint64_t>(second.time - morning);
            accelerations.u32be(since * 1000 + i * 110);
            for (const double g : {second.right, second.forwards, second.up}) {
                accelerations.i16be(making::whole(g * 128));
            }
        }
    }
    write(fs::path(recording()).replace_extension(".gps"), lines);
    write(fs::path(recording()).replace_extension(".3gf"), accelerations.take());
    expectDrive(true);
}

TEST_F(Sidecars, plain_sentences_are_read_whatever_the_case_of_the_extension) {
    std::string lines;
    for (const DriveSecond& second : drive_) {
        lines += making::rmc(second) + "\r\n";
    }
    write(fs::path(recording()).replace_extension(".NMEA"), lines);
    expectDrive(false);
}

TEST_F(Sidecars, the_cards_table_gives_the_lines_that_name_the_recording) {
    std::string table = "$V02\n1718180000,A,10.0,20.0,0,0,0,0,100,OTHER.MP4\n";
    for (const DriveSecond& second : drive_) {
        char line[200];
        std::snprintf(line, sizeof line, "%lld,%c,%.7f,%.7f,%.0f,%.0f,%.0f,%.0f,%.0f,%s\r\n",
                      static_cast<long long>(second.time), second.fix ? 'A' : 'V',
                      second.fix ? second.latitude : 0, second.fix ? second.longitude : 0,
                      second.heading * 100, second.speed / 3.6 * 100, second.right * 100,
                      second.forwards * 100, second.up * 100, "Normal/Front/N0001.MP4");
        table += line;
    }
    write(m_folder / "GPSData000001.txt", table);
    expectDrive(true);
}

TEST_F(Sidecars, are_not_asked_where_the_recording_holds_its_own) {
    const auto own = Driver({48, 11}, 70, 6).drive(morning, 30);
    const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                    [](const auto& m) { return m.name == "free_box"; });
    write(recording(), maker->make(own));
    write(fs::path(recording()).replace_extension(".nmea"), making::rmc(drive_[0]) + "\r\n");
    const auto read = extractFile(recording().string());
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().family, "stamped lines");
}

} // namespace velmorant::telemetry
