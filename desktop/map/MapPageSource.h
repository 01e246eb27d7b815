#pragma once

#include "desktop/gate/GatedListener.h"

#include <functional>
#include <optional>
#include <string>

namespace velmorant {

/// Takes the answer to a command; absent: there is no such command. Only the first call counts.
using MapPageAnswer = std::function<void(std::optional<std::string>)>;

/// What the program answers to the map page beside its files. An empty function or an absent answer
/// means "not found". Answers are JSON texts in UTF-8. The two questions are asked in the GUI
/// thread, at any time, and so must change nothing; a command waits for its turn.
struct MapPageSource {
    std::function<std::optional<std::string>()> configuration; ///< config.json
    /// track/7.json: a recording by its number.
    std::function<std::optional<std::string>(long number)> track;
    /// command/NAME?QUERY, for example "whole-window" and "on=1".
    GatedListener<std::string, std::string, MapPageAnswer> command;
};

} // namespace velmorant
