#include "desktop/wiring/MapData.h"

#include "common/Language.h"
#include "common/SpeedUnit.h"
#include "common/textRules.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace velmorant {

namespace {

std::string jsonText(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

/// "2012/9/7 08:05:09" as the page reads it; empty for a text of another form.
QString utcStart(const std::string& dateText) {
    const std::vector<std::string> halves = split(dateText, ' ');
    if (halves.size() != 2)
        return {};
    const std::vector<std::string> date = split(halves[0], '/');
    if (date.size() != 3)
        return {};
    for (const std::string& part : date)
        if (!isNumber(part))
            return {};
    return QString::fromStdString(zeroPadded(toInt32(date[0]), 4) + "-" +
                                  zeroPadded(toInt32(date[1]), 2) + "-" +
                                  zeroPadded(toInt32(date[2]), 2) + "T" + halves[1] + "Z");
}

void addPlaces(QJsonObject& object, const clsDot& track) {
    QJsonArray seconds;
    QJsonArray speeds;
    QJsonArray fixes;
    const auto count = track.count();
    const TrackDetails& details = track.details();
    const bool fixesKnown = details.samples.size() == static_cast<std::size_t>(count);
    for (std::int32_t i = 1; i <= count; ++i) {
        const TrackDot& dot = track.dot(i);
        seconds.append(dot.second);
        speeds.append(dot.speed);
        if (fixesKnown)
            fixes.append(details.samples[static_cast<std::size_t>(i) - 1].hasFix ? 1 : 0);
    }
    object["second"] = seconds;
    object["speed"] = speeds;
    if (fixesKnown)
        object["fix"] = fixes;
    if (details.timeBase != TimeBase::Unknown)
        object["timeBase"] = QString::fromStdString(nameOf(details.timeBase));
    if (count > 0) {
        const QString start = utcStart(track.dot(1).dateText);
        if (!start.isEmpty())
            object["utcStart"] = start;
    }
}

} // namespace

MapData::MapData(const ProgramState& state, const RecordingList& list)
    : m_state(state), m_list(list), m_language(languageOf(state.settings.languageIndex).tag) {}

std::optional<std::string> MapData::track(long number) const {
    const std::shared_ptr<clsDot> track =
        std::in_range<std::int32_t>(number)
            ? m_state.loadedTracks.find(static_cast<std::int32_t>(number))
            : nullptr;
    if (!track)
        return std::nullopt;
    QJsonObject object;
    object["number"] = static_cast<qint64>(number);
    const int row = track->lSerial();
    if (row >= 1 && row <= m_list.count()) {
        const RecordingEntry& entry = m_list.row(row);
        object["name"] = QFileInfo(QString::fromStdString(entry.path)).fileName();
        object["kind"] = entry.kind == RecordingKind::Locked ? "locked" : "normal";
    }
    addPlaces(object, *track);
    return jsonText(object);
}

std::string MapData::configuration() const {
    QJsonObject object;
    object["language"] = QString::fromStdString(m_language);
    QJsonObject unit;
    unit["factor"] = m_state.settings.speedFactor;
    unit["label"] = QString::fromStdString(std::string(speedSign(m_state.settings.unitCode)));
    object["unit"] = unit;
    if (m_tiles) {
        QJsonObject tiles;
        tiles["maxZoom"] = m_tiles->maximumZoom;
        tiles["attribution"] = QString::fromStdString(m_tiles->attribution);
        if (!m_tiles->link.empty())
            tiles["link"] = QString::fromStdString(m_tiles->link);
        object["tiles"] = tiles;
    }
    object["commands"] = QJsonArray{"whole-window"};
    object["wholeWindow"] = m_wholeWindow;
    return jsonText(object);
}

} // namespace velmorant
