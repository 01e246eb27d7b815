#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace velmorant {

/// Which window a skin is for.
enum class SkinKind { Main, Control, List, Pane, Bar, Setup, Playback, Splash, About };

/// What an element has to consist of, NAME being its id:
///  Button  NAME and NAME.normal, .hover, .pressed, .focus, .disabled
///  Toggle  a button, and NAME.on
///  Slider  NAME.track, NAME.fill, NAME.thumb and the button's states and .on of NAME.thumb
///  Place   NAME, which may paint nothing: where the program puts a widget or a text
///  Picture NAME, which paints something
enum class ElementType { Button, Toggle, Slider, Place, Picture };

/// An optional element may be absent; where it is present it has to be whole.
enum class Need { Required, Optional };

struct ElementRule {
    QString name; ///< in lower case
    ElementType type;
    Need need;
};

/// What a skin of one kind has to hold. The size is in pixels of the window.
struct SkinRules {
    QString kind; ///< the word on the command line
    int width;
    int height;
    std::vector<ElementRule> elements;
};

std::optional<SkinKind> skinKindOf(const QString& word);
QStringList skinKindWords();
const SkinRules& rulesOf(SkinKind kind);

/// The states of a button or toggle, without the dot: "normal", "hover" ...
QStringList statesOf(ElementType type);

} // namespace velmorant
