#include "app/PrivateProfile.h"

#include "app/ProfileText.h"
#include "common/textRules.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace velmorant {

namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;

class Descriptor {
  public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return m_descriptor; }
    bool valid() const { return m_descriptor >= 0; }
    bool close() {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

  private:
    int m_descriptor;
};

enum class Reading { Read, Missing, Failed };

Reading readWhole(const std::string& path, std::string& text) {
    // A pipe or a device of that name must not hold the program up.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
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

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

mode_t modeFor(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0)
        return status.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool replaceWhole(const std::string& path, std::string_view text) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    std::string pattern = path + ".XXXXXX";
    std::vector<char> beside(pattern.begin(), pattern.end());
    beside.push_back('\0');
    Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
    if (!file.valid())
        return false;
    const bool written = ::fchmod(file.get(), modeFor(path)) == 0 && writeAll(file.get(), text) &&
                         ::fsync(file.get()) == 0;
    if (!file.close() || !written || std::rename(beside.data(), path.c_str()) != 0) {
        ::unlink(beside.data());
        return false;
    }
    // The rename itself is on the disk only when its folder is.
    const Descriptor parent(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent.valid())
        ::fsync(parent.get());
    return true;
}

std::string resolved(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
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
    const std::string path = resolved(file);
    std::string text;
    const Reading reading = readWhole(path, text);
    if (reading == Reading::Failed)
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
    // A rename would also replace a file that its owner has protected.
    if (reading == Reading::Read && ::access(path.c_str(), W_OK) != 0)
        return false;
    return replaceWhole(path, changed);
}

} // namespace velmorant
