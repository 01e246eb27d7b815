#pragma once

#include "app/PosixHostPaths.h"
#include "app/PrivateProfile.h"
#include "desktop/gate/HandlerGate.h"
#include "desktop/system/FreedesktopShellObject.h"
#include "desktop/system/HostFileSystem.h"
#include "desktop/system/HostFolderReader.h"
#include "desktop/system/QtClock.h"
#include "desktop/system/QtFileDialogs.h"
#include "desktop/system/QtMessageBox.h"
#include "desktop/system/QtScreen.h"
#include "desktop/system/QtScreenCapture.h"
#include "desktop/system/QtShell.h"
#include "desktop/system/QtTimer.h"
#include "desktop/system/QtWaits.h"
#include "desktop/system/ThreadedTrackExport.h"
#include "desktop/wiring/Journal.h"
#include "ports/Texts.h"
#include "xml/ExpatDocument.h"

#include <string>

namespace velmorant {

/// What the logic asks of the machine, without any window.
struct Host {
    Host(const EnvironmentLookup& environment, const std::string& programFolder,
         const Texts& texts);

    Journal journal;
    HandlerGate gate;
    QtWaits waits;
    QtClock clock;
    QtScreen screen;
    QtScreenCapture capture;
    HostFileSystem files;
    HostFolderReader folders;
    PrivateProfile profile;
    PosixHostPaths paths;
    QtShell shell;
    FreedesktopShellObject shellObject;
    QtFileDialogs dialogs;
    QtMessageBox messageBox;
    ThreadedTrackExport trackExport;
    ExpatDocument trackDocument;
    ExpatDocument handOverDocument;
};

} // namespace velmorant
