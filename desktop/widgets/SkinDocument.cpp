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
        : reader_(document), writer_(&result), events_(events) {
        reader_.setNamespaceProcessing(false);
    }

    bool run() {
        bool isSvg = false;
        while (!reader_.atEnd()) {
            switch (reader_.readNext()) {
            case QXmlStreamReader::StartElement:
                isSvg = isSvg || reader_.name() == QLatin1String("svg");
                startElement();
                break;
            case QXmlStreamReader::EndElement:
                writer_.writeEndElement();
                ids_.removeLast();
                if (definitions_ > 0)
                    --definitions_;
                break;
            case QXmlStreamReader::Characters:
                writer_.writeCharacters(reader_.text().toString());
                break;
            case QXmlStreamReader::DTD:
                return false;
            default:
                break;
            }
        }
        return isSvg && !reader_.hasError();
    }

  private:
    void startElement() {
        const QString name = reader_.name().toString();
        const QXmlStreamAttributes attributes = reader_.attributes();
        const QString id = attributes.value(QLatin1String("id")).toString();
        if (isForbidden(name, attributes)) {
            reader_.skipCurrentElement();
            return;
        }
        if (name == QLatin1String("title")) {
            const QString title = reader_.readElementText(QXmlStreamReader::SkipChildElements);
            if (events_.title && (ids_.size() == 1 || !ids_.value(ids_.size() - 1).isEmpty()))
                events_.title(ids_.last(), title.simplified());
            return;
        }
        const auto shown = definitions_ > 0 ? SkinDocument::Shown::No : SkinDocument::Shown::Yes;
        if (events_.element && !events_.element(id, attributes, shown)) {
            reader_.skipCurrentElement();
            return;
        }
        writer_.writeStartElement(reader_.qualifiedName().toString());
        writer_.writeAttributes(attributes);
        ids_ << id;
        if (definitions_ > 0 || name == QLatin1String("defs"))
            ++definitions_;
    }

    QXmlStreamReader reader_;
    QXmlStreamWriter writer_;
    const SkinDocument::Events& events_;
    QStringList ids_;
    int definitions_ = 0; ///< open elements from the outermost <defs> on
};

} // namespace

QByteArray SkinDocument::filtered(const QByteArray& document, const Events& events) {
    QByteArray result;
    return Filter(document, events, result).run() ? result : QByteArray();
}

} // namespace velmorant
