#pragma once

#include "app/frmMain.h"
#include "library/frmMP4List.h"
#include "playback/CurveChart.h"
#include "playback/FrameSaver.h"
#include "playback/MomentCard.h"
#include "playback/PictureClicks.h"
#include "playback/PlayerKeys.h"
#include "playback/PositionFollow.h"
#include "playback/StillPicture.h"
#include "playback/frmChild.h"
#include "playback/frmCurve.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "settings/UpdateSchedule.h"
#include "settings/frmAbout.h"
#include "settings/frmSetupInfo.h"
#include "settings/frmTip.h"
#include "settings/frmUpdate.h"
#include "track/TrackExportRun.h"
#include "track/frmMediaCtrl.h"
#include "track/frmSendData.h"

#include <memory>

namespace velmorant {

/// The logic of every window. The bridges between the rooms look their partners up here when they
/// are called, so that the rooms can be built one after the other although they call each other.
struct Rooms {
    ProgramState state;
    std::unique_ptr<RecordingList> rows;
    std::unique_ptr<frmTip> tip;
    std::unique_ptr<frmMain> main;
    std::unique_ptr<frmChild> child;
    std::unique_ptr<CurveChart> chart;
    std::unique_ptr<StillPicture> still;
    std::unique_ptr<FrameSaver> frameSaver;
    std::unique_ptr<MomentCard> moment;
    std::unique_ptr<PictureClicks> clicks;
    std::unique_ptr<frmCurve> curve;
    std::unique_ptr<PlayerKeys> keys;
    std::unique_ptr<frmMP4List> list;
    std::unique_ptr<frmMediaCtrl> mediaCtrl;
    std::unique_ptr<frmSendData> sendData;
    std::unique_ptr<TrackExportRun> trackExport;
    std::unique_ptr<PositionFollow> follow;
    std::unique_ptr<frmSetupInfo> setup;
    std::unique_ptr<frmAbout> about;
    std::unique_ptr<frmUpdate> update;
    std::unique_ptr<UpdateSchedule> updateSchedule;
};

} // namespace velmorant
