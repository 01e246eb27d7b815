#pragma once

#include <string>

namespace velmorant {

/// Buttons and icon of a message box; the values are the ones of the classic message box flags.
enum class MessageStyle {
    Stop = 16,             ///< OK, stop icon
    Question = 36,         ///< Yes and No, question icon
    Information = 64,      ///< OK, information icon
    InformationChoice = 68 ///< Yes and No, information icon
};

enum class MessageAnswer { Ok, Yes, No };

/// Modal message boxes.
class MessageBox {
  public:
    virtual ~MessageBox() = default;
    /// Returns when the user has answered. Closing a Yes/No box counts as No.
    virtual MessageAnswer show(const std::string& text, const std::string& title,
                               MessageStyle style) = 0;
};

} // namespace velmorant
