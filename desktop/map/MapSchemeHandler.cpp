#include "desktop/map/MapSchemeHandler.h"

#include "desktop/map/prepareWebEngine.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointer>
#include <QWebEngineUrlRequestJob>

namespace velmorant {

namespace {

QByteArray typeOf(const QString& ending) {
    static const QHash<QString, QByteArray> types = {
        {"asp", "text/html; charset=utf-8"},
        {"html", "text/html; charset=utf-8"},
        {"js", "text/javascript"},
        {"css", "text/css"},
        {"json", "application/json"},
        {"png", "image/png"},
        {"svg", "image/svg+xml"},
        {"jpg", "image/jpeg"},
        {"txt", "text/plain; charset=utf-8"},
    };
    return types.value(ending.toLower(), "application/octet-stream");
}

void reply(QWebEngineUrlRequestJob& job, const QByteArray& type, const QByteArray& data) {
    auto* buffer = new QBuffer(&job); // ends with the job
    buffer->setData(data);
    job.reply(type, buffer);
}

} // namespace

MapSchemeHandler::MapSchemeHandler(const QString& pageFolder, MapPageSource source,
                                   TileCache* tiles)
    : m_folder(QFileInfo(pageFolder).canonicalFilePath()),
      m_source(std::move(source)),
      m_tiles(tiles) {}

void MapSchemeHandler::requestStarted(QWebEngineUrlRequestJob* job) {
    const QUrl url = job->requestUrl();
    if (url.host() != mapHost || job->requestMethod() != "GET")
        return job->fail(QWebEngineUrlRequestJob::RequestDenied);
    const QString path = url.path(QUrl::FullyDecoded).mid(1);
    const QStringList parts = path.split('/');
    if (path == "config.json")
        serveJson(*job, m_source.configuration ? m_source.configuration() : std::nullopt);
    else if (parts.size() == 2 && parts[0] == "track")
        serveTrack(*job, parts[1]);
    else if (parts.size() == 2 && parts[0] == "command")
        serveCommand(*job, parts[1].toStdString(), url.query().toStdString());
    else if (parts.size() == 4 && parts[0] == "tile")
        serveTile(*job, parts.mid(1));
    else
        serveFile(*job, path);
}

void MapSchemeHandler::serveFile(QWebEngineUrlRequestJob& job, const QString& path) {
    // The canonical path tells where links and ".." really lead.
    const QFileInfo file(QFileInfo(m_folder + '/' + path).canonicalFilePath());
    if (m_folder.isEmpty() || !file.isFile() || !file.filePath().startsWith(m_folder + '/'))
        return job.fail(QWebEngineUrlRequestJob::UrlNotFound);
    auto* device = new QFile(file.filePath(), &job);
    if (!device->open(QIODevice::ReadOnly))
        return job.fail(QWebEngineUrlRequestJob::RequestFailed);
    job.reply(typeOf(file.suffix()), device);
}

void MapSchemeHandler::serveTrack(QWebEngineUrlRequestJob& job, const QString& name) {
    bool good = false;
    const long number = name.endsWith(".json") ? name.chopped(5).toLong(&good) : 0;
    serveJson(job, good && m_source.track ? m_source.track(number) : std::nullopt);
}

void MapSchemeHandler::serveCommand(QWebEngineUrlRequestJob& job, const std::string& name,
                                    const std::string& query) {
    if (!m_source.command)
        return job.fail(QWebEngineUrlRequestJob::UrlNotFound);
    m_source.command(name, query,
                     [waiting = QPointer(&job)](const std::optional<std::string>& json) {
                         if (waiting) // else the page has left
                             serveJson(*waiting, json);
                     });
}

void MapSchemeHandler::serveTile(QWebEngineUrlRequestJob& job, const QStringList& place) {
    bool good[3] = {};
    const int zoom = place[0].toInt(&good[0]);
    const int x = place[1].toInt(&good[1]);
    const int y = place[2].toInt(&good[2]);
    if (!m_tiles || !good[0] || !good[1] || !good[2])
        return job.fail(QWebEngineUrlRequestJob::UrlNotFound);
    m_tiles->fetch(zoom, x, y, [waiting = QPointer(&job)](const std::optional<Tile>& tile) {
        if (!waiting)
            return; // the page has left
        if (tile)
            reply(*waiting, tile->type, tile->data);
        else
            waiting->fail(QWebEngineUrlRequestJob::UrlNotFound);
    });
}

void MapSchemeHandler::serveJson(QWebEngineUrlRequestJob& job,
                                 const std::optional<std::string>& answer) {
    if (answer)
        reply(job, "application/json", QByteArray::fromStdString(*answer));
    else
        job.fail(QWebEngineUrlRequestJob::UrlNotFound);
}

} // namespace velmorant
