#pragma once

namespace velmorant {

/// What the main frame's commands ask of the other windows.
class FrameCommands {
  public:
    virtual ~FrameCommands() = default;
    virtual void openFiles() = 0;    ///< frmMP4List::AddRecordings
    virtual void deleteAll() = 0;    ///< frmMP4List::DeleteAll
    virtual void showSettings() = 0; ///< loads frmSetupInfo and shows it
    virtual void showAbout() = 0;    ///< loads frmAbout and shows it
    virtual void endProgram() = 0;
};

} // namespace velmorant
