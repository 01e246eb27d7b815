#pragma once

#include "tests/builders/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <string>

namespace velmorant::builders {

/// A temporary folder that is looked at as a tree of files.
class ScratchFolder {
  public:
    std::string path(const std::string& name = {}) const {
        return name.empty() ? m_folder.path() : m_folder.file(name);
    }
    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        m_folder.write(name, text);
    }
    bool has(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path(name)));
    }
    std::string read(const std::string& name) const { return m_folder.read(name); }
    /// Every regular file and link below: relative name -> content.
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path())) {
            if (entry.is_directory() && !entry.is_symlink())
                continue;
            const std::string name = entry.path().lexically_relative(path()).string();
            all[name] = entry.is_symlink() ? "link" : read(name);
        }
        return all;
    }

  private:
    TemporaryFolder m_folder;
};

} // namespace velmorant::builders
