#include "xml/ExpatDocument.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include "xml/ExpatBuilder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

namespace velmorant {

namespace {

constexpr std::size_t pieceSize = 65536;
/// Distinct names of a real document number a few dozen.
constexpr std::size_t largestNameTable = 65536;

std::filesystem::path pathOf(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
    throw StepError(name + ": " + reason);
}

[[noreturn]] void failAt(const std::string& name, XML_Parser parser, const std::string& reason) {
    fail(name, "line " + std::to_string(XML_GetCurrentLineNumber(parser)) + ": " + reason);
}

void appendEscaped(std::string& out, std::string_view text, bool attribute) {
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '\r':
            out += "&#13;"; // a bare one is read back as a line feed
            break;
        case '"':
            out += attribute ? "&quot;" : "\"";
            break;
        case '\n':
            out += attribute ? "&#10;" : "\n";
            break;
        case '\t':
            out += attribute ? "&#9;" : "\t";
            break;
        default:
            out += c;
        }
    }
}

} // namespace

ExpatDocument::ExpatDocument(XmlLimits limits) : m_limits(limits) {
    // Text offsets are 32 bits wide. Expat turns one byte into at most two (ISO-8859-1 to UTF-8).
    m_limits.bytes = std::min(m_limits.bytes, std::size_t{1} << 30);
}

void ExpatDocument::load(const std::string& path) {
    clear();
    std::error_code error;
    if (std::filesystem::is_directory(pathOf(path), error))
        fail(path, "is a folder");
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file)
        fail(path, std::string("cannot be opened: ") + std::strerror(errno));
    parse(path, [&](char* buffer, std::size_t size) {
        file.read(buffer, static_cast<std::streamsize>(size));
        if (file.bad())
            fail(path, "cannot be read");
        return static_cast<std::size_t>(file.gcount());
    });
}

void ExpatDocument::loadText(const std::string& text) {
    clear();
    std::string_view rest = text;
    parse("XML text", [&rest](char* buffer, std::size_t size) {
        const std::size_t length = std::min(size, rest.size());
        std::copy_n(rest.data(), length, buffer);
        rest.remove_prefix(length);
        return length;
    });
}

void ExpatDocument::parse(const std::string& sourceName, const Source& source) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), XML_ParserFree);
    if (!parser)
        fail(sourceName, "not enough memory");
    try {
        ExpatBuilder builder(*this, parser.get());
        std::size_t total = 0;
        for (bool ended = false; !ended;) {
            void* const buffer = XML_GetBuffer(parser.get(), pieceSize);
            if (!buffer)
                fail(sourceName, "not enough memory");
            const std::size_t length = source(static_cast<char*>(buffer), pieceSize);
            total += length;
            if (total > m_limits.bytes)
                failAt(sourceName, parser.get(), "the document is too large");
            ended = length == 0;
            if (XML_ParseBuffer(parser.get(), static_cast<int>(length), ended) != XML_STATUS_OK)
                failAt(sourceName, parser.get(),
                       builder.reason() ? builder.reason()
                                        : XML_ErrorString(XML_GetErrorCode(parser.get())));
            if (m_names.size() > largestNameTable)
                failAt(sourceName, parser.get(), "too many different names");
        }
    } catch (...) {
        clear();
        throw;
    }
}

void ExpatDocument::clear() {
    m_names.clear();
    m_nameIndexes.clear();
    m_elements.clear();
    m_attributes.clear();
    m_text.clear();
    m_selected.clear();
}

ExpatDocument::Index ExpatDocument::nameIndex(std::string_view name) const {
    const auto found = m_nameIndexes.find(name);
    return found == m_nameIndexes.end() ? none : found->second;
}

ExpatDocument::Index ExpatDocument::internName(std::string_view name) {
    const Index known = nameIndex(name);
    if (known != none)
        return known;
    const auto index = static_cast<Index>(m_names.size());
    m_names.emplace_back(name);
    m_nameIndexes.emplace(name, index);
    return index;
}

std::string_view ExpatDocument::textOf(const Element& element) const {
    return std::string_view(m_text).substr(element.textBegin, element.textEnd - element.textBegin);
}

std::size_t ExpatDocument::selectElements(const std::string& name) {
    m_selected.clear();
    const Index wanted = nameIndex(name);
    for (std::size_t i = 0; wanted != none && i < m_elements.size(); ++i)
        if (m_elements[i].name == wanted)
            m_selected.push_back(static_cast<Index>(i));
    return m_selected.size();
}

std::optional<std::string_view> ExpatDocument::childText(std::size_t index,
                                                         std::string_view child) const {
    const Index wanted = nameIndex(child);
    if (wanted == none || index >= m_selected.size())
        return std::nullopt;
    for (Index i = m_elements[m_selected[index]].firstChild; i != none;
         i = m_elements[i].nextSibling)
        if (m_elements[i].name == wanted)
            return textOf(m_elements[i]);
    return std::nullopt;
}

const ExpatDocument::Element* ExpatDocument::firstElement(std::string_view name) const {
    const Index wanted = nameIndex(name);
    const auto found = std::find_if(m_elements.begin(), m_elements.end(), [&](const Element& e) {
        return wanted != none && e.name == wanted;
    });
    return found == m_elements.end() ? nullptr : &*found;
}

std::optional<std::string> ExpatDocument::attributeOf(const Element& element,
                                                      std::string_view name) const {
    const Index wanted = nameIndex(name);
    if (wanted == none)
        return std::nullopt;
    for (Index i = element.firstAttribute; i < element.attributeEnd; ++i)
        if (m_attributes[i].name == wanted)
            return m_attributes[i].value;
    return std::nullopt;
}

std::optional<std::string> ExpatDocument::elementText(const std::string& name) const {
    const Element* const found = firstElement(name);
    return found ? std::optional(std::string(textOf(*found))) : std::nullopt;
}

std::optional<std::string> ExpatDocument::elementAttribute(const std::string& name,
                                                           const std::string& attribute) const {
    const Element* const found = firstElement(name);
    return found ? attributeOf(*found, attribute) : std::nullopt;
}

std::optional<std::string> ExpatDocument::rootAttribute(const std::string& name) const {
    return m_elements.empty() ? std::nullopt : attributeOf(m_elements.front(), name);
}

void ExpatDocument::writeStart(std::string& out, const Element& element) const {
    out += '<';
    out += m_names[element.name];
    for (Index i = element.firstAttribute; i < element.attributeEnd; ++i) {
        out += ' ';
        out += m_names[m_attributes[i].name];
        out += "=\"";
        appendEscaped(out, m_attributes[i].value, true);
        out += '"';
    }
    const bool empty = element.firstChild == none && element.textBegin == element.textEnd;
    out += empty ? "/>" : ">";
}

std::string ExpatDocument::serialized() const {
    if (m_elements.empty())
        return {};
    struct Open {
        const Element* element;
        Index nextChild;
        Index written; ///< end of the text written so far
    };
    std::string out = "<?xml version=\"1.0\"?>\n";
    std::vector<Open> open;
    const auto enter = [&](const Element& element) {
        writeStart(out, element);
        if (!out.ends_with("/>"))
            open.push_back({&element, element.firstChild, element.textBegin});
    };
    const std::string_view text = m_text;
    enter(m_elements.front());
    while (!open.empty()) {
        Open& top = open.back();
        const bool child = top.nextChild != none;
        const Index until = child ? m_elements[top.nextChild].textBegin : top.element->textEnd;
        appendEscaped(out, text.substr(top.written, until - top.written), false);
        if (child) {
            const Element& next = m_elements[top.nextChild];
            top.written = next.textEnd;
            top.nextChild = next.nextSibling;
            enter(next);
        } else {
            out += "</" + m_names[top.element->name] + ">";
            open.pop_back();
        }
    }
    out += '\n';
    return out;
}

void ExpatDocument::save(const std::string& path) {
    replaceFile(path, serialized());
}

} // namespace velmorant
