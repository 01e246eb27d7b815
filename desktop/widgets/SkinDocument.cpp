#include "desktop/widgets/SkinDocument.h"

#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace velmorant {
namespace {

bool isForbidden(const QStringView name, const QXmlStreamAttributes& attributes) {
    static const QSet<QString> forbidden{QStringLiteral("script"),  QStringLiteral("foreignObject"),
                                         QStringLiteral("handler"), QStringLiteral("video"),
                                         QStringLiteral("audio"),   QStringLiteral("iframe")};
    if (forbidden.contains(name.toString()))
        return true;
    if (name != QLatin1String("image"))
        return false;
    for (const auto& attribute : attributes)
        if (attribute.qualifiedName().endsWith(QLatin1String("href")) &&
            !attribute.value().startsWith(QLatin1String("data:")))
            return true;
    return false;
}

class Filter {
  public:
    Filter(const QByteArray& document, const SkinDocument::Events& events, QByteArray& result)
        : m_reader(document), m_writer(&result), m_events(events) {
        m_reader.setNamespaceProcessing(false);
    }

    bool run() {
        bool isSvg = false;
        while (!m_reader.atEnd()) {
            switch (m_reader.readNext()) {
            case QXmlStreamReader::StartElement:
                isSvg = isSvg || m_reader.name() == QLatin1String("svg");
                startElement();
                break;
            case QXmlStreamReader::EndElement:
                m_writer.writeEndElement();
                m_ids.removeLast();
                if (m_definitions > 0)
                    --m_definitions;
                break;
            case QXmlStreamReader::Characters:
                m_writer.writeCharacters(m_reader.text().toString());
                break;
            case QXmlStreamReader::DTD:
                return false;
            default:
                break;
            }
        }
        return isSvg && !m_reader.hasError();
    }

  private:
    void startElement() {
        const QString name = m_reader.name().toString();
        const QXmlStreamAttributes attributes = m_reader.attributes();
        const QString id = attributes.value(QLatin1String("id")).toString();
        if (isForbidden(name, attributes)) {
            m_reader.skipCurrentElement();
            return;
        }
        if (name == QLatin1String("title")) {
            const QString title = m_reader.readElementText(QXmlStreamReader::SkipChildElements);
            if (m_events.title && (m_ids.size() == 1 || !m_ids.value(m_ids.size() - 1).isEmpty()))
                m_events.title(m_ids.last(), title.simplified());
            return;
        }
        const auto shown = m_definitions > 0 ? SkinDocument::Shown::No : SkinDocument::Shown::Yes;
        if (m_events.element && !m_events.element(id, attributes, shown)) {
            m_reader.skipCurrentElement();
            return;
        }
        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        m_writer.writeAttributes(attributes);
        m_ids << id;
        if (m_definitions > 0 || name == QLatin1String("defs"))
            ++m_definitions;
    }

    QXmlStreamReader m_reader;
    QXmlStreamWriter m_writer;
    const SkinDocument::Events& m_events;
    QStringList m_ids;
    int m_definitions = 0; ///< open elements from the outermost <defs> on
};

} // namespace

QByteArray SkinDocument::filtered(const QByteArray& document, const Events& events) {
    QByteArray result;
    return Filter(document, events, result).run() ? result : QByteArray();
}

} // namespace velmorant
