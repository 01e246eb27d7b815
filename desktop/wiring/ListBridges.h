#pragma once

#include "desktop/widgets/RowSource.h"
#include "desktop/wiring/Rooms.h"
#include "recordings/RowView.h"

namespace velmorant {

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
