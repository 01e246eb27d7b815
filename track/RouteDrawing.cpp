#include "track/RouteDrawing.h"

#include "common/fillIn.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "track/RouteSender.h"

#include <memory>
#include <string>

namespace velmorant {

namespace {

/// What is drawn before anybody could read a window: ten minutes of driving.
constexpr std::int64_t fewDots = 600;

} // namespace

std::size_t RouteDrawing::draw(const std::vector<std::int32_t>& numbers) {
    m_cancelled = false;
    const std::int64_t all = dots(numbers);
    if (all <= fewDots || !m_needs.page.ready())
        return drawEach(
            numbers, [](std::size_t) {}, [] {});
    return drawInWindow(numbers, all);
}

std::int64_t RouteDrawing::dots(const std::vector<std::int32_t>& numbers) const {
    std::int64_t sum = 0;
    for (const std::int32_t number : numbers)
        if (const auto track = m_needs.state.loadedTracks.find(number))
            sum += track->count();
    return sum;
}

std::size_t RouteDrawing::drawInWindow(const std::vector<std::int32_t>& numbers, std::int64_t all) {
    std::size_t drawn = 0;
    std::int64_t dot = 0;
    int shown = 0;
    m_needs.window.onCancel([this] { m_cancelled = true; });
    m_needs.window.showWhile(m_needs.texts.addition("drawing.title"), [&] {
        m_needs.window.setValue(0);
        drawn = drawEach(
            numbers,
            [&](std::size_t place) {
                std::string text = m_needs.texts.addition("drawing.route");
                text = fillIn(std::move(text), "%1", std::to_string(place + 1));
                m_needs.window.setText(
                    fillIn(std::move(text), "%2", std::to_string(numbers.size())));
            },
            [&] {
                const int percent = static_cast<int>(++dot * 100 / all);
                if (percent != shown)
                    m_needs.window.setValue(percent);
                shown = percent;
            });
    });
    return drawn;
}

std::size_t RouteDrawing::drawEach(const std::vector<std::int32_t>& numbers,
                                   const std::function<void(std::size_t)>& beforeEach,
                                   const std::function<void()>& afterDot) {
    std::size_t drawn = 0;
    for (; drawn < numbers.size() && !m_cancelled; ++drawn) {
        beforeEach(drawn);
        // One route that cannot be drawn keeps no other one from the map.
        trapErrors([&] { drawOne(numbers[drawn], afterDot); });
    }
    return drawn;
}

void RouteDrawing::drawOne(std::int32_t number, const std::function<void()>& afterDot) {
    const std::shared_ptr<clsDot> track = m_needs.state.loadedTracks.find(number);
    if (track == nullptr)
        return;
    RouteSender sender(m_needs.page, m_needs.waits, number, [this] { return m_cancelled; });
    for (std::int32_t i = 1; i <= track->count(); ++i) {
        track->lPlayLocal(i);
        sender.point(i, track->sLonLat());
        afterDot();
    }
    sender.flush();
    sender.complete();
}

} // namespace velmorant
