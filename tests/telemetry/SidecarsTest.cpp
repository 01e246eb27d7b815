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

    // The card's table with rows of another recording in front.
    void writeTable(const DriveSeconds& rows, const std::string& named = "N0001.MP4") const {
        std::string table = "$V02\n1718180000,A,10.0,20.0,0,0,0,0,100,OTHER.MP4\n";
        for (const DriveSecond& second : rows) {
            char line[200];
            std::snprintf(line, sizeof line, "%lld,%c,%.7f,%.7f,%.0f,%.0f,%.0f,%.0f,%.0f,%s\r\n",
                          static_cast<long long>(second.time), second.fix ? 'A' : 'V',
                          second.fix ? second.latitude : 0, second.fix ? second.longitude : 0,
                          second.heading * 100, second.speed / 3.6 * 100, second.right * 100,
                          second.forwards * 100, second.up * 100,
                          ("Normal/Front/" + named).c_str());
            table += line;
        }
        write(m_folder / "GPSData000001.txt", table);
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
    writeTable(drive_);
    expectDrive(true);
    EXPECT_EQ(extractFile(recording().string()).value().base, TimeBase::camera);
}

TEST_F(Sidecars, a_table_with_more_rows_than_seconds_keeps_its_first) {
    for (const int more : {1, 2}) {
        Driver driver({}, 70, 5);
        auto rows = driver.drive(morning, 30 + more);
        writeTable(rows);
        rows.resize(30);
        drive_ = rows;
        expectDrive(true);
    }
}

TEST_F(Sidecars, rows_that_are_missing_at_the_tables_start_or_inside_move_no_other) {
    const fs::path named = m_folder / "Normal" / "Front" / "NO20240612-103045-000001F.MP4";
    write(named, buildMp4(making::planOf(drive_)));
    auto rows = Driver({}, 70, 5).drive(morning, 31);
    drive_ = {rows.begin(), rows.begin() + 30};
    rows.erase(rows.begin() + 12, rows.begin() + 15);
    rows.erase(rows.begin(), rows.begin() + 6);
    writeTable(rows, named.filename().string());
    const auto read = extractFile(named.string());
    ASSERT_TRUE(read);
    ASSERT_EQ(read.value().samples.size(), 30U);
    for (std::size_t i = 0; i < 30; ++i) {
        const Sample& sample = read.value().samples[i];
        const bool missing = i < 6 || (i >= 12 && i < 15);
        EXPECT_EQ(sample.state, missing ? FixState::noReading : FixState::good) << i;
        if (!missing) {
            EXPECT_LT(distance(sample.latitude, sample.longitude, drive_[i].latitude,
                               drive_[i].longitude),
                      0.1)
                << i;
        }
        EXPECT_EQ(sample.time, morning + static_cast<std::int64_t>(i));
    }
}

TEST_F(Sidecars, a_name_for_one_camera_belongs_to_the_files_of_both) {
    std::string lines;
    ByteWriter accelerations;
    for (const DriveSecond& second : drive_) {
        lines += "[" + std::to_string(second.time * 1000) + "]" + making::rmc(second) + "\r\n";
        accelerations.u32be(static_cast<std::uint64_t>(second.time - morning) * 1000);
        for (const double g : {second.right, second.forwards, second.up}) {
            accelerations.i16be(making::whole(g * 128));
        }
    }
    write(m_folder / "20240612_103045_N.gps", lines);
    write(m_folder / "20240612_103045_N.3gf", accelerations.take());
    for (const char* name : {"20240612_103045_NF.mp4", "20240612_103045_NR.mp4"}) {
        write(m_folder / name, buildMp4(making::planOf(drive_)));
        const auto read = extractFile((m_folder / name).string());
        ASSERT_TRUE(read) << name;
        EXPECT_EQ(read.value().family, "files beside the recording") << name;
        expectTruth(read.value(), drive_, {0.1, 0.1, 0.1, 0.01});
        expectAcceleration(read.value(), drive_);
    }
}

TEST_F(Sidecars, accelerations_between_the_sentences_are_read) {
    std::string lines;
    for (const DriveSecond& second : drive_) {
        lines += making::rmc(second) + "\r\n";
        for (int i = 0; i < 10; ++i) {
            char line[100];
            std::snprintf(line, sizeof line, "$GSENSORD,%.3f,%.3f,%.3f\r\n", second.right,
                          second.forwards, second.up);
            lines += line;
        }
    }
    write(fs::path(recording()).replace_extension(".NMEA"), lines);
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
