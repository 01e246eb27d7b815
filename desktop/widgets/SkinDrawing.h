#pragma once

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QSvgRenderer>
#include <vector>

class QPainter;

namespace velmorant {

/// The kind of a skin's element, derived from the ids of the drawing:   Button  `name` with at
/// least one of name.normal, .hover, .pressed, .focus, .on, .disabled           (name.on.focus:
/// switched on and focused)   Slider  name.track and name.thumb; name.range is the strip of the
/// values 0 to 100 (without it:           name.track), name.fill the groove up to the value,
/// name.thumb.hover ... its states   Digit   `A1`, `A2` ... in a drawing that has the strip `datum`
/// of ten digits   Text    `place.name` with the attribute font-size; color, font-weight and
/// text-anchor say how Elements stand outside <defs>, their states may stand in it. Any other id is
/// a place: a rectangle that something is put into.
enum class SkinElementKind { Button, Slider, Digit, Text };

struct SkinElement {
    QString id;
    SkinElementKind kind = SkinElementKind::Button;
    QString title; ///< of its <title> child; empty when it has none
    QRectF bounds; ///< pixels of the drawing

    /// Of a text only.
    struct TextStyle {
        QColor colour;
        int pixels = 13;
        bool bold = false;
        Qt::Alignment alignment = Qt::AlignLeft;
    } text;
};

/// A skin's drawing, split into its elements and the background that remains without them.
///
/// Nothing in a drawing is executed or fetched: scripts, foreign contents, style imports and
/// pictures other than embedded ones are taken out, and a document type is refused.
class SkinDrawing {
  public:
    /// False when the file cannot be read as a drawing; the object must not be used then.
    bool load(const QString& path);

    QSize size() const { return m_elements.defaultSize(); }
    QString title() const { return m_title; } ///< of the drawing as a whole; empty when it has none
    /// Of the strip `datum`: what the display items show; empty when it has none.
    QString digitsTitle() const { return m_digitsTitle; }
    const std::vector<SkinElement>& elements() const { return m_list; }
    /// The element of a name without regard to case; null for none.
    const SkinElement* find(const QString& name) const;
    /// True for any id, a state or a place too. Ids are found without regard to case.
    bool has(const QString& id) const;
    QRectF bounds(const QString& id) const;

    void paint(QPainter& painter, const QString& id, const QRectF& target);
    /// The id painted into a picture of that size (device-independent pixels); kept.
    QPixmap picture(const QString& id, const QSize& size, double devicePixelRatio);
    QPixmap background(double devicePixelRatio);

  private:
    void findElements(const QHash<QString, QString>& titles);
    void addElement(const QString& id, SkinElementKind kind, const QString& title);
    QByteArray withoutElements(const QByteArray& drawing) const;

    QSvgRenderer m_elements;
    QSvgRenderer m_background;
    QString m_title;
    QString m_digitsTitle;
    std::vector<SkinElement> m_list;
    QHash<QString, QString> m_ids; ///< lower case -> as written
    QSet<QString> m_shown;         ///< ids outside <defs>
    QHash<QString, SkinElement::TextStyle> m_texts;
    QHash<QString, QPixmap> m_pictures;
};

} // namespace velmorant
