#include "desktop/widgets/Theme.h"
#include <QApplication>
#include <QtGlobal>
#include <gtest/gtest.h>

// The tests draw off the screen, wherever they run; VELMORANT_TEST_PLATFORM names another platform.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QByteArray platform = qgetenv("VELMORANT_TEST_PLATFORM");
    qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? "offscreen" : platform);
    QApplication application(argc, argv);
    // Windows come and go in these tests; the last one must not end the event loops of the next.
    QApplication::setQuitOnLastWindowClosed(false);
    velmorant::applyTheme(application);
    return RUN_ALL_TESTS();
}
