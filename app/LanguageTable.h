#pragma once

#include "common/SettingsState.h"
#include "ports/Texts.h"

#include <string>

namespace velmorant {

/// The program's texts in the language of the settings, from the tables compiled into it.
class LanguageTable : public Texts {
  public:
    /// Keeps the reference: a change of language counts from the next call on. A server address
    /// that is not empty replaces text 1; a "/" is added at its end when it has none.
    explicit LanguageTable(const SettingsState& settings, std::string serverAddress = {});

    std::string byId(int id) const override;
    std::string byOffset(int offset) const override;
    std::string addition(const std::string& name) const override;

  private:
    const SettingsState& m_settings;
    std::string m_serverAddress;
};

} // namespace velmorant
