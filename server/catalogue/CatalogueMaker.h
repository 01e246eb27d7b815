#pragma once

#include <string>
#include <vector>

namespace velmorant {

/// A file of a release.
struct ReleaseFile {
    std::string local; ///< below the release folder, "/" between components
    std::string sha256;
};

struct CatalogueRequest {
    std::vector<ReleaseFile> files;
    std::string mainVersion;
    std::string mainProgram; ///< the file that comes last
    std::string previous;    ///< the text of the catalogue before, or ""
};

/// The text of a catalogue. Its sections are numbered so that a client, which compares the versions
/// of equal numbers, fetches little: a file keeps the number that it has in the previous catalogue,
/// and new files take the numbers that have become free. The main program comes last, because a
/// client's run stops there. The version of a file is made of its name and content: whatever number
/// it had before, equal versions mean an equal file.
///
/// Throws StepError: no main program among the files, more than 32767 files, a name that clients
/// would refuse or that the text cannot hold, two names that differ in case alone.
std::string makeCatalogue(const CatalogueRequest& request);

/// Where a served tree keeps a content: the name never changes its bytes, so that a client in the
/// middle of an older catalogue still gets what that one names.
std::string servedName(const std::string& sha256);

} // namespace velmorant
