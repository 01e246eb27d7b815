#pragma once

#include "desktop/gate/GatedListener.h"

#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>

#include <string>
#include <utility>

namespace velmorant {

/// The one origin whose addresses the control opens: that of the address last navigated to.
/// Addresses that contain their own content (data, blob) are allowed too.
class OwnOrigin {
  public:
    void set(const QUrl& address) { m_address = address; }
    bool contains(const QUrl& url) const;

  private:
    QUrl m_address;
};

/// Blocks every request that leaves the page's own origin, embedded content included.
class OwnOriginInterceptor : public QWebEngineUrlRequestInterceptor {
  public:
    explicit OwnOriginInterceptor(const OwnOrigin& origin) : m_origin(origin) {}
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

  private:
    const OwnOrigin& m_origin;
};

/// A page that never leaves its origin: links that lead elsewhere, and windows that it wants to
/// open, are reported instead when the user has asked for them. Its only connections are requests,
/// all of which pass its profile's interceptor.
class WebMapPage : public QWebEnginePage {
    Q_OBJECT
  public:
    WebMapPage(QWebEngineProfile* profile, const OwnOrigin& origin, QObject* parent);

    /// Whether a navigation was refused since the last call; the page then reports a failed load
    /// although it is still there.
    bool takeRefusal() { return std::exchange(m_refused, false); }

    GatedListener<std::string> link;
    GatedListener<std::string> message;
    std::function<bool()> askedByUser; ///< whether a click or key has just come; unset: never

  protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& text,
                                  int line, const QString& source) override;

  private:
    void report(const QUrl& url);
    void takeConnectionsAway();

    const OwnOrigin& m_origin;
    bool m_refused = false;
};

} // namespace velmorant
