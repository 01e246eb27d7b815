#include "track/MapData.h"

#include "common/Language.h"
#include "common/SpeedUnit.h"
#include "common/StepError.h"
#include "common/textRules.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>
#include <vector>

namespace velmorant {

namespace {

using Json = nlohmann::json;

std::string jsonText(const Json& object) {
    // A file name need not be UTF-8.
    return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// "2012/9/7 08:05:09" as the page reads it; empty for a text of another form.
std::string utcStart(const std::string& dateText) {
    const std::vector<std::string> halves = split(dateText, ' ');
    if (halves.size() != 2)
        return {};
    const std::vector<std::string> date = split(halves[0], '/');
    if (date.size() != 3)
        return {};
    try {
        return zeroPadded(toInt32(date[0]), 4) + "-" + zeroPadded(toInt32(date[1]), 2) + "-" +
               zeroPadded(toInt32(date[2]), 2) + "T" + halves[1] + "Z";
    } catch (const StepError&) {
        return {}; // no numbers
    }
}

void addPlaces(Json& object, const clsDot& track) {
    Json seconds = Json::array();
    Json speeds = Json::array();
    Json fixes = Json::array();
    const auto count = track.count();
    const TrackDetails& details = track.details();
    const bool fixesKnown = details.samples.size() == static_cast<std::size_t>(count);
    for (std::int32_t i = 1; i <= count; ++i) {
        const TrackDot& dot = track.dot(i);
        seconds.push_back(dot.second);
        speeds.push_back(dot.speed);
        if (fixesKnown)
            fixes.push_back(details.samples[static_cast<std::size_t>(i) - 1].hasFix ? 1 : 0);
    }
    object["second"] = seconds;
    object["speed"] = speeds;
    if (fixesKnown)
        object["fix"] = fixes;
    if (details.timeBase != TimeBase::Unknown)
        object["timeBase"] = nameOf(details.timeBase);
    if (count > 0) {
        const std::string start = utcStart(track.dot(1).dateText);
        if (!start.empty())
            object["utcStart"] = start;
    }
}

} // namespace

MapData::MapData(const ProgramState& state, const RecordingList& list, const HostPaths& paths)
    : m_state(state),
      m_list(list),
      m_paths(paths),
      m_language(languageOf(state.settings.languageIndex).tag) {}

std::optional<std::string> MapData::track(long number) const {
    const std::shared_ptr<clsDot> track =
        std::in_range<std::int32_t>(number)
            ? m_state.loadedTracks.find(static_cast<std::int32_t>(number))
            : nullptr;
    if (!track)
        return std::nullopt;
    Json object;
    object["number"] = number;
    const int row = track->lSerial();
    if (row >= 1 && row <= m_list.count()) {
        const RecordingEntry& entry = m_list.row(row);
        object["name"] = fileNameOf(m_paths, entry.path);
        object["kind"] = entry.kind == RecordingKind::Locked ? "locked" : "normal";
    }
    addPlaces(object, *track);
    return jsonText(object);
}

std::string MapData::configuration() const {
    Json object;
    object["language"] = m_language;
    Json unit;
    unit["factor"] = m_state.settings.speedFactor;
    unit["label"] = std::string(speedSign(m_state.settings.unitCode));
    object["unit"] = unit;
    if (m_tiles) {
        Json tiles;
        tiles["maxZoom"] = m_tiles->maximumZoom;
        tiles["attribution"] = m_tiles->attribution;
        if (!m_tiles->link.empty())
            tiles["link"] = m_tiles->link;
        object["tiles"] = tiles;
    }
    object["commands"] = Json::array({"whole-window"});
    object["wholeWindow"] = m_wholeWindow;
    return jsonText(object);
}

} // namespace velmorant
