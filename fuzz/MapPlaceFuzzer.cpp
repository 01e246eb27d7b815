#include "common/StepError.h"
#include "track/frmMediaCtrl.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmorant;
    const std::string value(reinterpret_cast<const char*>(data), size);
    if (!PickedPlace::isPending(value))
        return 0;
    try {
        PickedPlace::read(value);
    } catch (const StepError&) {
        // a refusal with its reason
    }
    return 0;
}
