#pragma once

#include "common/StepError.h"
#include "ports/XmlDocument.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmorant::fakes {

/// The content of one document: records by element name, and single elements.
struct XmlContent {
    using Record = std::vector<std::pair<std::string, std::string>>;
    std::vector<std::pair<std::string, Record>> records;
    std::map<std::string, std::string> elements;
    std::map<std::string, std::string> rootAttributes;
    std::map<std::string, std::map<std::string, std::string>> elementAttributes; ///< by element
};

/// Documents by path; an unknown path cannot be loaded.
class FakeXmlDocument : public XmlDocument {
  public:
    void load(const std::string& path) override {
        content = {};
        selected.clear();
        ++loads;
        const auto document = documents.find(path);
        if (document == documents.end())
            throw StepError(path + ": line 1: not well-formed");
        content = document->second;
    }
    void loadText(const std::string& text) override { load(text); }
    void save(const std::string& path) override { documents[path] = content; }
    std::size_t selectElements(const std::string& name) override {
        selected.clear();
        for (const auto& [element, record] : content.records)
            if (element == name)
                selected.push_back(&record);
        return selected.size();
    }
    std::optional<std::string_view> childText(std::size_t index,
                                              std::string_view child) const override {
        if (index >= selected.size())
            return std::nullopt;
        for (const auto& [name, text] : *selected[index])
            if (name == child)
                return text;
        return std::nullopt;
    }
    std::optional<std::string> rootAttribute(const std::string& name) const override {
        const auto attribute = content.rootAttributes.find(name);
        if (attribute == content.rootAttributes.end())
            return std::nullopt;
        return attribute->second;
    }
    std::optional<std::string> elementAttribute(const std::string& name,
                                                const std::string& attribute) const override {
        const auto element = content.elementAttributes.find(name);
        if (element == content.elementAttributes.end() || !element->second.count(attribute))
            return std::nullopt;
        return element->second.at(attribute);
    }
    std::optional<std::string> elementText(const std::string& name) const override {
        const auto element = content.elements.find(name);
        if (element == content.elements.end())
            return std::nullopt;
        return element->second;
    }

    std::map<std::string, XmlContent> documents; ///< by path, or by text for loadText
    XmlContent content;
    std::vector<const XmlContent::Record*> selected;
    int loads = 0;
};

} // namespace velmorant::fakes
