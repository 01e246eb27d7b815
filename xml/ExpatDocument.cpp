#include "xml/ExpatDocument.h"

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

ExpatDocument::ExpatDocument(XmlLimits limits) : limits_(limits) {
    // Text offsets are 32 bits wide. Expat turns one byte into at most two (ISO-8859-1 to UTF-8).
    limits_.bytes = std::min(limits_.bytes, std::size_t{1} << 30);
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
            if (total > limits_.bytes)
                failAt(sourceName, parser.get(), "the document is too large");
            ended = length == 0;
            if (XML_ParseBuffer(parser.get(), static_cast<int>(length), ended) != XML_STATUS_OK)
                failAt(sourceName, parser.get(),
                       builder.reason() ? builder.reason()
                                        : XML_ErrorString(XML_GetErrorCode(parser.get())));
            if (names_.size() > largestNameTable)
                failAt(sourceName, parser.get(), "too many different names");
        }
    } catch (...) {
        clear();
        throw;
    }
}

void ExpatDocument::clear() {
    names_.clear();
    nameIndexes_.clear();
    elements_.clear();
    attributes_.clear();
    text_.clear();
    selected_.clear();
}

ExpatDocument::Index ExpatDocument::nameIndex(std::string_view name) const {
    const auto found = nameIndexes_.find(name);
    return found == nameIndexes_.end() ? none : found->second;
}

ExpatDocument::Index ExpatDocument::internName(std::string_view name) {
    const Index known = nameIndex(name);
    if (known != none)
        return known;
    const auto index = static_cast<Index>(names_.size());
    names_.emplace_back(name);
    nameIndexes_.emplace(name, index);
    return index;
}

std::string_view ExpatDocument::textOf(const Element& element) const {
    return std::string_view(text_).substr(element.textBegin, element.textEnd - element.textBegin);
}

std::size_t ExpatDocument::selectElements(const std::string& name) {
    selected_.clear();
    const Index wanted = nameIndex(name);
    for (std::size_t i = 0; wanted != none && i < elements_.size(); ++i)
        if (elements_[i].name == wanted)
            selected_.push_back(static_cast<Index>(i));
    return selected_.size();
}

std::optional<std::string_view> ExpatDocument::childText(std::size_t index,
                                                         std::string_view child) const {
    const Index wanted = nameIndex(child);
    if (wanted == none || index >= selected_.size())
        return std::nullopt;
    for (Index i = elements_[selected_[index]].firstChild; i != none; i = elements_[i].nextSibling)
        if (elements_[i].name == wanted)
            return textOf(elements_[i]);
    return std::nullopt;
}

std::optional<std::string> ExpatDocument::elementText(const std::string& name) const {
    const Index wanted = nameIndex(name);
    const auto found = std::find_if(elements_.begin(), elements_.end(), [&](const Element& e) {
        return wanted != none && e.name == wanted;
    });
    if (found == elements_.end())
        return std::nullopt;
    return std::string(textOf(*found));
}

std::optional<std::string> ExpatDocument::rootAttribute(const std::string& name) const {
    const Index wanted = nameIndex(name);
    if (wanted == none || elements_.empty())
        return std::nullopt;
    const Element& root = elements_.front();
    for (Index i = root.firstAttribute; i < root.attributeEnd; ++i)
        if (attributes_[i].name == wanted)
            return attributes_[i].value;
    return std::nullopt;
}

void ExpatDocument::writeStart(std::string& out, const Element& element) const {
    out += '<';
    out += names_[element.name];
    for (Index i = element.firstAttribute; i < element.attributeEnd; ++i) {
        out += ' ';
        out += names_[attributes_[i].name];
        out += "=\"";
        appendEscaped(out, attributes_[i].value, true);
        out += '"';
    }
    const bool empty = element.firstChild == none && element.textBegin == element.textEnd;
    out += empty ? "/>" : ">";
}

std::string ExpatDocument::serialized() const {
    if (elements_.empty())
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
    const std::string_view text = text_;
    enter(elements_.front());
    while (!open.empty()) {
        Open& top = open.back();
        const bool child = top.nextChild != none;
        const Index until = child ? elements_[top.nextChild].textBegin : top.element->textEnd;
        appendEscaped(out, text.substr(top.written, until - top.written), false);
        if (child) {
            const Element& next = elements_[top.nextChild];
            top.written = next.textEnd;
            top.nextChild = next.nextSibling;
            enter(next);
        } else {
            out += "</" + names_[top.element->name] + ">";
            open.pop_back();
        }
    }
    out += '\n';
    return out;
}

void ExpatDocument::save(const std::string& path) {
    const std::string contents = serialized();
    const std::filesystem::path beside = pathOf(path + ".new");
    std::ofstream file(beside, std::ios::binary | std::ios::trunc);
    if (!file)
        fail(path, std::string("cannot be written: ") + std::strerror(errno));
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    std::error_code error;
    if (file.fail()) {
        std::filesystem::remove(beside, error);
        fail(path, "cannot be written to its end");
    }
    std::filesystem::rename(beside, pathOf(path), error);
    if (error) {
        const std::string reason = error.message();
        std::filesystem::remove(beside, error);
        fail(path, "cannot be written: " + reason);
    }
}

} // namespace velmorant
