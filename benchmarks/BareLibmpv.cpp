#include "benchmarks/BareLibmpv.h"

#include "desktop/player/MpvHandle.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <mpv/render.h>
#include <sys/resource.h>

namespace velmorant {

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double bareProcessorShare(const std::string& recording, int width, int height, double seconds) {
    MpvHandle handle({{"vo", "libmpv"}, {"ao", "null"}, {"hwdec", "no"}, {"config", "no"}});
    mpv_render_context* context = nullptr;
    mpv_render_param creation[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&context, handle.get(), creation) < 0)
        throw std::runtime_error("libmpv cannot draw");
    handle.command({"loadfile", recording});
    std::array<int, 2> size = {width, height};
    std::size_t stride = (static_cast<std::size_t>(width) * 4 + 63) / 64 * 64;
    std::vector<std::uint8_t> memory(stride * static_cast<std::size_t>(height) + 64);
    void* start = memory.data();
    std::size_t space = memory.size();
    std::align(64, space - 64, start, space);
    char format[] = "bgr0";
    int no = 0;
    mpv_render_param drawing[] = {
        {MPV_RENDER_PARAM_SW_SIZE, size.data()},       {MPV_RENDER_PARAM_SW_FORMAT, format},
        {MPV_RENDER_PARAM_SW_STRIDE, &stride},         {MPV_RENDER_PARAM_SW_POINTER, start},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    const auto run = [&](double duration) {
        const auto end = std::chrono::steady_clock::now() +
                         std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                             std::chrono::duration<double>(duration));
        while (std::chrono::steady_clock::now() < end) {
            if (mpv_render_context_update(context) & MPV_RENDER_UPDATE_FRAME)
                mpv_render_context_render(context, drawing);
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        }
    };
    run(1);
    const double before = processorSeconds();
    run(seconds);
    const double share = (processorSeconds() - before) / seconds;
    mpv_render_context_free(context);
    return share;
}

} // namespace velmorant
