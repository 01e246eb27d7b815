#pragma once

#include <QString>
#include <string>

namespace velmorant {

// Texts from outside (names of files, what a recording or a server says; UTF-8) as the toolkit's
// widgets take them: as they are, whatever they look like, and never more than can be read.
// Labels are made plain by the theme.

constexpr qsizetype mostShownCharacters = 2000;
constexpr qsizetype mostShownLines = 24;

/// One that is too long or has too many lines comes without its middle: a notice begins with a
/// file's name and ends with the reason.
QString shownText(const std::string& text);
QString shownText(const QString& text);

/// Tool tips take what looks like markup for markup.
QString shownToolTip(const std::string& text);
QString shownToolTip(const QString& text);

/// Of a menu's item or a button, where a single "&" would underline the letter behind it.
QString shownLabel(const std::string& text);

} // namespace velmorant
