#include "tests/desktop/HttpServer.h"
#include "tests/gui/ProgramTest.h"

#include <QBuffer>
#include <QImage>

namespace velmorant {
namespace {

QByteArray picture() {
    QImage image(256, 256, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QByteArray data;
    QBuffer buffer(&data);
    image.save(&buffer, "PNG");
    return data;
}

enum class Provider { Answers, Hangs, Refuses, AnswersGarbage, Fails };

/// The whole program with a provider of street tiles on loopback.
class StreetTilesTest : public ProgramTest {
  protected:
    StreetTilesTest()
        : m_server([this](const HttpRequest&, QTcpSocket& socket) {
              if (provider == Provider::Hangs)
                  return HttpServer::After::KeepOpen;
              if (provider == Provider::Fails)
                  socket.write(HttpServer::response("", "text/plain", {}, "503 Not Now"));
              else
                  socket.write(HttpServer::response(
                      provider == Provider::Answers ? m_picture : "no picture at all", "image/png",
                      "Cache-Control: max-age=3600\r\n"));
              return HttpServer::After::Close;
          }) {
        setVariable("VELMORANT_TILES", m_server.address("/{z}/{x}/{y}.png").toStdString());
        setVariable("VELMORANT_TILES_ATTRIBUTION", "Loopback Streets");
    }

    bool pageSays(const char* expression) { return driver().map().evaluate(expression) == "true"; }
    bool comesToSay(const char* expression) {
        return waitUntil([&] { return pageSays(expression); });
    }
    void refuseConnections() { m_server.stop(); }
    bool asked() const { return !m_server.requests().isEmpty(); }

    Provider provider = Provider::Answers;

  private:
    QByteArray m_picture = picture();
    HttpServer m_server;
};

constexpr const char* tilesShown = "[...document.querySelectorAll('.leaflet-tile-loaded')]"
                                   ".filter((tile) => tile.naturalWidth === 256).length > 0";
constexpr const char* attributed =
    "document.getElementById('source').textContent === 'Loopback Streets'";
/// The middle of a continent is painted.
constexpr const char* builtInMapShown = R"((function () {
    const { base, ground } = velmorantMap.baseLayers;
    if (base.world === null || ground.front.view === null) return false;
    velmorantMap.map.setView([33.1, 87.3], 5, { animate: false });
    ground.paint();
    const { canvas, context } = ground.front;
    const data = context.getImageData(canvas.width / 2 - 4, canvas.height / 2 - 4, 9, 9).data;
    return data.every((value, i) => i % 4 !== 3 || value === 255);
})())";

TEST_F(StreetTilesTest, a_provider_that_does_not_answer_leaves_the_built_in_map) {
    for (const Provider kind :
         {Provider::Hangs, Provider::AnswersGarbage, Provider::Fails, Provider::Refuses}) {
        SCOPED_TRACE(int(kind));
        provider = kind;
        if (kind == Provider::Refuses)
            refuseConnections();
        ASSERT_NO_FATAL_FAILURE(start());
        EXPECT_TRUE(kind == Provider::Refuses || waitUntil([&] { return asked(); }));
        EXPECT_TRUE(comesToSay(builtInMapShown));
        EXPECT_FALSE(pageSays(tilesShown));
        EXPECT_FALSE(pageSays(attributed));
        if (kind == Provider::Hangs) {
            // Usable: a recording comes onto it.
            ASSERT_NO_FATAL_FAILURE(add({recording(1)}));
            ASSERT_NO_FATAL_FAILURE(extractAll());
            ASSERT_NO_FATAL_FAILURE(waitForRoutes(1));
        }
        end();
    }
}

TEST_F(StreetTilesTest, a_seen_area_stays_without_the_provider_after_a_restart) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(comesToSay(tilesShown));
    EXPECT_TRUE(comesToSay(attributed));
    end();
    refuseConnections();
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(comesToSay(tilesShown)) << "nothing is kept on disk";
}

} // namespace
} // namespace velmorant
