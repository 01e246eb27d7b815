#include "track/TrackReason.h"

#include "resources/strings/AdditionTable.h"
#include "telemetry/Result.h"
#include "tests/fakes/FakeTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class TrackReasonTest : public ::testing::Test {
  protected:
    std::string words(const std::string& code, TrackReason::Kind kind, std::int64_t amount = 0) {
        return plainWords({kind, code, amount, "technical"}, texts);
    }

    fakes::FakeTexts texts;
    const TrackReason::Kind kinds[2] = {TrackReason::Kind::NoTrack, TrackReason::Kind::PartOfTrack};
};

TEST_F(TrackReasonTest, every_code_of_the_extractor_has_words_of_its_own_in_the_table) {
    using telemetry::ReasonCode;
    for (int i = 0; i <= static_cast<int>(ReasonCode::notWritten); ++i) {
        const std::string code(name(static_cast<ReasonCode>(i)));
        for (const TrackReason::Kind kind : kinds) {
            const std::string found = words(code, kind);
            EXPECT_NE(found, "<reason.noTrack>") << code;
            EXPECT_NE(found, "<reason.partOfTrack>") << code;
            EXPECT_TRUE(additionTexts(found.substr(1, found.size() - 2))) << code;
        }
    }
}

TEST_F(TrackReasonTest, an_unknown_code_gets_general_words) {
    for (const char* code : {"", "of-a-later-release"}) {
        EXPECT_EQ(words(code, TrackReason::Kind::NoTrack), "<reason.noTrack>");
        EXPECT_EQ(words(code, TrackReason::Kind::PartOfTrack), "<reason.partOfTrack>");
    }
    EXPECT_TRUE(additionTexts("reason.noTrack"));
    EXPECT_TRUE(additionTexts("reason.partOfTrack"));
}

TEST_F(TrackReasonTest, says_how_much_of_a_recording_is_cut_off) {
    texts.texts["reason.cutOffBySeconds"] = "the last %1 s are missing";
    const auto kind = TrackReason::Kind::PartOfTrack;
    EXPECT_EQ(words("cut-off", kind, 12), "the last 12 s are missing");
    EXPECT_EQ(words("cut-off", kind, 1), "<reason.cutOffBySecond>");
    EXPECT_EQ(words("cut-off", kind, 0), "<reason.cutOff>");
    EXPECT_TRUE(additionTexts("reason.cutOffBySeconds"));
    EXPECT_TRUE(additionTexts("reason.cutOffBySecond"));
}

TEST_F(TrackReasonTest, the_plain_words_stand_before_the_technical_ones) {
    EXPECT_EQ(wordsWithDetails({TrackReason::Kind::NoTrack, "empty", 0, "at byte 7"}, texts),
              "<reason.empty>\nat byte 7");
    EXPECT_EQ(wordsWithDetails({TrackReason::Kind::NoTrack, "empty", 0, ""}, texts),
              "<reason.empty>");
}

TEST_F(TrackReasonTest, a_line_is_bounded_and_cut_between_characters) {
    EXPECT_EQ(boundedLine("short"), "short");
    EXPECT_EQ(boundedLine("two\nlines\x1b[31m"), "two lines [31m");
    std::string cars;
    for (int i = 0; i < 1000; ++i)
        cars += "\xe8\xbb\x8a";
    EXPECT_EQ(boundedLine(cars), cars.substr(0, 900) + "\xe2\x80\xa6");
}

TEST_F(TrackReasonTest, an_extractors_code_is_found_among_its_words) {
    const TrackReason reason = reasonOfWords("Parse: note: /a [empty].MP4: odd\n"
                                             "Parse: [disk-full] /tmp/x: cannot be written\n"
                                             "last line\n");
    EXPECT_EQ(reason.code, "disk-full");
    EXPECT_EQ(reason.technical, "Parse: [disk-full] /tmp/x: cannot be written");
    EXPECT_EQ(reason.kind, TrackReason::Kind::NoTrack);
}

TEST_F(TrackReasonTest, words_without_a_code_are_told_as_they_stand) {
    EXPECT_EQ(reasonOfWords("").technical, "");
    EXPECT_EQ(reasonOfWords("").code, "");
    EXPECT_EQ(reasonOfWords("one\ntwo\n\n").technical, "two");
    EXPECT_EQ(reasonOfWords("no closing [bracket").code, "");
    EXPECT_EQ(reasonOfWords("[No Code] here").code, "");
    EXPECT_EQ(reasonOfWords("] reversed [").code, "");
    EXPECT_THAT(reasonOfWords(std::string(5'000'000, 'x')).technical.size(), ::testing::Lt(400u));
    EXPECT_THAT(reasonOfWords("[empty] " + std::string("\x1b[2J")).technical,
                Not(HasSubstr("\x1b")));
}

} // namespace
} // namespace velmorant
