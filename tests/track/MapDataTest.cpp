#include "track/MapData.h"

#include "tests/fakes/FakeHostPaths.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <memory>

namespace velmorant {
namespace {

using Json = nlohmann::json;

class MapDataTest : public testing::Test {
  protected:
    MapDataTest() {
        state.settings.setLanguage(1002);
        state.settings.setUnit(1002);
    }
    std::shared_ptr<clsDot> load(std::int32_t serial, const std::string& firstDate) {
        auto track = std::make_shared<clsDot>();
        track->SetDot(firstDate, "00:00", 58, 0, "121.5", "25", 0, 90, 0, 0, 0);
        track->SetDot("2012/9/7 08:05:10", "00:01", 61, 1, "121.6", "25", 0, 90, 0, 0, 0);
        state.loadedTracks.add(serial, track);
        return track;
    }
    void addRow(const std::string& path, RecordingKind kind) {
        RecordingEntry row;
        row.path = path;
        row.kind = kind;
        std::vector<RecordingEntry> rows;
        rows.push_back(row);
        list.append(std::move(rows));
    }
    Json track(const MapData& data, long number) {
        const auto text = data.track(number);
        return text ? Json::parse(*text) : Json();
    }

    ProgramState state;
    RecordingList list;
    fakes::FakeHostPaths paths;
};

TEST_F(MapDataTest, a_number_without_a_track_has_no_answer) {
    const MapData data(state, list, paths);
    load(7, "2012/9/7 08:05:09");
    for (const long number : {0L, 1L, -7L, 4294967303L})
        EXPECT_FALSE(data.track(number)) << number;
    EXPECT_TRUE(data.track(7));
}

TEST_F(MapDataTest, a_track_is_told_second_by_second_with_its_recording) {
    addRow("/card/20120907/080509.MP4", RecordingKind::Normal);
    addRow("/card/20120907/080509P.MP4", RecordingKind::Locked);
    load(7, "2012/9/7 08:05:09")->lSerial(2);
    const Json told = track(MapData(state, list, paths), 7);
    EXPECT_EQ(told, (Json{{"number", 7},
                          {"name", "080509P.MP4"},
                          {"kind", "locked"},
                          {"utcStart", "2012-09-07T08:05:09Z"},
                          {"second", {0, 1}},
                          {"speed", {58, 61}}}));
    load(8, "2012/9/7 08:05:09")->lSerial(1);
    EXPECT_EQ(track(MapData(state, list, paths), 8)["kind"], "normal");
}

TEST_F(MapDataTest, a_track_whose_row_has_gone_is_told_without_a_name) {
    addRow("/card/20120907/080509.MP4", RecordingKind::Normal);
    for (const int row : {0, 2}) {
        load(7 + row, "2012/9/7 08:05:09")->lSerial(row);
        const Json told = track(MapData(state, list, paths), 7 + row);
        EXPECT_FALSE(told.contains("name")) << row;
        EXPECT_FALSE(told.contains("kind")) << row;
        EXPECT_EQ(told["number"], 7 + row);
    }
}

TEST_F(MapDataTest, tells_which_seconds_had_a_fix_and_what_the_clock_rests_on) {
    TrackDetails details;
    details.timeBase = TimeBase::Camera;
    details.samples.resize(2);
    details.samples[1].hasFix = false;
    const auto noted = load(7, "2012/9/7 08:05:09");
    noted->setDetails(details);
    const Json told = track(MapData(state, list, paths), 7);
    EXPECT_EQ(told["fix"], (Json{1, 0}));
    EXPECT_EQ(told["timeBase"], "camera");
}

TEST_F(MapDataTest, details_of_another_length_tell_no_fixes) {
    TrackDetails details;
    details.samples.resize(3);
    load(7, "2012/9/7 08:05:09")->setDetails(details);
    EXPECT_FALSE(track(MapData(state, list, paths), 7).contains("fix"));
}

TEST_F(MapDataTest, a_start_that_is_no_moment_is_left_out) {
    for (const char* date :
         {"", "2012/9/7", "2012/9 08:05:09", "a/b/c 08:05:09", "99999999999/9/7 08:05:09"}) {
        state.loadedTracks.clear();
        load(7, date);
        const Json told = track(MapData(state, list, paths), 7);
        EXPECT_FALSE(told.contains("utcStart")) << date;
        EXPECT_EQ(told["speed"], (Json{58, 61})) << date;
    }
}

TEST_F(MapDataTest, a_name_that_is_no_utf_8_is_told_with_a_sign_in_its_place) {
    addRow("/card/\xff.MP4", RecordingKind::Normal);
    load(7, "2012/9/7 08:05:09")->lSerial(1);
    EXPECT_EQ(track(MapData(state, list, paths), 7)["name"], "\uFFFD.MP4");
}

TEST_F(MapDataTest, the_configuration_has_language_unit_and_size_and_tiles_only_with_a_provider) {
    MapData data(state, list, paths);
    EXPECT_EQ(Json::parse(data.configuration()),
              (Json{{"language", "zh-TW"},
                    {"unit", {{"factor", 0.6213712}, {"label", "mph"}}},
                    {"commands", Json::array({"whole-window"})},
                    {"wholeWindow", false}}));
    data.setWholeWindow(true);
    data.setTiles(TileCredit{"Example Maps", "https://maps.example", 17});
    const Json told = Json::parse(data.configuration());
    EXPECT_EQ(told["wholeWindow"], true);
    EXPECT_EQ(
        told["tiles"],
        (Json{{"attribution", "Example Maps"}, {"link", "https://maps.example"}, {"maxZoom", 17}}));
    data.setTiles(TileCredit{"Example Maps", "", 17});
    EXPECT_FALSE(Json::parse(data.configuration())["tiles"].contains("link"));
}

TEST_F(MapDataTest, the_page_keeps_its_language_and_follows_the_unit) {
    const MapData data(state, list, paths);
    state.settings.setLanguage(1001);
    state.settings.setUnit(1003);
    const Json told = Json::parse(data.configuration());
    EXPECT_EQ(told["language"], "zh-TW");
    EXPECT_EQ(told["unit"]["label"], "kn");
}

} // namespace
} // namespace velmorant
