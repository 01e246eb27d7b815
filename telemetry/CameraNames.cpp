#include "telemetry/CameraNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <iterator>

#include "telemetry/ClockEvidence.h"

namespace velmorant::telemetry {

namespace {

struct Marks {
    const char* front; // capitals
    const char* rear;
    enum class Before { anything, digit } before = Before::anything;
};

// The longer ones first: "_NR" ends in what another recorder writes behind a digit.
constexpr std::array nameMarks = {
    Marks{"_FRONT", "_REAR"},
    Marks{"_NF", "_NR"},
    Marks{"_EF", "_ER"},
    Marks{"_PF", "_PR"},
    Marks{"_MF", "_MR"},
    Marks{"_F", "_R"},
    Marks{"F", "R", Marks::Before::digit},
    Marks{"F", "B", Marks::Before::digit},
};
constexpr std::array folderMarks = {Marks{"FRONT", "REAR"}, Marks{"FRONT", "BACK"}};

std::string capitals(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return result;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

struct Path {
    std::string_view folder; // with the separator behind it
    std::string_view stem, extension;
};

Path parted(std::string_view path) {
    const std::size_t name = path.find_last_of("/\\") + 1; // 0 without a separator
    const std::size_t dot = path.find_last_of('.');
    const std::size_t end = dot == std::string_view::npos || dot < name ? path.size() : dot;
    return {path.substr(0, name), path.substr(name, end - name), path.substr(end)};
}

// The last folder's own name, as a part of `folder`.
std::string_view lastOf(std::string_view folder) {
    if (folder.empty()) {
        return folder;
    }
    folder.remove_suffix(1);
    return folder.substr(folder.find_last_of("/\\") + 1);
}

bool endsIn(std::string_view stem, const Marks& marks, const char* text) {
    const std::string_view mark(text);
    if (stem.size() <= mark.size() || capitals(stem.substr(stem.size() - mark.size())) != mark) {
        return false;
    }
    return marks.before == Marks::Before::anything || isDigit(stem[stem.size() - mark.size() - 1]);
}

std::string_view without(std::string_view text, const char* mark) {
    return text.substr(0, text.size() - std::string_view(mark).size());
}

// A mark in the letters' own case: "_f" where the other camera's is "_r".
std::string inCaseOf(std::string mark, std::string_view replaced) {
    if (std::any_of(replaced.begin(), replaced.end(),
                    [](char c) { return c >= 'a' && c <= 'z'; })) {
        const bool first = replaced[0] >= 'A' && replaced[0] <= 'Z';
        for (std::size_t i = first ? 1 : 0; i < mark.size(); ++i) {
            mark[i] =
                mark[i] >= 'A' && mark[i] <= 'Z' ? static_cast<char>(mark[i] - 'A' + 'a') : mark[i];
        }
    }
    return mark;
}

std::string withoutDigits(std::string_view text) {
    std::string rest;
    std::copy_if(text.begin(), text.end(), std::back_inserter(rest),
                 [](char c) { return !isDigit(c); });
    return rest;
}

// What is left of two names without their marks.
bool sameMoment(std::string_view rear, std::string_view front) {
    const auto apart = secondsBetweenNames(rear, front);
    if (apart) {
        return std::abs(*apart) <= mostSecondsApart &&
               capitals(withoutDigits(rear)) == capitals(withoutDigits(front));
    }
    return capitals(rear) == capitals(front);
}

// The folder that the front's recordings of these are in: itself, or the one beside it.
std::optional<std::string> frontFolder(std::string_view folder) {
    const std::string_view last = lastOf(folder);
    for (const Marks& marks : folderMarks) {
        if (capitals(last) == marks.rear) {
            std::string beside(folder.substr(0, folder.size() - last.size() - 1));
            return beside + inCaseOf(marks.front, last) + folder.back();
        }
    }
    return std::nullopt;
}

bool sameFolder(std::string_view rear, std::string_view front) {
    if (rear == front) {
        return true;
    }
    const auto beside = frontFolder(rear);
    return beside && capitals(*beside) == capitals(front);
}

} // namespace

Camera cameraOf(std::string_view path) {
    const Path parts = parted(path);
    for (const Marks& marks : nameMarks) {
        if (endsIn(parts.stem, marks, marks.front)) {
            return Camera::front;
        }
        if (endsIn(parts.stem, marks, marks.rear)) {
            return Camera::rear;
        }
    }
    const std::string folder = capitals(lastOf(parts.folder));
    for (const Marks& marks : folderMarks) {
        if (folder == marks.front) {
            return Camera::front;
        }
        if (folder == marks.rear) {
            return Camera::rear;
        }
    }
    return Camera::unmarked;
}

bool namesPair(std::string_view rear, std::string_view front) {
    const Path rearParts = parted(rear);
    const Path frontParts = parted(front);
    if (capitals(rearParts.extension) != capitals(frontParts.extension) ||
        !sameFolder(rearParts.folder, frontParts.folder)) {
        return false;
    }
    for (const Marks& marks : nameMarks) {
        if (endsIn(rearParts.stem, marks, marks.rear) &&
            endsIn(frontParts.stem, marks, marks.front)) {
            return sameMoment(without(rearParts.stem, marks.rear),
                              without(frontParts.stem, marks.front));
        }
    }
    return cameraOf(rear) == Camera::rear && cameraOf(front) == Camera::front &&
           rearParts.folder != frontParts.folder && sameMoment(rearParts.stem, frontParts.stem);
}

FrontPlaces frontPlacesOf(const std::string& rear) {
    FrontPlaces places;
    if (cameraOf(rear) != Camera::rear) {
        return places;
    }
    const Path parts = parted(rear);
    places.folders.emplace_back(parts.folder);
    if (const auto beside = frontFolder(parts.folder)) {
        places.folders.push_back(*beside);
    }
    for (const std::string& folder : places.folders) {
        for (const Marks& marks : nameMarks) {
            if (endsIn(parts.stem, marks, marks.rear)) {
                const std::string_view stem = without(parts.stem, marks.rear);
                places.paths.push_back(folder + std::string(stem) +
                                       inCaseOf(marks.front, parts.stem.substr(stem.size())) +
                                       std::string(parts.extension));
            }
        }
        if (folder != parts.folder) {
            places.paths.push_back(folder + std::string(parts.stem) + std::string(parts.extension));
        }
    }
    return places;
}

std::optional<std::int64_t> secondsBetweenNames(std::string_view rear, std::string_view front) {
    const auto rearTime = timeInName(rear);
    const auto frontTime = timeInName(front);
    return rearTime && frontTime ? std::optional(*rearTime - *frontTime) : std::nullopt;
}

} // namespace velmorant::telemetry
