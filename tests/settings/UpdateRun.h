#pragma once

#include "settings/frmUpdate.h"
#include "tests/builders/CatalogueBuilder.h"
#include "tests/builders/ScratchFolder.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeHttpTransfer.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeShell.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/fakes/FakeWindow.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmorant {

/// Records what the window shows.
class FakeUpdateProgress : public UpdateProgress {
  public:
    void showSum(int value, int maximum) override { sums.emplace_back(value, maximum); }
    void showSingle(std::int64_t value, std::int64_t maximum) override {
        singles.emplace_back(value, maximum);
    }
    void showStatus(const std::string& text) override { status = text; }

    std::vector<std::pair<int, int>> sums;
    std::vector<std::pair<std::int64_t, std::int64_t>> singles;
    std::string status;
};

/// An update window over a program folder of this disk and a scripted server.
class UpdateRun : public testing::Test {
  protected:
    UpdateRun() {
        texts.texts["1"] = base;
        paths.programFolder = folder.path();
        paths.writableFolder = folder.path();
    }

    void serve(const std::string& remote, const std::string& content) {
        transfer.answers[base + remote] = fakes::FakeHttpTransfer::body(content);
    }
    void serveCatalogue(const std::string& text) { serve("update/remote.rar", text); }

    frmUpdateNeeds needs() {
        return {.window = window,
                .progress = progress,
                .transfer = transfer,
                .tStartLoad = startLoad,
                .tAllLoad = allLoad,
                .tClose = close,
                .texts = texts,
                .messageBox = messageBox,
                .shell = shell,
                .paths = paths,
                .mainProgram = "Velmorant DVR Tools"};
    }

    /// Opens, and answers and ticks until nothing more happens.
    void run(frmUpdate& update, UpdateOpening opening = UpdateOpening::Automatic) {
        update.Open(opening);
        settle();
    }
    void settle() {
        for (int idle = 0; idle < 2;) {
            const bool answered = transfer.answer();
            const int ticks = startLoad.ticks() + allLoad.ticks();
            timers.advance(100);
            idle = answered || startLoad.ticks() + allLoad.ticks() != ticks ? 0 : idle + 1;
        }
    }

    const std::string base = "http://update.test/";
    builders::ScratchFolder folder;
    fakes::FakeTimers timers;
    fakes::FakeTimer startLoad{timers};
    fakes::FakeTimer allLoad{timers};
    fakes::FakeTimer close{timers};
    fakes::FakeWindow window;
    FakeUpdateProgress progress;
    fakes::FakeHttpTransfer transfer;
    fakes::FakeTexts texts;
    fakes::FakeMessageBox messageBox;
    fakes::FakeShell shell;
    fakes::FakeHostPaths paths;
};

} // namespace velmorant
