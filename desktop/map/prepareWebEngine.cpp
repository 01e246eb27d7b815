#include "desktop/map/prepareWebEngine.h"

#include <QCoreApplication>
#include <QWebEngineUrlScheme>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace velmorant {

namespace {

void setUnlessSet(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

/// Passes the toolkit's messages on without those that only tell that there is no OpenGL.
void withoutOpenGlNotices(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (qstrcmp(context.category, "qt.webenginecontext") == 0)
        return;
    for (const char* notice :
         {"QXcbIntegration: Cannot create platform OpenGL context", "No suitable graphics backend"})
        if (text.startsWith(QLatin1String(notice)))
            return;
    std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, text).toUtf8().constData());
}

} // namespace

void prepareWebEngine(OpenGlUse use) {
    // The browser sets this one itself when it starts, among threads of the player that read the
    // environment: a name that is new then moves the table that they walk through.
    setUnlessSet("force_s3tc_enable", "true");
    // Composed by OpenGL the whole window would be, which makes every repaint of the picture
    // dearer.
    setUnlessSet("QT_QUICK_BACKEND", "software");
    // To load OpenGL takes longer than all else before the first window.
    if (use == OpenGlUse::None && qgetenv("QT_QUICK_BACKEND") == "software") {
        setUnlessSet("QT_XCB_GL_INTEGRATION", "none");
        qInstallMessageHandler(withoutOpenGlNotices);
    }
    // For screen readers; it costs nothing while none runs.
    setUnlessSet("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
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
