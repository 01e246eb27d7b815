#pragma once

#include "update/ProgramPath.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace velmorant {

class OwnedDescriptor;
class PendingFile;

enum class TreeLock { Taken, HeldByAnother };

/// The program folder as the update may change it: every path is walked from the folder's own
/// descriptor without following a link, so that whatever a catalogue says, and whatever lies in the
/// folder, nothing outside of it is created, opened or deleted.
///
/// A file is written beside its destination (ProgramPath's `besideEnding`), kept in a group with
/// others, and renamed by publish(). Every call throws StepError with path and reason.
class ProgramTree {
  public:
    explicit ProgramTree(std::string folder); ///< opened at the first use
    ~ProgramTree();
    ProgramTree(const ProgramTree&) = delete;
    ProgramTree& operator=(const ProgramTree&) = delete;

    /// Held until unlock() or the end of this object: two updates of one folder would write the
    /// same files beside.
    TreeLock lock();
    void unlock();

    /// A file to be written beside `path`, whose folders are made where they are missing. It gets
    /// the rights of the file that it will replace.
    std::unique_ptr<PendingFile> beginFile(const ProgramPath& path);
    /// Takes a complete file into the group. The group is published by itself when it is large.
    void add(std::unique_ptr<PendingFile> file);
    /// Syncs the files of the group, renames them over their destinations and syncs the folders.
    /// After an error those that were not renamed are dropped, and their destinations untouched.
    void publish();
    /// Writes and publishes one small file.
    void replaceFile(const ProgramPath& path, std::span<const std::byte> bytes);

    /// Absent when there is no such regular file. Throws when it is larger.
    std::optional<std::string> readFile(const ProgramPath& path, std::size_t largest) const;
    /// The SHA-256 of the file; absent when there is no such regular file.
    std::optional<std::string> digestOf(const ProgramPath& path) const;
    /// Makes `kept` name the file that `path` names now; an older `kept` is replaced.
    void keepBeside(const ProgramPath& path, const ProgramPath& kept);
    void copyRights(const ProgramPath& from, const ProgramPath& to);
    void renameFile(const ProgramPath& from, const ProgramPath& to);

    const std::string& folder() const { return m_folder; }

  private:
    /// Files that are published together.
    struct Group {
        std::vector<std::unique_ptr<PendingFile>> files;
        std::set<std::string> paths;
        std::map<std::string, std::shared_ptr<OwnedDescriptor>> folders; ///< by their paths
        std::uint64_t bytes = 0;
    };

    static void syncContents(const Group& group);
    static void syncFolders(const Group& group);
    static void syncDisks(const Group& group);
    std::shared_ptr<OwnedDescriptor> folderOf(const ProgramPath& path);
    /// Takes folders that got a new one into the group, to be synced with it.
    std::function<void(const std::string& where, OwnedDescriptor folder)> remember();

    std::string m_folder;
    Group m_group;
    int m_lock = -1;
};

/// A file that is being written beside its destination. Gone with this object unless it was handed
/// to ProgramTree::add().
class PendingFile {
  public:
    PendingFile(std::shared_ptr<OwnedDescriptor> folder, const ProgramPath& path,
                std::string where);
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    void write(std::span<const std::byte> bytes); ///< at the end
    std::uint64_t size() const { return m_size; }
    bool isNew() const { return m_isNew; } ///< it replaces nothing
    void makeExecutable();                 ///< for those who may read it

  private:
    friend class ProgramTree;

    void create();
    void startFlush(); ///< lets the disk begin
    void sync();       ///< returns when content and rights are on the disk
    void close();      ///< nothing is written any more
    void rename();     ///< over the destination

    std::shared_ptr<OwnedDescriptor> m_folder; ///< shared with the group's files beside it
    int m_file = -1;
    std::string m_name;
    std::string m_beside;
    std::string m_where; ///< the full path, for messages
    std::uint64_t m_size = 0;
    std::uint64_t m_flushed = 0;
    bool m_isNew = false;
    bool m_renamed = false;
};

} // namespace velmorant
