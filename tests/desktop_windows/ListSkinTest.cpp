#include "desktop/widgets/SkinView.h"

#include <QLabel>

#include <gtest/gtest.h>

#include <string>

namespace velmorant {
namespace {

TEST(ListSkinTest, has_room_for_the_count_of_thousands_of_recordings) {
    struct Count {
        const char* skin;
        const char* text;
    };
    for (const Count& each : {Count{"ls1.MP4", "10000 recordings, 10000 marked"},
                              {"ls2.MP4", "10000 \u500b\u9304\u5f71\uff0c"
                                          "\u5df2\u6a19\u8a18 10000 \u500b"}}) {
        SkinView skin;
        ASSERT_TRUE(skin.load(std::string(VELMORANT_SKINS "/media/") + each.skin));
        skin.setText("place.count", each.text);
        int shown = 0;
        for (const QLabel* label : skin.findChildren<QLabel*>()) {
            if (label->text() != QString::fromUtf8(each.text))
                continue;
            ++shown;
            EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width())
                << each.skin;
        }
        EXPECT_EQ(shown, 1) << each.skin;
    }
}

} // namespace
} // namespace velmorant
