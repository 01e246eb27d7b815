#include "common/textRules.h"
#include "library/RecordingListFile.h"
#include "recordings/recordingNames.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "xml/ExpatDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace velmorant;

namespace {

/// Takes its text from the input instead of a file.
class InputDocument : public ExpatDocument {
  public:
    explicit InputDocument(std::string text) : m_text(std::move(text)) {}
    void load(const std::string&) override { loadText(m_text); }

  private:
    std::string m_text;
};

void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

// A hand-over file, and what the list makes of each of its entries.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fakes::FakeFileSystem files;
    const fakes::FakeHostPaths paths;
    files.files[paths.writableProgramFile("flow.xml")] = "";
    InputDocument document(std::string(reinterpret_cast<const char*>(data), size));
    for (const RecordingListFile::Entry& entry : RecordingListFile(document, files, paths).read()) {
        require(!entry.path.empty());
        const std::string base = baseNameOf(fileNameOf(paths, entry.path));
        const std::string folder = fileNameOf(paths, folderOf(paths, entry.path));
        require(characterCount(dateOfFolderName(folder)) == 10);
        require(characterCount(dateAndTimeOfNames(folder, base)) == 20);
    }
    return 0;
}
