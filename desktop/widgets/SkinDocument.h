#pragma once

#include <QByteArray>
#include <QString>
#include <QXmlStreamAttributes>
#include <functional>

namespace velmorant {

/// A single pass over the XML text of a skin.
class SkinDocument {
  public:
    enum class Shown { Yes, No };

    struct Events {
        /// False drops the element with all that it holds. What stands inside <defs> is not shown.
        std::function<bool(const QString& id, const QXmlStreamAttributes& attributes, Shown shown)>
            element;
        /// The <title> of an element with an id, or, with an empty id, that of the drawing.
        std::function<void(const QString& id, const QString& title)> title;
    };

    /// Copies the document without what a skin must not hold (scripts, foreign contents, pictures
    /// that are not embedded) and without what `events` drop. Empty when it is no well-formed SVG
    /// or has a document type.
    static QByteArray filtered(const QByteArray& document, const Events& events);
};

} // namespace velmorant
