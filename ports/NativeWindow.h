#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace velmorant {

/// A window message on its way through a window procedure. `record` points to the message's own
/// structure, or is null.
struct WindowMessage {
    std::uint32_t message = 0;
    std::uintptr_t wParam = 0;
    std::byte* record = nullptr;
};

using WindowProcedure = std::function<std::intptr_t(const WindowMessage&)>;

/// The frame's native side: its window procedure and its system menu.
class NativeWindow {
  public:
    virtual ~NativeWindow() = default;
    virtual WindowProcedure windowProcedure() const = 0;
    virtual void setWindowProcedure(WindowProcedure procedure) = 0;
    virtual int systemMenuItemCount() const = 0;
    virtual void deleteSystemMenuItem(int position) = 0; ///< 0-based, by position
};

} // namespace velmorant
