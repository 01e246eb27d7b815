#include "app/ProfileText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using velmorant::ProfileText;

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

// The first half of the input is a file, the second half a value to write into it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view text = input.substr(0, size / 2);
    const std::string value(input.substr(size / 2));

    ProfileText profile(text);
    require(profile.text() == text);
    const auto other = profile.value("other", "key");
    if (profile.setValue("config", "mainv", value)) {
        const ProfileText written(profile.text());
        require(written.value("config", "mainv") == value);
        require(written.value("other", "key") == other);
        require(written.isProfile() || !ProfileText(text).isProfile());
    } else {
        require(profile.text() == text);
    }
    profile.removeKey("config", "mainv");
    profile.removeSection("config");
    require(ProfileText(profile.text()).value("other", "key") == other);
    return 0;
}
