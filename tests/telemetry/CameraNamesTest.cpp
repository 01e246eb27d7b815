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

} // namespace velmorant::telemetry
