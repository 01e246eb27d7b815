#include "tests/gui/ProgramTest.h"

#include "tests/desktop/update/NginxServer.h"

#include <QWebEnginePage>
#include <QWebEngineView>

#include <csignal>
#include <filesystem>

namespace velmorant {
namespace {

namespace fs = std::filesystem;

/// Where the map page comes from, and what becomes of it.
class MapServerTest : public ProgramTest {
  protected:
    std::string pageAddress() { return panes().map.browser.documentUrl(); }
    qint64 pageProcess() { return panes().map.browser.view().page()->renderProcessPid(); }
};

TEST_F(MapServerTest, a_server_that_refuses_gives_way_to_the_built_in_page) {
    setVariable("VELMORANT_SERVER", "http://127.0.0.1:9/");
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_EQ(pageAddress(), "velmorant://map/DeskMap.asp?LangID=1028");
    add({recording(1)});
    extractAll();
    waitForRoutes(1);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(MapServerTest, so_does_a_server_without_the_page) {
    NginxServer nginx;
    ASSERT_TRUE(nginx.ready()) << nginx.errors();
    fs::remove(nginx.served().path("map/DeskMap.asp"));
    setVariable("VELMORANT_SERVER", nginx.base());
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_EQ(pageAddress(), "velmorant://map/DeskMap.asp?LangID=1028");
}

TEST_F(MapServerTest, a_page_whose_process_dies_returns_with_its_routes) {
    ASSERT_NO_FATAL_FAILURE(showOnMap({recording(1), recording(2)}));
    ASSERT_NO_FATAL_FAILURE(waitForRoutes(2));
    const qint64 before = pageProcess();
    ASSERT_GT(before, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(before), SIGKILL), 0);
    ASSERT_TRUE(waitUntil([&] { return !rooms().mediaCtrl->ready(); }));
    ASSERT_TRUE(waitUntil([&] { return rooms().mediaCtrl->ready(); }));
    EXPECT_NE(pageProcess(), before);
    ASSERT_NO_FATAL_FAILURE(waitForRoutes(2));
    ASSERT_NO_FATAL_FAILURE(play(1));
}

} // namespace
} // namespace velmorant
