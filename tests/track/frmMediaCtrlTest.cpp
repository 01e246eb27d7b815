// Long because the loading, the calls and the clicks of the page share one pane.
#include "track/frmMediaCtrl.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMediaPlayer.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeStatusLine.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/fakes/FakeWebBrowser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string address = "http://maps.example/DeskMap.asp?LangID=1028";
const std::string builtIn = "built-in:/DeskMap.asp?LangID=1028";

class frmMediaCtrlTest : public ::testing::Test {
  protected:
    frmMediaCtrlTest() {
        texts.texts["1"] = "http://maps.example/";
        texts.texts["map.noServer"] = "no answer: %1";
        texts.texts["map.notShown"] = "no map";
        browser.url = address;
    }

    void load() {
        pane.Load();
        pane.DocumentComplete(address);
    }
    /// A route of dots (first, first), (first + 1, first + 1) ... degrees, second 10 each.
    std::shared_ptr<clsDot> addTrack(const std::string& serial, int row, int first, int dots) {
        auto track = std::make_shared<clsDot>();
        for (int i = 0; i < dots; ++i)
            track->SetDot("", "", 0, i * 10, std::to_string(first + i), std::to_string(first + i),
                          0, 0, 0, 0, 0);
        track->lSerial(row);
        state.loadedTracks.add(toInt32(serial), track);
        RecordingEntry entry;
        entry.serial = toInt32(serial);
        entry.path = "/card/" + serial + ".MP4";
        entry.map = MapState::Shown;
        list.append({entry});
        EXPECT_EQ(list.count(), row);
        return track;
    }
    void openInPlayer(const std::string& path) {
        player.setUrl(path);
        player.state = PlayState::Playing;
    }
    void click(const std::string& value) {
        browser.properties["varLocal"] = value;
        timers.advance(200);
    }

    fakes::FakeTimers timers;
    fakes::FakeTimer tGetMapLocal{timers};
    fakes::FakeTimer tMapAnswer{timers};
    fakes::FakeWebBrowser browser;
    fakes::FakeSkin background;
    fakes::FakeSkin control;
    fakes::FakeHostPaths paths;
    fakes::FakeTexts texts;
    RecordingList list;
    fakes::FakePlayerControls player;
    RowStart start = RowStart::Started;
    std::vector<std::string> calls; ///< what a click did
    fakes::FakeStatusLine status;
    std::vector<std::int32_t> drawn;
    ProgramState state;
    frmMediaCtrl pane{needs()};

    MediaCtrlNeeds needs() {
        return {.htmlView = browser,
                .tGetMapLocal = tGetMapLocal,
                .tMapAnswer = tMapAnswer,
                .backgroundSkin = background,
                .controlSkin = control,
                .paths = paths,
                .texts = texts,
                .status = status,
                .state = state,
                .list = list,
                .player = player,
                .builtInBase = "built-in:/",
                .drawAgain = [this](std::int32_t number) { drawAgain(number); },
                .startRow =
                    [this](int row) {
                        calls.push_back("start " + std::to_string(row));
                        return start;
                    },
                .seek =
                    [this](double seconds) {
                        calls.push_back("seek " + std::to_string(static_cast<int>(seconds)));
                    }};
    }
    /// As extraction does it: the track's cursor is at its last dot then.
    void drawAgain(std::int32_t number) {
        drawn.push_back(number);
        const auto track = state.loadedTracks.find(number);
        track->lPlayLocal(track->count());
    }
};

TEST_F(frmMediaCtrlTest, loading_reads_the_skins_and_navigates_to_the_map_server) {
    pane.Load();
    EXPECT_THAT(background.loaded, ElementsAre("/program/skin/support/rightback.mp4"));
    EXPECT_THAT(control.loaded, ElementsAre("/program/skin/media/ctl.MP4"));
    EXPECT_THAT(browser.navigations, ElementsAre(address));
    EXPECT_EQ(pane.tag(), "0");
    EXPECT_FALSE(pane.ready());
    EXPECT_FALSE(tGetMapLocal.enabled());
}

TEST_F(frmMediaCtrlTest, the_address_does_not_follow_the_language) {
    texts.languageBase = 20000;
    state.settings.setLanguage(1002);
    pane.Load();
    EXPECT_THAT(browser.navigations, ElementsAre(address));
}

TEST_F(frmMediaCtrlTest, the_completed_page_makes_the_map_ready) {
    load();
    EXPECT_EQ(pane.tag(), "1");
    EXPECT_TRUE(pane.ready());
    EXPECT_EQ(browser.attached, 1);
    EXPECT_TRUE(tGetMapLocal.enabled());
    EXPECT_EQ(tGetMapLocal.interval(), 200);
    EXPECT_EQ(browser.bodyScroll, "no");
}

TEST_F(frmMediaCtrlTest, a_frame_inside_the_page_does_not_make_the_map_ready) {
    pane.Load();
    pane.DocumentComplete("http://maps.example/frame.html");
    EXPECT_EQ(pane.tag(), "0");
    EXPECT_FALSE(tGetMapLocal.enabled());
    EXPECT_EQ(browser.attached, 0);
}

TEST_F(frmMediaCtrlTest, addresses_compare_without_regard_to_case) {
    pane.Load();
    pane.DocumentComplete("HTTP://MAPS.example/deskmap.asp?langid=1028");
    EXPECT_TRUE(pane.ready());
}

TEST_F(frmMediaCtrlTest, loading_again_makes_the_map_unready) {
    load();
    pane.Load();
    EXPECT_FALSE(pane.ready());
}

TEST_F(frmMediaCtrlTest, a_lost_page_is_loaded_anew) {
    load();
    pane.PageLost();
    EXPECT_FALSE(pane.ready());
    EXPECT_FALSE(tGetMapLocal.enabled());
    EXPECT_THAT(browser.navigations, ElementsAre(address, address));
    EXPECT_THAT(drawn, IsEmpty());
    pane.DocumentComplete(address);
    EXPECT_TRUE(pane.ready());
}

TEST_F(frmMediaCtrlTest, a_page_says_itself_that_it_takes_whole_routes) {
    load();
    EXPECT_FALSE(pane.takesWholeRoutes()) << "an operator's own page says nothing";
    browser.properties["velmorantWholeRoutes"] = "yes";
    load();
    EXPECT_TRUE(pane.takesWholeRoutes());
    pane.PageLost();
    EXPECT_FALSE(pane.takesWholeRoutes()) << "nobody knows what comes next";
    pane.DocumentComplete(address);
    EXPECT_TRUE(pane.takesWholeRoutes());
}

TEST_F(frmMediaCtrlTest, the_late_answer_of_a_page_that_is_gone_does_not_count) {
    browser.properties["velmorantWholeRoutes"] = "yes";
    browser.holdAnswers = true;
    load();
    pane.PageLost();
    browser.deliver();
    EXPECT_FALSE(pane.takesWholeRoutes());
}

TEST_F(frmMediaCtrlTest, a_page_loaded_anew_gets_the_loaded_routes_again_and_once) {
    load();
    addTrack("7", 1, 10, 3);
    addTrack("12", 2, 20, 3);
    pane.PageLost();
    pane.DocumentComplete(address);
    EXPECT_THAT(drawn, ElementsAre(7, 12));
    pane.DocumentComplete(address);
    EXPECT_THAT(drawn, ElementsAre(7, 12));
}

TEST_F(frmMediaCtrlTest, a_page_loaded_anew_gets_the_routes_that_are_shown_alone) {
    load();
    addTrack("7", 1, 10, 3);
    addTrack("12", 2, 20, 3);
    addTrack("13", 3, 30, 3);
    list.set(1, &RecordingEntry::map, MapState::Hidden);
    list.remove(3, 1);
    pane.PageLost();
    pane.DocumentComplete(address);
    EXPECT_THAT(drawn, ElementsAre(12));
}

TEST_F(frmMediaCtrlTest, drawing_the_routes_again_leaves_the_place_that_plays) {
    load();
    const auto track = addTrack("7", 1, 10, 3);
    track->lPlayLocal(2);
    pane.PageLost();
    pane.DocumentComplete(address);
    ASSERT_THAT(drawn, ElementsAre(7));
    EXPECT_EQ(track->lPlayLocal(), 2);
}

TEST_F(frmMediaCtrlTest, routes_are_not_drawn_again_on_a_page_that_was_not_lost) {
    addTrack("7", 1, 10, 3);
    load();
    EXPECT_THAT(drawn, IsEmpty());
}

TEST_F(frmMediaCtrlTest,
       a_server_without_the_page_gives_way_to_the_built_in_one_and_the_line_says_so) {
    pane.Load();
    pane.LoadFailed(address);
    EXPECT_THAT(browser.navigations, ElementsAre(address, builtIn));
    EXPECT_THAT(status.last(), HasSubstr(address));
    browser.url = builtIn;
    pane.DocumentComplete(builtIn);
    EXPECT_TRUE(pane.ready());
}

TEST_F(frmMediaCtrlTest, so_does_a_server_that_keeps_silent_for_20_seconds) {
    pane.Load();
    timers.advance(19'900);
    EXPECT_THAT(browser.navigations, ElementsAre(address));
    timers.advance(200);
    EXPECT_THAT(browser.navigations, ElementsAre(address, builtIn));
    timers.advance(60'000);
    EXPECT_THAT(browser.navigations, ElementsAre(address, builtIn));
}

TEST_F(frmMediaCtrlTest, a_server_that_answers_is_not_given_up_later) {
    load();
    timers.advance(60'000);
    pane.LoadFailed(address);
    EXPECT_THAT(browser.navigations, ElementsAre(address));
    EXPECT_THAT(status.texts, IsEmpty());
}

TEST_F(frmMediaCtrlTest, a_failed_frame_is_no_failed_page) {
    pane.Load();
    pane.LoadFailed("http://maps.example/frame.html");
    EXPECT_THAT(browser.navigations, ElementsAre(address));
}

TEST_F(frmMediaCtrlTest, without_the_built_in_page_nothing_more_is_tried) {
    pane.Load();
    pane.LoadFailed(address);
    pane.LoadFailed(builtIn);
    EXPECT_THAT(browser.navigations, ElementsAre(address, builtIn));
    EXPECT_EQ(status.last(), "no map");
}

TEST_F(frmMediaCtrlTest, a_built_in_page_that_cannot_be_had_is_not_blamed_on_a_server) {
    texts.texts["1"] = "built-in:/";
    pane.Load();
    pane.LoadFailed(builtIn);
    EXPECT_THAT(status.texts, ElementsAre("no map"));
    EXPECT_THAT(browser.navigations, ElementsAre(builtIn));
}

TEST_F(frmMediaCtrlTest, a_page_that_dies_again_and_again_is_given_up_and_the_line_says_so) {
    pane.Load();
    for (int loss = 0; loss < 10; ++loss)
        pane.PageLost();
    EXPECT_EQ(browser.navigations.size(), 4u);
    EXPECT_EQ(status.last(), "no map");
}

TEST_F(frmMediaCtrlTest, a_page_that_answers_between_its_deaths_is_loaded_again) {
    load();
    for (int loss = 0; loss < 10; ++loss) {
        pane.PageLost();
        pane.DocumentComplete(address);
        timers.advance(200);
    }
    EXPECT_EQ(browser.navigations.size(), 11u);
    EXPECT_TRUE(pane.ready());
}

TEST_F(frmMediaCtrlTest, calls_go_to_the_page_as_quoted_script_texts) {
    load();
    pane.getContentHis("007+121.5!-25.04|");
    pane.getContentHis("Over");
    pane.MoveCar("121.5|25.04|12|90");
    pane.clearHistroy("007");
    EXPECT_THAT(browser.scripts,
                ElementsAre("getContentHis('007+121.5!-25.04|')", "getContentHis('Over')",
                            "MoveCar('121.5|25.04|12|90')", "clearHistroy('007')"));
    EXPECT_THAT(browser.languages,
                ElementsAre("javascript", "javascript", "javascript", "javascript"));
}

TEST_F(frmMediaCtrlTest, a_text_that_would_leave_its_quotes_is_not_sent) {
    load();
    for (const char* text : {"1');alert('2", "1\\", "1\n2", "1\"", "<b>", "\xe4\xb8\xad"})
        EXPECT_THROW(pane.getContentHis(text), StepError) << text;
    EXPECT_THAT(browser.scripts, IsEmpty());
}

TEST_F(frmMediaCtrlTest, the_page_is_polled_every_200_milliseconds) {
    load();
    timers.advance(199);
    EXPECT_EQ(browser.reads, 0);
    timers.advance(1);
    EXPECT_EQ(browser.reads, 1);
    timers.advance(1000);
    EXPECT_EQ(browser.reads, 6);
}

TEST_F(frmMediaCtrlTest, two_characters_or_less_are_ignored_and_not_cleared) {
    load();
    addTrack("1", 1, 0, 4);
    for (const char* value : {"x1", "x", "", "\xe4\xb8\xadx"}) {
        click(value);
        EXPECT_EQ(browser.properties["varLocal"], value);
    }
    EXPECT_EQ(browser.propertyWrites, 0);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(frmMediaCtrlTest, a_click_on_the_playing_route_moves_the_cursor_and_seeks) {
    load();
    const auto track = addTrack("1", 1, 0, 5);
    openInPlayer("/card/1.MP4");
    state.currentTrack = track;
    click("x2.5,2.5");
    EXPECT_EQ(browser.properties["varLocal"], "");
    EXPECT_EQ(track->lPlayLocal(), 3);
    EXPECT_THAT(calls, ElementsAre("seek 20"));
    timers.advance(400);
    EXPECT_EQ(calls.size(), 1u) << "one click seeks once";
}

TEST_F(frmMediaCtrlTest, a_click_on_another_route_starts_its_recording_first) {
    load();
    state.currentTrack = addTrack("1", 1, 0, 5);
    const auto track = addTrack("2", 2, 50, 5);
    openInPlayer("/card/1.MP4");
    click("x51.5,51.5");
    EXPECT_THAT(calls, ElementsAre("start 2", "seek 10"));
    EXPECT_EQ(track->lPlayLocal(), 2);
}

TEST_F(frmMediaCtrlTest, a_click_on_a_route_while_nothing_is_open_starts_its_recording) {
    load();
    state.currentTrack = addTrack("1", 1, 0, 5);
    click("x1.5,1.5");
    EXPECT_THAT(calls, ElementsAre("start 1", "seek 10"));
}

TEST_F(frmMediaCtrlTest, a_click_on_the_route_of_a_stopped_recording_starts_it_anew) {
    load();
    state.currentTrack = addTrack("1", 1, 0, 5);
    openInPlayer("/card/1.MP4");
    player.state = PlayState::Stopped;
    click("x1.5,1.5");
    EXPECT_THAT(calls, ElementsAre("start 1", "seek 10"));
}

TEST_F(frmMediaCtrlTest, a_recording_that_does_not_start_is_not_sought_in) {
    load();
    const auto track = addTrack("1", 1, 0, 5);
    start = RowStart::NoTrack;
    click("x1.5,1.5");
    EXPECT_THAT(calls, ElementsAre("start 1"));
    EXPECT_EQ(track->lPlayLocal(), 0);
}

TEST_F(frmMediaCtrlTest, a_click_beside_every_route_changes_nothing) {
    load();
    const auto track = addTrack("1", 1, 0, 5);
    click("x80,80");
    EXPECT_EQ(browser.properties["varLocal"], "") << "it is taken from the page";
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(track->lPlayLocal(), 0);
}

TEST_F(frmMediaCtrlTest, of_two_routes_at_a_place_the_first_of_the_table_is_picked) {
    load();
    addTrack("9", 1, 0, 5);
    addTrack("2", 2, 0, 5);
    click("x1.5,1.5");
    EXPECT_THAT(calls, ElementsAre("start 1", "seek 10"));
}

TEST_F(frmMediaCtrlTest, a_track_whose_row_is_gone_is_not_followed) {
    load();
    addTrack("1", 1, 0, 5);
    list.remove(1, list.count());
    click("x1.5,1.5");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(frmMediaCtrlTest, texts_that_are_no_place_end_the_tick_silently) {
    load();
    addTrack("1", 1, 0, 5);
    for (const char* value : {"xabc,def", "x1.5", "x1.5;1.5", "x,,", "x999,1.5", "x1e400,0"}) {
        click(value);
        EXPECT_EQ(browser.properties["varLocal"], "") << value;
    }
    EXPECT_THAT(calls, IsEmpty());
    click("x1.5,1.5");
    EXPECT_EQ(calls.size(), 2u) << "the polling goes on";
}

TEST_F(frmMediaCtrlTest, the_leading_character_may_be_any) {
    for (const char* value : {"x1.25,-2.5", "+1.25,-2.5", "\xe4\xb8\xad+1.25,-2.5,more"}) {
        const PickedPlace place = PickedPlace::read(value);
        EXPECT_EQ(place.x, 12500000) << value;
        EXPECT_EQ(place.y, -25000000) << value;
    }
}

TEST_F(frmMediaCtrlTest, a_page_that_owes_an_answer_is_not_asked_again) {
    load();
    addTrack("1", 1, 0, 5);
    browser.holdAnswers = true;
    browser.properties["varLocal"] = "x1.5,1.5";
    timers.advance(1000);
    EXPECT_EQ(browser.reads, 1);
    browser.deliver();
    EXPECT_EQ(calls.size(), 2u);
    timers.advance(200);
    EXPECT_EQ(browser.reads, 2);
}

TEST_F(frmMediaCtrlTest, a_question_that_got_lost_is_asked_again_and_its_late_answer_dropped) {
    load();
    addTrack("1", 1, 0, 5);
    browser.holdAnswers = true;
    browser.properties["varLocal"] = "x1.5,1.5";
    timers.advance(200 * 26);
    EXPECT_EQ(browser.reads, 2);
    browser.deliver();
    EXPECT_EQ(calls.size(), 2u) << "one click counts once";
}

TEST_F(frmMediaCtrlTest, the_list_band_is_drawn_anew) {
    pane.RefreshMyList();
    EXPECT_THAT(control.refreshed, ElementsAre("mylist"));
}

} // namespace
} // namespace velmorant
