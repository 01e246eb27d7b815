#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace velmorant::builders {

/// A folder of this disk for one test, removed with it.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "velmorant-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no scratch folder");
        m_path = name;
    }
    ~ScratchFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path(const std::string& name = {}) const {
        return name.empty() ? m_path.string() : (m_path / name).string();
    }
    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
    }
    bool has(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(m_path / name));
    }
    std::string read(const std::string& name) const {
        std::ifstream file(m_path / name, std::ios::binary);
        return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "unreadable";
    }
    /// Every regular file and link below: relative name -> content.
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_path)) {
            if (entry.is_directory() && !entry.is_symlink())
                continue;
            const std::string name = entry.path().lexically_relative(m_path).string();
            all[name] = entry.is_symlink() ? "link" : read(name);
        }
        return all;
    }

  private:
    std::filesystem::path m_path;
};

} // namespace velmorant::builders
