#include "desktop/widgets/SkinDrawing.h"

#include "desktop/widgets/SkinDocument.h"
#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>

namespace velmorant {
namespace {

constexpr qint64 largestDrawing = 16 << 20;

const QStringList& stateEndings() {
    static const QStringList endings{".normal", ".hover", ".pressed", ".focus", ".on", ".disabled"};
    return endings;
}

SkinElement::TextStyle styleOf(const QXmlStreamAttributes& attributes) {
    SkinElement::TextStyle style;
    style.colour = QColor(attributes.value(QLatin1String("color")).toString());
    if (!style.colour.isValid())
        style.colour = Qt::white;
    style.pixels = std::max(1, qRound(attributes.value(QLatin1String("font-size")).toDouble()));
    style.bold = attributes.value(QLatin1String("font-weight")) == QLatin1String("bold");
    const auto anchor = attributes.value(QLatin1String("text-anchor"));
    if (anchor == QLatin1String("end"))
        style.alignment = Qt::AlignRight;
    else if (anchor == QLatin1String("middle"))
        style.alignment = Qt::AlignHCenter;
    return style;
}

} // namespace

bool SkinDrawing::load(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestDrawing)
        return false;
    QHash<QString, QString> titles;
    const SkinDocument::Events events{[this](const QString& id,
                                             const QXmlStreamAttributes& attributes,
                                             SkinDocument::Shown shown) {
                                          if (!id.isEmpty())
                                              m_ids.insert(id.toLower(), id);
                                          if (shown == SkinDocument::Shown::Yes)
                                              m_shown.insert(id);
                                          if (id.startsWith(QLatin1String("place.")) &&
                                              attributes.hasAttribute(QLatin1String("font-size")))
                                              m_texts.insert(id, styleOf(attributes));
                                          return true;
                                      },
                                      [&titles](const QString& id, const QString& title) {
                                          if (!titles.contains(id))
                                              titles.insert(id, title);
                                      }};
    const QByteArray drawing = SkinDocument::filtered(file.readAll(), events);
    if (drawing.isEmpty() || !m_elements.load(drawing) || size().isEmpty())
        return false;
    m_title = titles.value(QString());
    m_digitsTitle = titles.value(m_ids.value(QStringLiteral("datum")));
    findElements(titles);
    return m_background.load(withoutElements(drawing));
}

void SkinDrawing::findElements(const QHash<QString, QString>& titles) {
    static const QRegularExpression digit(QStringLiteral("^a[0-9]+$"));
    QStringList names = m_ids.keys();
    names.sort();
    for (const QString& name : names) {
        const QString id = m_ids.value(name);
        if (!m_shown.contains(id))
            continue;
        if (has(name + ".track") && has(name + ".thumb"))
            addElement(id, SkinElementKind::Slider, titles.value(id));
        else if (m_texts.contains(id))
            addElement(id, SkinElementKind::Text, titles.value(id));
        else if (digit.match(name).hasMatch() && has("datum"))
            addElement(id, SkinElementKind::Digit, titles.value(id));
        else if (!name.contains('.') &&
                 std::any_of(stateEndings().begin(), stateEndings().end(),
                             [&](const QString& ending) { return has(name + ending); }))
            addElement(id, SkinElementKind::Button, titles.value(id));
    }
}

void SkinDrawing::addElement(const QString& id, SkinElementKind kind, const QString& title) {
    SkinElement element{id, kind, title, bounds(id), m_texts.value(id)};
    if (kind == SkinElementKind::Slider) {
        const QRectF thumb = bounds(id + ".thumb");
        element.bounds = bounds(id + ".track") | bounds(id + ".range");
        // The thumb's middle stands on the ends of the groove.
        element.bounds.adjust(-thumb.width() / 2, 0, thumb.width() / 2, 0);
        const double missing = thumb.height() - element.bounds.height();
        if (missing > 0)
            element.bounds.adjust(0, -missing / 2, 0, missing / 2);
    }
    if (!element.bounds.isEmpty())
        m_list.push_back(element);
}

QByteArray SkinDrawing::withoutElements(const QByteArray& drawing) const {
    const auto keeps = [this](const QString& id, const QXmlStreamAttributes&, SkinDocument::Shown) {
        for (const char* part : {".thumb", ".fill"})
            if (id.endsWith(QLatin1String(part)))
                return false;
        const SkinElement* element = id.isEmpty() ? nullptr : find(id);
        return !element || element->id != id ||
               (element->kind != SkinElementKind::Button &&
                element->kind != SkinElementKind::Digit);
    };
    return SkinDocument::filtered(drawing, {keeps, {}});
}

const SkinElement* SkinDrawing::find(const QString& name) const {
    const auto found = std::find_if(m_list.begin(), m_list.end(), [&](const SkinElement& element) {
        return element.id.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_list.end() ? nullptr : &*found;
}

bool SkinDrawing::has(const QString& id) const {
    return m_ids.contains(id.toLower());
}

QRectF SkinDrawing::bounds(const QString& id) const {
    // Asked for an unknown id, the renderer answers with the whole drawing.
    if (!has(id))
        return {};
    const QString written = m_ids.value(id.toLower());
    return m_elements.transformForElement(written).mapRect(m_elements.boundsOnElement(written));
}

void SkinDrawing::paint(QPainter& painter, const QString& id, const QRectF& target) {
    if (has(id))
        m_elements.render(&painter, m_ids.value(id.toLower()), target);
}

QPixmap SkinDrawing::picture(const QString& id, const QSize& size, double devicePixelRatio) {
    const QString key =
        QString("%1 %2 %3 %4").arg(id).arg(size.width()).arg(size.height()).arg(devicePixelRatio);
    QPixmap& picture = m_pictures[key];
    if (picture.isNull() && !size.isEmpty()) {
        picture = QPixmap(size * devicePixelRatio);
        picture.setDevicePixelRatio(devicePixelRatio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(painter, id, QRectF(QPointF(0, 0), size));
    }
    return picture;
}

QPixmap SkinDrawing::background(double devicePixelRatio) {
    QPixmap& picture = m_pictures[QString("background %1").arg(devicePixelRatio)];
    if (picture.isNull()) {
        picture = QPixmap(size() * devicePixelRatio);
        picture.setDevicePixelRatio(devicePixelRatio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        m_background.render(&painter, QRectF(QPointF(0, 0), size()));
    }
    return picture;
}

} // namespace velmorant
