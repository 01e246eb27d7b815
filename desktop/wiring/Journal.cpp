#include "desktop/wiring/Journal.h"

namespace velmorant {

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
    m_browser.readWindowProperty(
        name, [&journal = m_journal, name, result](const std::string& value) {
            journal.write(JournalLevel::Debug, "answer " + name + " = \"" + value + "\"");
            result(value);
        });
}

void JournalledBrowser::setWindowProperty(const std::string& name, const std::string& value) {
    m_journal.write("property " + name + " = \"" + value + "\"");
    m_browser.setWindowProperty(name, value);
}

} // namespace velmorant
