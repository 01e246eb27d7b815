#pragma once

#include "library/RecordingEntry.h"
#include "library/recordingNames.h"
#include "ports/HostPaths.h"
#include "ports/Screen.h"
#include "ports/Texts.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// How a base name is cut from a file name: several files of a folder lose four characters, a
/// single one its extension.
enum class BaseNameRule { WithoutFourCharacters, WithoutExtension };

/// Makes the rows of the list: texts, kind and the next serial number of the run.
class RecordingEntryMaker {
  public:
    RecordingEntryMaker(const Texts& texts, const Screen& screen, const HostPaths& paths);

    void resetCounter() { m_lastSerial = 0; }

    /// Unmarked rows for files of one folder, in the order given.
    std::vector<RecordingEntry> fromFiles(const std::string& folder,
                                          const std::vector<std::string>& names, BaseNameRule rule);
    /// An unmarked row from what the hand-over file holds.
    RecordingEntry fromHandOver(std::string_view dateAndTime, const std::string& path);

    RecordingKind kindOfPath(const std::string& path) const;
    /// The label depends on the screen's density: the list's column is padded for it. Empty for a
    /// density, or a language, without labels.
    std::string kindLabel(RecordingKind kind) const;

  private:
    RecordingEntry entry(std::string_view dateAndTime, const std::string& label, std::string path);

    const Texts& m_texts;
    const Screen& m_screen;
    const HostPaths& m_paths;
    std::int32_t m_lastSerial = 0;
};

} // namespace velmorant
