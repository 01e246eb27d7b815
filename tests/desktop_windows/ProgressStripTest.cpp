#include "desktop/widgets/ProgressStrip.h"

#include "tests/desktop_windows/WaitUntil.h"
#include <gtest/gtest.h>

namespace velmorant {
namespace {

TEST(ProgressStrip, is_there_only_while_something_is_done) {
    QWidget window;
    ProgressStrip strip(&window);
    strip.setGeometry(0, 0, 200, 3);
    window.resize(200, 20);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_FALSE(strip.isVisible());
    strip.begin(400);
    strip.setDone(200);
    EXPECT_TRUE(strip.isVisible());
    EXPECT_EQ(strip.height(), 3);
    const QImage picture = strip.grab().toImage();
    EXPECT_EQ(picture.pixelColor(50, 1), QColor(0x45, 0xC9, 0xD6));
    EXPECT_EQ(picture.pixelColor(150, 1), QColor(0x26, 0x31, 0x3D));
    strip.end();
    EXPECT_FALSE(strip.isVisible());
}

} // namespace
} // namespace velmorant
