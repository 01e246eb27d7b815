#include "app/Journal.h"

#include "common/trapErrors.h"
#include "tests/builders/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>

namespace velmorant {
namespace {

using builders::TemporaryFolder;
using testing::HasSubstr;
using testing::MatchesRegex;

std::chrono::system_clock::time_point moment() {
    return std::chrono::system_clock::time_point(std::chrono::milliseconds(1'700'000'000'042));
}

TEST(Journal, a_line_has_time_level_and_text) {
    const TemporaryFolder folder;
    Journal journal(folder.file("j"), JournalLevel::Debug, moment);
    journal.write("page velmorant://map/");
    journal.write(JournalLevel::Error, "行車");
    journal.write(JournalLevel::Warning, "");
    journal.write(JournalLevel::Debug, "d");
    EXPECT_EQ(folder.read("j"), "2023-11-14T22:13:20.042Z info page velmorant://map/\n"
                                "2023-11-14T22:13:20.042Z error 行車\n"
                                "2023-11-14T22:13:20.042Z warning \n"
                                "2023-11-14T22:13:20.042Z debug d\n");
}

TEST(Journal, keeps_the_lines_up_to_its_level) {
    const JournalLevel levels[] = {JournalLevel::Error, JournalLevel::Warning, JournalLevel::Info,
                                   JournalLevel::Debug};
    for (int most = 0; most < 4; ++most) {
        const TemporaryFolder folder;
        Journal journal(folder.file("j"), levels[most], moment);
        for (const JournalLevel level : levels)
            journal.write(level, "x");
        const std::string text = folder.read("j");
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), most + 1);
    }
}

TEST(Journal, appends_to_what_is_there_at_once) {
    const TemporaryFolder folder;
    folder.write("j", "earlier\n");
    Journal journal(folder.file("j"), JournalLevel::Info, moment);
    journal.write("x");
    EXPECT_EQ(folder.read("j"), "earlier\n2023-11-14T22:13:20.042Z info x\n");
}

TEST(Journal, a_text_stays_on_its_line) {
    const TemporaryFolder folder;
    Journal journal(folder.file("j"), JournalLevel::Info, moment);
    journal.write(std::string("a\nb\r\tc\\\x01\x7f\0d", 11));
    EXPECT_EQ(folder.read("j"), "2023-11-14T22:13:20.042Z info a\\nb\\r\\tc\\\\\\x01\\x7f\\x00d\n");
}

TEST(Journal, a_long_text_is_cut) {
    const TemporaryFolder folder;
    Journal journal(folder.file("j"), JournalLevel::Info, moment);
    journal.write(std::string(4000, 'x'));
    journal.write(std::string(4001, 'y'));
    const std::string text = folder.read("j");
    EXPECT_THAT(text, HasSubstr(std::string(4000, 'x') + "\n"));
    EXPECT_THAT(text, HasSubstr(" " + std::string(4000, 'y') + "...\n"));
}

TEST(Journal, writes_nothing_without_a_file) {
    const TemporaryFolder folder;
    Journal none("");
    none.write("x");
    Journal impossible(folder.file("none/j"));
    impossible.write("x");
    EXPECT_FALSE(std::filesystem::exists(folder.file("none/j")));
}

TEST(Journal, notes_an_error_that_a_handler_passes_over) {
    const TemporaryFolder folder;
    Journal journal(folder.file("j"), JournalLevel::Warning, moment);
    const StepOutcome outcome =
        trapErrors(&journal, [] { throw StepError("/card/1.MP4: no such file"); });
    EXPECT_EQ(outcome, StepOutcome::Failed);
    EXPECT_THAT(folder.read("j"),
                MatchesRegex("2023-11-14T22:13:20.042Z warning passed over in .*TestBody\\(\\) "
                             "\\(JournalTest.cpp:[0-9]+\\): /card/1.MP4: no such file\n"));
    EXPECT_EQ(trapErrors(&journal, [] {}), StepOutcome::Done);
    EXPECT_EQ(trapErrors(nullptr, [] { throw StepError("x"); }), StepOutcome::Failed);
}

TEST(JournalLevel, is_named_in_any_case) {
    EXPECT_EQ(journalLevelNamed("error"), JournalLevel::Error);
    EXPECT_EQ(journalLevelNamed("Warning"), JournalLevel::Warning);
    EXPECT_EQ(journalLevelNamed("INFO"), JournalLevel::Info);
    EXPECT_EQ(journalLevelNamed("debug"), JournalLevel::Debug);
    for (const char* word : {"", "all", "infos", " info"})
        EXPECT_EQ(journalLevelNamed(word), std::nullopt) << word;
}

} // namespace
} // namespace velmorant
