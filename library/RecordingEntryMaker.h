#pragma once

#include "ports/HostPaths.h"
#include "recordings/RecordingEntry.h"
#include "recordings/RowView.h"
#include "recordings/recordingNames.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// How a base name is cut from a file name: several files of a folder lose four characters, a
/// single one its extension.
enum class BaseNameRule { WithoutFourCharacters, WithoutExtension };

/// Makes the rows of the list, each with the next serial number of the run.
class RecordingEntryMaker {
  public:
    /// Keeps the references.
    RecordingEntryMaker(const RowView& view, const HostPaths& paths)
        : m_view(view), m_paths(paths) {}

    void resetCounter() { m_lastSerial = 0; }

    /// Unmarked rows for files of one folder, in the order given.
    std::vector<RecordingEntry> fromFiles(const std::string& folder,
                                          const std::vector<std::string>& names, BaseNameRule rule);
    /// An unmarked row from what the hand-over file holds.
    RecordingEntry fromHandOver(std::string_view dateAndTime, const std::string& path);

  private:
    RecordingEntry entry(RecordingKind kind, std::string dateAndTime, std::string path);

    const RowView& m_view;
    const HostPaths& m_paths;
    std::int32_t m_lastSerial = 0;
};

} // namespace velmorant
