#include "update/ProgramPath.h"

#include "common/textRules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace velmorant {

namespace {

constexpr std::size_t mostComponents = 16;
constexpr std::size_t longestComponent = 200;

constexpr std::array<std::string_view, 10> devices{
    "CON", "PRN", "AUX", "NUL", "CLOCK$", "CONIN$", "CONOUT$", "KEYBD$", "SCREEN$", "$IDLE$"};

// The program's own kinds of files, but outside these folders only the user has files of them.
constexpr std::array<std::string_view, 5> programFolders{"skin", "system", "map", "movsupport",
                                                         "doc"};
constexpr std::array<std::string_view, 16> userEndings{
    ".mp4", ".mov",  ".avi", ".ts",  ".mkv", ".3gp", ".bmp", ".png",
    ".jpg", ".jpeg", ".xml", ".kml", ".gpx", ".csv", ".srt", ".nmea"};
// Folders in which only the update or the start-up writes.
constexpr std::array<std::string_view, 2> ownFolders{"update", "system32"};
constexpr std::array<std::string_view, 2> ownFiles{"config.mp4", "flow.xml"};

template <std::size_t count>
bool holds(const std::array<std::string_view, count>& names, std::string_view name) {
    return std::any_of(names.begin(), names.end(), [name](std::string_view candidate) {
        return equalsIgnoringCase(candidate, name);
    });
}

bool endsIgnoringCase(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() &&
           equalsIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

bool isNumberedDevice(std::string_view stem) {
    if (stem.size() < 4)
        return false;
    const std::string_view kind = stem.substr(0, 3);
    if (!equalsIgnoringCase(kind, "COM") && !equalsIgnoringCase(kind, "LPT"))
        return false;
    // The superscript digits count as digits there too.
    const std::string_view number = stem.substr(3);
    return (number.size() == 1 && number[0] >= '0' && number[0] <= '9') || number == "\u00b9" ||
           number == "\u00b2" || number == "\u00b3";
}

bool isDevice(std::string_view component) {
    std::string_view stem = component.substr(0, component.find('.'));
    while (stem.ends_with(' '))
        stem.remove_suffix(1);
    return holds(devices, stem) || isNumberedDevice(stem);
}

std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xc2 && lead < 0xe0)
        return 2;
    if (lead >= 0xe0 && lead < 0xf0)
        return 3;
    return lead >= 0xf0 && lead < 0xf5 ? 4 : 0;
}

std::uint32_t leastCodePoint(std::size_t length) {
    constexpr std::array<std::uint32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    return least[length];
}

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = sequenceLength(lead);
        if (length == 0 || i + length > text.size())
            return false;
        std::uint32_t code = length == 1 ? lead : lead & (0x7fU >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xc0U) != 0x80U)
                return false;
            code = code << 6U | (next & 0x3fU);
        }
        if (code < leastCodePoint(length) || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
            return false;
        i += length;
    }
    return true;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char letter) {
        const auto code = static_cast<unsigned char>(letter);
        return code < 0x20 || code == 0x7f;
    });
}

std::string componentFault(std::string_view component) {
    if (component.empty())
        return "it has an empty component or is absolute";
    if (component == "." || component == "..")
        return "it has a component \"" + std::string(component) + "\"";
    if (component.ends_with('.') || component.ends_with(' ') || component.starts_with(' '))
        return "a component begins or ends with a blank or a dot";
    if (component.size() > longestComponent)
        return "a component is too long";
    if (isDevice(component))
        return "it names a device";
    return {};
}

} // namespace

std::variant<ProgramPath, PathRefusal> ProgramPath::fromCatalogue(std::string_view local) {
    const auto refuse = [local](const std::string& why) {
        return PathRefusal{"\"" + std::string(local) + "\" is no file of the program: " + why};
    };
    if (hasControl(local) || !isUtf8(local))
        return PathRefusal{"a file name of the catalogue is no text"};
    if (local.find_first_of(":<>\"|?*") != std::string_view::npos)
        return refuse("it has a character that file names do not have");
    std::string slashes(local);
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    std::vector<std::string> components = split(slashes, '/');
    if (components.size() > mostComponents)
        return refuse("it is too deep");
    for (const std::string& component : components) {
        const std::string fault = componentFault(component);
        if (!fault.empty())
            return refuse(fault);
    }
    ProgramPath path(std::move(components));
    if (isReserved(path))
        return refuse("it belongs to the user or to the update itself");
    return path;
}

ProgramPath ProgramPath::own(std::string_view path) {
    return ProgramPath(split(path, '/'));
}

std::string ProgramPath::text() const {
    std::string text;
    for (const std::string& component : m_components)
        text += (text.empty() ? "" : "/") + component;
    return text;
}

bool isReserved(const ProgramPath& path) {
    const auto& components = path.components();
    const bool hidden = std::any_of(components.begin(), components.end(),
                                    [](const std::string& part) { return part.starts_with('.'); });
    if (hidden || endsIgnoringCase(path.name(), besideEnding) ||
        endsIgnoringCase(path.name(), keptEnding) || endsIgnoringCase(path.name(), nextEnding))
        return true;
    if (holds(ownFolders, components.front()))
        return true;
    if (components.size() == 1 && holds(ownFiles, path.name()))
        return true;
    if (components.size() > 1 && holds(programFolders, components.front()))
        return false;
    return std::any_of(userEndings.begin(), userEndings.end(), [&](std::string_view ending) {
        return endsIgnoringCase(path.name(), ending);
    });
}

bool isRemotePath(std::string_view remote) {
    if (remote.empty() || hasControl(remote) || !isUtf8(remote))
        return false;
    std::string lower = lowerCase(remote);
    std::replace(lower.begin(), lower.end(), '\\', '/');
    return lower.find('#') == std::string::npos && lower.find("..") == std::string::npos &&
           lower.find("%2e") == std::string::npos;
}

} // namespace velmorant
