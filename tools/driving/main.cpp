// drive_road PROGRAM_FOLDER PICTURES_FOLDER: runs the program of that folder and drives its main
// road by the mouse; leaves pictures of the screen. The list must have been left by velmorant-list.
#include "app/commandLine.h"
#include "desktop/map/prepareWebEngine.h"
#include "desktop/system/returnFreedMemory.h"
#include "desktop/widgets/Theme.h"
#include "tools/driving/MainRoad.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

namespace {

/// Beyond every step's own limit: a message box, which nobody answers here, would hold a step.
constexpr int roadLimit = 300000;

std::optional<std::string> environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void stopTooLongRoad(const std::string& pictures) {
    const QString path = QString::fromStdString(pictures + "/stopped.png");
    QGuiApplication::primaryScreen()->grabWindow(0).save(path);
    std::fprintf(stderr, "drive_road: the road does not end within %d s; see %s\n",
                 roadLimit / 1000, path.toUtf8().constData());
    std::_Exit(1);
}

int drive(const std::string& program, const std::string& pictures) {
    velmorant::Application application(environment, program);
    if (application.start("") != velmorant::StartUpResult::Running) {
        std::fprintf(stderr, "drive_road: the program does not start\n");
        return 1;
    }
    velmorant::MainRoad(application, pictures).drive();
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: drive_road PROGRAM_FOLDER PICTURES_FOLDER\n");
        return 2;
    }
    velmorant::returnFreedMemory();
    velmorant::prepareWebEngine(velmorant::videoOutput(environment) ==
                                        velmorant::VideoOutput::OpenGl
                                    ? velmorant::OpenGlUse::Picture
                                    : velmorant::OpenGlUse::None);
    QApplication application(count, arguments);
    // libmpv reads numbers by the locale of the process.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("velmorant-dvr-tools");
    QApplication::setQuitOnLastWindowClosed(false);
    velmorant::applyTheme(application);
    try {
        const std::string program = std::filesystem::canonical(arguments[1]).string();
        const std::string pictures = std::filesystem::absolute(arguments[2]).string();
        QTimer::singleShot(roadLimit, [pictures] { stopTooLongRoad(pictures); });
        return drive(program, pictures);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "drive_road: %s\n", failure.what());
        return 1;
    }
}
