#pragma once

#include "desktop/player/ExifFrameWriter.h"
#include "desktop/transfer/CurlHttpTransfer.h"
#include "desktop/wiring/Application.h"

namespace velmorant {

/// The bridges between the rooms and the timers of their windows, in one place so that they outlive
/// the rooms that use them.
struct Application::Bridges {
    Bridges(Rooms& rooms, Panes& panes, Host& host, std::function<void()> endProgram)
        : listRows(rooms),
          commandsOfFrame(rooms, panes, endProgram),
          settingsToProgram(rooms, host, endProgram),
          frameWriter(panes.picture.player),
          tStart(host.gate),
          tGetMapLocal(host.gate),
          tMapAnswer(host.gate),
          tPlayTime(host.gate),
          tFast(host.gate),
          tContinue(host.gate),
          tStartLoad(host.gate),
          tAllLoad(host.gate),
          tClose(host.gate),
          updateTimer(host.gate),
          transfer(host.gate.delivery()) {}

    ListRows listRows;
    CommandsOfFrame commandsOfFrame;
    SettingsToProgram settingsToProgram;
    ExifFrameWriter frameWriter;
    QtTimer tStart;
    QtTimer tGetMapLocal;
    QtTimer tMapAnswer;
    QtTimer tPlayTime;
    QtTimer tFast;
    QtTimer tContinue;
    QtTimer tStartLoad;
    QtTimer tAllLoad;
    QtTimer tClose;
    QtTimer updateTimer;
    CurlHttpTransfer transfer;
};

} // namespace velmorant
