#pragma once

#include <string>
#include <vector>

namespace velmorant::builders {

struct BuiltEntry {
    std::string local;
    std::string remote;
    std::string version;
    std::string sha256{};
};

/// The text of a catalogue; "mainall" is the number of entries unless `count` says otherwise.
inline std::string catalogueText(const std::string& mainVersion,
                                 const std::vector<BuiltEntry>& entries,
                                 const std::string& count = {}) {
    std::string text = "[config]\r\nmainv=" + mainVersion +
                       "\r\nmainall=" + (count.empty() ? std::to_string(entries.size()) : count) +
                       "\r\n";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        text += "[NO" + std::to_string(i) + "]\r\nLOCAL=" + entries[i].local +
                "\r\nREMOTE=" + entries[i].remote + "\r\nVERSION=" + entries[i].version + "\r\n";
        if (!entries[i].sha256.empty())
            text += "SHA256=" + entries[i].sha256 + "\r\n";
    }
    return text;
}

} // namespace velmorant::builders
