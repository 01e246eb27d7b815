#pragma once

#include "ports/MessageBox.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace velmorant::fakes {

struct ShownMessage {
    std::string text;
    std::string title;
    MessageStyle style;
    bool operator==(const ShownMessage&) const = default;
};

/// Records the boxes. A Yes/No box takes the next of `answers` and fails the test without one.
class FakeMessageBox : public MessageBox {
  public:
    MessageAnswer show(const std::string& text, const std::string& title,
                       MessageStyle style) override {
        shown.push_back({text, title, style});
        if (style != MessageStyle::Question && style != MessageStyle::InformationChoice)
            return MessageAnswer::Ok;
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected question: " << text;
            return MessageAnswer::No;
        }
        const MessageAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<ShownMessage> shown;
    std::deque<MessageAnswer> answers;
};

} // namespace velmorant::fakes
