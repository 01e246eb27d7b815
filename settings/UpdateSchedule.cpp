#include "settings/UpdateSchedule.h"

#include "common/textRules.h"
#include "common/trapErrors.h"
#include "settings/updatePossible.h"

#include <chrono>
#include <utility>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds afterStart{8000};
constexpr const char* section = "config";
constexpr const char* key = "UpdateDay";
constexpr std::size_t valueBuffer = 255;

} // namespace

UpdateSchedule::UpdateSchedule(UpdateScheduleNeeds needs) : m_needs(std::move(needs)) {
    m_needs.timer.setInterval(afterStart);
    m_needs.timer.setEnabled(false);
    m_needs.timer.onTick([this] {
        m_needs.timer.setEnabled(false);
        // Also a day whose update fails has had its one: a server in trouble is not to be pressed.
        m_needs.profile.write(m_needs.paths.globalConfigurationFile(), section, key, today());
        m_needs.open();
    });
}

void UpdateSchedule::Start() {
    trapErrors(m_needs.errors, [this] { m_needs.timer.setEnabled(isDue()); });
}

bool UpdateSchedule::isDue() const {
    if (!isWebAddress(m_needs.texts.byId(1)) || !programFolderIsOwn(m_needs.paths))
        return false;
    const std::string last = m_needs.profile.read(m_needs.paths.globalConfigurationFile(), section,
                                                  key, "", valueBuffer);
    return last.substr(0, last.find('\0')) != today();
}

std::string UpdateSchedule::today() const {
    const LocalTime now = m_needs.clock.localTime();
    return zeroPadded(now.year, 4) + zeroPadded(now.month, 2) + zeroPadded(now.day, 2);
}

} // namespace velmorant
