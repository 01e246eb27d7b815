#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmorant {

/// The SHA-256 digest of bytes that come piece by piece.
class Sha256 {
  public:
    Sha256(); ///< throws StepError when the library refuses
    ~Sha256();
    Sha256(Sha256&&) noexcept;
    Sha256& operator=(Sha256&&) noexcept;

    void add(std::span<const std::byte> bytes);
    /// 64 lower-case hexadecimal digits; nothing may be added afterwards.
    std::string hexDigits();

    static std::string of(std::string_view bytes);

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace velmorant
