#include "app/IniFile.h"

#include <cstddef>
#include <optional>

namespace velmorant {

namespace {

constexpr std::size_t valueBuffer = 255;
constexpr std::size_t keysBuffer = 32767;

IniFileWrite result(bool written) {
    return written ? IniFileWrite::Kept : IniFileWrite::NotKept;
}

std::string withoutBlanksAround(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

IniFile::IniFile(ProfileFunctions& profile) : m_profile(profile) {}

void IniFile::open(const std::string& path, const std::string& section) {
    m_path = path;
    m_section = section;
}

void IniFile::setSection(const std::string& name) {
    m_section = name;
}

std::string IniFile::readKey(const std::string& key) const {
    const std::string buffer = m_profile.read(m_path, m_section, key, "", valueBuffer);
    const std::size_t end = buffer.find('\0');
    return end == std::string::npos ? withoutBlanksAround(buffer) : buffer.substr(0, end);
}

IniFileWrite IniFile::writeKey(const std::string& key, const std::string& value) {
    return result(m_profile.write(m_path, m_section, key, value));
}

IniFileWrite IniFile::deleteKey(const std::string& key) {
    return result(m_profile.write(m_path, m_section, key, std::nullopt));
}

IniFileWrite IniFile::deleteSection() {
    return result(m_profile.write(m_path, m_section, std::nullopt, std::nullopt));
}

std::vector<std::string> IniFile::listKeys() const {
    const std::string buffer = m_profile.read(m_path, m_section, std::nullopt, "", keysBuffer);
    std::vector<std::string> keys;
    std::size_t start = 0;
    while (start < buffer.size() && buffer[start] != '\0') {
        const std::size_t end = buffer.find('\0', start);
        keys.push_back(buffer.substr(start, end - start));
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    return keys;
}

IniFileWrite IniFile::stampVersion(const std::string& section) {
    return result(m_profile.write(m_path, section, "version", "1.0"));
}

} // namespace velmorant
