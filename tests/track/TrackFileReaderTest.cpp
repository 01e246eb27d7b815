#include "track/TrackFileReader.h"

#include "common/StepError.h"
#include "tests/fakes/FakeXmlDocument.h"
#include "tests/track/trackFileContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class TrackFileReaderTest : public ::testing::Test {
  protected:
    std::shared_ptr<clsDot> read(const fakes::XmlContent& content) {
        document.documents["file"] = content;
        reader.load("file");
        return reader.read();
    }
    std::shared_ptr<clsDot> readOne(const fakes::XmlContent::Record& record) {
        fakes::XmlContent content;
        content.records.emplace_back("gpsinfo", record);
        return read(content);
    }
    std::string errorOf(const fakes::XmlContent& content) {
        try {
            read(content);
        } catch (const StepError& error) {
            return error.what();
        }
        return "no error";
    }

    fakes::FakeXmlDocument document;
    TrackFileReader reader{document};
};

TEST_F(TrackFileReaderTest, a_sample_becomes_a_dot) {
    const auto track = readOne(sampleRecord(8, 5, 9));
    ASSERT_NE(track, nullptr);
    ASSERT_EQ(track->count(), 1);
    const TrackDot& dot = track->dot(1);
    EXPECT_EQ(dot.dateText, "2012/9/7 08:05:09");
    EXPECT_EQ(dot.timeText, "00:00");
    EXPECT_EQ(dot.second, 0);
    EXPECT_EQ(dot.speed, 60);
    EXPECT_EQ(dot.angle, 90) << "89.5 rounds to the even neighbour";
    EXPECT_EQ(dot.lonLatText, "+121.5012345|+25.0412345");
    EXPECT_EQ(dot.x, 1215012345);
    EXPECT_EQ(dot.y, 250412345);
    EXPECT_EQ(dot.gSum, 1.01);
    EXPECT_EQ(dot.gX, 0.12) << "half to even at the hundredth";
    EXPECT_EQ(dot.gY, -0.2);
    EXPECT_EQ(dot.gZ, 0.98);
}

TEST_F(TrackFileReaderTest, seconds_count_from_the_first_sample) {
    const auto track = read(trackFileContent(80));
    ASSERT_EQ(track->count(), 80);
    EXPECT_EQ(track->dot(1).second, 0);
    EXPECT_EQ(track->dot(66).second, 65);
    EXPECT_EQ(track->dot(66).timeText, "01:05");
    EXPECT_EQ(track->dot(66).dateText, "2012/9/7 08:06:14");
}

TEST_F(TrackFileReaderTest, minutes_of_the_time_text_are_not_wrapped_at_sixty) {
    fakes::XmlContent content;
    content.records.emplace_back("gpsinfo", sampleRecord(8, 0, 0));
    content.records.emplace_back("gpsinfo", sampleRecord(9, 15, 3));
    EXPECT_EQ(read(content)->dot(2).timeText, "75:03");
}

TEST_F(TrackFileReaderTest, a_step_past_midnight_gives_negative_seconds) {
    fakes::XmlContent content;
    content.records.emplace_back("gpsinfo", sampleRecord(23, 59, 50));
    content.records.emplace_back("gpsinfo", sampleRecord(23, 59, 59));
    content.records.emplace_back("gpsinfo", sampleRecord(0, 0, 0));
    const auto track = read(content);
    EXPECT_EQ(track->dot(2).second, 86399 - 86390);
    EXPECT_EQ(track->dot(3).second, -86390);
    EXPECT_EQ(track->dot(3).timeText, "-1439:-50");
}

TEST_F(TrackFileReaderTest, hours_that_go_on_past_midnight_keep_the_seconds_rising) {
    fakes::XmlContent content;
    content.records.emplace_back("gpsinfo", sampleRecord(23, 59, 59));
    content.records.emplace_back("gpsinfo", sampleRecord(24, 0, 0));
    content.records.emplace_back("gpsinfo", sampleRecord(100, 0, 0));
    const auto track = read(content);
    EXPECT_EQ(track->dot(2).second, 1);
    EXPECT_EQ(track->dot(2).dateText, "2012/9/7 24:00:00");
    EXPECT_EQ(track->dot(3).second, 76 * 3600 + 1);
}

TEST_F(TrackFileReaderTest, blanks_around_a_text_do_not_count) {
    auto record = sampleRecord(8, 5, 9);
    setChild(record, "Longitude", "\n  121.5\n");
    setChild(record, "utc_Year", " 2012 ");
    const auto track = readOne(record);
    EXPECT_EQ(track->dot(1).lonLatText, "121.5|+25.0412345");
    EXPECT_EQ(track->dot(1).dateText, "2012/9/7 08:05:09");
}

TEST_F(TrackFileReaderTest, every_missing_element_is_an_error_that_names_sample_and_element) {
    for (const auto& [element, text] : sampleRecord(8, 5, 9)) {
        fakes::XmlContent content = trackFileContent(3);
        removeChild(content.records[1].second, element);
        EXPECT_THAT(errorOf(content),
                    AllOf(HasSubstr("sample 2"), HasSubstr(element), HasSubstr("missing")))
            << element;
    }
}

struct BadText {
    const char* element;
    const char* text;
};

TEST_F(TrackFileReaderTest, a_text_that_does_not_convert_is_an_error_that_names_its_place) {
    const BadText texts[] = {
        {"utc_Hour", "eight"}, {"utc_Minute", ""},     {"utc_Second", "9s"},
        {"Latitude", "25N"},   {"Longitude", "215.0"}, {"Angle", "north"},
        {"Speed", "32768"},    {"G_sum", "327.68"},    {"G_x", "-327.7"},
        {"G_y", "nan"},        {"G_z", "1e999"},       {"Longitude", "');alert('1"},
    };
    for (const BadText& bad : texts) {
        fakes::XmlContent content = trackFileContent(3);
        setChild(content.records[2].second, bad.element, bad.text);
        EXPECT_THAT(errorOf(content), AllOf(HasSubstr("sample 3"), HasSubstr(bad.element)))
            << bad.element << " = " << bad.text;
    }
}

TEST_F(TrackFileReaderTest, the_largest_acceleration_is_the_last_that_fits) {
    auto record = sampleRecord(8, 5, 9);
    setChild(record, "G_sum", "327.67");
    setChild(record, "G_x", "-327.68");
    const auto track = readOne(record);
    EXPECT_EQ(track->dot(1).gSum, 327.67);
    EXPECT_EQ(track->dot(1).gX, -327.68);
}

TEST_F(TrackFileReaderTest, a_first_time_that_does_not_fit_its_places_is_an_error) {
    fakes::XmlContent content;
    content.records.emplace_back("gpsinfo", sampleRecord(100, 0, 0));
    EXPECT_THAT(errorOf(content), HasSubstr("100:00:00"));
}

TEST_F(TrackFileReaderTest, a_file_without_samples_has_no_track) {
    const auto track = read({});
    EXPECT_EQ(track, nullptr);
    EXPECT_EQ(reader.sampleCount(), 0u);
    EXPECT_EQ(reader.recording(), "");
    EXPECT_FALSE(reader.error());
    EXPECT_FALSE(reader.notice());
}

TEST_F(TrackFileReaderTest, a_file_that_cannot_be_loaded_is_an_error_and_leaves_nothing) {
    document.documents["good"] = trackFileContent(2);
    reader.load("good");
    EXPECT_THROW(reader.load("bad"), StepError);
    EXPECT_EQ(reader.sampleCount(), 0u);
}

TEST_F(TrackFileReaderTest, tells_recording_error_and_notice) {
    fakes::XmlContent content;
    content.rootAttributes["recording"] = "/card/a  b & c.MP4";
    content.elements["error"] = " no video box ";
    content.elements["notice"] = "cut off";
    document.documents["file"] = content;
    reader.load("file");
    EXPECT_EQ(reader.recording(), "/card/a  b & c.MP4");
    ASSERT_TRUE(reader.error());
    EXPECT_EQ(reader.error()->technical, "no video box");
    ASSERT_TRUE(reader.notice());
    EXPECT_EQ(reader.notice()->technical, "cut off");
}

TEST_F(TrackFileReaderTest, a_reason_of_megabytes_is_one_short_line) {
    fakes::XmlContent content;
    content.elements["error"] = "first\nsecond " + std::string(5'000'000, 'x');
    content.elementAttributes["error"] = {{"code", std::string(5'000'000, 'y')},
                                          {"amount", "1e300"}};
    document.documents["file"] = content;
    reader.load("file");
    const auto error = reader.error();
    ASSERT_TRUE(error);
    EXPECT_THAT(error->technical, HasSubstr("first second xxx"));
    EXPECT_LT(error->technical.size(), 400u);
    EXPECT_LT(error->code.size(), 100u);
    EXPECT_EQ(error->amount, 0);
}

TEST_F(TrackFileReaderTest, a_sample_with_a_text_of_megabytes_is_an_error_that_can_be_shown) {
    for (const auto& [element, text] : sampleRecord(8, 5, 9)) {
        fakes::XmlContent content = trackFileContent(3);
        setChild(content.records[1].second, element, std::string(5'000'000, '1'));
        EXPECT_THAT(errorOf(content), AllOf(HasSubstr("sample 2"), HasSubstr(element)));
        EXPECT_LT(errorOf(content).size(), 200u) << element;
    }
}

TEST_F(TrackFileReaderTest, details_of_megabytes_keep_their_beginning) {
    auto record = sampleRecord(8, 5, 9);
    for (const char* element : {"time_recorded", "fix_reason"})
        setChild(record, element, std::string(5'000'000, 'x'));
    setChild(record, "fix", "no");
    fakes::XmlContent content;
    content.rootAttributes["time_base"] = std::string(5'000'000, 'x');
    content.records.emplace_back("gpsinfo", record);
    const auto track = read(content);
    ASSERT_EQ(track->details().samples.size(), 1u);
    EXPECT_LT(track->details().samples[0].recordedTime.size(), 100u);
    EXPECT_LT(track->details().samples[0].fixReason.size(), 100u);
}

struct EncodedPath {
    const char* encoding;
    const char* attribute;
    std::string path;
};

TEST_F(TrackFileReaderTest, a_path_that_xml_cannot_carry_is_decoded) {
    const EncodedPath paths[] = {
        {"percent", "/card/%FF%01x%25.MP4", "/card/\xff\x01x%.MP4"},
        {"percent", "/a%2", "/a%2"},
        {"percent", "/a%zz%4", "/a%zz%4"},
        {"percent", "/a%", "/a%"},
        {"", "/100%25.MP4", "/100%25.MP4"},
    };
    for (const EncodedPath& encoded : paths) {
        fakes::XmlContent content;
        content.rootAttributes["recording"] = encoded.attribute;
        if (*encoded.encoding != '\0')
            content.rootAttributes["recording_encoding"] = encoded.encoding;
        document.documents["file"] = content;
        reader.load("file");
        EXPECT_EQ(reader.recording(), encoded.path) << encoded.attribute;
    }
}

TEST_F(TrackFileReaderTest, keeps_what_else_the_extractor_tells_beside_the_dots) {
    fakes::XmlContent content = trackFileContent(3);
    content.rootAttributes["time_base"] = "camera";
    setChild(content.records[0].second, "fix", "yes");
    setChild(content.records[0].second, "G_max", "2.3456");
    setChild(content.records[0].second, "altitude", "12.5");
    setChild(content.records[0].second, "time_recorded", "2012-09-07T08:05:09.100");
    setChild(content.records[1].second, "fix", "no");
    setChild(content.records[1].second, "fix_reason", "jump");
    setChild(content.records[1].second, "G_max", "odd");
    const TrackDetails details = read(content)->details();
    EXPECT_EQ(details.timeBase, TimeBase::Camera);
    ASSERT_EQ(details.samples.size(), 3u);
    EXPECT_TRUE(details.samples[0].hasFix);
    EXPECT_EQ(details.samples[0].strongestG, 2.3456);
    EXPECT_EQ(details.samples[0].altitude, 12.5);
    EXPECT_EQ(details.samples[0].recordedTime, "2012-09-07T08:05:09.100");
    EXPECT_FALSE(details.samples[1].hasFix);
    EXPECT_EQ(details.samples[1].fixReason, "jump");
    EXPECT_EQ(details.samples[1].strongestG, std::nullopt) << "what is odd spoils no track";
    EXPECT_TRUE(details.samples[2].hasFix) << "another extractor tells nothing";
}

} // namespace
} // namespace velmorant
