#pragma once

#include "playback/PlaybackList.h"
#include "playback/PositionFollowing.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmorant {

class FakePlaybackList : public PlaybackList {
  public:
    int count() const override { return rows; }
    int playingIndex() const override { return playing; }
    bool isMarked(int row) const override { return marked.count(row) > 0; }
    RowStart startRow(int row) override {
        starts.push_back(row);
        const auto outcome = outcomes.find(row);
        const RowStart result = outcome == outcomes.end() ? RowStart::Started : outcome->second;
        if (result == RowStart::FileMissing)
            marked.erase(row);
        if (result == RowStart::Started)
            playing = row;
        return result;
    }
    void mediaEnded() override { ++ends; }
    void playbackFailed(const std::string& reason) override { failures.push_back(reason); }

    int rows = 0;
    int playing = 0;
    std::set<int> marked;
    std::map<int, RowStart> outcomes;
    std::vector<int> starts;
    std::vector<std::string> failures;
    int ends = 0;
};

class FakePositionFollowing : public PositionFollowing {
  public:
    void UpdateControlBand(const std::string& text) override {
        positions.push_back(text);
        if (log != nullptr)
            log->push_back("follow " + text);
    }
    void ShowDot(const std::string& text) override { dots.push_back(text); }
    void showCurrentDot() override { ++currentDots; }
    std::int16_t publishedDuration() const override { return duration; }

    std::vector<std::string> positions;
    std::vector<std::string> dots;
    int currentDots = 0;
    std::int16_t duration = 0;
    std::vector<std::string>* log = nullptr;
};

} // namespace velmorant
