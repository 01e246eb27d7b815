#include "desktop/wiring/Journal.h"

#include <utility>

namespace velmorant {

Journal::Journal(const std::string& path) {
    if (!path.empty())
        m_file.open(path, std::ios::app);
}

void Journal::write(const std::string& line) {
    if (!m_file.is_open())
        return;
    // Flushed at once: who reads along must not wait for a full buffer.
    m_file << line << std::endl;
}

void JournalledBrowser::navigate(const std::string& address) {
    m_journal.write("navigate " + address);
    m_browser.navigate(address);
}

void JournalledBrowser::execScript(const std::string& text, const std::string& language) {
    m_journal.write("script " + text);
    m_browser.execScript(text, language);
}

void JournalledBrowser::readWindowProperty(const std::string& name,
                                           std::function<void(const std::string&)> result) {
    m_browser.readWindowProperty(name, std::move(result));
}

void JournalledBrowser::setWindowProperty(const std::string& name, const std::string& value) {
    m_journal.write("property " + name + " = \"" + value + "\"");
    m_browser.setWindowProperty(name, value);
}

} // namespace velmorant
