#pragma once

#include "common/ErrorLog.h"

#include <chrono>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmorant {

/// How much a line of the journal matters; a level takes in those before it.
enum class JournalLevel { Error, Warning, Info, Debug };

/// "error", "warning", "info" or "debug" in any case; absent for any other word.
std::optional<JournalLevel> journalLevelNamed(std::string_view word);

/// Logs what the program does, for those who investigate a problem or drive the program from
/// outside. Without a file it writes nothing.
///
/// A line is "TIME LEVEL TEXT\n": TIME as 2026-12-31T23:59:59.999Z, UTC, of the moment of writing;
/// LEVEL one of the four words, lower case; TEXT UTF-8, whose control characters are written as
/// "\n", "\r", "\t" or "\xHH" and whose "\" as "\\", and which is cut after 4000 bytes with "...".
class Journal : public ErrorLog {
  public:
    using Now = std::function<std::chrono::system_clock::time_point()>;

    /// Appends to the file; an empty path, or one that cannot be written, keeps no journal.
    explicit Journal(const std::string& path, JournalLevel most = JournalLevel::Info,
                     Now now = std::chrono::system_clock::now);

    void write(std::string_view text) { write(JournalLevel::Info, text); }
    void write(JournalLevel level, std::string_view text);
    /// A warning: "passed over in FUNCTION (FILE:LINE): WHAT".
    void passedOver(std::string_view what, const SourcePlace& where) override;

  private:
    std::ofstream m_file;
    JournalLevel m_most;
    Now m_now;
};

} // namespace velmorant
