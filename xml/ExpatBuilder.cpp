#include "xml/ExpatBuilder.h"

namespace velmorant {

ExpatBuilder::ExpatBuilder(ExpatDocument& document, XML_Parser parser)
    : document_(document), parser_(parser) {
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, startElement, endElement);
    XML_SetCharacterDataHandler(parser, characters);
    XML_SetStartDoctypeDeclHandler(parser, startDoctype);
}

void ExpatBuilder::startElement(void* self, const XML_Char* name, const XML_Char** attributes) {
    static_cast<ExpatBuilder*>(self)->open(name, attributes);
}

void ExpatBuilder::open(std::string_view name, const XML_Char** attributes) {
    if (reason_)
        return;
    if (open_.size() >= document_.limits_.depth)
        return stop("elements are nested too deep");
    if (document_.elements_.size() >= document_.limits_.elements)
        return stop("too many elements");
    ExpatDocument::Element element;
    element.name = document_.internName(name);
    element.textBegin = static_cast<ExpatDocument::Index>(document_.text_.size());
    element.textEnd = element.textBegin;
    element.firstAttribute = static_cast<ExpatDocument::Index>(document_.attributes_.size());
    for (; *attributes; attributes += 2) {
        if (document_.attributes_.size() >= document_.limits_.attributes)
            return stop("too many attributes");
        document_.attributes_.push_back({document_.internName(attributes[0]), attributes[1]});
    }
    element.attributeEnd = static_cast<ExpatDocument::Index>(document_.attributes_.size());
    const auto index = static_cast<ExpatDocument::Index>(document_.elements_.size());
    document_.elements_.push_back(element);
    if (!open_.empty()) {
        Open& parent = open_.back();
        if (parent.lastChild == ExpatDocument::none)
            document_.elements_[parent.element].firstChild = index;
        else
            document_.elements_[parent.lastChild].nextSibling = index;
        parent.lastChild = index;
    }
    open_.push_back({index, ExpatDocument::none});
}

void ExpatBuilder::endElement(void* self, const XML_Char*) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    if (builder.reason_)
        return;
    builder.document_.elements_[builder.open_.back().element].textEnd =
        static_cast<ExpatDocument::Index>(builder.document_.text_.size());
    builder.open_.pop_back();
}

void ExpatBuilder::characters(void* self, const XML_Char* text, int length) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    if (!builder.reason_)
        builder.document_.text_.append(text, static_cast<std::size_t>(length));
}

// Entities can only be declared in a document type: without one there is nothing to expand and
// nothing to fetch.
void ExpatBuilder::startDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*,
                                int) {
    static_cast<ExpatBuilder*>(self)->stop("a document type declaration is not allowed");
}

void ExpatBuilder::stop(const char* reason) {
    reason_ = reason;
    XML_StopParser(parser_, XML_FALSE);
}

} // namespace velmorant
