#include "desktop/widgets/Theme.h"
#include <QApplication>
#include <QtGlobal>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // Windows come and go in these tests; the last one must not end the event loops of the next.
    QApplication::setQuitOnLastWindowClosed(false);
    velmorant::applyTheme(application);
    return RUN_ALL_TESTS();
}
