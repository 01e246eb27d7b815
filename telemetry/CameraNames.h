// Which of a recorder's cameras a recording is from, as its path says.
//
// Recorders with several cameras write one recording for each and tell them apart by a mark at the
// end of the name, before the extension, or by the folder:
//   front   _front _F _NF _EF _PF _MF   F behind a digit   folder Front
//   rear    _rear  _R _NR _ER _PR _MR   R or B behind a digit   folder Rear or Back
// whatever the case. The letter before F and R is the recorder's mode: normal, event, parking,
// manual.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmorant::telemetry {

enum class Camera : std::uint8_t {
    unmarked, // the only one, or one that the path does not tell
    front,
    rear
};

Camera cameraOf(std::string_view path);

} // namespace velmorant::telemetry
