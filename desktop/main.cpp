#include "app/commandLine.h"
#include "desktop/map/prepareWebEngine.h"
#include "desktop/system/returnFreedMemory.h"
#include "desktop/widgets/Theme.h"
#include "desktop/wiring/Application.h"

#include <QApplication>
#include <clocale>
#include <cstdlib>

namespace {

std::optional<std::string> environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

int main(int count, char** arguments) {
    velmorant::returnFreedMemory();
    velmorant::prepareWebEngine(velmorant::videoOutput(environment) ==
                                        velmorant::VideoOutput::OpenGl
                                    ? velmorant::OpenGlUse::Picture
                                    : velmorant::OpenGlUse::None);
    QApplication application(count, arguments);
    // libmpv reads numbers by the locale of the process.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("velmorant-dvr-tools");
    QApplication::setApplicationVersion(VELMORANT_VERSION);
    QApplication::setDesktopFileName("velmorant-dvr-tools");
    QApplication::setQuitOnLastWindowClosed(false);
    velmorant::applyTheme(application);

    velmorant::Application program(environment, QApplication::applicationDirPath().toStdString());
    std::vector<std::string> texts;
    for (const QString& argument : QApplication::arguments().mid(1))
        texts.push_back(argument.toStdString());
    const velmorant::StartUpResult result = program.start(velmorant::joinArguments(texts));
    if (result == velmorant::StartUpResult::Failed)
        return 1;
    return result == velmorant::StartUpResult::Running ? QApplication::exec() : 0;
}
