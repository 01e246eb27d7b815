#include "desktop/map/TileCache.h"

#include "tests/desktop/HttpServer.h"
#include "tests/desktop/eventLoop.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velmorant {
namespace {

class TileCacheTest : public testing::Test {
  protected:
    TileCacheTest()
        : m_server([this](const HttpRequest& request, QTcpSocket& socket) {
              if (request.target.contains("/hang"))
                  return HttpServer::After::KeepOpen;
              if (request.target.contains("/9/9/9"))
                  socket.write(HttpServer::response("none", "text/plain", {}, "404 Not Found"));
              else if (request.target.contains("/8/8/8"))
                  socket.write(HttpServer::response("<p>captive portal</p>", "text/html"));
              else
                  socket.write(
                      HttpServer::response("tile of " + request.target, "image/png", m_headers));
              return HttpServer::After::Close;
          }) {}

    TileProvider provider() const {
        return {m_server.address("/{z}/{x}/{y}.png"), "https://velmorant.example/", 19};
    }
    static std::optional<Tile> fetch(TileCache& cache, int zoom, int x, int y) {
        std::optional<Tile> tile;
        bool done = false;
        cache.fetch(zoom, x, y, [&](std::optional<Tile> result) {
            tile = std::move(result);
            done = true;
        });
        EXPECT_FALSE(done) << "answered inside the call";
        EXPECT_TRUE(waitFor([&] { return done; }));
        return tile;
    }

    QByteArray m_headers = "Cache-Control: max-age=3600\r\n";
    QTemporaryDir m_folder;
    HttpServer m_server;
};

TEST_F(TileCacheTest, fetches_nothing_without_a_provider) {
    TileCache cache(m_folder.path(), 1000000);
    EXPECT_FALSE(fetch(cache, 1, 0, 0));
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(TileCacheTest, says_who_it_is_to_the_provider) {
    TileCache cache(m_folder.path(), 1000000);
    cache.setProvider(provider());
    const std::optional<Tile> tile = fetch(cache, 12, 3430, 1750);
    ASSERT_TRUE(tile);
    EXPECT_EQ(tile->data, "tile of /12/3430/1750.png");
    EXPECT_EQ(tile->type, "image/png");
    ASSERT_EQ(m_server.requests().size(), 1);
    EXPECT_TRUE(m_server.requests()[0].header("User-Agent").startsWith("VelmorantDVRTools/"));
    EXPECT_EQ(m_server.requests()[0].header("Referer"), "https://velmorant.example/");
}

TEST_F(TileCacheTest, refuses_places_outside_the_map) {
    TileCache cache(m_folder.path(), 1000000);
    cache.setProvider(provider());
    const int places[][3] = {{-1, 0, 0}, {1, 2, 0}, {1, 0, 2}, {1, -1, 0}, {20, 0, 0}};
    for (const auto& place : places)
        EXPECT_FALSE(fetch(cache, place[0], place[1], place[2]));
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(TileCacheTest, takes_nothing_but_pictures) {
    TileCache cache(m_folder.path(), 1000000);
    cache.setProvider(provider());
    EXPECT_FALSE(fetch(cache, 9, 9, 9));
    EXPECT_FALSE(fetch(cache, 8, 8, 8));
    cache.setProvider(TileProvider{"file:///etc/{z}{x}{y}", "", 19});
    EXPECT_FALSE(fetch(cache, 1, 0, 0));
}

TEST_F(TileCacheTest, asks_once_for_a_tile_that_is_fresh) {
    TileCache cache(m_folder.path(), 1000000);
    cache.setProvider(provider());
    EXPECT_TRUE(fetch(cache, 3, 1, 1));
    EXPECT_TRUE(fetch(cache, 3, 1, 1));
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(TileCacheTest, shows_a_driven_area_without_a_network) {
    for (const char* headers : {"Cache-Control: max-age=3600\r\n", "ETag: \"1\"\r\n",
                                "Cache-Control: max-age=0\r\nETag: \"2\"\r\n", ""}) {
        SCOPED_TRACE(headers);
        const QTemporaryDir folder;
        HttpServer server([headers](const HttpRequest&, QTcpSocket& socket) {
            socket.write(HttpServer::response("tile", "image/png", headers));
            return HttpServer::After::Close;
        });
        const TileProvider provider{server.address("/{z}/{x}/{y}.png"), "", 19};
        {
            TileCache cache(folder.path(), 1000000);
            cache.setProvider(provider);
            EXPECT_TRUE(fetch(cache, 3, 1, 1));
        }
        server.stop();
        TileCache cache(folder.path(), 1000000);
        cache.setProvider(provider);
        EXPECT_TRUE(fetch(cache, 3, 1, 1));
        EXPECT_FALSE(fetch(cache, 3, 1, 2));
    }
}

TEST_F(TileCacheTest, keeps_to_its_limit_on_disk) {
    const QByteArray body(50000, 'x');
    HttpServer server([&](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response(body, "image/png", "Cache-Control: max-age=3600\r\n"));
        return HttpServer::After::Close;
    });
    TileCache cache(m_folder.path(), 500000);
    cache.setProvider(TileProvider{server.address("/{z}/{x}/{y}.png"), "", 19});
    for (int x = 0; x < 30; ++x)
        EXPECT_TRUE(fetch(cache, 5, x, 0));
    qint64 size = 0;
    QDirIterator files(m_folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        size += files.nextFileInfo().size();
    EXPECT_GT(size, 100000);
    EXPECT_LE(size, 550000);
}

} // namespace
} // namespace velmorant
