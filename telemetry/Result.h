// The outcome of a step that can fail on bad input: the value, or an Error that names the place and
// the cause. Nothing in this library throws because of what a file holds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace velmorant::telemetry {

enum class ErrorKind {
    damaged,   // the file's structure or its telemetry cannot be used
    unreadable // the operating system refused to open or read the file
};

// What is wrong, in a word of its own: it stays when the wording of a reason changes, so that a
// reader can put it into words of another language.
enum class ReasonCode {
    damaged, // some part of the structure or of the telemetry; whatever has no code of its own
    empty,   // the file has no bytes
    notARecording, // the file is of another kind
    cutOff,        // the file's end is missing; the amount: seconds of the recording, 0 unknown
    unfinished,    // the movie header was never written
    noTelemetry,   // of a kind that is known
    frontTrack,    // nothing is wrong: the track is that of the front recording
    besideTrack,   // nothing is wrong: the track is from a file that the recorder did not write
    timeUp,        // the reading took longer than it may
    missing,       // there is no such file
    forbidden,     // the file may not be read
    unreadable,    // the system refused it for another reason
    diskFull,      // what was to be written has no room
    notWritten     // it could not be written for another reason
};

// Whether the reason tells of something wrong, and not only where a track comes from.
constexpr bool isFault(ReasonCode code) {
    return code != ReasonCode::frontTrack && code != ReasonCode::besideTrack;
}

// "cut-off" and the like.
std::string_view name(ReasonCode code);

struct Error {
    std::string file; // the path as it was given
    std::string box;  // path of boxes, for example "moov/trak[2]/mdia/minf/stbl/stsz"; may be empty
    std::uint64_t offset = 0; // byte offset in the file of what could not be read
    std::string reason;       // plain words, one line
    ErrorKind kind = ErrorKind::damaged;
    ReasonCode code = ReasonCode::damaged;
    std::int64_t amount = 0; // what the code counts; 0 where it counts nothing
};

// "FILE: BOX at byte OFFSET: REASON" on one line, whatever bytes the path holds.
std::string describe(const Error& error);

template <class T>
class Result {
  public:
    Result(T value) : state_(std::move(value)) {}
    Result(Error error) : state_(std::move(error)) {}

    bool ok() const { return state_.index() == 0; }
    explicit operator bool() const { return ok(); }
    const T& value() const { return std::get<0>(state_); }
    T& value() { return std::get<0>(state_); }
    const Error& error() const { return std::get<1>(state_); }

  private:
    std::variant<T, Error> state_;
};

} // namespace velmorant::telemetry
