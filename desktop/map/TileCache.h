#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QString>

#include <functional>
#include <optional>

namespace velmorant {

/// The server of street tiles.
struct TileProvider {
    /// http or https, with {z}, {x} and {y}, perhaps {s} for one of the sub-domains a, b and c.
    QString urlTemplate;
    QString referer;  ///< tile servers require one
    int maxZoom = 19; ///< 0 .. 22
};

struct Tile {
    QByteArray data;
    QByteArray type; ///< for example "image/png"
};

/// Fetches street tiles from the provider, when one is set, and keeps them on disk up to a limit:
/// an area seen once is available offline. Freshness follows the server's headers.
class TileCache {
  public:
    /// Creates the folder when first used.
    TileCache(const QString& folder, qint64 limitBytes);

    void setProvider(std::optional<TileProvider> provider);
    const std::optional<TileProvider>& provider() const { return m_provider; }

    /// Calls back once, from the event loop; without a tile when there is no provider, the place is
    /// outside the map, or the tile is available neither from the network nor from the disk.
    void fetch(int zoom, int x, int y, const std::function<void(std::optional<Tile>)>& result);

  private:
    enum class From { Network, Disk };
    void request(const QUrl& url, From from,
                 const std::function<void(std::optional<Tile>)>& result);

    QNetworkAccessManager m_network;
    std::optional<TileProvider> m_provider;
};

} // namespace velmorant
