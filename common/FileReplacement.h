#pragma once

#include "common/OwnedDescriptor.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velmorant {

/// A file that is written beside its name and takes the name when it is whole and on the disk, so
/// that a reader finds the old file or the new one and never half of one. Without commit() nothing
/// of it remains. A link is followed; what replaces a file keeps its rights. What is no regular
/// file, or is protected from writing, is refused. Every call throws StepError with path and
/// reason.
///
/// Beside: "NAME.part-" and six letters, in the same folder; a killed program may leave it.
class FileReplacement {
  public:
    enum class Access { Usual, OwnerAlone }; ///< of a new file: as the user's mask says, or 0600

    explicit FileReplacement(const std::string& path, Access access = Access::Usual);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    void write(std::string_view bytes);
    void setMode(std::uint32_t mode); ///< permission bits, for example 0755
    void commit();

  private:
    void create(Access access);
    [[noreturn]] void fail() const; ///< with the reason in errno
    [[noreturn]] void fail(const std::string& reason) const;

    std::string m_path; ///< the file that is replaced, links followed
    std::string m_beside;
    OwnedDescriptor m_file;
};

/// Replaces the file `path` by one of these bytes.
void replaceFile(const std::string& path, std::string_view bytes);

} // namespace velmorant
