#include "tools/check_skin/DissectedSkin.h"

#include <QFile>
#include <QPainter>

namespace velmorant {
namespace {

constexpr qint64 largestFile = 8 * 1024 * 1024;
constexpr int mostLabels = 5000;
constexpr int mostCopies = 50000; // elements that references stand for
constexpr const char* signMark = "data-sign";

QString referenceOf(const QDomElement& element) {
    return element.hasAttribute("xlink:href") ? element.attribute("xlink:href")
                                              : element.attribute("href");
}

bool isSign(const QString& id) {
    return id.startsWith("i-") || id.startsWith("lit-");
}

void dropIds(QDomElement element) {
    element.removeAttribute("id");
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        dropIds(child);
}

int elementsIn(const QDomElement& element) {
    int count = 1;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        count += elementsIn(child);
    return count;
}

QImage canvas(const QRectF& area, int scale) {
    const QSize size = (area.size() * scale).toSize().expandedTo({1, 1}).boundedTo({8192, 8192});
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QRectF boundsIn(const QSvgRenderer& renderer, const QString& id) {
    if (!renderer.elementExists(id))
        return {};
    return renderer.transformForElement(id).mapRect(renderer.boundsOnElement(id));
}

void aim(QPainter& painter, const QRectF& area, int scale) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-area.topLeft());
}

} // namespace

DissectedSkin::DissectedSkin(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_problem = file.errorString();
        return;
    }
    if (file.size() > largestFile) {
        m_problem = QStringLiteral("larger than 8 MiB");
        return;
    }
    const QByteArray bytes = file.readAll();
    if (bytes.contains("<!DOCTYPE") || bytes.contains("<!ENTITY")) {
        m_problem = QStringLiteral("has a document type or entities, which a skin may not have");
        return;
    }
    QDomDocument document;
    QString message;
    int line = 0;
    if (!document.setContent(bytes, false, &message, &line)) {
        m_problem = QStringLiteral("not well-formed, line %1: %2").arg(line).arg(message);
        return;
    }
    m_whole = std::make_unique<QSvgRenderer>(bytes);
    if (document.documentElement().tagName() != "svg" || !m_whole->isValid()) {
        m_problem = QStringLiteral("not a drawing");
        return;
    }
    takeApart(document);
}

void DissectedSkin::takeApart(QDomDocument document) {
    inspect(document.documentElement());
    expand(document.documentElement(), {});
    if (m_copied > mostCopies)
        m_faults << QStringLiteral("has too many references");
    collect(document.documentElement(), {}, QStringLiteral("sans-serif"), false);
    m_parts = std::make_unique<QSvgRenderer>(document.toByteArray(-1));
    for (const SkinLabel& label : m_labels) {
        QDomElement element = m_byId.value(label.id);
        element.parentNode().removeChild(element);
    }
    m_faces = std::make_unique<QSvgRenderer>(document.toByteArray(-1));
    m_byId.clear();
}

void DissectedSkin::inspect(const QDomElement& element) {
    const QString tag = element.tagName();
    if (tag == "script" || tag == "foreignObject" || tag == "a")
        m_faults << QStringLiteral("<%1>: a skin may run nothing").arg(tag);
    const QString target = referenceOf(element);
    if (!target.isEmpty() && !target.startsWith('#') && !target.startsWith("data:"))
        m_faults << QStringLiteral("<%1> refers to %2, outside the file").arg(tag, target);
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.size(); ++i) {
        const QString value = attributes.item(i).nodeValue();
        const QString name = attributes.item(i).nodeName();
        const qsizetype url = value.indexOf("url(");
        if (name.startsWith("on"))
            m_faults << QStringLiteral("<%1 %2>: a skin may run nothing").arg(tag, name);
        if (url >= 0 && !value.mid(url + 4).startsWith('#'))
            m_faults << QStringLiteral("<%1> refers to %2, outside the file").arg(tag, value);
    }
    const QString id = element.attribute("id");
    if (!id.isEmpty()) {
        m_ids << id.toLower();
        m_exact.insert(id.toLower(), id);
        m_byId.insert(id, element);
        if (!element.firstChildElement("title").text().trimmed().isEmpty())
            m_titled << id.toLower();
    }
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        inspect(child);
}

void DissectedSkin::expand(QDomElement element, const QStringList& around) {
    QDomElement next;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = next) {
        next = child.nextSiblingElement();
        const QString target = referenceOf(child).mid(1);
        QStringList within = around;
        if (child.hasAttribute("id"))
            within << child.attribute("id");
        if (child.tagName() != "use" || !m_byId.contains(target)) {
            expand(child, within);
            continue;
        }
        if (within.contains(target)) {
            m_faults << QStringLiteral("\"%1\" refers to itself").arg(target);
            element.removeChild(child);
            continue;
        }
        if (m_copied > mostCopies)
            return;
        m_copied += elementsIn(m_byId.value(target));
        QDomElement copy = m_byId.value(target).cloneNode().toElement();
        dropIds(copy);
        if (isSign(target))
            copy.setAttribute(signMark, "1");
        const QString offset = QStringLiteral(" translate(%1 %2)")
                                   .arg(child.attribute("x", "0"), child.attribute("y", "0"));
        child.setAttribute("transform", child.attribute("transform") + offset);
        for (const char* name : {"x", "y", "xlink:href", "href"})
            child.removeAttribute(name);
        child.setTagName("g");
        child.appendChild(copy);
        expand(child, within << target);
    }
}

// A label's owner is the innermost id around it. What <defs> holds without an id of a state (a sign
// that is referred to) belongs to nobody, and is seen where it is used.
void DissectedSkin::collect(const QDomElement& element, const QString& owner, const QString& family,
                            bool hidden) {
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const bool sign = child.hasAttribute(signMark);
        const QString own = child.attribute("id");
        const QString around = own.isEmpty() ? owner : own;
        const QString face = child.attribute("font-family", family);
        const bool out = hidden || child.tagName() == "defs";
        const bool label = sign || child.tagName() == "text";
        if (!label) {
            collect(child, around, face, out);
        } else if (!(out && owner.isEmpty()) && !isSign(owner) &&
                   m_labels.size() < static_cast<std::size_t>(mostLabels)) {
            const QString id = QStringLiteral("check.%1").arg(m_labels.size());
            child.setAttribute("id", id);
            m_byId.insert(id, child);
            m_labels.push_back({sign ? SkinLabel::Type::Sign : SkinLabel::Type::Text, id,
                                owner.toLower(), child.text(), face});
        }
    }
}

QRectF DissectedSkin::bounds(const QString& id) const {
    return boundsIn(*m_whole, m_exact.value(id));
}

QRectF DissectedSkin::faceBounds(const QString& id) const {
    const QRectF face = boundsIn(*m_faces, m_exact.value(id));
    return face.isEmpty() ? bounds(id) : face;
}

QImage DissectedSkin::window(int scale) const {
    const QRectF area({0, 0}, QSizeF(size()));
    QImage image = canvas(area, scale);
    QPainter painter(&image);
    aim(painter, area, scale);
    m_whole->render(&painter, area);
    return image;
}

QImage DissectedSkin::ground(const QRectF& area, const QString& id, int scale) const {
    QImage image = canvas(area, scale);
    QPainter painter(&image);
    aim(painter, area, scale);
    m_faces->render(&painter, QRectF({0, 0}, QSizeF(size())));
    const QString exact = m_exact.value(id);
    const QRectF place = boundsIn(*m_faces, exact);
    if (!place.isEmpty())
        m_faces->render(&painter, exact, place);
    return image;
}

QImage DissectedSkin::alone(const QString& id, const QRectF& area, int scale) const {
    QImage image = canvas(area, scale);
    const bool label = id.startsWith("check.");
    QSvgRenderer& renderer = label ? *m_parts : *m_whole;
    const QString exact = label ? id : m_exact.value(id);
    const QRectF place = boundsIn(renderer, exact);
    if (place.isEmpty())
        return image;
    QPainter painter(&image);
    aim(painter, area, scale);
    renderer.render(&painter, exact, place);
    return image;
}

} // namespace velmorant
