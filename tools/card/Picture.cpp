#include "tools/card/Picture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "telemetry/UtcTime.h"

namespace velmorant::recordings {

namespace {

std::optional<std::string> run(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child < 0) {
        return std::string("cannot start ffmpeg: ") + std::strerror(errno);
    }
    if (child == 0) {
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
        return "ffmpeg is not installed";
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return "ffmpeg could not make the picture";
    }
    return std::nullopt;
}

std::string isoTime(std::int64_t seconds) {
    const auto time = telemetry::civilFromMilliseconds(seconds * 1000);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", time.year, time.month,
                  time.day, time.hour, time.minute, static_cast<int>(time.second));
    return text;
}

/// A moving test picture with the text of `clock` in it, and a tone that beeps.
std::vector<std::string> encoding(const PicturePlan& plan, const std::string& clock,
                                  const std::string& path) {
    const std::string length = std::to_string(plan.seconds);
    const std::string picture =
        "testsrc2=size=" + plan.size + ":rate=" + std::to_string(plan.rate) + ":duration=" + length;
    const std::string sound =
        "sine=frequency=220:beep_factor=4:sample_rate=44100:duration=" + length;
    const std::string text = "drawtext=textfile=" + clock +
                             ":fontsize=h/14:fontcolor=white:box=1:boxcolor=black@0.7:"
                             "boxborderw=8:x=(w-tw)/2:y=h-th-20";
    const std::string created = "creation_time=" + isoTime(plan.start);
    std::vector<std::string> command;
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"ffmpeg", "-nostdin", "-v", "error", "-y"},
             {"-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", sound},
             {"-vf", text, "-c:v", "libx264", "-preset", "ultrafast", "-crf", "30", "-g", "25"},
             {"-pix_fmt", "yuv420p", "-c:a", "aac", "-b:a", "64k"},
             {"-metadata", created, "-f", "mp4", path}})
        command.insert(command.end(), words.begin(), words.end());
    return command;
}

} // namespace

std::optional<std::string> encodePicture(const PicturePlan& plan, const std::string& path) {
    // The clock's format stands in a file: on the command line it would need three layers of
    // escapes.
    const std::string clock = path + ".clock";
    std::ofstream(clock) << "%{pts:gmtime:" << plan.start << ":%Y-%m-%d %H\\:%M\\:%S} UTC";
    const auto problem = run(encoding(plan, clock, path));
    std::remove(clock.c_str());
    return problem;
}

} // namespace velmorant::recordings
