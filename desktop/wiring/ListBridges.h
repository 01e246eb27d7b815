#pragma once

#include "common/textRules.h"
#include "desktop/widgets/RowSource.h"
#include "desktop/wiring/Rooms.h"
#include "library/RecordingListExtraction.h"
#include "library/RecordingListMap.h"
#include "ports/Texts.h"
#include "track/ExtractionList.h"

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
    void drawTrack(std::int32_t serial) override { m_rooms.sendData->SendLoadedTrack(serial); }

  private:
    Rooms& m_rooms;
};

// track -> library: what extraction asks of the list.

class ExtractionToList : public ExtractionList {
  public:
    explicit ExtractionToList(Rooms& rooms) : m_rooms(rooms) {}
    int count() const override { return m_rooms.rows->count(); }
    int selected() const override { return m_rooms.rows->selected(); }
    void select(int row) override { m_rooms.rows->select(row); }
    bool isMarked(int row) const override { return m_rooms.rows->marked(row); }
    std::string path(int row) const override { return m_rooms.rows->text(row, SubItem::FullPath); }
    std::string serialText(int row) const override {
        return m_rooms.rows->text(row, SubItem::SerialNumber);
    }
    void setExtractedAndShown(int row) override {
        m_rooms.rows->setText(row, SubItem::TrackExtracted, "1");
        m_rooms.rows->setText(row, SubItem::ShownOnMap, "1");
    }
    void setMissing(int row) override { m_rooms.rows->setText(row, SubItem::FileMissing, "1"); }
    void removeMissingRows() override { m_rooms.list->RemoveMissing(); }
    void noteReason(int row, const std::string& reason) override {
        m_rooms.rows->setNotice(row, reason);
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
        return m_rooms.rows->text(row, SubItem::DisplayText);
    }
    std::string kindLabel(int row) const override {
        return m_rooms.rows->text(row, SubItem::KindLabel);
    }
    std::string toolTip(int row) const override {
        const RecordingEntry& entry = m_rooms.rows->row(row);
        const std::string& path = entry.text(SubItem::FullPath);
        return entry.notice.empty() ? path : path + "\n" + entry.notice;
    }
    Mark mark(int row) const override {
        return m_rooms.rows->marked(row) ? Mark::Marked : Mark::NotMarked;
    }
    std::int32_t colour(int row) const override { return m_rooms.rows->row(row).colour; }
    Weight weight(int row) const override {
        return m_rooms.rows->row(row).weight == RowWeight::Bold ? Weight::Bold : Weight::Normal;
    }

  private:
    const Rooms& m_rooms;
};

} // namespace velmorant
