#pragma once

#include "app/StartUpWindows.h"
#include "desktop/windows/SkinDialog.h"
#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"
#include "ports/BandContainer.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace velmorant {

/// app -> settings, library: the windows of the start. The splash is shown alone; all others are
/// built behind it, because the player and the browser take longer to start than a user likes to
/// look at nothing.
class StartingWindows : public StartUpWindows {
  public:
    /// `buildWindows` is called once, when the splash is on the screen; it fills `panes`.
    StartingWindows(Rooms& rooms, SplashWindow& splash, const std::unique_ptr<Panes>& panes,
                    Journal& journal, std::function<void()> buildWindows,
                    std::function<void()> endProgram);
    void showSplash() override;
    void bringSplashToForeground() override;
    void loadMainWindow() override;
    void showMainWindow() override;

  private:
    Rooms& m_rooms;
    SplashWindow& m_splash;
    const std::unique_ptr<Panes>& m_panes;
    Journal& m_journal;
    std::function<void()> m_buildWindows;
    std::function<void()> m_endProgram;
    bool m_loaded = false; ///< without its skin, or the list's, the frame is not shown
};

/// app -> desktop: a window is loaded when it is put into its band. The container is the frame's,
/// which comes after the splash.
class LoadingBands : public BandContainer {
  public:
    explicit LoadingBands(const std::unique_ptr<Panes>& panes) : m_panes(panes) {}
    void onChild(const std::string& window, std::function<void()> load) {
        m_loaders[window] = std::move(load);
    }
    void setHeight(const std::string& band, int twips) override {
        m_panes->frame.bands().setHeight(band, twips);
    }
    void setChild(const std::string& band, const std::string& window) override;
    void recalculateLayout() override { m_panes->frame.bands().recalculateLayout(); }

  private:
    const std::unique_ptr<Panes>& m_panes;
    std::map<std::string, std::function<void()>> m_loaders;
};

} // namespace velmorant
