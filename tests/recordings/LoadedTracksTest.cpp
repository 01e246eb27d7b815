#include "recordings/LoadedTracks.h"

#include <gtest/gtest.h>

namespace velmorant {
namespace {

std::shared_ptr<clsDot> trackOf(std::int32_t serial) {
    auto track = std::make_shared<clsDot>();
    track->lSerial(serial);
    return track;
}

std::string serialsInOrder(const LoadedTracks& tracks) {
    std::string serials;
    for (const LoadedTracks::Entry& entry : tracks)
        serials += std::to_string(entry.serial) + " ";
    return serials;
}

TEST(LoadedTracks, keeps_tracks_in_the_order_of_adding) {
    LoadedTracks tracks;
    for (const int serial : {10, 2, 33, 1})
        tracks.add(serial, trackOf(0));
    EXPECT_EQ(serialsInOrder(tracks), "10 2 33 1 ");
    tracks.remove(2);
    EXPECT_EQ(serialsInOrder(tracks), "10 33 1 ");
    EXPECT_TRUE(tracks.contains(1));
    EXPECT_FALSE(tracks.contains(2));
    tracks.add(2, trackOf(0));
    EXPECT_EQ(serialsInOrder(tracks), "10 33 1 2 ");
}

TEST(LoadedTracks, finds_a_track_by_its_recordings_serial_number) {
    LoadedTracks tracks;
    tracks.add(1, trackOf(1));
    tracks.add(2, trackOf(2));
    ASSERT_NE(tracks.find(2), nullptr);
    EXPECT_EQ(tracks.find(2)->lSerial(), 2);
    EXPECT_EQ(tracks.find(3), nullptr);
}

TEST(LoadedTracks, the_first_track_of_a_recording_stays) {
    LoadedTracks tracks;
    tracks.add(1, trackOf(1));
    tracks.add(1, trackOf(2));
    EXPECT_EQ(tracks.size(), 1u);
    EXPECT_EQ(tracks.find(1)->lSerial(), 1);
}

TEST(LoadedTracks, a_missing_track_is_not_added) {
    LoadedTracks tracks;
    tracks.add(1, nullptr);
    EXPECT_FALSE(tracks.contains(1));
}

TEST(LoadedTracks, clearing_forgets_all_but_the_tracks_still_held) {
    LoadedTracks tracks;
    const auto held = trackOf(5);
    tracks.add(1, held);
    tracks.add(2, trackOf(6));
    tracks.clear();
    EXPECT_EQ(tracks.size(), 0u);
    EXPECT_FALSE(tracks.contains(1));
    EXPECT_EQ(held->lSerial(), 5);
    tracks.remove(1);
    EXPECT_EQ(tracks.size(), 0u);
}

} // namespace
} // namespace velmorant
