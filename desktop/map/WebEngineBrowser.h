#pragma once

#include "desktop/gate/GatedListener.h"
#include "desktop/map/MapSchemeHandler.h"
#include "desktop/map/UserGesture.h"
#include "desktop/map/WebMapPage.h"
#include "ports/WebBrowser.h"

#include <QPointer>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <memory>

namespace velmorant {

struct WebEngineBrowserSettings {
    QString pageFolder;    ///< of the page that the program serves itself
    QString storageFolder; ///< in the user's data folder: what the page remembers
    QString language;      ///< as the page sees it, for example "en" or "zh-TW"
    MapPageSource source;
    TileCache* tiles = nullptr; ///< must outlive the browser; null: no tiles
};

/// The browser control on Qt WebEngine. It shows one page, its own (velmorant://map/...) or an
/// operator's (http, https), and opens no address outside that page's origin. prepareWebEngine()
/// must have been called.
class WebEngineBrowser : public WebBrowser {
  public:
    using Listener = GatedListener<std::string>;

    /// Answers from the page reach the logic through `delivery`.
    WebEngineBrowser(WebEngineBrowserSettings settings, GatedDelivery delivery);
    ~WebEngineBrowser() override;

    /// The control, for the window that lays it out. It may be put into a parent; the browser
    /// deletes it.
    QWebEngineView& view() { return *m_view; }
    /// From the next load on.
    void setLanguage(const QString& language);

    void onDocumentComplete(Listener listener); ///< the main document's address
    /// The address could not be loaded: no network, no such page.
    void onLoadFailed(Listener listener);
    /// The process of the page has ended; the control stays empty until the next navigate().
    void onPageLost(GatedListener<> listener);
    /// For the user's own browser, http or https. A script of the page gets there only by a click
    /// or key of the user's, and once for each.
    void onLink(Listener listener);
    void onPageMessage(Listener listener); ///< a line of the page's console

    void navigate(const std::string& address) override;
    std::string documentUrl() const override;
    void execScript(const std::string& text, const std::string& language) override;
    void readWindowProperty(const std::string& name,
                            std::function<void(const std::string&)> result) override;
    void setWindowProperty(const std::string& name, const std::string& value) override;
    void setBodyScroll(const std::string& value) override;
    void attachToBackground() override;

  private:
    void loadFinished(bool good);

    UserGesture m_gesture;
    OwnOrigin m_origin;
    OwnOriginInterceptor m_interceptor;
    MapSchemeHandler m_handler;
    QWebEngineProfile m_profile;
    std::unique_ptr<WebMapPage> m_page; ///< must end before its profile
    QPointer<QWebEngineView> m_view;
    GatedDelivery m_delivery;
    Listener m_documentCompleteListener;
    Listener m_loadFailedListener;
    GatedListener<> m_pageLostListener;
};

} // namespace velmorant
