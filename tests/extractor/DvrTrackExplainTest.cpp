// What the command says of a recording and of a card.
#include <gmock/gmock.h>

#include "extractor/command/TracedReading.h"
#include "tests/extractor/DvrTrackFixture.h"

namespace velmorant::telemetry {

using namespace recordings;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

class DvrTrackExplain : public DvrTrack {
  protected:
    std::string pathOf(const char* name) const { return (folder_ / name).string(); }
    void writeTunnel() {
        auto drive = Driver({}, 70, 5).drive(start_, 30);
        loseFix(drive, 10, 14);
        write("tunnel.MP4", maker("freegps_letters_28").make(drive));
    }
};

} // namespace

TEST_F(DvrTrackExplain, says_in_plain_words_what_was_read_and_trusted) {
    writeTunnel();
    EXPECT_EQ(run({"--explain", pathOf("tunnel.MP4")}), 0);
    const std::string said = out_.str();
    EXPECT_THAT(said, StartsWith(pathOf("tunnel.MP4") + "\nformat: freeGPS blocks\n"));
    EXPECT_THAT(said, HasSubstr("25 of 30 seconds have a position that is trusted"));
    EXPECT_THAT(said, HasSubstr("25 s good (trusted): 0:00 to 0:09, 0:15 to 0:29"));
    EXPECT_THAT(said, HasSubstr("5 s no fix (the recorder says itself that it had no position): "
                                "0:10 to 0:14"));
    EXPECT_THAT(said, HasSubstr("clock: UTC\n  the recording starts at 2024-06-12T10:30:45Z\n"));
    EXPECT_THAT(said, HasSubstr("  the creation time is the same"));
    EXPECT_THAT(said, testing::ContainsRegex("  moov/gps  at byte [0-9]+: [0-9]+ of [0-9]+ bytes"));
    EXPECT_THAT(said, testing::ContainsRegex("  mdat at byte [0-9]+: [0-9]+ of [0-9]+ bytes"));
}

TEST_F(DvrTrackExplain, names_the_byte_at_which_a_box_really_begins) {
    EXPECT_EQ(run({"--explain", "--json", pathOf("day/120000.MP4")}), 0);
    const std::string said = out_.str();
    const std::string bytes = contentOf(folder_ / "day/120000.MP4");
    const std::size_t box = bytes.find("GPS ");
    ASSERT_NE(box, std::string::npos);
    EXPECT_THAT(said, HasSubstr("{\"path\":\"GPS \",\"offset\":" + std::to_string(box - 4) + ","));
}

TEST_F(DvrTrackExplain, says_the_same_as_json) {
    writeTunnel();
    EXPECT_EQ(run({"--explain", "--json", pathOf("tunnel.MP4"), pathOf("day/120000.MP4")}), 0);
    const std::string said = out_.str();
    EXPECT_THAT(said, StartsWith("[\n{\"recording\":"));
    EXPECT_THAT(said, HasSubstr("\"family\":\"freeGPS blocks\",\"duration\":30.000,\"seconds\":30,"
                                "\"trusted\":25,\"start\":\"2024-06-12T10:30:45Z\""));
    EXPECT_THAT(said, HasSubstr("\"clock\":{\"base\":\"utc\",\"meaning\":\"UTC\",\"reasons\":["));
    EXPECT_THAT(said, HasSubstr("{\"state\":\"good\",\"first\":0,\"last\":9},"
                                "{\"state\":\"no fix\",\"first\":10,\"last\":14}"));
    EXPECT_THAT(said, HasSubstr("]},\n{\"recording\":"));
    EXPECT_THAT(said, testing::EndsWith("]}\n]\n"));
}

TEST_F(DvrTrackExplain, says_why_a_recording_cannot_be_used_or_holds_nothing) {
    write("broken.MP4", ByteVector(100, 'x'));
    EXPECT_EQ(run({"--explain", pathOf("broken.MP4")}), 1);
    EXPECT_THAT(out_.str(), HasSubstr("cannot be used: "));
    EXPECT_THAT(out_.str(), HasSubstr("the file is no MP4 recording"));
    Mp4Plan plan;
    plan.seconds = 5;
    write("plain.MP4", buildMp4(plan));
    EXPECT_EQ(run({"--explain", pathOf("plain.MP4")}), 1);
    EXPECT_THAT(out_.str(), HasSubstr("no telemetry track, no GPS block or box, no file beside"));
    EXPECT_EQ(run({"--explain", pathOf("none.MP4")}), 3);
}

TEST_F(DvrTrackExplain, checks_a_card_with_one_line_for_each_recording) {
    EXPECT_EQ(run({"--check", folder_.string()}), 0) << out_.str();
    EXPECT_EQ(countOf(out_.str(), "\ngood "), 3U);
    writeTunnel();
    EXPECT_EQ(run({"--check", folder_.string()}), 0);
    EXPECT_THAT(out_.str(),
                testing::ContainsRegex(
                    "good +freeGPS blocks +30 +25 +utc +1 \\(5 s\\) +[^\n]*tunnel.MP4\n"));
    write("broken.MP4", ByteVector(100, 'x'));
    Mp4Plan plan;
    plan.seconds = 5;
    write("plain.MP4", buildMp4(plan));
    EXPECT_EQ(run({"--check", folder_.string()}), 1);
    EXPECT_THAT(out_.str(), testing::ContainsRegex("WANTING +- [^\n]*broken.MP4: the file is no"));
    EXPECT_THAT(out_.str(),
                testing::ContainsRegex("WANTING +none +5 +0 [^\n]*plain.MP4: no telemetry track"));
    EXPECT_EQ(run({"--check", pathOf("none.MP4"), pathOf("plain.MP4")}), 3);
    EXPECT_THAT(out_.str(), HasSubstr("UNREADABLE"));
}

TEST_F(DvrTrackExplain, a_track_that_was_taken_from_the_front_is_no_damage) {
    const auto drive = Driver({}, 70, 5).drive(start_, 30);
    write("20240612_103045_F.MP4", maker("free_box").make(drive));
    Mp4Plan plan;
    plan.seconds = 30;
    write("20240612_103045_R.MP4", buildMp4(plan));
    EXPECT_EQ(run({"--check", pathOf("20240612_103045_R.MP4")}), 0) << out_.str();
    EXPECT_THAT(out_.str(), testing::ContainsRegex("good +front recording +30 +30"));
}

TEST_F(DvrTrackExplain, goes_with_no_format) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--explain", "-f", "gpx", "a.mp4"},
          {"--check", "-f", "gpx", "a.mp4"},
          {"--check", "--json", "a.mp4"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_THAT(errors_.str(), HasSubstr("--explain and --check write no track"));
    }
}

TEST(TracedSource, counts_each_byte_once) {
    TracedSource source(std::make_unique<MemorySource>("a", ByteVector(1000)));
    ByteVector into(100);
    source.readAt(100, into);
    source.readAt(150, into);
    source.readAt(950, into); // the last 50
    source.readAt(400, into);
    source.readAt(350, std::span(into).first(50));
    EXPECT_EQ(source.readBetween(0, 1000), 150U + 50U + 150U);
    EXPECT_EQ(source.readBetween(120, 260), 130U);
    EXPECT_EQ(source.readBetween(260, 340), 0U);
    source.forget();
    EXPECT_EQ(source.readBetween(0, 1000), 0U);
}

} // namespace velmorant::telemetry
