#include "desktop/wiring/Host.h"

#include "common/StepError.h"

#include <filesystem>
#include <system_error>

namespace velmorant {

namespace {

/// The dialogs' last folders stand beside the user's other settings of this program.
std::string dialogMemory(const PosixHostPaths& paths) {
    return folderOf(paths, paths.globalConfigurationFile()) + "/dialogs.ini";
}

} // namespace

FolderContent HostFolderReader::read(const std::string& folder) const {
    namespace fs = std::filesystem;
    FolderContent content;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        // A link to a folder is passed over: it may lead round in a circle.
        if (entry->is_directory(unknown) && !entry->is_symlink(unknown))
            content.folders.push_back(name);
        else if (entry->is_regular_file(unknown))
            content.files.push_back(name);
    }
    if (failure)
        throw StepError(folder + ": " + failure.message());
    return content;
}

Host::Host(const EnvironmentLookup& environment, const std::string& programFolder,
           const Texts& texts)
    : journal(environment("VELMORANT_JOURNAL").value_or(""),
              journalLevelNamed(environment("VELMORANT_JOURNAL_LEVEL").value_or(""))
                  .value_or(JournalLevel::Info)),
      profile(&journal),
      paths(environment, programFolder),
      shellObject("velmorant-dvr-tools"),
      dialogs(gate, dialogMemory(paths),
              [&texts](const std::string& name) { return texts.addition(name); }),
      messageBox(gate, [&texts](MessageAnswer answer) {
          switch (answer) {
          case MessageAnswer::Yes:
              return texts.addition("button.yes");
          case MessageAnswer::No:
              return texts.addition("button.no");
          case MessageAnswer::Ok:
              break;
          }
          return texts.addition("button.ok");
      }) {}

} // namespace velmorant
