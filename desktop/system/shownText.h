#pragma once

#include <QString>
#include <string>

namespace velmorant {

// Texts from outside (names of files, what a recording or a server says; UTF-8) as the toolkit's
// widgets take them: as they are, whatever they look like, and never more than can be read.
// Labels are made plain by the theme.

constexpr qsizetype mostShownCharacters = 2000;
constexpr qsizetype mostShownLines = 24;

/// A text that is too long or has too many lines loses its middle: a notice begins with a file's
/// name and ends with the reason.
QString shownText(const std::string& text);
QString shownText(const QString& text);

/// Tool tips interpret what looks like markup as markup.
QString shownToolTip(const std::string& text);
QString shownToolTip(const QString& text);

/// For a menu item or a button, where a single "&" would underline the letter after it.
QString shownLabel(const std::string& text);

} // namespace velmorant
