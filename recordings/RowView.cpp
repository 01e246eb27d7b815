#include "recordings/RowView.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

namespace velmorant {

namespace {

constexpr int firstLabel = 4000;
constexpr std::int32_t yellow = 65535;
constexpr std::int32_t white = 16777215;
constexpr std::int32_t red = 255;

std::string flag(bool raised) {
    return raised ? "1" : "0";
}

} // namespace

std::string RowView::text(const RecordingEntry& entry, SubItem item) const {
    switch (item) {
    case SubItem::Mark:
        break;
    case SubItem::DisplayText:
        return displayText(entry);
    case SubItem::FullPath:
        return entry.path;
    case SubItem::TrackExtracted:
        return flag(entry.track == TrackState::Read);
    case SubItem::SerialNumber:
        return std::to_string(entry.serial);
    case SubItem::ShownOnMap:
        return flag(entry.map == MapState::Shown);
    case SubItem::KindLabel:
        return kindLabel(entry.kind);
    case SubItem::FileMissing:
        return flag(entry.file == FileState::Missing);
    }
    return {};
}

std::string RowView::displayText(const RecordingEntry& entry) {
    return entry.dateAndTime + "  " + entry.shownKind;
}

std::string RowView::kindLabel(RecordingKind kind) const {
    std::string label;
    trapErrors([&] {
        label =
            m_texts.byOffset(firstLabel + 10 * m_screen.twipsPerPixelY() + static_cast<int>(kind));
    });
    return label;
}

std::int32_t RowView::colour(const RecordingList& list, int index) {
    if (index == list.highlighted())
        return yellow;
    return list.row(index).kind == RecordingKind::Normal ? white : red;
}

RowWeight RowView::weight(const RecordingList& list, int index) {
    return index == list.highlighted() ? RowWeight::Bold : RowWeight::Normal;
}

std::string RowView::trackKey(std::int32_t serial) {
    return std::to_string(serial) + "No";
}

std::string RowView::mapNumber(std::int32_t serial) {
    return zeroPadded(serial, 3);
}

} // namespace velmorant
