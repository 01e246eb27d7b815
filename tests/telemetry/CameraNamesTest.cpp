#include "telemetry/CameraNames.h"

#include <gtest/gtest.h>

namespace velmorant::telemetry {

TEST(CameraNames, tell_the_cameras_apart_by_the_mark_of_the_name) {
    for (const char* front :
         {"/card/20240612_103045_F.MP4", "/card/20240612_103045_NF.mp4",
          "/card/20240612_103045_pf.mp4", "20240612_103045_EF.mp4", "/card/FILE240612-103045F.MP4",
          "trip_front.mp4", "/card/a.b_F.MP4"}) {
        EXPECT_EQ(cameraOf(front), Camera::front) << front;
    }
    for (const char* rear : {"/card/20240612_103045_R.MP4", "/card/20240612_103045_NR.mp4",
                             "/card/20240612_103045_PR.mp4", "/card/20240612103045_000123R.MP4",
                             "/card/FILE240612-103045B.MP4", "trip_REAR.mp4"}) {
        EXPECT_EQ(cameraOf(rear), Camera::rear) << rear;
    }
    for (const char* unmarked : {"/card/103045.MP4", "/card/CLUB.MP4", "_R.MP4", "R.MP4", "",
                                 "/card/GOPR.MP4", "/card_F/103045.MP4", "/"}) {
        EXPECT_EQ(cameraOf(unmarked), Camera::unmarked) << unmarked;
    }
}

TEST(CameraNames, tell_the_cameras_apart_by_the_folder) {
    EXPECT_EQ(cameraOf("/card/Normal/Front/0001.MP4"), Camera::front);
    EXPECT_EQ(cameraOf("rear/0001.MP4"), Camera::rear);
    EXPECT_EQ(cameraOf("D:\\Back\\0001.MP4"), Camera::rear);
    EXPECT_EQ(cameraOf("/Front/Normal/0001.MP4"), Camera::unmarked);
    // The name knows better than a folder of everything.
    EXPECT_EQ(cameraOf("/card/Front/0001_R.MP4"), Camera::rear);
}

TEST(CameraNames, pair_the_recordings_of_one_moment) {
    const std::pair<const char*, const char*> pairs[] = {
        {"/c/20240612_103045_R.MP4", "/c/20240612_103045_F.MP4"},
        {"/c/20240612_103046_NR.mp4", "/c/20240612_103045_NF.mp4"},
        {"/c/20240612103045_000124R.MP4", "/c/20240612103047_000123F.MP4"},
        {"/c/FILE240612-103045B.MP4", "/c/FILE240612-103045F.MP4"},
        {"trip_rear.mp4", "trip_front.mp4"},
        {"/c/Rear/0001.MP4", "/c/Front/0001.MP4"},
        {"/c/rear/0001_R.MP4", "/c/front/0001_F.MP4"},
        {"Back/0001.MP4", "Front/0001.MP4"},
    };
    for (const auto& [rear, front] : pairs) {
        EXPECT_TRUE(namesPair(rear, front)) << rear;
        EXPECT_FALSE(namesPair(front, rear)) << rear;
        EXPECT_FALSE(namesPair(rear, rear)) << rear;
    }
}

TEST(CameraNames, do_not_pair_other_recordings) {
    const std::pair<const char*, const char*> others[] = {
        {"/c/20240612_103048_R.MP4", "/c/20240612_103045_F.MP4"},   // three seconds apart
        {"/c/20240612_103045_NR.MP4", "/c/20240612_103045_EF.MP4"}, // another mode
        {"/c/20240612_103045_R.MP4", "/d/20240612_103045_F.MP4"},
        {"/c/0001_R.MP4", "/c/0002_F.MP4"},
        {"/c/Rear/0001.MP4", "/d/Front/0001.MP4"},
        {"/c/A20240612_103045_R.MP4", "/c/B20240612_103045_F.MP4"},
        {"/c/0001_R.MP4", "/c/0001_F.MOV"},
        {"/c/0001.MP4", "/c/0001_F.MP4"},
    };
    for (const auto& [rear, front] : others) {
        EXPECT_FALSE(namesPair(rear, front)) << rear;
    }
}

TEST(CameraNames, tell_where_the_front_recording_stands) {
    EXPECT_EQ(frontPlacesOf("/c/1_r.mp4").paths, std::vector<std::string>{"/c/1_f.mp4"});
    EXPECT_EQ(frontPlacesOf("/c/Rear/1.MP4").paths, std::vector<std::string>{"/c/Front/1.MP4"});
    const FrontPlaces both = frontPlacesOf("/c/Back/1B.MP4");
    EXPECT_EQ(both.paths,
              (std::vector<std::string>{"/c/Back/1F.MP4", "/c/Front/1F.MP4", "/c/Front/1B.MP4"}));
    EXPECT_EQ(both.folders, (std::vector<std::string>{"/c/Back/", "/c/Front/"}));
    EXPECT_TRUE(frontPlacesOf("/c/1_F.MP4").paths.empty());
    EXPECT_TRUE(frontPlacesOf("/c/1.MP4").folders.empty());
}

} // namespace velmorant::telemetry
