#include <QApplication>

#include <gmock/gmock.h>

// The tests draw off the screen, wherever they run; VELMORANT_TEST_PLATFORM names another platform.
// Listing the tests needs no application: a build machine lists them without any display.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const QByteArray platform = qgetenv("VELMORANT_TEST_PLATFORM");
    qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? "offscreen" : platform);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
