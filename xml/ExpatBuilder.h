#pragma once

#include "xml/ExpatDocument.h"

#include <expat.h>

namespace velmorant {

/// Receives expat's events and fills a document; stops the parser with a reason where the document
/// may not go on.
class ExpatBuilder {
  public:
    ExpatBuilder(ExpatDocument& document, XML_Parser parser);

    /// Why the parsing was stopped from here; null when it was not.
    const char* reason() const { return m_reason; }

  private:
    static void startElement(void* self, const XML_Char* name, const XML_Char** attributes);
    static void endElement(void* self, const XML_Char* name);
    static void characters(void* self, const XML_Char* text, int length);
    static void startDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int);

    void open(std::string_view name, const XML_Char** attributes);
    void stop(const char* reason);

    ExpatDocument& m_document;
    XML_Parser m_parser;
    const char* m_reason = nullptr;
    struct Open {
        ExpatDocument::Index element;
        ExpatDocument::Index lastChild;
    };
    std::vector<Open> m_open;
};

} // namespace velmorant
