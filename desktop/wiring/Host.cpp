#include "desktop/wiring/Host.h"

namespace velmorant {

namespace {

/// The dialogs' last folders stand beside the user's other settings of this program.
std::string dialogMemory(const PosixHostPaths& paths) {
    return folderOf(paths, paths.globalConfigurationFile()) + "/dialogs.ini";
}

} // namespace

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
