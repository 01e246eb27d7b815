#pragma once

namespace velmorant {

/// The windows that the start-up routine shows. A call that fails throws StepError.
class StartUpWindows {
  public:
    virtual ~StartUpWindows() = default;
    virtual void showSplash() = 0;
    virtual void bringSplashToForeground() = 0;
    virtual void loadMainWindow() = 0; ///< frmMain::Load; may end the program
    virtual void showMainWindow() = 0;
};

} // namespace velmorant
