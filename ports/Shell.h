#pragma once

#include <optional>
#include <string>

namespace velmorant {

enum class ShowWindow { Hidden = 0, Normal = 1 };

/// How a program ended.
struct ProgramEnd {
    int exitCode = 0;     ///< what it gave back; 0 when it crashed
    bool crashed = false; ///< a signal ended it
    std::string words;    ///< what it wrote to its error output, the first 4 KiB

    bool failed() const { return crashed || exitCode != 0; }
};

/// Starting programs and opening addresses.
class Shell {
  public:
    virtual ~Shell() = default;
    /// Opens `file` with `verb` ("open"). `parameters` reaches the program as one argument, or none
    /// when empty. `folder` is its working folder; empty keeps the present one. Does not wait.
    /// A result below 33 is a failure. What is started hidden must be a program: it is never handed
    /// to the desktop.
    virtual int execute(const std::string& verb, const std::string& file,
                        const std::string& parameters, const std::string& folder,
                        ShowWindow show) = 0;
    /// Why the last execute() failed, in plain words.
    virtual std::string lastErrorDescription() const = 0;
    /// The end of the program that the last execute() started hidden; absent while it runs.
    virtual std::optional<ProgramEnd> lastProgramEnd() = 0;
    /// Ends the program that the last execute() started, when it still runs.
    virtual void stopLastProgram() = 0;
};

/// The shell's automation object: user folders and shortcuts.
class ShellObject {
  public:
    virtual ~ShellObject() = default;
    /// The desktop and programs-menu folders are read by the names of their registry values.
    /// Throws StepError for an unknown value.
    virtual std::string readRegistry(const std::string& valueName) const = 0;
    /// Throws StepError when the shortcut cannot be written.
    virtual void createShortcut(const std::string& path, const std::string& targetPath,
                                const std::string& workingDirectory) = 0;
};

} // namespace velmorant
