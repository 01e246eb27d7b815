#include "telemetry/ByteSource.h"

#include <cerrno>
#include <cstdio>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace velmorant::telemetry {

namespace {

Error unreadable(const std::string& path, const std::string& reason, ReasonCode code) {
    return {path, {}, 0, reason, ErrorKind::unreadable, code};
}

Error cannotBeOpened(const std::string& path, int cause) {
    const bool missing = cause == ENOENT || cause == ENOTDIR;
    const bool forbidden = cause == EACCES || cause == EPERM;
    return unreadable(path, std::string("cannot be opened: ") + std::strerror(cause),
                      missing     ? ReasonCode::missing
                      : forbidden ? ReasonCode::forbidden
                                  : ReasonCode::unreadable);
}

#ifndef _WIN32

class FileSource final : public ByteSource {
  public:
    FileSource(std::string name, int descriptor, std::uint64_t size)
        : name_(std::move(name)), descriptor_(descriptor), size_(size) {}
    ~FileSource() override { ::close(descriptor_); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return size_; }

    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        std::size_t done = 0;
        while (done < into.size()) {
            const auto got = ::pread(descriptor_, into.data() + done, into.size() - done,
                                     static_cast<off_t>(offset + done));
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got <= 0) {
                break;
            }
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

    void announce(std::uint64_t offset, std::uint64_t length) override {
        ::posix_fadvise(descriptor_, static_cast<off_t>(offset), static_cast<off_t>(length),
                        POSIX_FADV_WILLNEED);
    }

  private:
    std::string name_;
    int descriptor_;
    std::uint64_t size_;
};

} // namespace

Result<std::unique_ptr<ByteSource>> openFile(const std::string& path) {
    // Without O_NONBLOCK a named pipe would hold the program until somebody writes to it.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
    int descriptor = -1;
#ifdef O_NOATIME
    // Reading should write nothing to a memory card; the system allows that to the file's owner.
    descriptor = ::open(path.c_str(), flags | O_NOATIME);
#endif
    if (descriptor < 0) {
        descriptor = ::open(path.c_str(), flags);
    }
    if (descriptor < 0) {
        return cannotBeOpened(path, errno);
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return unreadable(path, "is not a regular file", ReasonCode::notARecording);
    }
    // The reader takes a few bytes here and there; the kernel's read-ahead would fetch megabytes of
    // picture around each of them.
    ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_RANDOM);
    return std::unique_ptr<ByteSource>(
        new FileSource(path, descriptor, static_cast<std::uint64_t>(status.st_size)));
}

#else

class FileSource final : public ByteSource {
  public:
    FileSource(std::string name, std::FILE* file, std::uint64_t size)
        : name_(std::move(name)), file_(file), size_(size) {}
    ~FileSource() override { std::fclose(file_); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return size_; }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        if (_fseeki64(file_, static_cast<long long>(offset), SEEK_SET) != 0) {
            return 0;
        }
        return std::fread(into.data(), 1, into.size(), file_);
    }
    void announce(std::uint64_t, std::uint64_t) override {}

  private:
    std::string name_;
    std::FILE* file_;
    std::uint64_t size_;
};

} // namespace

Result<std::unique_ptr<ByteSource>> openFile(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return cannotBeOpened(path, errno);
    }
    _fseeki64(file, 0, SEEK_END);
    const long long size = _ftelli64(file);
    return std::unique_ptr<ByteSource>(
        new FileSource(path, file, size < 0 ? 0 : static_cast<std::uint64_t>(size)));
}

#endif

} // namespace velmorant::telemetry
