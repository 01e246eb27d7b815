#pragma once

#include "app/FrameCommands.h"
#include "app/IniFile.h"
#include "desktop/wiring/Panes.h"
#include "desktop/wiring/Rooms.h"
#include "settings/SetupTargets.h"

#include <functional>
#include <string>

namespace velmorant {

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
    void removeSavedList() override { m_rooms.list->RemoveSavedList(); }
    void redrawChart() override {
        m_rooms.chart->Draw();
        m_rooms.moment->ShowUnit();
        if (m_rooms.mediaCtrl->ready())
            m_rooms.mediaCtrl->runScript("velmorantMap.readConfiguration()");
    }
    void endProgram() override { m_endProgram(); }

  private:
    Rooms& m_rooms;
    Host& m_host;
    std::function<void()> m_endProgram;
};

} // namespace velmorant
