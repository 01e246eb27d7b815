#include "app/PrivateProfile.h"

#include "app/ProfileText.h"
#include "common/FileReplacement.h"
#include "common/OwnedDescriptor.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmorant {

namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;

enum class Reading { Read, Missing, Failed };

Reading readWhole(const std::string& path, std::string& text) {
    // A pipe or a device of that name must not hold the program up.
    const OwnedDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.valid())
        return errno == ENOENT ? Reading::Missing : Reading::Failed;
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return Reading::Failed;
    std::array<char, 4096> buffer{};
    while (text.size() <= largestFile) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Reading::Failed;
        if (count == 0)
            return Reading::Read;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return Reading::Failed;
}

std::string keyNames(const ProfileText& profile, const std::string& section, std::size_t size) {
    std::string names;
    for (const std::string& name : profile.keys(section))
        names += name + '\0';
    if (size >= 2 && names.size() > size - 1) {
        names.resize(size - 2);
        names += '\0';
    }
    return names + '\0';
}

} // namespace

std::string PrivateProfile::read(const std::string& file, const std::string& section,
                                 const std::optional<std::string>& key,
                                 const std::string& defaultValue, std::size_t size) const {
    if (size == 0)
        return {};
    std::string text;
    if (readWhole(file, text) != Reading::Read)
        text.clear();
    const ProfileText profile(text);
    if (!key)
        return keyNames(profile, section, size);
    return leftCharacters(profile.value(section, *key).value_or(defaultValue), size - 1) + '\0';
}

bool PrivateProfile::write(const std::string& file, const std::string& section,
                           const std::optional<std::string>& key,
                           const std::optional<std::string>& value) {
    std::string text;
    if (readWhole(file, text) == Reading::Failed)
        return false;
    ProfileText profile(text);
    if (!profile.isProfile())
        return false;
    if (!key)
        profile.removeSection(section);
    else if (!value)
        profile.removeKey(section, *key);
    else if (!profile.setValue(section, *key, *value))
        return false;
    const std::string changed = profile.text();
    if (changed == text)
        return true;
    return trapErrors(m_errors, [&] { replaceFile(file, changed); }) == StepOutcome::Done;
}

} // namespace velmorant
