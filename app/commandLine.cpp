#include "app/commandLine.h"

#include "common/textRules.h"

#include <utility>

namespace velmorant {

std::vector<std::string> splitArguments(std::string_view commandLine, std::size_t maximumCount) {
    std::vector<std::string> arguments;
    for (std::string& part : split(commandLine, '*')) {
        if (!part.empty() && arguments.size() < maximumCount)
            arguments.push_back(std::move(part));
    }
    return arguments;
}

std::string joinArguments(const std::vector<std::string>& arguments) {
    std::string commandLine;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        commandLine += (i == 0 ? "" : " ") + arguments[i];
    return commandLine;
}

} // namespace velmorant
