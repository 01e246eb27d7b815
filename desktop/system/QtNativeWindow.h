#pragma once

#include "ports/NativeWindow.h"
#include <QPointer>
#include <QWidget>
#include <vector>

namespace velmorant {

/// The native side of a frame on a toolkit that has no window procedures: the question for the
/// window's size limits is put as message 0x24 with its 40-byte record, and the answer applied to
/// the widget. The record is five points of two 32-bit integers: reserved, maximised size,
/// maximised position, least and greatest tracking size.
class QtNativeWindow : public NativeWindow {
  public:
    enum class MenuItem { Restore, Move, Size, Minimize, Maximize, Separator, Close };

    /// The widget is not owned.
    explicit QtNativeWindow(QWidget& window);
    WindowProcedure windowProcedure() const override { return m_procedure; }
    /// Asks for the size limits again.
    void setWindowProcedure(WindowProcedure procedure) override;
    int systemMenuItemCount() const override { return static_cast<int>(m_menu.size()); }
    /// A position outside the menu changes nothing.
    void deleteSystemMenuItem(int position) override;

    /// Sends message 0x24 and applies the greatest tracking size of the answer.
    void askSizeLimits();
    const std::vector<MenuItem>& systemMenu() const { return m_menu; }

  private:
    QPointer<QWidget> m_window;
    WindowProcedure m_procedure;
    std::vector<MenuItem> m_menu;
};

} // namespace velmorant
