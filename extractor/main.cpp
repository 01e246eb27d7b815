#include <cstdlib>
#include <iostream>

#include "extractor/ParseCommand.h"

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
    const auto environment = [](const std::string& name) -> std::optional<std::string> {
        const char* value = std::getenv(name.c_str());
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    };
    return velmorant::telemetry::runParse(arguments, environment, std::cerr);
}
