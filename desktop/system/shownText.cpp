#include "desktop/system/shownText.h"

#include <QStringList>
#include <QTextDocument>

namespace velmorant {
namespace {

const QString omission = QStringLiteral(" … ");
constexpr std::size_t bytesOfACharacter = 4;

QString withoutMiddleLines(const QString& text) {
    if (text.count(QLatin1Char('\n')) < mostShownLines)
        return text;
    const QStringList lines = text.split(QLatin1Char('\n'));
    constexpr qsizetype half = mostShownLines / 2;
    return (lines.first(half) + QStringList(omission.trimmed()) + lines.last(half))
        .join(QLatin1Char('\n'));
}

QString withoutMiddle(const QString& text) {
    if (text.size() <= mostShownCharacters)
        return text;
    const qsizetype room = mostShownCharacters - omission.size();
    QString begin = text.first(room / 2);
    QString end = text.last(room - room / 2);
    // A character of two units is kept whole or left out.
    if (begin.back().isHighSurrogate())
        begin.chop(1);
    if (end.front().isLowSurrogate())
        end.remove(0, 1);
    return begin + omission + end;
}

} // namespace

QString shownText(const std::string& text) {
    constexpr std::size_t most = bytesOfACharacter * mostShownCharacters;
    if (text.size() <= 2 * most)
        return shownText(QString::fromStdString(text));
    // What is left out is not even decoded: a text may have megabytes.
    return shownText(QString::fromStdString(text.substr(0, most)) +
                     QString::fromStdString(text.substr(text.size() - most)));
}

QString shownText(const QString& text) {
    return withoutMiddle(withoutMiddleLines(text));
}

QString shownToolTip(const std::string& text) {
    return shownToolTip(shownText(text));
}

QString shownToolTip(const QString& text) {
    const QString shown = shownText(text);
    return Qt::mightBeRichText(shown) ? QStringLiteral("<p style=\"white-space:pre-wrap\">") +
                                            shown.toHtmlEscaped() + QStringLiteral("</p>")
                                      : shown;
}

QString shownLabel(const std::string& text) {
    return shownText(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace velmorant
