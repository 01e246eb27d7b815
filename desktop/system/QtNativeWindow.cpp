#include "desktop/system/QtNativeWindow.h"

#include <QScreen>
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace velmorant {
namespace {

constexpr std::uint32_t getMinMaxInfo = 0x24;

struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct SizeLimits {
    Point reserved;
    Point maximisedSize;
    Point maximisedPosition;
    Point leastTrackingSize;
    Point greatestTrackingSize;
};
static_assert(sizeof(SizeLimits) == 40);

using Record = std::array<std::byte, sizeof(SizeLimits)>;

SizeLimits presentLimits(const QWidget& window) {
    const QRect desktop = window.screen()->availableGeometry();
    const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
    const QSize greatest = window.maximumSize();
    return {{},
            {desktop.width(), desktop.height()},
            {desktop.x(), desktop.y()},
            {least.width(), least.height()},
            {greatest.width(), greatest.height()}};
}

} // namespace

QtNativeWindow::QtNativeWindow(QWidget& window)
    : m_window(&window),
      // The default procedure: the record arrives filled and stays as it is.
      m_procedure([](const WindowMessage&) -> std::intptr_t { return 0; }),
      m_menu{MenuItem::Restore,  MenuItem::Move,      MenuItem::Size, MenuItem::Minimize,
             MenuItem::Maximize, MenuItem::Separator, MenuItem::Close} {}

void QtNativeWindow::setWindowProcedure(WindowProcedure procedure) {
    m_procedure = std::move(procedure);
    askSizeLimits();
}

void QtNativeWindow::deleteSystemMenuItem(int position) {
    if (position >= 0 && position < systemMenuItemCount())
        m_menu.erase(m_menu.begin() + position);
}

void QtNativeWindow::askSizeLimits() {
    if (!m_window || !m_procedure)
        return;
    SizeLimits limits = presentLimits(*m_window);
    Record record;
    std::memcpy(record.data(), &limits, record.size());
    m_procedure(WindowMessage{getMinMaxInfo, 0, record.data()});
    std::memcpy(&limits, record.data(), record.size());
    const QSize greatest(limits.greatestTrackingSize.x, limits.greatestTrackingSize.y);
    if (greatest.width() > 0 && greatest.height() > 0)
        m_window->setMaximumSize(greatest.boundedTo(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX)));
}

} // namespace velmorant
