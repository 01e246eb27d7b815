#include "desktop/map/TileCache.h"

#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QPointer>

namespace velmorant {

namespace {

constexpr int timeoutMilliseconds = 15000;
constexpr qint64 largestTile = qint64{2} * 1024 * 1024;

bool onMap(const TileProvider& provider, int zoom, int x, int y) {
    return zoom >= 0 && zoom <= provider.maxZoom && zoom <= 22 && x >= 0 && y >= 0 &&
           x < (1 << zoom) && y < (1 << zoom);
}

QUrl addressOf(const TileProvider& provider, int zoom, int x, int y) {
    QString address = provider.urlTemplate;
    address.replace("{z}", QString::number(zoom));
    address.replace("{x}", QString::number(x));
    address.replace("{y}", QString::number(y));
    address.replace("{s}", QString("abc").at((x + y) % 3));
    return QUrl(address, QUrl::StrictMode);
}

std::optional<Tile> tileOf(QNetworkReply& reply) {
    const QByteArray type = reply.header(QNetworkRequest::ContentTypeHeader).toByteArray();
    if (reply.error() != QNetworkReply::NoError || !type.startsWith("image/"))
        return std::nullopt;
    Tile tile{reply.readAll(), type.split(';').first().trimmed()};
    return tile.data.isEmpty() ? std::nullopt : std::optional(std::move(tile));
}

} // namespace

TileCache::TileCache(const QString& folder, qint64 limitBytes) {
    auto* cache = new QNetworkDiskCache(&m_network);
    cache->setCacheDirectory(folder);
    cache->setMaximumCacheSize(limitBytes);
    m_network.setCache(cache);
    m_network.setAutoDeleteReplies(true);
}

void TileCache::setProvider(std::optional<TileProvider> provider) {
    m_provider = std::move(provider);
}

void TileCache::fetch(int zoom, int x, int y,
                      const std::function<void(std::optional<Tile>)>& result) {
    const QUrl url =
        m_provider && onMap(*m_provider, zoom, x, y) ? addressOf(*m_provider, zoom, x, y) : QUrl();
    if (!url.isValid() || (url.scheme() != "http" && url.scheme() != "https")) {
        QMetaObject::invokeMethod(
            &m_network, [result] { result(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    request(url, From::Network, result);
}

void TileCache::request(const QUrl& url, From from,
                        const std::function<void(std::optional<Tile>)>& result) {
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", "VelmorantDVRTools/" VELMORANT_VERSION);
    if (!m_provider->referer.isEmpty())
        request.setRawHeader("Referer", m_provider->referer.toUtf8());
    request.setTransferTimeout(timeoutMilliseconds);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         from == From::Network ? QNetworkRequest::PreferNetwork
                                               : QNetworkRequest::AlwaysCache);
    QNetworkReply* const reply = m_network.get(request);
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [reply](qint64 received, qint64) {
                         if (received > largestTile)
                             reply->abort();
                     });
    QObject::connect(reply, &QNetworkReply::finished, &m_network, [=, this] {
        std::optional<Tile> tile = tileOf(*reply);
        if (!tile && from == From::Network && m_provider)
            this->request(url, From::Disk, result); // no network: an old tile is better than none
        else
            result(std::move(tile));
    });
}

} // namespace velmorant
