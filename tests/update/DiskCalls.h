#pragma once

#include <string>
#include <vector>

namespace velmorant {

/// What this program asks of the disk, in order: "sync NAME" for a file or folder, "sync disk" for
/// all of it, "rename NAME". Recorded while an object lives; the calls go on to the system.
class DiskCalls {
  public:
    DiskCalls();
    ~DiskCalls();
    DiskCalls(const DiskCalls&) = delete;
    DiskCalls& operator=(const DiskCalls&) = delete;

    std::vector<std::string> calls;
    std::string fails; ///< the call that fails as on a broken disk
};

} // namespace velmorant
