#include "desktop/map/prepareWebEngine.h"
#include "desktop/system/returnFreedMemory.h"
#include "desktop/widgets/Theme.h"

#include <QApplication>

#include <clocale>
#include <gtest/gtest.h>

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    // The build lists the tests where there is no display.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    velmorant::returnFreedMemory();
    velmorant::prepareWebEngine();
    QApplication application(count, arguments);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("velmorant-dvr-tools");
    QApplication::setQuitOnLastWindowClosed(false);
    velmorant::applyTheme(application);
    return RUN_ALL_TESTS();
}
