#pragma once

#include "tools/driving/ProgramDriver.h"

#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmorant {

/// The whole program with a home and a program folder of its own. Boxes that it shows are read and
/// answered by their default button.
class ProgramTest : public testing::Test {
  protected:
    static constexpr int limit = 30000;
    static constexpr const char* english = "1001";
    static constexpr const char* chinese = "1002";

    ProgramTest();
    ~ProgramTest() override;

    /// Before start(): a variable of the program's environment.
    void setVariable(const std::string& name, const std::string& value) {
        m_environment[name] = value;
    }
    /// Starts with that "mainv" and waits for the window and its map page.
    void start(const std::string& language = english);
    /// Starts and runs until the program ends by itself; false when it does not.
    bool startAndEnd(const std::string& language = english);
    /// As after a quit: start() may follow.
    void end();
    /// As dropped onto the window.
    void add(const std::vector<std::string>& paths);
    /// Clicks "ALL" and waits for the end of the run.
    void extractAll();
    /// start(), add() and extractAll().
    void showOnMap(const std::vector<std::string>& paths);
    void waitForRoutes(int count);
    /// Double click, then waits until that row plays and its car stands on the map.
    void play(int row);
    void waitForPosition(double atLeast, double atMost);

    /// A recording of the sample card, from 1: 8 s with a route. Copies are the test's own.
    static std::string recording(int number);
    std::string copied(const std::string& recording, const std::string& relativePath);
    std::string folder() const { return m_folder.path().toStdString(); }
    std::string journal() const;

    ProgramDriver& driver() { return *m_driver; }
    MpvPlayer& player() { return m_program->panes().picture.player; }
    Rooms& rooms() { return m_program->rooms(); }
    Panes& panes() { return m_program->panes(); }
    Host& host() { return m_program->host(); }
    bool waitUntil(const std::function<bool()>& condition, int milliseconds = limit) {
        return ProgramDriver::waitUntil(condition, milliseconds);
    }

    std::vector<std::string> boxes; ///< the texts of the boxes shown so far

  private:
    void prepareFolders();
    void readBox();
    void beginStart(const std::string& language);

    QTemporaryDir m_folder;
    std::map<std::string, std::string> m_environment;
    QTimer m_boxReader;
    std::unique_ptr<Application> m_program;
    std::unique_ptr<ProgramDriver> m_driver;
};

} // namespace velmorant
