#pragma once

#include "ports/FileDialogs.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Records the dialogs and answers them from queues; an unexpected dialog fails the test.
class FakeFileDialogs : public FileDialogs {
  public:
    std::string openFiles(const OpenFilesRequest& request) override {
        openRequests.push_back(request);
        return next(openAnswers, request.title);
    }
    std::string saveFile(const SaveFileRequest& request) override {
        saveRequests.push_back(request);
        return next(saveAnswers, request.title);
    }

    std::deque<std::string> openAnswers; ///< raw NUL-separated results; "" cancels
    std::deque<std::string> saveAnswers;
    std::vector<OpenFilesRequest> openRequests;
    std::vector<SaveFileRequest> saveRequests;

  private:
    static std::string next(std::deque<std::string>& answers, const std::string& title) {
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected dialog: " << title;
            return {};
        }
        const std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

} // namespace velmorant::fakes
