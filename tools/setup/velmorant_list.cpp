// velmorant-list FOLDER: leaves the hand-over file for the program, so that its next start shows
// the recordings of a card. Dated sub-folders are taken in their order, only MP4 files count.

#include "app/PosixHostPaths.h"
#include "common/FileReplacement.h"
#include "common/textRules.h"
#include "recordings/recordingNames.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string escaped(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '&')
            result += "&amp;";
        else if (letter == '<')
            result += "&lt;";
        else if (letter == '>')
            result += "&gt;";
        else
            result += letter;
    }
    return result;
}

std::vector<fs::path> recordingsBelow(const fs::path& folder) {
    std::vector<fs::path> recordings;
    for (const fs::directory_entry& entry :
         fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied))
        if (entry.is_regular_file() && velmorant::isRecordingName(entry.path().filename().string()))
            recordings.push_back(entry.path());
    std::sort(recordings.begin(), recordings.end());
    return recordings;
}

std::string handOverText(const std::vector<fs::path>& recordings) {
    std::string text = "<?xml version='1.0'?>\n<mp4list>";
    for (const fs::path& path : recordings) {
        const std::string dateAndTime =
            velmorant::dateAndTimeOfNames(path.parent_path().filename().string(),
                                          velmorant::baseNameOf(path.filename().string()));
        text += "\n<Data>\n<x2>" + escaped(dateAndTime) + "</x2>\n<x3>" + escaped(path.string()) +
                "</x3>\n</Data>";
    }
    return text + "\n</mp4list>";
}

std::optional<std::string> environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: velmorant-list FOLDER\n";
        return 2;
    }
    try {
        const fs::path programFolder = fs::canonical("/proc/self/exe").parent_path();
        const std::vector<fs::path> recordings = recordingsBelow(fs::canonical(arguments[1]));
        if (recordings.empty()) {
            std::cerr << arguments[1] << ": no MP4 recording in this folder\n";
            return 1;
        }
        const velmorant::PosixHostPaths paths(environment, programFolder.string());
        const fs::path target = paths.writableProgramFile("flow.xml");
        fs::create_directories(target.parent_path());
        velmorant::replaceFile(target.string(), handOverText(recordings));
        std::cout << recordings.size() << " recordings for the list\n";
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "velmorant-list: " << failure.what() << '\n';
        return 1;
    }
}
