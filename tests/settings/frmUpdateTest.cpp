#include "tests/settings/UpdateRun.h"
#include "update/Sha256.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace velmorant {
namespace {

using builders::catalogueText;
using testing::ElementsAre;
using testing::HasSubstr;

using frmUpdateTest = UpdateRun;

TEST_F(frmUpdateTest, fetches_the_catalogue_into_a_folder_that_it_makes) {
    serveCatalogue(catalogueText("", {}));
    frmUpdate update(needs());
    EXPECT_FALSE(startLoad.enabled());
    EXPECT_FALSE(allLoad.enabled());
    EXPECT_EQ(startLoad.interval(), 100);
    EXPECT_EQ(allLoad.interval(), 100);

    update.Open(UpdateOpening::Automatic);
    EXPECT_FALSE(update.firstDownloadDone());
    EXPECT_EQ(transfer.port, 80);
    EXPECT_THAT(transfer.requests, ElementsAre(base + "update/remote.rar"));
    transfer.answer();

    EXPECT_TRUE(update.firstDownloadDone());
    EXPECT_TRUE(startLoad.enabled());
    EXPECT_EQ(folder.read("update/remote.mp4"), catalogueText("", {}));
}

TEST_F(frmUpdateTest, uses_port_443_for_https) {
    texts.texts["1"] = "https://update.test/";
    frmUpdate update(needs());
    update.Open(UpdateOpening::Automatic);
    EXPECT_EQ(transfer.port, 443);
}

TEST_F(frmUpdateTest, closes_silently_when_the_server_names_no_version) {
    serveCatalogue("[config]\r\nmainall=1\r\n");
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(window.closes, 1);
    EXPECT_EQ(window.shows, 0);
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(frmUpdateTest, fetches_nothing_for_versions_that_differ_in_case_alone) {
    folder.write("config.mp4", catalogueText("Release-A", {}));
    serveCatalogue(catalogueText("rELEASE-a", {{"a.txt", "a", "1"}}));
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(transfer.requests.size(), 1U);
    EXPECT_EQ(window.closes, 1);
    EXPECT_EQ(window.shows, 0);
    EXPECT_FALSE(folder.has("a.txt"));
}

TEST_F(frmUpdateTest, copies_the_catalogue_at_once_when_it_has_no_entries) {
    serveCatalogue(catalogueText("2", {}));
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(allLoad.ticks(), 1);
    EXPECT_EQ(folder.read("config.mp4"), catalogueText("2", {}));
}

TEST_F(frmUpdateTest, fetches_what_differs_one_entry_per_tick_and_copies_the_catalogue_last) {
    folder.write("config.mp4", catalogueText("1", {{"a.txt", "a", "v1"}, {"b.txt", "b", "X"}}));
    folder.write("a.txt", "old a");
    folder.write("b.txt", "old b");
    const std::string next = catalogueText(
        "2", {{"a.txt", "a", "v2"}, {"b.txt", "b", "x"}, {"sub\\deep\\c.txt", "c", "v1"}});
    serveCatalogue(next);
    serve("a", "new a");
    serve("c", "new c");
    frmUpdate update(needs());
    run(update);
    EXPECT_THAT(transfer.requests, ElementsAre(base + "update/remote.rar", base + "a", base + "c"));
    EXPECT_EQ(folder.read("a.txt"), "new a");
    EXPECT_EQ(folder.read("b.txt"), "old b");
    EXPECT_EQ(folder.read("sub/deep/c.txt"), "new c");
    EXPECT_EQ(folder.read("config.mp4"), next);
    EXPECT_EQ(allLoad.ticks(), 4);
    EXPECT_EQ(progress.sums.back(), std::make_pair(3, 3));
    EXPECT_EQ(window.shows, 1);
}

TEST_F(frmUpdateTest, says_that_all_is_up_to_date_and_closes_itself) {
    serveCatalogue(catalogueText("2", {}));
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(progress.status, "<update.upToDate>");
    EXPECT_EQ(window.closes, 0);
    timers.advance(2000);
    EXPECT_EQ(window.closes, 1);
    EXPECT_FALSE(update.running());
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(frmUpdateTest, takes_an_entry_without_versions_on_both_sides_for_equal) {
    serveCatalogue("[config]\nmainv=2\nmainall=1\n[NO0]\nLOCAL=a.txt\nREMOTE=a\n");
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(transfer.requests.size(), 1U);
    EXPECT_TRUE(folder.has("config.mp4"));
}

TEST_F(frmUpdateTest, writes_in_chunks_of_1024_bytes_and_shows_the_bytes) {
    serveCatalogue(catalogueText("2", {{"a.txt", "a", "1"}}));
    serve("a", std::string(2500, 'x'));
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(update.singleMaximum(), 2500);
    const std::vector<std::pair<std::int64_t, std::int64_t>> last(progress.singles.end() - 3,
                                                                  progress.singles.end());
    EXPECT_THAT(last, ElementsAre(std::pair<std::int64_t, std::int64_t>(1024, 2500),
                                  std::pair<std::int64_t, std::int64_t>(2048, 2500),
                                  std::pair<std::int64_t, std::int64_t>(2500, 2500)));
    for (const std::size_t size : transfer.sizes)
        EXPECT_EQ(size, 1024U);
}

TEST_F(frmUpdateTest, reads_a_body_of_untold_length_to_its_end_and_keeps_the_maximum) {
    const std::string text = catalogueText("2", {{"a.txt", "a", "1"}});
    serveCatalogue(text);
    transfer.answers[base + "a"] = {200, std::string(5000, 'y'), {}, false, false};
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(folder.read("a.txt"), std::string(5000, 'y'));
    EXPECT_EQ(update.singleMaximum(), static_cast<std::int64_t>(text.size()));
}

TEST_F(frmUpdateTest, asks_for_the_main_program_and_starts_the_updater) {
    for (const char* name : {"QVMP4.EXE", "qvmp4.exe", "velmorant dvr tools"}) {
        SCOPED_TRACE(name);
        shell.calls.clear();
        messageBox.shown.clear();
        transfer.requests.clear();
        folder.write("config.mp4", catalogueText("1", {}));
        serveCatalogue(catalogueText(
            "2", {{"a.txt", "a", "1"}, {name, "main", "1"}, {"later.txt", "later", "1"}}));
        serve("a", "new");
        messageBox.answers = {MessageAnswer::Yes};
        frmUpdate update(needs());
        run(update);
        ASSERT_EQ(messageBox.shown.size(), 2U);
        EXPECT_EQ(messageBox.shown[0],
                  (fakes::ShownMessage{"<13042>", "<13026>", MessageStyle::InformationChoice}));
        EXPECT_EQ(messageBox.shown[1].text, "<update.whenClosed>");
        ASSERT_EQ(shell.calls.size(), 1U);
        EXPECT_EQ(shell.calls[0], (fakes::ShellCall{"open", folder.path("velmupdate"), "",
                                                    folder.path(), ShowWindow::Normal}));
        EXPECT_EQ(folder.read("a.txt"), "new");
        EXPECT_FALSE(folder.has("later.txt"));
        EXPECT_EQ(folder.read("config.mp4"), catalogueText("1", {}));
        EXPECT_EQ(transfer.requests.size(), 2U);
    }
    EXPECT_EQ(window.closes, 3);
}

TEST_F(frmUpdateTest, stops_the_run_when_the_main_program_is_declined) {
    serveCatalogue(catalogueText("2", {{"QVMP4.EXE", "main", "1"}}));
    messageBox.answers = {MessageAnswer::No};
    frmUpdate update(needs());
    run(update);
    EXPECT_TRUE(shell.calls.empty());
    EXPECT_EQ(window.closes, 1);
    EXPECT_FALSE(folder.has("config.mp4"));
}

TEST_F(frmUpdateTest, tells_when_the_updater_does_not_start) {
    serveCatalogue(catalogueText("2", {{"QVMP4.EXE", "main", "1"}}));
    messageBox.answers = {MessageAnswer::Yes};
    shell.result = 2;
    frmUpdate update(needs());
    run(update);
    ASSERT_EQ(messageBox.shown.size(), 2U);
    EXPECT_EQ(messageBox.shown[1].style, MessageStyle::Stop);
    EXPECT_THAT(messageBox.shown[1].text, HasSubstr("File not found"));
}

TEST_F(frmUpdateTest, does_not_ask_for_a_main_program_whose_digest_says_that_it_runs_already) {
    folder.write("Velmorant DVR Tools", "the program");
    serveCatalogue(catalogueText("2", {{"QVMP4.EXE", "main", "1", Sha256::of("the program")}}));
    frmUpdate update(needs());
    run(update);
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_TRUE(folder.has("config.mp4"));
}

TEST_F(frmUpdateTest, ends_the_run_for_a_number_of_entries_that_is_none) {
    for (const char* count : {"", "many", "32768", "-1", "99999999999999999999"}) {
        SCOPED_TRACE(count);
        serveCatalogue("[config]\nmainv=2\nmainall=" + std::string(count) +
                       "\n[NO0]\nLOCAL=a.txt\nREMOTE=a\nVERSION=1\n");
        frmUpdate update(needs());
        run(update);
        EXPECT_FALSE(update.running());
        EXPECT_FALSE(folder.has("a.txt"));
        EXPECT_FALSE(folder.has("config.mp4"));
    }
}

TEST_F(frmUpdateTest, checks_the_digest_before_a_file_takes_its_name) {
    folder.write("a.txt", "old");
    serveCatalogue(catalogueText("2", {{"a.txt", "a", "1", Sha256::of("new")}}));
    serve("a", "bad");
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(folder.read("a.txt"), "old");
    serve("a", "new");
    run(update);
    EXPECT_EQ(folder.read("a.txt"), "new");
}

TEST_F(frmUpdateTest, keeps_the_rights_of_a_file_and_lets_a_new_program_run) {
    folder.write("tool", "old");
    std::filesystem::permissions(folder.path("tool"), std::filesystem::perms{0750});
    serveCatalogue(
        catalogueText("2", {{"tool", "t", "1"}, {"script", "s", "1"}, {"plain.txt", "p", "1"}}));
    serve("t", "new");
    serve("s", "#!/bin/sh\n");
    serve("p", "text");
    frmUpdate update(needs());
    run(update);
    const auto rights = [this](const char* name) {
        return static_cast<unsigned>(std::filesystem::status(folder.path(name)).permissions());
    };
    EXPECT_EQ(rights("tool"), 0750U);
    EXPECT_EQ(rights("script") & 0100U, 0100U);
    EXPECT_EQ(rights("plain.txt") & 0111U, 0U);
}

TEST_F(frmUpdateTest, is_shown_at_once_on_request_and_tells_how_it_ended) {
    folder.write("config.mp4", catalogueText("2", {}));
    serveCatalogue(catalogueText("2", {}));
    frmUpdate update(needs());
    update.Open(UpdateOpening::OnRequest);
    EXPECT_EQ(window.shows, 1);
    settle();
    EXPECT_THAT(messageBox.shown, ElementsAre(fakes::ShownMessage{"<update.upToDate>", "<13000>",
                                                                  MessageStyle::Information}));
    EXPECT_EQ(window.closes, 1);

    transfer.answers[base + "update/remote.rar"].refused = true;
    transfer.answers[base + "update/remote.rar"].code = 0;
    run(update, UpdateOpening::OnRequest);
    EXPECT_EQ(messageBox.shown.back().text, "<13019>\n" + base + "update/remote.rar: refused");

    transfer.answers.clear();
    run(update, UpdateOpening::OnRequest);
    EXPECT_THAT(messageBox.shown.back().text, HasSubstr("404"));
}

TEST_F(frmUpdateTest, asks_no_server_without_a_web_address_or_in_a_packaged_installation) {
    frmUpdate update(needs());
    texts.texts["1"] = "velmorant://map/";
    run(update, UpdateOpening::OnRequest);
    EXPECT_EQ(messageBox.shown.back().text, "<update.noServer>");
    texts.texts["1"] = base;
    paths.writableFolder = "/home/user/data";
    run(update, UpdateOpening::OnRequest);
    EXPECT_EQ(messageBox.shown.back().text, "<update.packaged>");
    EXPECT_TRUE(transfer.requests.empty());
    EXPECT_TRUE(folder.contents().empty());
}

TEST_F(frmUpdateTest, shows_a_hidden_run_that_is_asked_for) {
    folder.write("config.mp4", catalogueText("2", {}));
    serveCatalogue(catalogueText("2", {}));
    frmUpdate update(needs());
    update.Open(UpdateOpening::Automatic);
    EXPECT_EQ(window.shows, 0);
    update.Open(UpdateOpening::OnRequest);
    EXPECT_EQ(window.shows, 1);
    settle();
    EXPECT_EQ(transfer.requests.size(), 1U);
    EXPECT_EQ(messageBox.shown.size(), 1U);
}

TEST_F(frmUpdateTest, is_abandoned_when_the_window_closes_and_repeated_by_the_next_run) {
    serveCatalogue(catalogueText("2", {{"a.txt", "a", "1"}, {"b.txt", "b", "1"}}));
    serve("a", "new a");
    serve("b", "new b");
    frmUpdate update(needs());
    update.Open(UpdateOpening::Automatic);
    transfer.answer();
    timers.advance(200);
    transfer.answer();
    timers.advance(100);
    update.Close();
    EXPECT_EQ(folder.read("a.txt"), "new a");
    EXPECT_FALSE(folder.has("b.txt"));
    EXPECT_FALSE(folder.has("config.mp4"));
    EXPECT_FALSE(transfer.answer());

    run(update);
    EXPECT_EQ(folder.read("b.txt"), "new b");
    EXPECT_TRUE(folder.has("config.mp4"));
}

TEST_F(frmUpdateTest, does_nothing_more_once_it_was_closed_whatever_was_next) {
    serveCatalogue(catalogueText("2", {{"a.txt", "a", "1"}}));
    frmUpdate update(needs());
    update.Open(UpdateOpening::Automatic);
    transfer.answer();
    ASSERT_TRUE(startLoad.enabled());
    update.Close();
    EXPECT_FALSE(startLoad.enabled());

    update.Open(UpdateOpening::Automatic);
    transfer.answer();
    timers.advance(100);
    ASSERT_TRUE(allLoad.enabled());
    update.Close();
    EXPECT_FALSE(allLoad.enabled());

    serveCatalogue(catalogueText("2", {}));
    run(update);
    ASSERT_TRUE(close.enabled());
    const int closes = window.closes;
    update.Close();
    EXPECT_FALSE(close.enabled());
    timers.advance(10'000);
    EXPECT_EQ(window.closes, closes + 1);
    update.Close();
    EXPECT_EQ(window.closes, closes + 1);
}

TEST_F(frmUpdateTest, begins_every_run_with_empty_bars_and_its_title) {
    serveCatalogue(catalogueText("2", {{"a.txt", "a", "1"}}));
    serve("a", "new");
    frmUpdate update(needs());
    run(update);
    update.Close();
    progress.sums.clear();
    progress.singles.clear();
    update.Load(UpdateOpening::OnRequest);
    EXPECT_EQ(window.caption, "<update.title>");
    EXPECT_EQ(progress.status, "<update.checking>");
    EXPECT_THAT(progress.sums, ElementsAre(std::make_pair(0, 0)));
    ASSERT_EQ(progress.singles.size(), 1U);
    EXPECT_EQ(progress.singles[0].first, 0);
    EXPECT_EQ(update.sumValue(), 0);
    EXPECT_EQ(update.sumMaximum(), 0);
    EXPECT_FALSE(update.firstDownloadDone());
}

TEST_F(frmUpdateTest, leaves_the_folder_to_another_update_of_it) {
    ProgramTree other(folder.path());
    ASSERT_EQ(other.lock(), TreeLock::Taken);
    frmUpdate update(needs());
    run(update, UpdateOpening::OnRequest);
    EXPECT_EQ(messageBox.shown.back().text, "<update.running>");
    EXPECT_TRUE(transfer.requests.empty());
}

} // namespace
} // namespace velmorant
