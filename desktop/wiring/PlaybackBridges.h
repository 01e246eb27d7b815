#pragma once

#include "desktop/wiring/Rooms.h"
#include "library/RecordingListChart.h"
#include "library/RecordingListPlayer.h"
#include "playback/PlaybackList.h"
#include "playback/PositionFollowing.h"
#include "ports/MediaPlayer.h"
#include "track/ChartMarker.h"
#include "track/MapClickTarget.h"

namespace velmorant {

// library -> playback: what the list's queue asks of the player and of the chart.

class ListToPlayer : public RecordingListPlayer {
  public:
    ListToPlayer(Rooms& rooms, PlayerControls& player) : m_rooms(rooms), m_player(player) {}
    PlayState playState() const override { return m_player.playState(); }
    void openRecording(const std::string& path) override { m_rooms.child->openRecording(path); }
    void play() override { m_player.play(); }
    void enablePlayTimer() override { m_rooms.child->enablePlayTimer(); }
    void applyRate() override { m_rooms.child->applyRate(); }

  private:
    Rooms& m_rooms;
    PlayerControls& m_player;
};

class ListToChart : public RecordingListChart {
  public:
    explicit ListToChart(Rooms& rooms) : m_rooms(rooms) {}
    void refreshForCurrentTrack() override { m_rooms.chart->Draw(); }
    void clear() override { m_rooms.curve->ResetDisplay(); }

  private:
    Rooms& m_rooms;
};

// playback -> library: what the player and the control bar ask of the list.

class PlaybackToList : public PlaybackList {
  public:
    explicit PlaybackToList(Rooms& rooms) : m_rooms(rooms) {}
    int count() const override { return m_rooms.rows->count(); }
    int playingIndex() const override { return m_rooms.rows->playingIndex(); }
    bool isMarked(int row) const override { return m_rooms.rows->marked(row); }
    RowStart startRow(int row) override { return m_rooms.list->PlayEntry(row); }
    void mediaEnded() override { m_rooms.list->queue().MediaEnded(); }
    void playbackFailed(const std::string& reason) override {
        m_rooms.list->queue().PlaybackFailed(reason);
    }

  private:
    Rooms& m_rooms;
};

// playback -> track: the follow.

class PlaybackToFollow : public PositionFollowing {
  public:
    explicit PlaybackToFollow(Rooms& rooms) : m_rooms(rooms) {}
    void UpdateControlBand(const std::string& positionText) override {
        m_rooms.follow->UpdateControlBand(positionText);
    }
    void ShowDot(const std::string& dotText) override { m_rooms.follow->ShowDot(dotText); }
    void showCurrentDot() override {
        if (m_rooms.state.currentTrack)
            ShowDot(PositionFollow::dotText(*m_rooms.state.currentTrack));
    }
    std::int16_t publishedDuration() const override { return m_rooms.follow->publishedDuration(); }

  private:
    Rooms& m_rooms;
};

// track -> playback: the chart's marker.

class FollowToChart : public ChartMarker {
  public:
    explicit FollowToChart(Rooms& rooms) : m_rooms(rooms) {}
    void resetMarker() override { m_rooms.chart->resetMarker(); }
    void moveMarkerToCurrentDot() override { m_rooms.chart->moveMarkerToCurrentDot(); }

  private:
    Rooms& m_rooms;
};

// track -> library, playback: a click on a route.

class MapToPlayer : public MapClickTarget {
  public:
    MapToPlayer(Rooms& rooms, PlayerControls& player) : m_rooms(rooms), m_player(player) {}
    std::string path(int row) const override {
        return row >= 1 && row <= m_rooms.rows->count() ? m_rooms.rows->row(row).path
                                                        : std::string();
    }
    std::string openRecording() const override {
        // A stopped player still knows its file; the click then starts the recording anew.
        const PlayState state = m_player.playState();
        return state == PlayState::Paused || state == PlayState::Playing ? m_player.url()
                                                                         : std::string();
    }
    PickedRecording startRow(int row) override {
        return m_rooms.list->PlayEntry(row) == RowStart::Started ? PickedRecording::OpenedNow
                                                                 : PickedRecording::NotOpened;
    }
    void seek(double seconds) override { m_rooms.child->seek(seconds); }
    void enablePositionTimer() override { m_rooms.child->enablePlayTimer(); }

  private:
    Rooms& m_rooms;
    PlayerControls& m_player;
};

} // namespace velmorant
