#pragma once

#include "desktop/gate/HandlerGate.h"
#include "ports/MessageBox.h"

namespace velmorant {

/// Message boxes over the window that is active.
class QtMessageBox : public MessageBox {
  public:
    /// The label of a button in the present language.
    using ButtonText = std::function<std::string(MessageAnswer)>;

    QtMessageBox(HandlerGate& gate, ButtonText buttonText);
    MessageAnswer show(const std::string& text, const std::string& title,
                       MessageStyle style) override;

  private:
    HandlerGate& m_gate;
    ButtonText m_buttonText;
};

} // namespace velmorant
