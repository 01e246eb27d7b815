#include "telemetry/CameraNames.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace velmorant::telemetry {

namespace {

struct Mark {
    const char* text; // capitals
    Camera camera;
    enum class Before { anything, digit } before = Before::anything;
};

// The longer ones first: "_NR" ends in what another recorder would write behind a digit.
constexpr std::array marks = {
    Mark{"_FRONT", Camera::front},
    Mark{"_REAR", Camera::rear},
    Mark{"_NF", Camera::front},
    Mark{"_NR", Camera::rear},
    Mark{"_EF", Camera::front},
    Mark{"_ER", Camera::rear},
    Mark{"_PF", Camera::front},
    Mark{"_PR", Camera::rear},
    Mark{"_MF", Camera::front},
    Mark{"_MR", Camera::rear},
    Mark{"_F", Camera::front},
    Mark{"_R", Camera::rear},
    Mark{"F", Camera::front, Mark::Before::digit},
    Mark{"R", Camera::rear, Mark::Before::digit},
    Mark{"B", Camera::rear, Mark::Before::digit},
};

struct FolderMark {
    const char* text;
    Camera camera;
};

constexpr std::array folderMarks = {
    FolderMark{"FRONT", Camera::front},
    FolderMark{"REAR", Camera::rear},
    FolderMark{"BACK", Camera::rear},
};

std::string capitals(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return result;
}

bool fits(const Mark& mark, std::string_view stem) {
    const std::string_view text(mark.text);
    if (!stem.ends_with(text) || stem.size() == text.size()) {
        return false;
    }
    const char before = stem[stem.size() - text.size() - 1];
    return mark.before == Mark::Before::anything || (before >= '0' && before <= '9');
}

} // namespace

Camera cameraOf(std::string_view path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::string name = capitals(path.substr(slash == std::string_view::npos ? 0 : slash + 1));
    const std::string_view stem = std::string_view(name).substr(0, name.find_last_of('.'));
    const auto* mark = std::find_if(marks.begin(), marks.end(),
                                    [&](const Mark& candidate) { return fits(candidate, stem); });
    if (mark != marks.end()) {
        return mark->camera;
    }
    if (slash == std::string_view::npos) {
        return Camera::unmarked;
    }
    const std::string_view above = path.substr(0, slash);
    const std::size_t start = above.find_last_of("/\\");
    const std::string folder =
        capitals(above.substr(start == std::string_view::npos ? 0 : start + 1));
    const auto* beside = std::find_if(folderMarks.begin(), folderMarks.end(),
                                      [&](const auto& entry) { return folder == entry.text; });
    return beside == folderMarks.end() ? Camera::unmarked : beside->camera;
}

} // namespace velmorant::telemetry
