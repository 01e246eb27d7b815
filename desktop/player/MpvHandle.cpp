#include "desktop/player/MpvHandle.h"

#include "common/StepError.h"

#include <clocale>

namespace velmorant {

namespace {

/// What libmpv brings along to run in threads of its own: on-screen displays, a console, profiles
/// and a downloader, none of which this program uses. The threads read the environment, which the
/// browser may change meanwhile. A libmpv without a script language, or of another age, has fewer
/// of them or more.
constexpr const char* builtInScripts[] = {
    "load-scripts",     "osc",         "ytdl",          "load-stats-overlay", "load-osd-console",
    "load-console",     "load-select", "load-commands", "load-auto-profiles", "load-positioning",
    "load-context-menu"};

} // namespace

MpvHandle::MpvHandle(const Options& options) {
    std::setlocale(LC_NUMERIC, "C");
    m_handle = mpv_create();
    if (!m_handle)
        throw StepError("libmpv cannot be created");
    for (const auto& [name, value] : options) {
        const int status = mpv_set_option_string(m_handle, name, value);
        if (status < 0) {
            mpv_terminate_destroy(m_handle);
            throw StepError(std::string("libmpv refuses the option ") + name + "=" + value + ": " +
                            mpv_error_string(status));
        }
    }
    for (const char* script : builtInScripts)
        mpv_set_option_string(m_handle, script, "no");
    const int status = mpv_initialize(m_handle);
    if (status < 0) {
        mpv_terminate_destroy(m_handle);
        throw StepError(std::string("libmpv cannot be started: ") + mpv_error_string(status));
    }
}

MpvHandle::~MpvHandle() {
    mpv_terminate_destroy(m_handle);
}

void MpvHandle::command(const std::vector<std::string>& words, std::uint64_t reply) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    mpv_command_async(m_handle, reply, arguments.data());
}

void MpvHandle::setFlag(const char* property, bool value) {
    int flag = value ? 1 : 0;
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvHandle::setNumber(const char* property, double value) {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvHandle::setText(const char* property, const char* value) {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_STRING, &value);
}

} // namespace velmorant
