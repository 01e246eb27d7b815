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
    : interceptor_(origin_),
      handler_(settings.pageFolder, std::move(settings.source), settings.tiles),
      profile_(QStringLiteral("map")),
      view_(new QWebEngineView),
      delivery_(std::move(delivery)) {
    profile_.setPersistentStoragePath(settings.storageFolder);
    profile_.setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    profile_.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    profile_.setHttpAcceptLanguage(settings.language);
    profile_.installUrlSchemeHandler(mapScheme, &handler_);
    profile_.setUrlRequestInterceptor(&interceptor_);
    page_ = std::make_unique<WebMapPage>(&profile_, origin_, nullptr);
    restrict(*page_->settings());
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    gesture_.watch(*view_);
    page_->askedByUser = [this] { return gesture_.take(); };
    view_->setPage(page_.get());
    QObject::connect(page_.get(), &QWebEnginePage::loadFinished, page_.get(),
                     [this](bool good) { loadFinished(good); });
    QObject::connect(
        page_.get(), &QWebEnginePage::renderProcessTerminated, page_.get(),
        [this](QWebEnginePage::RenderProcessTerminationStatus, int) { pageLostListener_(); },
        Qt::QueuedConnection);
}

WebEngineBrowser::~WebEngineBrowser() {
    page_->disconnect();
    delete view_; // gone already when its parent window ended first
    page_.reset();
}

void WebEngineBrowser::setLanguage(const QString& language) {
    profile_.setHttpAcceptLanguage(language);
}

void WebEngineBrowser::onDocumentComplete(Listener listener) {
    documentCompleteListener_ = std::move(listener);
}

void WebEngineBrowser::onLoadFailed(Listener listener) {
    loadFailedListener_ = std::move(listener);
}

void WebEngineBrowser::onPageLost(GatedListener<> listener) {
    pageLostListener_ = std::move(listener);
}

void WebEngineBrowser::onLink(Listener listener) {
    page_->link = std::move(listener);
}

void WebEngineBrowser::onPageMessage(Listener listener) {
    page_->message = std::move(listener);
}

void WebEngineBrowser::loadFinished(bool good) {
    if (!good && page_->takeRefusal())
        return;
    const Listener& listener = good ? documentCompleteListener_ : loadFailedListener_;
    listener(good ? documentUrl() : page_->requestedUrl().toString().toStdString());
}

void WebEngineBrowser::navigate(const std::string& address) {
    const QUrl url(QString::fromStdString(address));
    origin_.set(url);
    page_->takeRefusal();
    page_->load(url);
}

std::string WebEngineBrowser::documentUrl() const {
    return page_->url().toString().toStdString();
}

void WebEngineBrowser::execScript(const std::string& text, const std::string&) {
    // Nobody waits for the value of the last expression; should a version of the browser bring it
    // over all the same, it is a small one and not a whole route.
    page_->runJavaScript(QString::fromStdString(text) + "\n;0");
}

void WebEngineBrowser::readWindowProperty(const std::string& name,
                                          std::function<void(const std::string&)> result) {
    const QString script = "(function(){var v=window[" + literal(name) +
                           "];return v===undefined||v===null?'':String(v);})()";
    page_->runJavaScript(script, [this, alive = QPointer(page_.get()), result](const QVariant& v) {
        if (alive)
            delivery_([result, text = v.toString().toStdString()] { result(text); });
    });
}

void WebEngineBrowser::setWindowProperty(const std::string& name, const std::string& value) {
    page_->runJavaScript("window[" + literal(name) + "]=" + literal(value) + ";0");
}

void WebEngineBrowser::setBodyScroll(const std::string& value) {
    page_->runJavaScript(
        "document.body.setAttribute('scroll'," + literal(value) +
        ");document.body.style.overflow=" + literal(value == "no" ? "hidden" : "auto") + ";0");
}

void WebEngineBrowser::attachToBackground() {
    view_->show();
}

} // namespace velmorant
