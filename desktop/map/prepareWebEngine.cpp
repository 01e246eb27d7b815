#include "desktop/map/prepareWebEngine.h"

#include <QCoreApplication>
#include <QWebEngineUrlScheme>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace velmorant {

namespace {

void setUnlessSet(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

} // namespace

void prepareWebEngine() {
    // Composed by OpenGL the whole window would be, which makes every repaint of the picture
    // dearer.
    setUnlessSet("QT_QUICK_BACKEND", "software");
    // Routes come as texts by the 100,000, which the engine would keep for hundreds of megabytes.
    setUnlessSet("QTWEBENGINE_CHROMIUM_FLAGS", "--js-flags=--max-old-space-size=160");
#ifdef Q_OS_UNIX
    // The browser's sandbox refuses to run for root; all others keep it.
    if (geteuid() == 0)
        setUnlessSet("QTWEBENGINE_DISABLE_SANDBOX", "1");
#endif
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QWebEngineUrlScheme scheme(mapScheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(scheme);
}

} // namespace velmorant
