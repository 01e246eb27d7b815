#include "desktop/system/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace velmorant {

void ToolkitTexts::use(const QString& language) {
    if (language == language_)
        return;
    language_ = language;
    QCoreApplication::removeTranslator(&translator_);
    if (translator_.load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator_);
}

} // namespace velmorant
