#include <cstdio>
#include <cstdlib>

#include "extractor/ParseCommand.h"

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
    const auto environment = [](const std::string& name) -> std::optional<std::string> {
        const char* value = std::getenv(name.c_str());
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    };
    std::string errors;
    const int exitCode = velmorant::telemetry::runParse(arguments, environment, errors);
    std::fputs(errors.c_str(), stderr);
    return exitCode;
}
