#pragma once

#include "ports/Shell.h"

#include <functional>
#include <string>
#include <vector>

namespace velmorant::fakes {

struct ShellCall {
    std::string verb;
    std::string file;
    std::string parameters;
    std::string folder;
    ShowWindow show;
    bool operator==(const ShellCall&) const = default;
};

/// Records what was started; `whenStarted` plays the program.
class FakeShell : public Shell {
  public:
    int execute(const std::string& verb, const std::string& file, const std::string& parameters,
                const std::string& folder, ShowWindow show) override {
        calls.push_back({verb, file, parameters, folder, show});
        end.reset();
        if (result >= 33 && whenStarted)
            whenStarted(calls.back());
        return result;
    }
    std::string lastErrorDescription() const override { return errorDescription; }
    std::optional<ProgramEnd> lastProgramEnd() override { return end; }
    void stopLastProgram() override { ++programsStopped; }

    int result = 42;
    std::string errorDescription = "File not found";
    std::optional<ProgramEnd> end; ///< the program still runs until a test says how it ended
    int programsStopped = 0;
    std::vector<ShellCall> calls;
    std::function<void(const ShellCall&)> whenStarted;
};

} // namespace velmorant::fakes
