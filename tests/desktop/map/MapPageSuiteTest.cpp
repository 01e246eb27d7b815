// Runs the map page's own suite (tests/map/suite) in the program's browser control.
#include "desktop/gate/HandlerGate.h"
#include "desktop/map/WebEngineBrowser.h"

#include "tests/desktop/eventLoop.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velmorant {
namespace {

const QString suiteFolder = QStringLiteral(VELMORANT_TEST_DATA "/../map/suite");

QJsonArray numbers(int count, const std::function<int(int)>& value) {
    QJsonArray array;
    for (int i = 0; i < count; ++i)
        array.append(value(i));
    return array;
}

std::string text(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

/// The program's answers as tests/map/serve.py gives them.
MapPageSource answers(HandlerGate& gate, bool& wholeWindow) {
    MapPageSource source;
    source.configuration = [&wholeWindow] {
        return text({{"unit", QJsonObject{{"factor", 1.0}, {"label", "km/h"}}},
                     {"commands", QJsonArray{"whole-window"}},
                     {"wholeWindow", wholeWindow}});
    };
    source.track = [](long number) {
        return text({{"number", int(number)},
                     {"name", QString("10%1.MP4").arg(number, 4, 10, QChar('0'))},
                     {"kind", number % 2 ? "locked" : "normal"},
                     {"utcStart", "2012-09-07T08:05:09Z"},
                     {"second", numbers(180, [](int i) { return i; })},
                     {"speed", numbers(180, [](int i) { return std::abs((i * 2) % 220 - 110); })},
                     {"fix", numbers(180, [](int i) { return i >= 20 && i < 26 ? 0 : 1; })}});
    };
    source.command = gate.listener(
        [&wholeWindow](const std::string&, const std::string& query, const MapPageAnswer& answer) {
            wholeWindow = query == "on=1";
            answer(text({{"wholeWindow", wholeWindow}}));
        });
    return source;
}

class MapPageSuiteTest : public testing::Test {
  protected:
    HandlerGate m_gate;

    static std::string property(WebEngineBrowser& browser, const std::string& name) {
        std::optional<std::string> value;
        browser.readWindowProperty(name, [&](const std::string& read) { value = read; });
        // The page answers between two of its tests, which a busy machine draws out.
        EXPECT_TRUE(waitFor([&] { return value.has_value(); }, 60000)) << name;
        return value.value_or("");
    }

    void run(const MapPageSource& source, const QStringList& leftOut) {
        WebEngineBrowserSettings settings;
        settings.pageFolder = VELMORANT_MAP_PAGE;
        settings.storageFolder = m_storage.path();
        settings.language = "en";
        settings.source = source;
        WebEngineBrowser browser(settings, m_gate.delivery());
        browser.view().resize(338, 248);
        browser.view().show();
        bool complete = false;
        browser.onDocumentComplete(m_gate.listener([&](const std::string&) { complete = true; }));
        browser.navigate("velmorant://map/DeskMap.asp?LangID=1028");
        ASSERT_TRUE(waitFor([&] { return complete; }, 30000));
        inject(browser, leftOut);
        browser.execScript("velmorantSuite.start()", "javascript");
        std::string results;
        ASSERT_TRUE(waitFor(
            [&] {
                results = property(browser, "velmorantSuiteResults");
                return !results.empty();
            },
            100000));
        judge(results);
    }

    static void inject(WebEngineBrowser& browser, const QStringList& leftOut) {
        QStringList names{"harness.js", "routes.js"};
        for (const QString& name : QDir(suiteFolder).entryList({"*.js"}, QDir::Files, QDir::Name))
            if (!names.contains(name) && !leftOut.contains(name))
                names.append(name);
        for (const QString& name : names) {
            QFile file(suiteFolder + '/' + name);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
            browser.execScript(file.readAll().toStdString(), "javascript");
        }
    }

    static void judge(const std::string& results) {
        const QJsonArray list = QJsonDocument::fromJson(QByteArray::fromStdString(results)).array();
        EXPECT_GT(list.size(), 140);
        for (const QJsonValue& result : list)
            EXPECT_TRUE(result["ok"].toBool()) << result["name"].toString().toStdString() << ": "
                                               << result["detail"].toString().toStdString();
    }

  private:
    QTemporaryDir m_storage;
};

TEST_F(MapPageSuiteTest, passes_where_the_program_answers_nothing) {
    run({}, {"programTests.js", "tileTests.js", "hangingTests.js"});
}

TEST_F(MapPageSuiteTest, passes_with_the_programs_answers) {
    bool wholeWindow = false;
    run(answers(m_gate, wholeWindow), {"tileTests.js", "hangingTests.js"});
}

} // namespace
} // namespace velmorant
