#include "app/LanguageTable.h"

#include "common/Language.h"
#include "common/StepError.h"
#include "common/textRules.h"
#include "resources/strings/AdditionTable.h"
#include "resources/strings/StringTable.h"

#include <utility>

namespace velmorant {

namespace {

constexpr int serverAddressId = 1;

} // namespace

LanguageTable::LanguageTable(const SettingsState& settings, std::string serverAddress)
    : m_settings(settings), m_serverAddress(std::move(serverAddress)) {
    if (!m_serverAddress.empty() && m_serverAddress.back() != '/')
        m_serverAddress += '/';
}

std::string LanguageTable::byId(int id) const {
    if (id == serverAddressId && !m_serverAddress.empty())
        return m_serverAddress;
    const auto text = stringTableText(id);
    if (!text)
        throw StepError("The text table has no row " + std::to_string(id));
    return std::string(*text);
}

std::string LanguageTable::byOffset(int offset) const {
    // A base out of range must not wrap round to an id that exists.
    const double id = static_cast<double>(m_settings.languageBase) + static_cast<double>(offset);
    return byId(toInt32(id));
}

std::string LanguageTable::addition(const std::string& name) const {
    const auto texts = additionTexts(name);
    if (!texts)
        throw StepError("The table of additions has no row \"" + name + "\"");
    return std::string(texts->at(columnOf(languageOf(m_settings.languageIndex))));
}

} // namespace velmorant
