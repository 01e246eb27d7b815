#pragma once

#include "app/FrameCommands.h"
#include "app/IniFile.h"
#include "app/StartUpWindows.h"
#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"
#include "ports/BandContainer.h"
#include "settings/SetupTargets.h"

#include <functional>
#include <map>
#include <string>

namespace velmorant {

// app -> desktop: a window is loaded when it is put into its band.

class LoadingBands : public BandContainer {
  public:
    explicit LoadingBands(BandContainer& bands) : m_bands(bands) {}
    void onChild(const std::string& window, std::function<void()> load) {
        m_loaders[window] = std::move(load);
    }
    void setHeight(const std::string& band, int twips) override { m_bands.setHeight(band, twips); }
    void setChild(const std::string& band, const std::string& window) override {
        m_bands.setChild(band, window);
        if (const auto loader = m_loaders.find(window); loader != m_loaders.end())
            loader->second();
    }
    void recalculateLayout() override { m_bands.recalculateLayout(); }

  private:
    BandContainer& m_bands;
    std::map<std::string, std::function<void()>> m_loaders;
};

// app -> settings, library: the windows of the start.

class StartingWindows : public StartUpWindows {
  public:
    StartingWindows(Rooms& rooms, Panes& panes) : m_rooms(rooms), m_panes(panes) {}
    void showSplash() override;
    void bringSplashToForeground() override { m_panes.splash.qtWindow().setForeground(); }
    void loadMainWindow() override;
    void showMainWindow() override;

  private:
    Rooms& m_rooms;
    Panes& m_panes;
    bool m_loaded = false; ///< without its skin the frame is not shown
};

// app -> library, settings: the frame's four commands.

class CommandsOfFrame : public FrameCommands {
  public:
    CommandsOfFrame(Rooms& rooms, Panes& panes, std::function<void()> endProgram)
        : m_rooms(rooms), m_panes(panes), m_endProgram(std::move(endProgram)) {}
    void openFiles() override { m_rooms.list->AddRecordings(); }
    void deleteAll() override { m_rooms.list->DeleteAll(); }
    void showSettings() override;
    void showAbout() override;
    void endProgram() override { m_endProgram(); }

  private:
    Rooms& m_rooms;
    Panes& m_panes;
    std::function<void()> m_endProgram;
};

// settings -> app, library, playback.

class SettingsToProgram : public SetupTargets {
  public:
    SettingsToProgram(Rooms& rooms, Host& host, std::function<void()> endProgram)
        : m_rooms(rooms), m_host(host), m_endProgram(std::move(endProgram)) {}
    bool writeConfiguration(const std::string& key, const std::string& value) override;
    void saveRecordingList() override { m_rooms.list->SaveRecordingList(); }
    void deriveKindsAgain() override { m_rooms.list->DeriveKindsAgain(); }
    void redrawChart() override {
        m_rooms.chart->Draw();
        m_rooms.moment->ShowUnit();
    }
    void endProgram() override { m_endProgram(); }

  private:
    Rooms& m_rooms;
    Host& m_host;
    std::function<void()> m_endProgram;
};

} // namespace velmorant
