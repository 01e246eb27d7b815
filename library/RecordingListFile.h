#pragma once

#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/XmlDocument.h"
#include "recordings/RecordingList.h"

#include <string>
#include <vector>

namespace velmorant {

/// The file "flow.xml" that carries the list across a restart: the old instance writes it, the new
/// one reads it and deletes it.
///
/// Content: <?xml version='1.0'?>, then <mp4list> with one <Data> per row in row order, which holds
/// <x2>, the first 20 characters of the display text (date, two blanks, time), and <x3>, the
/// recording's full path. Each tag stands at the beginning of a line; lines end with a line feed.
/// The texts are not escaped: a path with "&" or "<" makes the file unusable.
class RecordingListFile {
  public:
    struct Entry {
        std::string dateAndTime;
        std::string path;
        bool operator==(const Entry&) const = default;
    };

    RecordingListFile(XmlDocument& document, FileSystem& files, const HostPaths& paths);

    /// Replaces the file. Shows and throws nothing: a failing step is skipped.
    void SaveRecordingList(const RecordingList& list);

    /// The file's entries in order; none when it is missing or cannot be parsed. An entry without a
    /// path is left out.
    std::vector<Entry> read();
    void remove(); ///< shows and throws nothing

    static std::string compose(const RecordingList& list);

  private:
    std::string path() const;

    XmlDocument& m_document;
    FileSystem& m_files;
    const HostPaths& m_paths;
};

} // namespace velmorant
