#include "common/StepError.h"
#include "xml/ExpatDocument.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// Any text is read or refused; what was read answers all questions within its own bounds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmorant::ExpatDocument document;
    try {
        document.loadText(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const velmorant::StepError&) {
        if (document.selectElements("gpsinfo") != 0)
            std::abort();
        return 0;
    }
    const std::size_t count = document.selectElements("gpsinfo");
    std::size_t ends = 0;
    for (std::size_t i = 0; i <= count; ++i)
        for (const char* name : {"Latitude", "gpsinfo", "Speed", ""})
            for (const char c : document.childText(i, name).value_or(""))
                ends += c == '\n' ? 1 : 0;
    if (ends > 0 && std::find(data, data + size, '\n') == data + size &&
        std::find(data, data + size, '\r') == data + size &&
        std::find(data, data + size, '&') == data + size)
        std::abort();
    return 0;
}
