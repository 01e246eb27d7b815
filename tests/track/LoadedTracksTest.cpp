#include "track/LoadedTracks.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

std::shared_ptr<clsDot> trackOf(std::int32_t serial) {
    auto track = std::make_shared<clsDot>();
    track->lSerial(serial);
    return track;
}

std::string keysInOrder(const LoadedTracks& tracks) {
    std::string keys;
    for (const LoadedTracks::Entry& entry : tracks)
        keys += entry.key + " ";
    return keys;
}

TEST(LoadedTracks, a_key_is_the_serial_number_followed_by_no) {
    EXPECT_EQ(trackKey("7"), "7No");
    EXPECT_EQ(trackKey("012"), "012No");
}

TEST(LoadedTracks, keeps_tracks_in_the_order_of_adding) {
    LoadedTracks tracks;
    for (const char* serial : {"10", "2", "33", "1"})
        tracks.add(trackKey(serial), trackOf(0));
    EXPECT_EQ(keysInOrder(tracks), "10No 2No 33No 1No ");
    tracks.remove(trackKey("2"));
    EXPECT_EQ(keysInOrder(tracks), "10No 33No 1No ");
    EXPECT_TRUE(tracks.contains("1No"));
    EXPECT_FALSE(tracks.contains("2No"));
    tracks.add(trackKey("2"), trackOf(0));
    EXPECT_EQ(keysInOrder(tracks), "10No 33No 1No 2No ");
}

TEST(LoadedTracks, finds_a_track_and_its_details_by_key) {
    LoadedTracks tracks;
    tracks.add("1No", trackOf(1));
    tracks.add("2No", trackOf(2), TrackDetails{"utc", {SampleDetails{false, "jump", 1.5, {}, ""}}});
    ASSERT_NE(tracks.find("2No"), nullptr);
    EXPECT_EQ(tracks.find("2No")->lSerial(), 2);
    ASSERT_NE(tracks.details("2No"), nullptr);
    EXPECT_EQ(tracks.details("2No")->timeBase, "utc");
    ASSERT_EQ(tracks.details("2No")->samples.size(), 1u);
    EXPECT_FALSE(tracks.details("2No")->samples[0].hasFix);
    EXPECT_EQ(tracks.find("3No"), nullptr);
    EXPECT_EQ(tracks.details("3No"), nullptr);
}

TEST(LoadedTracks, the_first_track_of_a_key_stays) {
    LoadedTracks tracks;
    tracks.add("1No", trackOf(1));
    tracks.add("1No", trackOf(2));
    EXPECT_EQ(tracks.size(), 1u);
    EXPECT_EQ(tracks.find("1No")->lSerial(), 1);
}

TEST(LoadedTracks, a_missing_track_is_not_added) {
    LoadedTracks tracks;
    tracks.add("1No", nullptr);
    EXPECT_FALSE(tracks.contains("1No"));
}

TEST(LoadedTracks, clearing_forgets_all_but_the_tracks_still_held) {
    LoadedTracks tracks;
    const auto held = trackOf(5);
    tracks.add("1No", held);
    tracks.add("2No", trackOf(6));
    tracks.clear();
    EXPECT_EQ(tracks.size(), 0u);
    EXPECT_FALSE(tracks.contains("1No"));
    EXPECT_EQ(held->lSerial(), 5);
    tracks.remove("1No");
    EXPECT_EQ(tracks.size(), 0u);
}

} // namespace
} // namespace velmorant
