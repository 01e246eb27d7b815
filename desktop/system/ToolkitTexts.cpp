#include "desktop/system/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace velmorant {

void ToolkitTexts::use(const QString& language) {
    if (language == m_language)
        return;
    m_language = language;
    QCoreApplication::removeTranslator(&m_translator);
    if (m_translator.load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_translator);
}

} // namespace velmorant
