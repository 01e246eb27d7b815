#include "xml/ExpatBuilder.h"

namespace velmorant {

ExpatBuilder::ExpatBuilder(ExpatDocument& document, XML_Parser parser)
    : m_document(document), m_parser(parser) {
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, startElement, endElement);
    XML_SetCharacterDataHandler(parser, characters);
    XML_SetStartDoctypeDeclHandler(parser, startDoctype);
}

void ExpatBuilder::startElement(void* self, const XML_Char* name, const XML_Char** attributes) {
    static_cast<ExpatBuilder*>(self)->open(name, attributes);
}

void ExpatBuilder::open(std::string_view name, const XML_Char** attributes) {
    if (m_reason)
        return;
    if (m_open.size() >= m_document.m_limits.depth)
        return stop("elements are nested too deep");
    if (m_document.m_elements.size() >= m_document.m_limits.elements)
        return stop("too many elements");
    ExpatDocument::Element element;
    element.name = m_document.internName(name);
    element.textBegin = static_cast<ExpatDocument::Index>(m_document.m_text.size());
    element.textEnd = element.textBegin;
    element.firstAttribute = static_cast<ExpatDocument::Index>(m_document.m_attributes.size());
    for (; *attributes; attributes += 2) {
        if (m_document.m_attributes.size() >= m_document.m_limits.attributes)
            return stop("too many attributes");
        m_document.m_attributes.push_back({m_document.internName(attributes[0]), attributes[1]});
    }
    element.attributeEnd = static_cast<ExpatDocument::Index>(m_document.m_attributes.size());
    const auto index = static_cast<ExpatDocument::Index>(m_document.m_elements.size());
    m_document.m_elements.push_back(element);
    if (!m_open.empty()) {
        Open& parent = m_open.back();
        if (parent.lastChild == ExpatDocument::none)
            m_document.m_elements[parent.element].firstChild = index;
        else
            m_document.m_elements[parent.lastChild].nextSibling = index;
        parent.lastChild = index;
    }
    m_open.push_back({index, ExpatDocument::none});
}

void ExpatBuilder::endElement(void* self, const XML_Char*) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    if (builder.m_reason)
        return;
    builder.m_document.m_elements[builder.m_open.back().element].textEnd =
        static_cast<ExpatDocument::Index>(builder.m_document.m_text.size());
    builder.m_open.pop_back();
}

void ExpatBuilder::characters(void* self, const XML_Char* text, int length) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    if (!builder.m_reason)
        builder.m_document.m_text.append(text, static_cast<std::size_t>(length));
}

// Entities can only be declared in a document type: without one there is nothing to expand and
// nothing to fetch.
void ExpatBuilder::startDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*,
                                int) {
    static_cast<ExpatBuilder*>(self)->stop("a document type declaration is not allowed");
}

void ExpatBuilder::stop(const char* reason) {
    m_reason = reason;
    XML_StopParser(m_parser, XML_FALSE);
}

} // namespace velmorant
