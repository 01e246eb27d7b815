#pragma once

#include <unistd.h>
#include <utility>

namespace velmorant {

/// A file descriptor that is closed with its owner.
class OwnedDescriptor {
  public:
    explicit OwnedDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~OwnedDescriptor() { close(); }
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : m_descriptor(other.release()) {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    int get() const { return m_descriptor; }
    bool valid() const { return m_descriptor >= 0; }
    int release() { return std::exchange(m_descriptor, -1); }
    /// False when the system reports that not everything was written. Closed either way.
    bool close() { // NOLINT(modernize-use-nodiscard): the destructor cannot look
        const int descriptor = release();
        return descriptor < 0 || ::close(descriptor) == 0;
    }

  private:
    int m_descriptor;
};

} // namespace velmorant
