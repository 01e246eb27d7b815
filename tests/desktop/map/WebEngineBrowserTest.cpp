#include "desktop/map/WebEngineBrowser.h"

#include "desktop/gate/HandlerGate.h"
#include "tests/desktop/HttpServer.h"
#include "tests/desktop/eventLoop.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string ownPage = "velmorant://map/DeskMap.asp?LangID=1028";

class WebEngineBrowserTest : public testing::Test {
  protected:
    WebEngineBrowserTest() {
        QDir(m_folder.path()).mkpath("page/js");
        write("secret.txt", "secret");
        write("page/js/own.js", "var own = 'script of its own';");
        writePage("<p>page</p>");
    }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(m_folder.path().toStdString() + "/" + name, std::ios::binary) << contents;
    }
    void writePage(const std::string& body) const {
        write("page/DeskMap.asp", "<!DOCTYPE html><html><head><meta charset='utf-8'>"
                                  "<script src='js/own.js'></script></head><body>" +
                                      body + "</body></html>");
    }
    WebEngineBrowserSettings settings() const {
        WebEngineBrowserSettings settings;
        settings.pageFolder = m_folder.path() + "/page";
        settings.storageFolder = m_folder.path() + "/storage";
        settings.language = "en";
        return settings;
    }
    bool load(WebEngineBrowser& browser, const std::string& address) {
        bool done = false;
        browser.onDocumentComplete(m_gate.listener([&](const std::string&) { done = true; }));
        browser.onLoadFailed(m_gate.listener([&](const std::string&) { done = true; }));
        browser.navigate(address);
        waitFor([&] { return done; }, 30000);
        browser.onDocumentComplete({});
        browser.onLoadFailed({});
        return done;
    }
    static std::string property(WebEngineBrowser& browser, const std::string& name) {
        std::optional<std::string> value;
        browser.readWindowProperty(name, [&](const std::string& text) { value = text; });
        EXPECT_TRUE(waitFor([&] { return value.has_value(); })) << name;
        return value.value_or("no answer");
    }
    static bool becomes(WebEngineBrowser& browser, const std::string& name,
                        const std::string& value) {
        return waitFor([&] { return property(browser, name) == value; });
    }
    /// What the page gets for a GET: status and text.
    static std::string get(WebEngineBrowser& browser, const std::string& address) {
        browser.execScript("var answer=''; var r=new XMLHttpRequest(); r.open('GET','" + address +
                               "'); r.onload=function(){answer=r.status+' '+r.responseText;};"
                               "r.onerror=function(){answer='failed';}; r.send();",
                           "javascript");
        EXPECT_TRUE(waitFor([&] { return !property(browser, "answer").empty(); })) << address;
        return property(browser, "answer");
    }

    static void click(WebEngineBrowser& browser, QPoint place) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, browser.view().mapToGlobal(place), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(browser.view().focusProxy(), &event);
        }
    }

    HandlerGate m_gate;
    // Not among the system's temporary files: the browser still writes while it ends.
    QTemporaryDir m_folder{(QDir().mkpath(VELMORANT_TEST_OUTPUT), VELMORANT_TEST_OUTPUT "/map")};
};

TEST_F(WebEngineBrowserTest, shows_the_page_of_the_program_and_says_when_it_is_complete) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    std::vector<std::string> complete;
    browser.onDocumentComplete(
        m_gate.listener([&](const std::string& address) { complete.push_back(address); }));
    browser.navigate(ownPage);
    ASSERT_TRUE(waitFor([&] { return !complete.empty(); }, 30000));
    EXPECT_THAT(complete, ElementsAre(ownPage));
    EXPECT_EQ(browser.documentUrl(), ownPage);
    EXPECT_EQ(property(browser, "own"), "script of its own");
}

/// The names of the variables of this process's environment.
std::set<std::string> environmentNames() {
    std::set<std::string> names;
    for (const QString& name : QProcessEnvironment::systemEnvironment().keys())
        names.insert(name.toStdString());
    return names;
}

TEST_F(WebEngineBrowserTest, adds_nothing_to_the_environment_once_it_is_prepared) {
    const std::set<std::string> before = environmentNames();
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    EXPECT_EQ(environmentNames(), before);
}

TEST_F(WebEngineBrowserTest, reads_and_writes_properties_of_the_window) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    EXPECT_EQ(property(browser, "varLocal"), "");
    for (const std::string value : {"P121.5,25.04", "", "'\"\\ \n</script>", "\xE8\xBD\xA6", "0"}) {
        browser.setWindowProperty("varLocal", value);
        EXPECT_EQ(property(browser, "varLocal"), value);
    }
    browser.execScript("var varLocal = 12;", "javascript");
    EXPECT_EQ(property(browser, "varLocal"), "12");
}

TEST_F(WebEngineBrowserTest, keeps_errors_of_a_script_in_the_page) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    std::vector<std::string> messages;
    browser.onPageMessage(
        m_gate.listener([&](const std::string& text) { messages.push_back(text); }));
    ASSERT_TRUE(load(browser, ownPage));
    browser.execScript("missingFunction('7')", "javascript");
    browser.execScript("this is no script", "javascript");
    browser.execScript("window.after = 'alive'", "javascript");
    EXPECT_EQ(property(browser, "after"), "alive");
    EXPECT_THAT(messages, testing::Contains(HasSubstr("missingFunction")));
}

TEST_F(WebEngineBrowserTest, runs_scripts_in_their_order) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    browser.execScript("var calls = '';", "javascript");
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        browser.execScript("calls += '" + std::to_string(i % 10) + "'", "javascript");
        expected += std::to_string(i % 10);
    }
    EXPECT_EQ(property(browser, "calls"), expected);
}

TEST_F(WebEngineBrowserTest, holds_answers_back_while_a_handler_runs) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    const std::string before = "nothing yet";
    std::string value = before;
    bool late = false;
    m_gate.runWhenFree([&] {
        browser.readWindowProperty("own", [&](const std::string& text) { value = text; });
        // Asked behind the gate, so its answer comes after the first one has come to it.
        browser.view().page()->runJavaScript("1", [&](const QVariant&) { late = true; });
        EXPECT_TRUE(waitFor([&] { return late; }));
        EXPECT_EQ(value, before);
    });
    EXPECT_TRUE(waitFor([&] { return value == "script of its own"; }));
}

TEST_F(WebEngineBrowserTest, answers_what_the_page_asks_of_the_program) {
    WebEngineBrowserSettings with = settings();
    std::vector<std::string> commands;
    with.source.configuration = [] { return R"({"language":"en"})"; };
    with.source.track = [](long number) {
        return number == 7 ? std::optional<std::string>(R"({"number":7})") : std::nullopt;
    };
    with.source.command = m_gate.listener(
        [&](const std::string& name, const std::string& query, const MapPageAnswer& answer) {
            commands.push_back(name + "?" + query);
            answer(R"({"wholeWindow":true})");
        });
    WebEngineBrowser browser(with, m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    EXPECT_EQ(get(browser, "config.json"), R"(200 {"language":"en"})");
    EXPECT_EQ(get(browser, "track/7.json"), R"(200 {"number":7})");
    EXPECT_EQ(get(browser, "track/8.json"), "failed");
    EXPECT_EQ(get(browser, "track/x.json"), "failed");
    EXPECT_EQ(get(browser, "command/whole-window?on=1"), R"(200 {"wholeWindow":true})");
    EXPECT_THAT(commands, ElementsAre("whole-window?on=1"));
    EXPECT_EQ(get(browser, "tile/1/0/0"), "failed");
}

TEST_F(WebEngineBrowserTest, serves_nothing_outside_the_folder_of_the_page) {
    QFile::link(m_folder.path() + "/secret.txt", m_folder.path() + "/page/link.txt");
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    EXPECT_EQ(get(browser, "js/own.js"), "200 var own = 'script of its own';");
    for (const char* address :
         {"../secret.txt", "%2e%2e/secret.txt", "%2e%2e%2fsecret.txt", "js/..%2f..%2fsecret.txt",
          "link.txt", "js", "missing.js", "velmorant://other/DeskMap.asp", "file:///etc/hostname"})
        EXPECT_EQ(get(browser, address), "failed") << address;
}

TEST_F(WebEngineBrowserTest, opens_no_other_address_than_the_pages_own) {
    HttpServer other([](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response("window.foreign = 'here';", "text/javascript"));
        return HttpServer::After::Close;
    });
    const std::string address = other.address("/x.js").toStdString();
    writePage("<img src='" + address + "'><script src='" + address + "'></script><iframe src='" +
              address + "'></iframe><a id='a' href='" + address +
              "'>here</a><a style='position:fixed;left:0;top:0;width:90px;height:40px' href='" +
              address + "' target='_blank'>there</a><a id='c' href='file:///etc/hostname'>f</a>");
    WebEngineBrowser browser(settings(), m_gate.delivery());
    std::vector<std::string> links;
    browser.onLink(m_gate.listener([&](const std::string& link) { links.push_back(link); }));
    ASSERT_TRUE(load(browser, ownPage));
    int failures = 0;
    browser.onLoadFailed(m_gate.listener([&](const std::string&) { ++failures; }));
    EXPECT_EQ(property(browser, "foreign"), "");
    EXPECT_EQ(get(browser, address), "failed");
    browser.execScript("document.getElementById('c').click()", "javascript");
    browser.view().resize(300, 200);
    browser.view().show();
    ASSERT_TRUE(waitFor([&] {
        click(browser, QPoint(20, 20));
        letRun(50);
        return !links.empty();
    }));
    EXPECT_THAT(links, testing::Each(address));
    browser.execScript("location.href='" + address + "'", "javascript");
    EXPECT_EQ(property(browser, "own"), "script of its own");
    EXPECT_EQ(browser.documentUrl(), ownPage);
    EXPECT_THAT(other.requests(), IsEmpty());
    EXPECT_EQ(failures, 0) << "the page itself is still there";
}

TEST_F(WebEngineBrowserTest, opens_a_link_by_a_click_of_the_user_alone) {
    writePage("<a id='a' style='position:fixed;left:0;top:0;width:90px;height:40px' "
              "href='http://127.0.0.1:9/a'>here</a><a id='b' target='_blank' "
              "href='http://127.0.0.1:9/b'>there</a>");
    WebEngineBrowser browser(settings(), m_gate.delivery());
    std::vector<std::string> links;
    browser.onLink(m_gate.listener([&](const std::string& link) { links.push_back(link); }));
    ASSERT_TRUE(load(browser, ownPage));
    browser.view().resize(300, 200);
    browser.view().show();
    const std::string byScript = "document.getElementById('a').click();"
                                 "document.getElementById('b').click();"
                                 "window.open('http://127.0.0.1:9/c');";
    browser.execScript(byScript, "javascript");
    EXPECT_EQ(property(browser, "own"), "script of its own");
    letRun(300); // what is refused leaves no sign to wait for
    EXPECT_THAT(links, IsEmpty());

    browser.execScript("document.getElementById('a').addEventListener('click', function () {"
                       "setTimeout(function () {" +
                           byScript + "}, 50); });",
                       "javascript");
    ASSERT_TRUE(waitFor([&] {
        if (links.empty())
            click(browser, QPoint(20, 20));
        letRun(50);
        return !links.empty();
    }));
    EXPECT_EQ(property(browser, "own"), "script of its own");
    letRun(300);
    EXPECT_THAT(links, ElementsAre("http://127.0.0.1:9/a")) << "one click opens one link";
}

TEST_F(WebEngineBrowserTest, gives_the_page_no_connection_past_its_rules) {
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    for (const std::string name :
         {"RTCPeerConnection", "webkitRTCPeerConnection", "RTCDataChannel", "WebTransport"}) {
        browser.execScript("var seen = typeof window." + name, "javascript");
        EXPECT_EQ(property(browser, "seen"), "undefined") << name;
        browser.execScript("delete window." + name + "; var seen = typeof window." + name,
                           "javascript");
        EXPECT_EQ(property(browser, "seen"), "undefined") << name;
    }
}

TEST_F(WebEngineBrowserTest, shows_the_page_of_an_operators_server) {
    HttpServer server([](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response("<script>var who='server'</script>", "text/html"));
        return HttpServer::After::Close;
    });
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, server.address("/DeskMap.asp?LangID=1028").toStdString()));
    EXPECT_EQ(property(browser, "who"), "server");
    EXPECT_EQ(server.requests().first().target, "/DeskMap.asp?LangID=1028");
}

TEST_F(WebEngineBrowserTest, says_when_the_address_cannot_be_loaded) {
    HttpServer server([](const HttpRequest&, QTcpSocket&) { return HttpServer::After::Close; });
    server.stop();
    WebEngineBrowser browser(settings(), m_gate.delivery());
    std::vector<std::string> failed;
    bool complete = false;
    browser.onLoadFailed(
        m_gate.listener([&](const std::string& address) { failed.push_back(address); }));
    browser.onDocumentComplete(m_gate.listener([&](const std::string&) { complete = true; }));
    browser.navigate(server.address("/DeskMap.asp").toStdString());
    ASSERT_TRUE(waitFor([&] { return !failed.empty(); }, 30000));
    EXPECT_FALSE(complete);
    ASSERT_TRUE(load(browser, ownPage));
    EXPECT_EQ(property(browser, "own"), "script of its own");
}

TEST_F(WebEngineBrowserTest, tells_the_page_its_language) {
    WebEngineBrowserSettings with = settings();
    with.language = "zh-TW";
    WebEngineBrowser browser(with, m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    browser.execScript("var seen = navigator.language", "javascript");
    EXPECT_EQ(property(browser, "seen"), "zh-TW");
    browser.setLanguage("en");
    ASSERT_TRUE(load(browser, ownPage));
    browser.execScript("var seen = navigator.language", "javascript");
    EXPECT_EQ(property(browser, "seen"), "en");
}

TEST_F(WebEngineBrowserTest, keeps_what_the_page_remembers) {
    {
        WebEngineBrowser browser(settings(), m_gate.delivery());
        ASSERT_TRUE(load(browser, ownPage));
        browser.execScript("localStorage.setItem('follow', 'off')", "javascript");
        EXPECT_EQ(property(browser, "own"), "script of its own");
        letRun(500); // the browser's process writes it in its own time
    }
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    browser.execScript("var kept = localStorage.getItem('follow')", "javascript");
    EXPECT_EQ(property(browser, "kept"), "off");
}

TEST_F(WebEngineBrowserTest, takes_the_scroll_bars_away) {
    writePage("<div style='height:9000px'>long</div>");
    WebEngineBrowser browser(settings(), m_gate.delivery());
    ASSERT_TRUE(load(browser, ownPage));
    browser.setBodyScroll("no");
    browser.execScript("var overflow = getComputedStyle(document.body).overflow", "javascript");
    EXPECT_EQ(property(browser, "overflow"), "hidden");
}

TEST_F(WebEngineBrowserTest, runs_the_map_page_itself) {
    WebEngineBrowserSettings with = settings();
    with.pageFolder = VELMORANT_MAP_PAGE;
    WebEngineBrowser browser(with, m_gate.delivery());
    std::vector<std::string> messages;
    browser.onPageMessage(
        m_gate.listener([&](const std::string& text) { messages.push_back(text); }));
    browser.view().resize(338, 248);
    browser.view().show();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(load(browser, ownPage));
    RecordProperty("load_milliseconds", static_cast<int>(timer.elapsed()));
    browser.execScript("getContentHis('007121.5!25.04|121.6!25.04|')", "javascript");
    browser.execScript("getContentHis('Over')", "javascript");
    browser.execScript("MoveCar('121.55|25.04|1|90')", "javascript");
    browser.execScript("var lines = velmorantMap.log.lines.length", "javascript");
    EXPECT_EQ(property(browser, "lines"), "0");
    EXPECT_EQ(property(browser, "varLocal"), "");
    EXPECT_THAT(messages, testing::Each(testing::Not(HasSubstr("Uncaught"))));
}

TEST_F(WebEngineBrowserTest, may_end_after_the_window_that_held_its_view) {
    auto window = std::make_unique<QWidget>();
    WebEngineBrowser browser(settings(), m_gate.delivery());
    browser.view().setParent(window.get());
    window->show();
    ASSERT_TRUE(load(browser, ownPage));
    window.reset();
    EXPECT_EQ(browser.documentUrl(), ownPage);
}

} // namespace
} // namespace velmorant
