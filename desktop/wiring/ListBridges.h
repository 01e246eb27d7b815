#pragma once

#include "desktop/widgets/RowSource.h"
#include "desktop/wiring/Rooms.h"
#include "library/RecordingListExtraction.h"
#include "library/RecordingListMap.h"
#include "recordings/RowView.h"

namespace velmorant {

// library -> track: what the list asks of the map pane and of extraction.

class ListToMap : public RecordingListMap {
  public:
    explicit ListToMap(Rooms& rooms) : m_rooms(rooms) {}
    bool pageLoaded() const override { return m_rooms.mediaCtrl->ready(); }
    void runScript(const std::string& text) override { m_rooms.mediaCtrl->runScript(text); }
    void refreshMyList() override { m_rooms.mediaCtrl->RefreshMyList(); }

  private:
    Rooms& m_rooms;
};

class ListToExtraction : public RecordingListExtraction {
  public:
    explicit ListToExtraction(Rooms& rooms) : m_rooms(rooms) {}
    void extractSelected() override { m_rooms.sendData->ShowModal("One"); }
    void extractMarked() override { m_rooms.sendData->ShowModal("All"); }
    std::size_t drawTracks(const std::vector<std::int32_t>& serials) override {
        return m_rooms.sendData->SendLoadedTracks(serials);
    }

  private:
    Rooms& m_rooms;
};

// desktop -> library: the rows as the list view shows them.

class ListRows : public RowSource {
  public:
    explicit ListRows(const Rooms& rooms) : m_rooms(rooms) {}
    int rowCount() const override { return m_rooms.rows->count(); }
    std::string displayText(int row) const override {
        return RowView::displayText(m_rooms.rows->row(row));
    }
    std::string kindLabel(int row) const override { return m_rooms.rows->row(row).shownKind; }
    std::string toolTip(int row) const override {
        const RecordingEntry& entry = m_rooms.rows->row(row);
        return entry.notice.empty() ? entry.path : entry.path + "\n" + entry.notice;
    }
    Mark mark(int row) const override {
        return m_rooms.rows->marked(row) ? Mark::Marked : Mark::NotMarked;
    }
    std::int32_t colour(int row) const override { return RowView::colour(*m_rooms.rows, row); }
    Weight weight(int row) const override {
        return RowView::weight(*m_rooms.rows, row) == RowWeight::Bold ? Weight::Bold
                                                                      : Weight::Normal;
    }

  private:
    const Rooms& m_rooms;
};

} // namespace velmorant
