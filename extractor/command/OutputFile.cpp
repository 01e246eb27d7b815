#include "extractor/command/OutputFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "extractor/command/RecordingList.h"
#include "telemetry/Siblings.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

std::string reasonOf(int number) {
    return std::strerror(number);
}

// The file that a chain of links leads to, whether it exists or not.
std::string behindLinks(const std::string& path) {
    fs::path target(path);
    constexpr int longestChain = 40; // as long as the system follows one
    std::error_code error;
    for (int i = 0; i < longestChain && fs::is_symlink(fs::symlink_status(target, error)); ++i) {
        const fs::path next = fs::read_symlink(target, error);
        if (error) {
            break;
        }
        target = next.is_absolute() ? next : target.parent_path() / next;
    }
    return target.string();
}

bool isStandardOutput(const struct stat& status) {
    struct stat standard {};
    return ::fstat(STDOUT_FILENO, &standard) == 0 && standard.st_dev == status.st_dev &&
           standard.st_ino == status.st_ino;
}

void syncFolderOf(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    const int descriptor =
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor); // some file systems refuse it for folders; the file itself is safe
        ::close(descriptor);
    }
}

} // namespace

// Keeps the number of the first failure, which a stream of the standard library forgets.
class OutputFile::Buffer final : public std::streambuf {
  public:
    explicit Buffer(int descriptor) : descriptor_(descriptor) {
        setp(bytes_.data(), bytes_.data() + bytes_.size());
    }
    ~Buffer() override {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    int problem() const { return problem_; }
    // Returns the number of the first failure, 0 where all went well.
    int close(bool syncFirst) {
        if (sync() == 0 && syncFirst && ::fsync(descriptor_) != 0) {
            failed();
        }
        if (::close(descriptor_) != 0) {
            failed();
        }
        descriptor_ = -1;
        return problem_;
    }

  protected:
    int overflow(int character) override {
        if (sync() != 0) {
            return traits_type::eof();
        }
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(character);
            pbump(1);
        }
        return traits_type::not_eof(character);
    }
    int sync() override {
        const char* at = pbase();
        while (problem_ == 0 && at < pptr()) {
            const ssize_t written = ::write(descriptor_, at, static_cast<std::size_t>(pptr() - at));
            if (written >= 0) {
                at += written;
            } else if (errno != EINTR) {
                failed();
            }
        }
        setp(bytes_.data(), bytes_.data() + bytes_.size());
        return problem_ == 0 ? 0 : -1;
    }

  private:
    void failed() {
        if (problem_ == 0) {
            problem_ = errno;
        }
    }

    int descriptor_;
    int problem_ = 0;
    std::array<char, 65536> bytes_{};
};

std::optional<std::string> outputRefused(const std::string& path) {
    struct stat status {};
    if (path.empty() || path == "-" || ::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    if (S_ISBLK(status.st_mode)) {
        return "is a disk";
    }
    if (!S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    const std::string target = behindLinks(path);
    if (holdsRecording(path) || holdsRecording(target)) {
        return "is a recording";
    }
    if (isTrackFileName(path) || isTrackFileName(target)) {
        return "may hold the track of a recording";
    }
    return std::nullopt;
}

OutputFile::OutputFile(UnfinishedFiles& unfinished, std::ostream& standard)
    : unfinished_(unfinished), standard_(standard) {}

OutputFile::~OutputFile() {
    if (!beside_.empty()) {
        unfinished_.discard(beside_);
    }
}

std::optional<std::string> OutputFile::open(const std::string& path) {
    if (path.empty() || path == "-") {
        return std::nullopt;
    }
    if (auto refused = outputRefused(path)) {
        return refused;
    }
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return openBeside(behindLinks(path));
    }
    if (isStandardOutput(status)) {
        return std::nullopt; // /dev/stdout by any name; renaming would cut the caller's end off
    }
    if (S_ISREG(status.st_mode)) {
        if (auto problem = openBeside(behindLinks(path))) {
            return problem;
        }
        // Best effort: a card's file system has no rights to keep.
        (void)::chmod(beside_.c_str(), status.st_mode & 07777);
        return std::nullopt;
    }
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        return reasonOf(errno);
    }
    buffer_ = std::make_unique<Buffer>(descriptor);
    stream_ = std::make_unique<std::ostream>(buffer_.get());
    return std::nullopt;
}

std::optional<std::string> OutputFile::openBeside(const std::string& target) {
    auto begun = unfinished_.begin(target);
    if (begun.descriptor < 0) {
        return reasonOf(errno);
    }
    target_ = target;
    beside_ = std::move(begun.name);
    buffer_ = std::make_unique<Buffer>(begun.descriptor);
    stream_ = std::make_unique<std::ostream>(buffer_.get());
    return std::nullopt;
}

std::ostream& OutputFile::stream() {
    return stream_ ? *stream_ : standard_;
}

bool OutputFile::good() {
    return stream().good();
}

std::optional<std::string> OutputFile::close() {
    if (!buffer_) {
        return standard_.flush() ? std::nullopt : std::optional<std::string>("the end is closed");
    }
    const int number = buffer_->close(!target_.empty());
    stream_.reset();
    buffer_.reset();
    const std::string beside = std::exchange(beside_, {});
    const std::string target = std::exchange(target_, {});
    if (number != 0) {
        unfinished_.discard(beside);
        return reasonOf(number);
    }
    if (target.empty()) {
        return std::nullopt;
    }
    auto problem = unfinished_.finish(beside, target);
    if (!problem) {
        syncFolderOf(target);
    }
    return problem;
}

} // namespace velmorant::telemetry
