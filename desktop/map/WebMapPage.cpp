#include "desktop/map/WebMapPage.h"

#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineUrlRequestInfo>

namespace velmorant {

namespace {

constexpr const char* withoutConnections = R"((function () {
    'use strict';
    for (const name of ['RTCPeerConnection', 'webkitRTCPeerConnection', 'RTCDataChannel',
                        'RTCIceTransport', 'WebTransport']) {
        Object.defineProperty(window, name, { value: undefined });
    }
})();)";

} // namespace

bool OwnOrigin::contains(const QUrl& url) const {
    if (url.scheme() == "data" || url.scheme() == "blob")
        return true;
    return url.scheme() == m_address.scheme() && url.host() == m_address.host() &&
           url.port() == m_address.port();
}

void OwnOriginInterceptor::interceptRequest(QWebEngineUrlRequestInfo& info) {
    if (!m_origin.contains(info.requestUrl()))
        info.block(true);
}

WebMapPage::WebMapPage(QWebEngineProfile* profile, const OwnOrigin& origin, QObject* parent)
    : QWebEnginePage(profile, parent), m_origin(origin) {
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](QWebEngineNewWindowRequest& request) { report(request.requestedUrl()); });
    takeConnectionsAway();
}

/// They would go past the interceptor, to any host. The control has no switch for them.
void WebMapPage::takeConnectionsAway() {
    QWebEngineScript script;
    script.setName(QStringLiteral("connections"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(QString::fromLatin1(withoutConnections));
    scripts().insert(script);
}

bool WebMapPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (m_origin.contains(url) && (!isMainFrame || url.scheme() != "data"))
        return true;
    if (isMainFrame && type == NavigationTypeLinkClicked)
        report(url);
    m_refused = m_refused || isMainFrame;
    return false;
}

void WebMapPage::report(const QUrl& url) {
    const bool web = url.scheme() == "http" || url.scheme() == "https";
    if (web && askedByUser && askedByUser())
        link(url.toString().toStdString());
}

void WebMapPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& text,
                                          int line, const QString& source) {
    message((source + ':' + QString::number(line) + ": " + text).toStdString());
}

} // namespace velmorant
