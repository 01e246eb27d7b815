#include "app/tileSettings.h"

#include "common/textRules.h"

#include <algorithm>
#include <string_view>

namespace velmorant {

namespace {

constexpr int usualMaximumZoom = 19;

/// "tiles.example" of "https://user@tiles.example:8080/{z}/{x}/{y}.png"; empty without one.
std::string serverName(std::string_view address) {
    const std::size_t scheme = address.find("://");
    if (scheme == std::string_view::npos)
        return {};
    address.remove_prefix(scheme + 3);
    address = address.substr(0, address.find_first_of("/?#"));
    const std::size_t user = address.rfind('@');
    if (user != std::string_view::npos)
        address.remove_prefix(user + 1);
    return std::string(address.substr(0, address.find(':')));
}

int maximumZoom(const std::string& text) {
    constexpr double largest = 22.0;
    return isNumber(text) ? static_cast<int>(std::clamp(toDouble(text), 1.0, largest))
                          : usualMaximumZoom;
}

} // namespace

std::optional<TileSettings> tileSettings(const EnvironmentLookup& environment) {
    const auto value = [&](const char* name) { return environment(name).value_or(""); };
    TileSettings settings;
    settings.address = value("VELMORANT_TILES");
    if (settings.address.empty())
        return std::nullopt;
    settings.referer = value("VELMORANT_TILES_REFERER");
    settings.maximumZoom = maximumZoom(value("VELMORANT_TILES_MAXIMUM_ZOOM"));
    settings.attribution = value("VELMORANT_TILES_ATTRIBUTION");
    if (settings.attribution.empty())
        settings.attribution = serverName(settings.address);
    settings.link = value("VELMORANT_TILES_LINK");
    return settings;
}

} // namespace velmorant
