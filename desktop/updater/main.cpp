#include "app/LanguageTable.h"
#include "common/StepError.h"
#include "desktop/gate/HandlerGate.h"
#include "desktop/transfer/CurlHttpTransfer.h"
#include "update/MainProgramUpdate.h"
#include "update/PosixProgramHost.h"
#include "update/builtIn.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>
#include <cstdio>
#include <optional>

namespace {

using namespace velmorant;

constexpr std::chrono::milliseconds watched{5000};

/// Downloads one file and returns when it is there.
void fetch(HttpTransfer& transfer, ProgramTree& tree, const DownloadRequest& request) {
    QEventLoop loop;
    std::optional<std::string> failure;
    FileDownload download(transfer, tree,
                          {{},
                           {},
                           [&] { loop.quit(); },
                           [&](const DownloadFailure& failed) {
                               failure = failed.reason;
                               loop.quit();
                           }});
    download.start(request);
    loop.exec();
    if (failure)
        throw StepError(*failure);
}

const char* described(MainProgramResult result) {
    switch (result) {
    case MainProgramResult::NothingToDo:
        return "The catalogue names no new program.";
    case MainProgramResult::Updated:
        return "The new program runs.";
    case MainProgramResult::PutBack:
        return "The new program did not start; the old one is in its place again.";
    }
    return "";
}

} // namespace

/// velmupdate: takes no arguments and stands in the program folder. Ends with 0 when the program is
/// the new one, with 1 and the reason on the error output when not.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    SettingsState settings;
    const LanguageTable texts(settings, qEnvironmentVariable("VELMORANT_SERVER").toStdString());
    ProgramTree tree(QCoreApplication::applicationDirPath().toStdString());
    HandlerGate gate;
    CurlHttpTransfer transfer(gate.delivery());
    PosixProgramHost host(watched);
    try {
        MainProgramUpdate update(
            {tree, host, [&](const DownloadRequest& request) { fetch(transfer, tree, request); },
             texts.byId(1), mainProgramName, builtInUpdateKey()});
        const MainProgramResult result = update.run();
        std::fprintf(stderr, "%s\n", described(result));
        return result == MainProgramResult::PutBack ? 1 : 0;
    } catch (const StepError& error) {
        std::fprintf(stderr, "velmupdate: %s\n", error.what());
        return 1;
    }
}
