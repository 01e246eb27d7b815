#include "track/RouteDrawing.h"

#include "common/StepError.h"
#include "tests/fakes/FakeProgressWindow.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeWaits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RoutesOfPage : public MapPage {
  public:
    bool ready() const override { return isReady; }
    void getContentHis(const std::string& text) override {
        if (text.starts_with(refused))
            throw StepError("the page refuses it");
        routes.push_back(text);
    }
    bool takesWholeRoutes() const override { return wholeRoutes; }
    void MoveCar(const std::string&) override {}
    void clearHistroy(const std::string&) override {}
    std::ptrdiff_t whole() const { return std::count(routes.begin(), routes.end(), "Over"); }

    bool isReady = true;
    bool wholeRoutes = false;
    std::string refused = "none";
    std::vector<std::string> routes;
};

class RouteDrawingTest : public ::testing::Test {
  protected:
    RouteDrawingTest() { texts.texts["drawing.route"] = "%1 of %2"; }
    void load(std::int32_t number, int dots) {
        const auto track = std::make_shared<clsDot>();
        for (int i = 0; i < dots; ++i)
            track->SetDot("2012/9/7 08:05:09", "00:00", 60, i, "+121.5", "+25.1", 1, 90, 0, 0, 1);
        state.loadedTracks.add(number, track);
    }

    fakes::FakeProgressWindow window;
    fakes::FakeWaits waits;
    fakes::FakeTexts texts;
    RoutesOfPage page;
    ProgramState state;
    RouteDrawing drawing{
        {.window = window, .waits = waits, .texts = texts, .page = page, .state = state}};
};

TEST_F(RouteDrawingTest, short_routes_are_drawn_without_a_window) {
    load(1, 300);
    load(2, 300);
    EXPECT_EQ(drawing.draw({1, 2}), 2u);
    EXPECT_THAT(window.titles, IsEmpty());
    EXPECT_EQ(page.whole(), 2);
}

TEST_F(RouteDrawingTest, long_routes_show_how_far_they_are) {
    load(1, 3600);
    load(2, 3600);
    EXPECT_EQ(drawing.draw({1, 2}), 2u);
    EXPECT_THAT(window.titles, ElementsAre("<drawing.title>"));
    EXPECT_THAT(window.texts, ElementsAre("1 of 2", "2 of 2"));
    ASSERT_EQ(window.values.size(), 101u) << "a step for each hundredth, over all routes";
    EXPECT_TRUE(std::is_sorted(window.values.begin(), window.values.end()));
    EXPECT_EQ(window.values.back(), 100);
    EXPECT_EQ(window.closed, 1);
}

TEST_F(RouteDrawingTest, a_page_that_takes_whole_routes_gets_the_same_calls_without_pauses) {
    load(1, 3600);
    load(2, 3600);
    EXPECT_EQ(drawing.draw({1, 2}), 2u);
    const std::vector<std::string> calls = page.routes;
    waits.sleeps.clear();
    waits.eventRuns = 0;
    page.routes.clear();
    page.wholeRoutes = true;
    EXPECT_EQ(drawing.draw({1, 2}), 2u);
    EXPECT_EQ(page.routes, calls);
    EXPECT_THAT(waits.sleeps, IsEmpty());
    EXPECT_EQ(waits.eventRuns, 2) << "behind each route";
}

TEST_F(RouteDrawingTest, cancel_completes_the_route_at_hand_without_pauses_and_begins_no_other) {
    for (std::int32_t number = 1; number <= 8; ++number)
        load(number, 3600);
    waits.whenWaiting = [this] {
        if (page.routes.size() == 400)
            window.cancel();
    };
    EXPECT_EQ(drawing.draw({1, 2, 3, 4, 5, 6, 7, 8}), 2u);
    EXPECT_EQ(page.whole(), 2);
    EXPECT_EQ(page.routes.size(), 722u) << "two routes in whole";
    EXPECT_LT(waits.sleeps.size(), 401u);
    EXPECT_EQ(window.closed, 1);
    waits.whenWaiting = {};
    EXPECT_EQ(drawing.draw({3, 4}), 2u) << "the next drawing is not cancelled";
}

TEST_F(RouteDrawingTest, a_page_that_is_not_ready_gets_nothing_and_no_window_appears) {
    page.isReady = false;
    load(1, 3600);
    EXPECT_EQ(drawing.draw({1}), 1u);
    EXPECT_THAT(page.routes, IsEmpty());
    EXPECT_THAT(window.titles, IsEmpty());
    EXPECT_EQ(state.loadedTracks.find(1)->lPlayLocal(), 3600);
}

TEST_F(RouteDrawingTest, a_route_that_fails_keeps_no_other_one_from_the_map) {
    load(1, 700);
    load(2, 700);
    page.refused = "001";
    EXPECT_EQ(drawing.draw({1, 9, 2}), 3u);
    EXPECT_EQ(page.whole(), 1);
    EXPECT_EQ(window.closed, 1);
}

} // namespace
} // namespace velmorant
