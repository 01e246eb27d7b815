#include "desktop/map/prepareWebEngine.h"

#include <QApplication>

#include <gmock/gmock.h>

// As the main.cpp above this folder, with what the browser control needs before the application.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const QByteArray platform = qgetenv("VELMORANT_TEST_PLATFORM");
    qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? "offscreen" : platform);
    velmorant::prepareWebEngine();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
