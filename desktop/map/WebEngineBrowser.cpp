#include "desktop/map/WebEngineBrowser.h"

#include "desktop/map/prepareWebEngine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEngineSettings>

namespace velmorant {

namespace {

/// A text as a script's literal.
QString literal(const std::string& text) {
    const QByteArray array =
        QJsonDocument(QJsonArray{QString::fromStdString(text)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

void restrict(QWebEngineSettings& settings) {
    for (const QWebEngineSettings::WebAttribute attribute :
         {QWebEngineSettings::PluginsEnabled, QWebEngineSettings::PdfViewerEnabled,
          QWebEngineSettings::JavascriptCanOpenWindows,
          QWebEngineSettings::JavascriptCanAccessClipboard,
          QWebEngineSettings::LocalContentCanAccessRemoteUrls,
          QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::ErrorPageEnabled,
          QWebEngineSettings::ScreenCaptureEnabled, QWebEngineSettings::DnsPrefetchEnabled,
          QWebEngineSettings::AutoLoadIconsForPage})
        settings.setAttribute(attribute, false);
}

} // namespace

WebEngineBrowser::WebEngineBrowser(WebEngineBrowserSettings settings, GatedDelivery delivery)
    : m_interceptor(m_origin),
      m_handler(settings.pageFolder, std::move(settings.source), settings.tiles),
      m_profile(QStringLiteral("map")),
      m_view(new QWebEngineView),
      m_delivery(std::move(delivery)) {
    m_profile.setPersistentStoragePath(settings.storageFolder);
    m_profile.setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    m_profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_profile.setHttpAcceptLanguage(settings.language);
    m_profile.installUrlSchemeHandler(mapScheme, &m_handler);
    m_profile.setUrlRequestInterceptor(&m_interceptor);
    m_page = std::make_unique<WebMapPage>(&m_profile, m_origin, nullptr);
    restrict(*m_page->settings());
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    m_gesture.watch(*m_view);
    m_page->askedByUser = [this] { return m_gesture.take(); };
    m_view->setPage(m_page.get());
    QObject::connect(m_page.get(), &QWebEnginePage::loadFinished, m_page.get(),
                     [this](bool good) { loadFinished(good); });
    QObject::connect(
        m_page.get(), &QWebEnginePage::renderProcessTerminated, m_page.get(),
        [this](QWebEnginePage::RenderProcessTerminationStatus, int) { m_pageLostListener(); },
        Qt::QueuedConnection);
}

WebEngineBrowser::~WebEngineBrowser() {
    m_page->disconnect();
    delete m_view; // gone already when its parent window ended first
    m_page.reset();
}

void WebEngineBrowser::setLanguage(const QString& language) {
    m_profile.setHttpAcceptLanguage(language);
}

void WebEngineBrowser::onDocumentComplete(Listener listener) {
    m_documentCompleteListener = std::move(listener);
}

void WebEngineBrowser::onLoadFailed(Listener listener) {
    m_loadFailedListener = std::move(listener);
}

void WebEngineBrowser::onPageLost(GatedListener<> listener) {
    m_pageLostListener = std::move(listener);
}

void WebEngineBrowser::onLink(Listener listener) {
    m_page->link = std::move(listener);
}

void WebEngineBrowser::onPageMessage(Listener listener) {
    m_page->message = std::move(listener);
}

void WebEngineBrowser::loadFinished(bool good) {
    if (!good && m_page->takeRefusal())
        return;
    const Listener& listener = good ? m_documentCompleteListener : m_loadFailedListener;
    listener(good ? documentUrl() : m_page->requestedUrl().toString().toStdString());
}

void WebEngineBrowser::navigate(const std::string& address) {
    const QUrl url(QString::fromStdString(address));
    m_origin.set(url);
    m_page->takeRefusal();
    m_page->load(url);
}

std::string WebEngineBrowser::documentUrl() const {
    return m_page->url().toString().toStdString();
}

void WebEngineBrowser::execScript(const std::string& text, const std::string&) {
    // Nobody waits for the value of the last expression; should a version of the browser bring it
    // over all the same, it is a small one and not a whole route.
    m_page->runJavaScript(QString::fromStdString(text) + "\n;0");
}

void WebEngineBrowser::readWindowProperty(const std::string& name,
                                          std::function<void(const std::string&)> result) {
    const QString script = "(function(){var v=window[" + literal(name) +
                           "];return v===undefined||v===null?'':String(v);})()";
    m_page->runJavaScript(
        script, [this, alive = QPointer(m_page.get()), result](const QVariant& v) {
            if (alive)
                m_delivery([result, text = v.toString().toStdString()] { result(text); });
        });
}

void WebEngineBrowser::setWindowProperty(const std::string& name, const std::string& value) {
    m_page->runJavaScript("window[" + literal(name) + "]=" + literal(value) + ";0");
}

void WebEngineBrowser::setBodyScroll(const std::string& value) {
    m_page->runJavaScript(
        "document.body.setAttribute('scroll'," + literal(value) +
        ");document.body.style.overflow=" + literal(value == "no" ? "hidden" : "auto") + ";0");
}

void WebEngineBrowser::attachToBackground() {
    m_view->show();
}

} // namespace velmorant
