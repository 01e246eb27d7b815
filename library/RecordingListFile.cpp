#include "library/RecordingListFile.h"

#include "common/textRules.h"
#include "common/trapErrors.h"
#include "ports/ensureFolder.h"
#include "recordings/RowView.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace velmorant {

namespace {

constexpr std::size_t dateAndTimeWidth = 20;

} // namespace

RecordingListFile::RecordingListFile(XmlDocument& document, FileSystem& files,
                                     const HostPaths& paths)
    : m_document(document), m_files(files), m_paths(paths) {}

std::string RecordingListFile::path() const {
    return m_paths.writableProgramFile("flow.xml");
}

std::string RecordingListFile::compose(const RecordingList& list) {
    std::string text = "<?xml version='1.0'?>\n<mp4list>";
    for (int index = 1; index <= list.count(); ++index) {
        text += "\n<Data>\n<x2>";
        text += leftCharacters(RowView::displayText(list.row(index)), dateAndTimeWidth);
        text += "</x2>\n<x3>";
        text += list.row(index).path;
        text += "</x3>\n</Data>";
    }
    return text + "\n</mp4list>";
}

void RecordingListFile::SaveRecordingList(const RecordingList& list) {
    const std::string file = path();
    trapErrors([&] {
        if (m_files.fileExists(file))
            m_files.deleteFile(file);
    });
    trapErrors([&] { ensureFolder(m_files, m_paths, folderOf(m_paths, file)); });
    trapErrors([&] { m_document.loadText(compose(list)); });
    trapErrors([&] { m_document.save(file); });
}

std::vector<RecordingListFile::Entry> RecordingListFile::read() {
    std::vector<Entry> entries;
    if (!m_files.fileExists(path()))
        return entries;
    trapErrors([&] {
        m_document.load(path());
        const std::size_t count = m_document.selectElements("Data");
        entries.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::optional<std::string_view> recording = m_document.childText(i, "x3");
            if (recording && !recording->empty())
                entries.push_back({std::string(m_document.childText(i, "x2").value_or("")),
                                   std::string(*recording)});
        }
    });
    return entries;
}

void RecordingListFile::remove() {
    trapErrors([&] { m_files.deleteFile(path()); });
}

} // namespace velmorant
