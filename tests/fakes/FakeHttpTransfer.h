#pragma once

#include "ports/HttpTransfer.h"
#include "tests/fakes/IgnoringCase.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmorant::fakes {

/// A web server's answers by address. Nothing is answered before answer() is called.
class FakeHttpTransfer : public HttpTransfer {
  public:
    struct Answer {
        int code = 200;
        std::string body;
        /// Without "Content-Length" none is sent; the case of names does not matter.
        std::map<std::string, std::string, IgnoringCase> headers;
        bool refused = false; ///< error before any response
        bool breaks = false;  ///< error after the body
    };

    void setPort(int number) override { port = number; }
    void get(const std::string& url) override {
        requests.push_back(url);
        m_waiting = true;
    }
    void cancel() override {
        ++cancels;
        m_waiting = false;
        m_delivering = false;
    }
    std::string header(const std::string& name) const override {
        const auto found = m_answer.headers.find(name);
        return found == m_answer.headers.end() ? std::string() : found->second;
    }
    std::vector<std::byte> chunk(std::size_t size) override {
        const std::string piece = m_answer.body.substr(m_fetched, size);
        m_fetched += piece.size();
        sizes.push_back(size);
        std::vector<std::byte> bytes(piece.size());
        std::transform(piece.begin(), piece.end(), bytes.begin(),
                       [](char letter) { return static_cast<std::byte>(letter); });
        return bytes;
    }
    bool atEnd() const override { return !m_answer.breaks && m_fetched == m_answer.body.size(); }
    int responseCode() const override { return m_answer.code; }
    std::string responseText() const override { return m_answer.refused ? "refused" : "answered"; }
    void onStateChanged(std::function<void(TransferState)> listener) override {
        m_state = std::move(listener);
    }
    void onData(std::function<void()> listener) override { m_data = std::move(listener); }

    /// Answers the last request by `answers`, an unknown address by 404. False when none waits.
    bool answer() {
        if (!std::exchange(m_waiting, false))
            return false;
        const auto found = answers.find(requests.back());
        m_answer =
            found == answers.end() ? Answer{404, "no such file", {}, false, false} : found->second;
        m_fetched = 0;
        if (m_answer.refused) {
            m_state(TransferState::Error);
            return true;
        }
        m_delivering = true;
        m_state(TransferState::ResponseCompleted);
        const std::size_t request = requests.size();
        const auto goesOn = [&] { return m_delivering && requests.size() == request; };
        while (goesOn() && m_fetched < m_answer.body.size()) {
            ++dataEvents;
            m_data();
        }
        if (goesOn() && m_answer.breaks)
            m_state(TransferState::Error);
        else if (goesOn())
            m_data();
        return true;
    }

    /// A body with its length.
    static Answer body(const std::string& text) {
        return {200, text, {{"Content-Length", std::to_string(text.size())}}, false, false};
    }

    std::map<std::string, Answer> answers; ///< by address
    std::vector<std::string> requests;
    std::vector<std::size_t> sizes; ///< of the chunks asked for
    int port = 0;
    int cancels = 0;
    int dataEvents = 0; ///< with which data came

  private:
    Answer m_answer;
    std::size_t m_fetched = 0;
    bool m_waiting = false;
    bool m_delivering = false;
    std::function<void(TransferState)> m_state;
    std::function<void()> m_data;
};

} // namespace velmorant::fakes
