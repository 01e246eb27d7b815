#pragma once

#include "common/ErrorLog.h"
#include "ports/ProfileFunctions.h"

namespace velmorant {

/// The profile functions on any POSIX host. A file is the text that ProfileText describes, at most
/// 1 MiB; every call reads it afresh. A write goes into a file beside, is flushed to the disk and
/// renamed, so that the file is whole at every moment; its permissions and a symbolic link to it
/// stay. A folder that is missing is not made: the write fails.
class PrivateProfile : public ProfileFunctions {
  public:
    /// The log, if any, records why a write failed.
    explicit PrivateProfile(ErrorLog* errors = nullptr) : m_errors(errors) {}
    std::string read(const std::string& file, const std::string& section,
                     const std::optional<std::string>& key, const std::string& defaultValue,
                     std::size_t size) const override;
    bool write(const std::string& file, const std::string& section,
               const std::optional<std::string>& key,
               const std::optional<std::string>& value) override;

  private:
    ErrorLog* m_errors;
};

} // namespace velmorant
