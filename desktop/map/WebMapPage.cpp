#include "desktop/map/WebMapPage.h"

#include <QWebEngineNewWindowRequest>
#include <QWebEngineUrlRequestInfo>

namespace velmorant {

bool OwnOrigin::contains(const QUrl& url) const {
    if (url.scheme() == "data" || url.scheme() == "blob")
        return true;
    return url.scheme() == address_.scheme() && url.host() == address_.host() &&
           url.port() == address_.port();
}

void OwnOriginInterceptor::interceptRequest(QWebEngineUrlRequestInfo& info) {
    if (!origin_.contains(info.requestUrl()))
        info.block(true);
}

WebMapPage::WebMapPage(QWebEngineProfile* profile, const OwnOrigin& origin, QObject* parent)
    : QWebEnginePage(profile, parent), origin_(origin) {
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](QWebEngineNewWindowRequest& request) { report(request.requestedUrl()); });
}

bool WebMapPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (origin_.contains(url) && (!isMainFrame || url.scheme() != "data"))
        return true;
    if (isMainFrame && type == NavigationTypeLinkClicked)
        report(url);
    refused_ = refused_ || isMainFrame;
    return false;
}

void WebMapPage::report(const QUrl& url) {
    const bool web = url.scheme() == "http" || url.scheme() == "https";
    if (web)
        link(url.toString().toStdString());
}

void WebMapPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& text,
                                          int line, const QString& source) {
    message((source + ':' + QString::number(line) + ": " + text).toStdString());
}

} // namespace velmorant
