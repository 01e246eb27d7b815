#pragma once

#include "common/StepError.h"
#include "library/frmMP4List.h"
#include "tests/fakes/FakeBandContainer.h"
#include "tests/fakes/FakeFileDialogs.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeListControl.h"
#include "tests/fakes/FakeMapPage.h"
#include "tests/fakes/FakeMediaPlayer.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeStatusLine.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/fakes/FakeWaits.h"
#include "tests/fakes/FakeXmlDocument.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmorant {

/// Records what extraction was asked for.
struct FakeExtraction {
    TrackCommands commands() {
        return {.extractSelected = [this] { call("One"); },
                .extractMarked = [this] { call("All"); },
                .drawTracks =
                    [this](const std::vector<std::int32_t>& serials) { return draw(serials); }};
    }
    void call(const std::string& text) {
        calls.push_back(text);
        if (whenCalled)
            whenCalled();
    }
    std::size_t draw(const std::vector<std::int32_t>& serials) {
        std::size_t drawn = 0;
        for (; drawn < std::min(serials.size(), mostDrawn); ++drawn)
            call("draw " + std::to_string(serials[drawn]));
        return drawn;
    }

    std::size_t mostDrawn = 1000; ///< fewer: the user cancels the drawing behind so many

    std::vector<std::string> calls;
    std::function<void()> whenCalled;
};

class FakeFolders : public FolderReader {
  public:
    FolderContent read(const std::string& folder) const override {
        const auto found = folders.find(folder);
        if (found == folders.end())
            throw StepError(folder + ": permission denied");
        return found->second;
    }
    std::map<std::string, FolderContent> folders;
};

class FakeAdding : public AddingProgress {
  public:
    void begin(int files) override { calls.push_back("begin " + std::to_string(files)); }
    void step(int filesAdded) override { calls.push_back("step " + std::to_string(filesAdded)); }
    void end() override { calls.push_back("end"); }
    std::vector<std::string> calls;
};

/// The recording list window among fakes, with the labels of both languages.
struct ListBench {
    ListBench() {
        list.addListener(control);
        player.state = PlayState::Stopped;
        state.settings.setLanguage(1001);
        files.files["/program/skin/media/ls1.MP4"] = "";
        files.folders = {"/", "/program"};
        control.columnLefts = {{1, 0}, {2, 150}, {3, 450}};
        waits.log = &log;
        texts.texts = {{"14151", "  Normal"},
                       {"14152", "  Lock"},
                       {"14121", "Normal"},
                       {"14122", "Lock"},
                       {"24151", "     一般"},
                       {"24152", "     保護"},
                       {"list.recording", "%1 recording, %2 marked"},
                       {"list.recordings", "%1 recordings, %2 marked"},
                       {"list.notExtracted", "no track: %1"},
                       {"list.fileMissing", "missing: %1"},
                       {"list.notPlayable", "not playable: %1"}};
    }

    /// Adds files of the folder /card/20121009, which then exist.
    void add(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            files.files["/card/20121009/" + name] = "";
        window.AddFiles("/card/20121009", names);
    }
    void addRows(int count) {
        std::vector<std::string> names;
        for (int i = 1; i <= count; ++i)
            names.push_back(std::to_string(100000 + i) + ".MP4");
        add(names);
    }
    /// As the extraction leaves a recording.
    std::shared_ptr<clsDot> extract(int row) {
        auto track = std::make_shared<clsDot>();
        track->lSerial(row);
        state.loadedTracks.add(list.row(row).serial, track);
        list.set(row, &RecordingEntry::track, TrackState::Read);
        list.set(row, &RecordingEntry::map, MapState::Shown);
        return track;
    }
    void mark(const std::vector<int>& rows) {
        for (const int row : rows)
            list.setMark(row, MarkState::Marked);
    }
    std::vector<int> marked() const {
        std::vector<int> rows;
        for (int row = 1; row <= list.count(); ++row) {
            if (list.marked(row))
                rows.push_back(row);
        }
        return rows;
    }
    /// A numbered sub-item of a row.
    std::string text(int row, SubItem item) const {
        return window.view().text(list.row(row), item);
    }
    std::vector<std::string> column(SubItem item) const {
        std::vector<std::string> values;
        for (int row = 1; row <= list.count(); ++row)
            values.push_back(text(row, item));
        return values;
    }

    std::vector<std::string> log; ///< what was played and drawn, and the waits
    ProgramState state;
    fakes::FakeListControl control;
    RecordingList list;
    fakes::FakeListBackground background;
    fakes::FakeBandContainer bands;
    fakes::FakeSkin skin;
    fakes::FakeTimers timers;
    fakes::FakeTimer tContinue{timers};
    fakes::FakeStatusLine status;
    fakes::FakeFileDialogs dialogs;
    fakes::FakeMessageBox messageBox;
    fakes::FakeFileSystem files;
    FakeFolders folders;
    fakes::FakeHostPaths paths;
    fakes::FakeScreen screen;
    fakes::FakeTexts texts;
    fakes::FakeWaits waits;
    fakes::FakeXmlDocument document;
    FakeAdding adding;
    fakes::FakeMapPage page;
    fakes::FakePlayerControls player;
    int listBandRefreshes = 0;
    bool playingFails = false;
    FakeExtraction extraction;
    frmMP4List window{needs(document)};

    frmMP4ListNeeds needs(XmlDocument& handOver) {
        return {.state = state,
                .list = list,
                .control = control,
                .background = background,
                .bands = bands,
                .skin = skin,
                .tContinue = tContinue,
                .status = status,
                .dialogs = dialogs,
                .messageBox = messageBox,
                .files = files,
                .folders = folders,
                .paths = paths,
                .screen = screen,
                .texts = texts,
                .waits = waits,
                .document = handOver,
                .adding = adding,
                .page = page,
                .player = player,
                .refreshMyList = [this] { ++listBandRefreshes; },
                .drawChart = [this] { log.push_back("drawChart"); },
                .clearChart = [this] { log.push_back("clearChart"); },
                .playRecording = [this](const std::string& path) { playRecording(path); },
                .tracks = extraction.commands()};
    }
    void playRecording(const std::string& path) {
        log.push_back("play " + path);
        if (playingFails)
            throw StepError("cannot be opened");
    }
};

} // namespace velmorant
