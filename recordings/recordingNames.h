#pragma once

#include <string>
#include <string_view>

namespace velmorant {

/// What a recorder's file and folder names say.

enum class RecordingKind { Normal = 1, Locked = 2 };

/// The date of a dated folder's name, in exactly 10 characters: "20121009_A" and "20121009" give
/// "2012/10/09"; a name whose first 8 characters are not a number is kept as it is.
std::string dateOfFolderName(std::string_view folderName);

/// Locked when the base name's last character is "P" or "p".
RecordingKind kindOfBaseName(std::string_view baseName);

/// "103045" and "103045_P" give "10:30:45"; a locked name loses its last two characters first.
std::string timeOfBaseName(std::string_view baseName);

/// The folder's date, two blanks and the recording's time, in exactly 20 characters.
std::string dateAndTimeOfNames(std::string_view folderName, std::string_view baseName);

/// The file name without its last four characters, ".MP4".
std::string baseNameOf(std::string_view fileName);

bool isRecordingName(std::string_view fileName); ///< ends in ".mp4", in any case

} // namespace velmorant
