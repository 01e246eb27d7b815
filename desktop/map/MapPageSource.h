#pragma once

#include <functional>
#include <optional>
#include <string>

namespace velmorant {

/// What the program answers to the map page beside its files. An empty function, and an absent
/// answer, is "not found". Answers are JSON texts in UTF-8; they are asked for in the GUI thread,
/// at any time.
struct MapPageSource {
    std::function<std::optional<std::string>()> configuration; ///< config.json
    /// track/7.json: a recording by its number.
    std::function<std::optional<std::string>(long number)> track;
    /// command/NAME?QUERY, for example "whole-window" and "on=1".
    std::function<std::optional<std::string>(const std::string& name, const std::string& query)>
        command;
};

} // namespace velmorant
