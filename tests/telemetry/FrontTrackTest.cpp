// A rear recording without a track of its own.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "tests/builders/TemporaryFolder.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

class FrontTrack : public testing::Test {
  protected:
    void SetUp() override {
        drive_ = Driver({}, 70, 5).drive(morning, 30);
        loseFix(drive_, 10, 14);
    }

    std::string write(const std::string& name, const ByteVector& bytes) const {
        const fs::path path = m_folder / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path.string();
    }
    std::string writeFront(const std::string& name) const {
        const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                        [](const auto& m) { return m.name == "free_box"; });
        return write(name, maker->make(drive_));
    }
    std::string writeRear(const std::string& name, std::int64_t creation = morning) const {
        Mp4Plan plan = making::planOf(drive_);
        plan.creation = creation;
        return write(name, buildMp4(plan));
    }

    const builders::TemporaryFolder m_temporary;
    const fs::path m_folder = m_temporary.path();
    DriveSeconds drive_;
};

} // namespace

TEST_F(FrontTrack, is_taken_by_a_rear_recording_of_the_same_moment) {
    const std::pair<const char*, const char*> pairs[] = {
        {"a/20240612_103045_F.MP4", "a/20240612_103045_R.MP4"},
        {"b/FILE240612-103045F.MP4", "b/FILE240612-103045B.MP4"},
        {"c/20240612_103045_NF.mp4", "c/20240612_103045_NR.mp4"},
        {"d/20240612_103045_PF.mp4", "d/20240612_103045_PR.mp4"},
        {"e/0001_front.mp4", "e/0001_rear.mp4"},
        {"f/Front/0001.MP4", "f/Rear/0001.MP4"},
        {"g/20240612103045_000123F.MP4", "g/20240612103045_000124R.MP4"},
    };
    for (const auto& [frontName, rearName] : pairs) {
        const std::string front = writeFront(frontName);
        const std::string rear = writeRear(rearName);
        const auto read = extractFile(rear);
        ASSERT_TRUE(read) << rear;
        EXPECT_EQ(read.value().family, "front recording") << rear;
        expectTruth(read.value(), drive_, {0.1, 0.1, 0.1, 0.01});
        expectAcceleration(read.value(), drive_);
        EXPECT_EQ(read.value().base, extractFile(front).value().base) << rear;
        ASSERT_EQ(read.value().notices.size(), 1U) << rear;
        EXPECT_THAT(describe(read.value().notices[0]), HasSubstr("front recording " + front +
                                                                 " (stamped lines), which starts "
                                                                 "together with it"));
    }
}

TEST_F(FrontTrack, is_moved_by_the_seconds_between_the_two_starts) {
    writeFront("20240612_103045_F.MP4");
    const std::string rear = writeRear("20240612_103047_R.MP4", morning + 2);
    const auto read = extractFile(rear);
    ASSERT_TRUE(read);
    ASSERT_EQ(read.value().samples.size(), 30U);
    for (std::size_t i = 0; i < 28; ++i) {
        const Sample& sample = read.value().samples[i];
        EXPECT_EQ(sample.time, drive_[i + 2].time);
        EXPECT_EQ(sample.state == FixState::good, drive_[i + 2].fix) << i;
        if (drive_[i + 2].fix) {
            EXPECT_LT(distance(sample.latitude, sample.longitude, drive_[i + 2].latitude,
                               drive_[i + 2].longitude),
                      0.1);
        }
    }
    EXPECT_EQ(read.value().samples[28].state, FixState::noReading);
    EXPECT_THAT(describe(read.value().notices[0]), HasSubstr("which starts 2 s earlier"));
}

TEST_F(FrontTrack, is_left_where_nothing_says_that_both_start_together) {
    writeFront("a/0001_F.MP4");
    for (const std::int64_t creation : {morning + 3, morning - 86400}) {
        const auto read = extractFile(writeRear("a/0001_R.MP4", creation));
        ASSERT_TRUE(read);
        EXPECT_EQ(read.value().family, "none");
    }
    writeFront("b/20240612_103045_F.MP4");
    EXPECT_EQ(extractFile(writeRear("b/20240612_103048_R.MP4")).value().family, "none");
    EXPECT_EQ(extractFile(writeRear("c/20240612_103045_R.MP4")).value().family, "none");
}

TEST_F(FrontTrack, is_left_by_a_recording_with_its_own_and_by_a_front) {
    writeFront("a/20240612_103045_F.MP4");
    EXPECT_EQ(extractFile(writeFront("a/20240612_103045_R.MP4")).value().family, "stamped lines");
    // A front without a track takes none from its rear.
    writeFront("b/20240612_103045_R.MP4");
    EXPECT_EQ(extractFile(writeRear("b/20240612_103045_F.MP4")).value().family, "none");
}

} // namespace velmorant::telemetry
