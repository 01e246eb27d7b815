#include "recordings/recordingNames.h"

#include "common/textRules.h"

namespace velmorant {

namespace {

constexpr std::size_t endingLength = 4;
constexpr std::size_t dateDigits = 8;
constexpr std::size_t dateWidth = 10;
constexpr std::size_t dateAndTimeWidth = 20;
constexpr std::size_t lockEndingLength = 2; // "_P"

} // namespace

std::string dateOfFolderName(std::string_view folderName) {
    const std::string name = characterCount(folderName) > dateDigits
                                 ? leftCharacters(folderName, dateDigits)
                                 : std::string(folderName);
    return fixedWidth(digitPattern(name, "####/##/##"), dateWidth);
}

RecordingKind kindOfBaseName(std::string_view baseName) {
    return baseName.ends_with('P') || baseName.ends_with('p') ? RecordingKind::Locked
                                                              : RecordingKind::Normal;
}

std::string timeOfBaseName(std::string_view baseName) {
    const std::string digits = kindOfBaseName(baseName) == RecordingKind::Locked
                                   ? withoutLastCharacters(baseName, lockEndingLength)
                                   : std::string(baseName);
    return digitPattern(digits, "00:00:00");
}

std::string dateAndTimeOfNames(std::string_view folderName, std::string_view baseName) {
    return fixedWidth(dateOfFolderName(folderName) + "  " + timeOfBaseName(baseName),
                      dateAndTimeWidth);
}

std::string baseNameOf(std::string_view fileName) {
    return withoutLastCharacters(fileName, endingLength);
}

bool isRecordingName(std::string_view fileName) {
    constexpr std::string_view ending = ".mp4";
    return fileName.size() > ending.size() &&
           equalsIgnoringCase(fileName.substr(fileName.size() - ending.size()), ending);
}

} // namespace velmorant
