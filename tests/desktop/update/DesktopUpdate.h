#pragma once

#include "app/LanguageTable.h"
#include "app/PosixHostPaths.h"
#include "desktop/system/QtScreen.h"
#include "desktop/system/QtTimer.h"
#include "desktop/transfer/CurlHttpTransfer.h"
#include "desktop/windows/QtWindow.h"
#include "desktop/windows/UpdateWindow.h"
#include "settings/frmUpdate.h"
#include "tests/builders/ScratchFolder.h"
#include "tests/desktop/eventLoop.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeShell.h"

#include <optional>
#include <string>

namespace velmorant {

/// The update as the program has it - window, timers, transfer, files - against a server base.
class DesktopUpdate {
  public:
    explicit DesktopUpdate(const std::string& base)
        : texts(settings, base),
          paths([](const std::string&) { return std::nullopt; }, folder.path()) {
        settings.setLanguage(1001);
        window.onCloseRequest(gate.listener([this] { update.Close(); }));
    }

    bool runToEnd(UpdateOpening opening = UpdateOpening::OnRequest, int limit = 60000) {
        update.Open(opening);
        return waitFor([this] { return !update.running(); }, limit);
    }
    std::string toldAtLast() const {
        return messages.shown.empty() ? std::string() : messages.shown.back().text;
    }

    builders::ScratchFolder folder;
    SettingsState settings;
    LanguageTable texts;
    PosixHostPaths paths;
    HandlerGate gate;
    QtScreen screen;
    UpdateWindow widget{texts};
    QtWindow window{widget, gate, screen};
    CurlHttpTransfer transfer{gate.delivery()};
    QtTimer startLoad{gate};
    QtTimer allLoad{gate};
    QtTimer close{gate};
    fakes::FakeMessageBox messages;
    fakes::FakeShell shell;
    frmUpdate update{{.window = window,
                      .progress = widget,
                      .transfer = transfer,
                      .tStartLoad = startLoad,
                      .tAllLoad = allLoad,
                      .tClose = close,
                      .texts = texts,
                      .messageBox = messages,
                      .shell = shell,
                      .paths = paths,
                      .mainProgram = "Velmorant DVR Tools"}};
};

} // namespace velmorant
