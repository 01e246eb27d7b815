#include "recordings/recordingNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

TEST(RecordingNames, read_the_date_of_a_folder_name) {
    struct Case {
        const char* name;
        const char* date;
    };
    const std::vector<Case> cases = {
        {"20121009", "2012/10/09"},  {"20121009_A", "2012/10/09"},
        {"20121009A", "2012/10/09"}, {"DCIM", "DCIM      "},
        {"100MEDIA1", "100MEDIA  "}, {"121009", "12/10/09  "},
        {"", "          "},          {"行車記錄器資料夾甲", "行車記錄器資料夾  "}};
    for (const Case& each : cases)
        EXPECT_EQ(dateOfFolderName(each.name), each.date) << each.name;
}

TEST(RecordingNames, read_kind_and_time_of_a_base_name) {
    struct Case {
        const char* base;
        RecordingKind kind;
        const char* time;
    };
    const std::vector<Case> cases = {{"103045", RecordingKind::Normal, "10:30:45"},
                                     {"103045_P", RecordingKind::Locked, "10:30:45"},
                                     {"103045_p", RecordingKind::Locked, "10:30:45"},
                                     {"103045P", RecordingKind::Locked, "01:03:04"},
                                     {"93045", RecordingKind::Normal, "09:30:45"},
                                     {"P", RecordingKind::Locked, ""},
                                     {"clip", RecordingKind::Locked, "cl"},
                                     {"drive", RecordingKind::Normal, "drive"},
                                     {"", RecordingKind::Normal, ""}};
    for (const Case& each : cases) {
        EXPECT_EQ(kindOfBaseName(each.base), each.kind) << each.base;
        EXPECT_EQ(timeOfBaseName(each.base), each.time) << each.base;
    }
}

TEST(RecordingNames, make_date_and_time_in_twenty_characters) {
    EXPECT_EQ(dateAndTimeOfNames("20121009_A", "103045_P"), "2012/10/09  10:30:45");
    EXPECT_EQ(dateAndTimeOfNames("20121009", "drive"), "2012/10/09  drive   ");
    EXPECT_EQ(dateAndTimeOfNames("20121009", "a long name"), "2012/10/09  a long n");
}

TEST(RecordingNames, tell_recordings_by_their_ending) {
    for (const char* name : {"a.mp4", "a.MP4", "103045.Mp4"})
        EXPECT_TRUE(isRecordingName(name)) << name;
    for (const char* name : {".mp4", "mp4", "a.mp4x", "a.avi", ""})
        EXPECT_FALSE(isRecordingName(name)) << name;
    EXPECT_EQ(baseNameOf("103045_P.MP4"), "103045_P");
    EXPECT_EQ(baseNameOf("MP4"), "");
}

} // namespace
} // namespace velmorant
