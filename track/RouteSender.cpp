#include "track/RouteSender.h"

#include "common/StepError.h"
#include "recordings/RowView.h"

#include <chrono>
#include <utility>

namespace velmorant {

namespace {

constexpr int pointsPerCall = 10;
constexpr std::chrono::milliseconds pauseAfterCall{5};

} // namespace

RouteSender::RouteSender(MapPage& page, Waits& waits, std::int32_t recordingNumber,
                         std::function<bool()> hurried)
    : m_page(page),
      m_waits(waits),
      m_hurried(std::move(hurried)),
      m_buffer(RowView::mapNumber(recordingNumber)) {}

void RouteSender::point(std::int64_t index, std::string_view lonLat) {
    if (!m_page.ready())
        return;
    const std::size_t bar = lonLat.find('|');
    if (bar == std::string_view::npos)
        throw StepError("Subscript out of range: a dot without a place");
    m_buffer.append(lonLat.substr(0, bar)).append("!");
    m_buffer.append(lonLat.substr(bar + 1)).append("|");
    if (index % pointsPerCall == 0)
        flush();
}

void RouteSender::flush() {
    if (m_buffer.empty() || !m_page.ready())
        return;
    call(m_buffer, Pause::Full);
    m_buffer.clear();
}

void RouteSender::complete() {
    if (m_page.ready())
        call("Over", Pause::EventsOnly);
}

void RouteSender::call(const std::string& text, Pause pause) {
    m_page.getContentHis(text);
    if (m_hurried && m_hurried())
        return;
    if (pause == Pause::Full && m_page.takesWholeRoutes())
        return;
    m_waits.letEventsRun();
    if (pause == Pause::Full)
        m_waits.sleep(pauseAfterCall);
}

} // namespace velmorant
