#include "library/RecordingEntryMaker.h"

#include "common/trapErrors.h"

#include <utility>

namespace velmorant {

namespace {

std::string withoutExtension(const std::string& name) {
    return name.substr(0, name.rfind('.'));
}

} // namespace

RecordingEntryMaker::RecordingEntryMaker(const Texts& texts, const Screen& screen,
                                         const HostPaths& paths)
    : m_texts(texts), m_screen(screen), m_paths(paths) {}

std::vector<RecordingEntry> RecordingEntryMaker::fromFiles(const std::string& folder,
                                                           const std::vector<std::string>& names,
                                                           BaseNameRule rule) {
    const std::string date = dateOfFolderName(fileNameOf(m_paths, folder));
    const std::string normal = kindLabel(RecordingKind::Normal);
    const std::string locked = kindLabel(RecordingKind::Locked);
    std::vector<RecordingEntry> rows;
    rows.reserve(names.size());
    for (const std::string& name : names) {
        const std::string base =
            rule == BaseNameRule::WithoutExtension ? withoutExtension(name) : baseNameOf(name);
        const bool isLocked = kindOfBaseName(base) == RecordingKind::Locked;
        rows.push_back(entry(date + "  " + timeOfBaseName(base), isLocked ? locked : normal,
                             m_paths.join(folder, name)));
    }
    return rows;
}

RecordingEntry RecordingEntryMaker::fromHandOver(std::string_view dateAndTime,
                                                 const std::string& path) {
    const std::string label = kindLabel(kindOfPath(path));
    RecordingEntry row = entry(dateAndTime, label, path);
    // A text that was shorter than its 20 characters was written whole, and is shown so again.
    row.setText(SubItem::DisplayText, std::string(dateAndTime) + "  " + label);
    return row;
}

RecordingKind RecordingEntryMaker::kindOfPath(const std::string& path) const {
    return kindOfBaseName(baseNameOf(fileNameOf(m_paths, path)));
}

std::string RecordingEntryMaker::kindLabel(RecordingKind kind) const {
    constexpr int firstLabel = 4000;
    std::string label;
    trapErrors([&] {
        label =
            m_texts.byOffset(firstLabel + 10 * m_screen.twipsPerPixelY() + static_cast<int>(kind));
    });
    return label;
}

RecordingEntry RecordingEntryMaker::entry(std::string_view dateAndTime, const std::string& label,
                                          std::string path) {
    RecordingEntry row;
    row.setText(SubItem::DisplayText, displayTextOf(dateAndTime, label));
    row.setText(SubItem::FullPath, std::move(path));
    row.setText(SubItem::TrackExtracted, "0");
    row.setText(SubItem::SerialNumber, std::to_string(++m_lastSerial));
    row.setText(SubItem::ShownOnMap, "0");
    row.setText(SubItem::KindLabel, label);
    row.setText(SubItem::FileMissing, "0");
    return row;
}

} // namespace velmorant
