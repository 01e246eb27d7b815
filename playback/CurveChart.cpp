#include "playback/CurveChart.h"

#include "common/SpeedUnit.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <memory>

namespace velmorant {

namespace {

constexpr int seriesCount = 4;
constexpr int markerSeries = 3;
constexpr double markerHeight = 200.0;
constexpr std::int32_t red = 255;
constexpr double speedAbove = 5.0;
constexpr double accelerationAround = 0.2;
constexpr std::int32_t fewestPoints = 80;

} // namespace

void CurveChart::clearSeries() {
    for (int series = 0; series < seriesCount; ++series)
        m_needs.chart.clearSeries(series);
}

void CurveChart::Load() {
    trapErrors([this] {
        m_speedTitle = m_needs.texts.byOffset(3022);
        m_timeTitle = m_needs.texts.byOffset(3023);
        m_strongest = m_needs.texts.addition("chart.strongest");
    });
    m_mode = ChartMode::Speed;
    Draw();
}

void CurveChart::setMode(ChartMode mode) {
    m_mode = mode;
    // What is drawn keeps its own axes; an empty chart has those of the mode.
    if (m_needs.state.currentTrack == nullptr)
        Draw();
}

void CurveChart::Draw() {
    const std::shared_ptr<clsDot> track = m_needs.state.currentTrack;
    if (track == nullptr)
        Clear();
    else
        trapErrors([&] { draw(*track); });
}

/// The axes of an empty chart are those of a track without a second.
void CurveChart::Clear() {
    trapErrors([this] { draw(clsDot()); });
}

void CurveChart::draw(const clsDot& track) {
    clearSeries();
    m_needs.chart.setCursor(std::nullopt);
    nameAxes();
    if (m_mode == ChartMode::Speed)
        drawSpeed(track);
    else
        drawAcceleration(track);
    setBottomAxis(track.count());
    if (track.lPlayLocal() > 0)
        m_needs.chart.setCursor(track.lPlayLocal() - 1.0);
    m_needs.chart.redraw();
}

void CurveChart::nameAxes() {
    const bool acceleration = m_mode == ChartMode::Acceleration;
    m_needs.chart.setLegend(1, acceleration ? "G x" : "");
    m_needs.chart.setLegend(2, acceleration ? "G y" : "");
    m_needs.chart.setLegend(3, acceleration ? "G z" : "");
    const std::string unit(speedSign(m_needs.state.settings.unitCode));
    m_needs.chart.setAxisTitle(ChartAxis::Left,
                               acceleration ? "G" : m_speedTitle + " (" + unit + ")");
    m_needs.chart.setAxisTitle(ChartAxis::Bottom, m_timeTitle + " (s)");
}

void CurveChart::drawSpeed(const clsDot& track) {
    const double factor = m_needs.state.settings.speedFactor;
    m_needs.chart.setAxis(ChartAxis::Left, 0.0, track.maximumSpeed() * factor + speedAbove);
    for (std::int32_t i = 1; i <= track.count(); ++i) {
        const TrackDot& dot = track.dot(i);
        m_needs.chart.addXY(1, i - 1, dot.speed * factor, dot.timeText, automaticColour);
    }
}

void CurveChart::drawAcceleration(const clsDot& track) {
    m_needs.chart.setAxis(ChartAxis::Left, track.minimumG() - accelerationAround,
                          track.maximumG() + accelerationAround);
    for (std::int32_t i = 1; i <= track.count(); ++i) {
        const TrackDot& dot = track.dot(i);
        m_needs.chart.addXY(1, i - 1, dot.gX, dot.timeText, automaticColour);
        m_needs.chart.addXY(2, i - 1, dot.gY, dot.timeText, automaticColour);
        m_needs.chart.addXY(3, i - 1, dot.gZ, dot.timeText, automaticColour);
    }
}

/// A short track does not fill the width: its points keep a readable distance.
void CurveChart::setBottomAxis(std::int32_t points) {
    m_needs.chart.setAxis(ChartAxis::Bottom, 0.0, std::max(points, fewestPoints) - 1.0);
}

void CurveChart::Click(std::int32_t point) {
    const std::shared_ptr<clsDot> track = m_needs.state.currentTrack;
    if (point < 0 || track == nullptr || point >= track->count())
        return;
    track->lPlayLocal(point + 1);
    trapErrors([&] { m_needs.player.seek(track->lSecond()); });
    trapErrors([&] { m_needs.follow.ShowDot(PositionFollow::dotText(*track)); });
    trapErrors([&] {
        m_needs.chart.clearSeries(markerSeries);
        m_needs.chart.addXY(markerSeries, track->lPlayLocal() - 1, markerHeight, "", red);
        m_needs.follow.moveMarker();
        m_needs.chart.redraw();
    });
}

std::string CurveChart::PointText(std::int32_t point) const {
    const std::shared_ptr<clsDot> track = m_needs.state.currentTrack;
    if (track == nullptr || point < 0 || point >= track->count())
        return {};
    return m_mode == ChartMode::Speed
               ? track->ShowInfo(point + 1, m_needs.state.settings.speedFactor) + " " +
                     std::string(speedSign(m_needs.state.settings.unitCode))
               : accelerationText(*track, point + 1);
}

std::string CurveChart::accelerationText(const clsDot& track, std::int32_t index) const {
    const TrackDot& dot = track.dot(index);
    std::string text = "Time:" + dot.timeText + "\rG x:" + twoDecimals(dot.gX) +
                       " G y:" + twoDecimals(dot.gY) + " G z:" + twoDecimals(dot.gZ);
    const SampleDetails* details = track.detailsOfDot(index);
    if (details != nullptr && details->strongestG)
        text += "\r" + m_strongest + " " + twoDecimals(*details->strongestG);
    return text;
}

} // namespace velmorant
