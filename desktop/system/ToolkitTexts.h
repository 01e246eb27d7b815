#pragma once

#include <QString>
#include <QTranslator>

namespace velmorant {

/// The toolkit's own texts - in file dialogs and in the menus of text fields - in the language of
/// the program. They stay English where the toolkit's translations are not installed.
class ToolkitTexts {
  public:
    /// A language as the toolkit's translations name it, for example "zh_TW"; empty or "en": the
    /// texts as built in. Takes effect for widgets built afterwards.
    void use(const QString& language);

  private:
    QString m_language;
    QTranslator m_translator;
};

} // namespace velmorant
