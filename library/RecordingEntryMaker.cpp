#include "library/RecordingEntryMaker.h"

#include <utility>

namespace velmorant {

namespace {

std::string withoutExtension(const std::string& name) {
    return name.substr(0, name.rfind('.'));
}

} // namespace

std::vector<RecordingEntry> RecordingEntryMaker::fromFiles(const std::string& folder,
                                                           const std::vector<std::string>& names,
                                                           BaseNameRule rule) {
    const std::string folderName = fileNameOf(m_paths, folder);
    std::vector<RecordingEntry> rows;
    rows.reserve(names.size());
    for (const std::string& name : names) {
        const std::string base =
            rule == BaseNameRule::WithoutExtension ? withoutExtension(name) : baseNameOf(name);
        rows.push_back(entry(kindOfBaseName(base), dateAndTimeOfNames(folderName, base),
                             m_paths.join(folder, name)));
    }
    return rows;
}

RecordingEntry RecordingEntryMaker::fromHandOver(std::string_view dateAndTime,
                                                 const std::string& path) {
    const RecordingKind kind = kindOfBaseName(baseNameOf(fileNameOf(m_paths, path)));
    // A text that is shorter than its 20 characters was written whole, and is shown so again.
    return entry(kind, std::string(dateAndTime), path);
}

RecordingEntry RecordingEntryMaker::entry(RecordingKind kind, std::string dateAndTime,
                                          std::string path) {
    RecordingEntry row;
    row.serial = ++m_lastSerial;
    row.kind = kind;
    row.path = std::move(path);
    row.dateAndTime = std::move(dateAndTime);
    row.shownKind = m_view.kindLabel(kind);
    return row;
}

} // namespace velmorant
