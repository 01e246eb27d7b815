// Which of a recorder's cameras a recording is from, as its path says, and which recordings of two
// cameras belong together.
//
// Recorders with several cameras write one recording for each and tell them apart by a mark at the
// end of the name, before the extension, or by the folder:
//   front                        rear
//   _front                       _rear
//   _F, _NF, _EF, _PF, _MF       _R, _NR, _ER, _PR, _MR
//   F behind a digit             R or B behind a digit
//   folder Front                 folder Rear or Back beside it
// whatever the case. The letter before F and R is the recorder's mode: normal, event, parking,
// manual. A mark of the name is stronger than one of the folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant::telemetry {

enum class Camera : std::uint8_t {
    unmarked, // the only one, or one that the path does not tell
    front,
    rear
};

Camera cameraOf(std::string_view path);

// Whether the names say that both show the same moment: marks of one kind, the same folder but for
// its own mark, and names that are the same but for the mark. Where both names hold a time it
// counts instead of what else is in them: it may differ by up to two seconds, and counters as they
// like.
inline constexpr std::int64_t mostSecondsApart = 2;
bool namesPair(std::string_view rear, std::string_view front);

// Where the front recording of a rear one may stand: first the paths that differ by the mark alone,
// then the folders in which one may have another time or counter. Empty for other cameras.
struct FrontPlaces {
    std::vector<std::string> paths;
    std::vector<std::string> folders; // "" is the working folder
};
FrontPlaces frontPlacesOf(const std::string& rear);

// By how many seconds the rear recording starts later, as the names say; nothing where one of them
// has no time.
std::optional<std::int64_t> secondsBetweenNames(std::string_view rear, std::string_view front);

} // namespace velmorant::telemetry
