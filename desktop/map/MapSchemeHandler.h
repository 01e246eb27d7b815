#pragma once

#include "desktop/map/MapPageSource.h"
#include "desktop/map/TileCache.h"

#include <QWebEngineUrlSchemeHandler>

namespace velmorant {

/// Serves velmorant://map/ to the browser control:
///   a file of the page's folder by its path (".asp" as text/html, any query ignored)
///   config.json, track/NUMBER.json, command/NAME?QUERY   from the source
///   tile/ZOOM/X/Y                                         from the tile cache
/// Everything else, other methods than GET, other hosts and paths that leave the folder fail as not
/// found or denied.
class MapSchemeHandler : public QWebEngineUrlSchemeHandler {
  public:
    /// `tiles` may be null and must outlive the handler.
    MapSchemeHandler(const QString& pageFolder, MapPageSource source, TileCache* tiles);

    void requestStarted(QWebEngineUrlRequestJob* job) override;

  private:
    void serveFile(QWebEngineUrlRequestJob& job, const QString& path);
    void serveTrack(QWebEngineUrlRequestJob& job, const QString& name);
    void serveTile(QWebEngineUrlRequestJob& job, const QStringList& place);
    void serveCommand(QWebEngineUrlRequestJob& job, const std::string& name,
                      const std::string& query);
    static void serveJson(QWebEngineUrlRequestJob& job, const std::optional<std::string>& answer);

    QString m_folder; ///< canonical
    MapPageSource m_source;
    TileCache* m_tiles;
};

} // namespace velmorant
