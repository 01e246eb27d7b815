#pragma once

#include "library/AddingProgress.h"
#include "library/PlayQueue.h"
#include "library/RecordingCount.h"
#include "library/RecordingEntryMaker.h"
#include "library/RecordingListFile.h"
#include "library/RecordingMarks.h"
#include "library/RecordingRemoval.h"
#include "library/RecordingSearch.h"
#include "library/TrackCommands.h"
#include "ports/BandContainer.h"
#include "ports/FileDialogs.h"
#include "ports/FileSystem.h"
#include "ports/FolderReader.h"
#include "ports/HostPaths.h"
#include "ports/ListControl.h"
#include "ports/MapPage.h"
#include "ports/MediaPlayer.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Skin.h"
#include "ports/StatusLine.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Waits.h"
#include "ports/XmlDocument.h"
#include "ports/loadSkin.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "recordings/RowView.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

struct frmMP4ListNeeds {
    ProgramState& state;
    RecordingList& list;
    // the window
    ListControl& control;
    ListBackground& background;
    BandContainer& bands; ///< with the band "QVBar"
    Skin& skin;
    Timer& tContinue;
    StatusLine& status;
    // the program
    FileDialogs& dialogs;
    MessageBox& messageBox;
    FileSystem& files;
    const FolderReader& folders;
    const HostPaths& paths;
    const Screen& screen;
    const Texts& texts;
    Waits& waits;
    XmlDocument& document; ///< for the hand-over file
    AddingProgress& adding;
    // the other windows
    MapPage& page;
    const PlayerControls& player;
    std::function<void()> refreshMyList; ///< the map pane's skin element "mylist"
    std::function<void()> drawChart;     ///< of the current track
    std::function<void()> clearChart;    ///< empties the speed and the G curves
    std::function<void(const std::string& path)> playRecording;
    TrackCommands tracks;
};

/// The recording list window: adds, marks, plays and removes rows. Row indexes are 1-based.
///
/// Every operation traps its errors and shows none of them; the list then keeps what was done so
/// far.
class frmMP4List {
  public:
    explicit frmMP4List(const frmMP4ListNeeds& needs);

    /// Builds the window's contents and reads the hand-over file. Without its skin the box has been
    /// shown and nothing else is done.
    SkinLoad Load();

    // Adding. The first two ask whether to go on when the map page has not been loaded.
    void AddRecordings();                                 ///< by the open-file dialog
    void AddPaths(const std::vector<std::string>& paths); ///< files and folders as a whole
    /// Files of one folder, in that order; asks nothing.
    void AddFiles(const std::string& folder, const std::vector<std::string>& names);

    // The mouse and the keyboard, in pixels of the control.
    void MouseDown(int x, int y);  ///< selects the row under the pointer
    void MouseClick(int x, int y); ///< toggles the mark when the place is in the mark column
    void PlaySelected();           ///< double click, Enter
    void ToggleSelected();         ///< space
    /// Selects the first row behind the selected one, wrapping round, whose time begins with the
    /// typed digits (other characters do not count); the selected row itself first when more than
    /// one digit is typed. False when there is none.
    bool SelectByTime(std::string_view typed);

    void ToggleMark(int index);
    void MarkCommand(const std::string& name); ///< "ALL", "NORMAL", "LOCK", "NONE"
    void DeleteAll();
    /// Removes the selected row from the list, asking nothing; refuses the playing row by the
    /// status line. The row that takes its place becomes the selected one.
    void DeleteSelected();
    /// Removes the rows whose file was found missing or whose extraction timed out.
    void RemoveMissing();

    void RefreshListMarks(int playingIndex); ///< 0: nothing is playing
    void RedrawListBackground();

    // The play queue.
    void RequestPlay(int index) { m_queue.RequestPlay(index); }
    [[nodiscard]] RowStart PlayEntry(int index) { return m_queue.PlayEntry(index); }
    PlayQueue& queue() { return m_queue; }

    void SaveRecordingList() { m_file.SaveRecordingList(m_needs.list); }
    void RemoveSavedList() { m_file.remove(); } ///< no new instance has come to read it

    const RecordingList& list() const { return m_needs.list; }
    const RowView& view() const { return m_view; } ///< the rows' numbered texts

  private:
    void adaptToDensity();
    void LoadRecordingList();
    bool mayAdd();
    std::vector<FolderSelection> selectionsOf(const std::vector<std::string>& pieces) const;
    void addSelections(const std::vector<FolderSelection>& selections, int files);
    void afterAdding();

    frmMP4ListNeeds m_needs;
    RowView m_view;
    RecordingEntryMaker m_maker;
    PlayQueue m_queue;
    RecordingMarks m_marks;
    RecordingRemoval m_removal;
    RecordingListFile m_file;
    RecordingSearch m_search;
    RecordingCount m_count;
};

} // namespace velmorant
