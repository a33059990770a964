#include "support/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <vector>

namespace ostrelle {
namespace {

std::string describe(const std::string& what, int error) {
    return what + ": " + std::strerror(error);
}

// A temporary file for `target` is ".<name>.XXXXXX" beside it, as mkstemp fills it in.
std::string temporaryPrefix(const std::filesystem::path& target) {
    return "." + target.filename().string() + ".";
}
constexpr std::size_t temporarySuffixLength = 6;

// Closes the descriptor and removes the temporary file unless the rename took it over.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::filesystem::path& target) {
        const std::string hidden = temporaryPrefix(target) + std::string(temporarySuffixLength, 'X');
        const std::string pattern = (target.parent_path() / hidden).string();
        name_.assign(pattern.begin(), pattern.end());
        name_.push_back('\0');
        fd_ = ::mkstemp(name_.data());
    }
    ~TemporaryFile() {
        if (fd_ >= 0) ::close(fd_);
        if (!committed_ && !name_.empty()) ::unlink(name_.data());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    const char* name() const { return name_.data(); }
    int closeNow() {
        const int result = ::close(fd_);
        fd_ = -1;
        return result;
    }
    void committed() { committed_ = true; }

  private:
    std::vector<char> name_;
    int fd_ = -1;
    bool committed_ = false;
};

// The rename is durable only once the folder entry itself reaches the disk.
void syncFolder(const std::filesystem::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace

std::optional<std::string> writeFileAtomically(const std::filesystem::path& path, std::string_view bytes) {
    const std::filesystem::path folder = path.parent_path().empty() ? "." : path.parent_path();
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (ec) return "cannot create folder " + folder.string() + ": " + ec.message();

    TemporaryFile temporary(path);
    if (!temporary.isOpen()) return describe("cannot create a temporary file in " + folder.string(), errno);
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(temporary.fd(), bytes.data() + written, bytes.size() - written);
        if (n < 0) {
            if (errno == EINTR) continue;
            return describe("cannot write " + std::string(temporary.name()), errno);
        }
        written += static_cast<std::size_t>(n);
    }
    // mkstemp makes the file private; keep the mode of the file being replaced, or the usual one.
    struct stat existing {};
    const mode_t usualMode = 0644;
    ::fchmod(temporary.fd(), ::stat(path.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : usualMode);
    if (::fsync(temporary.fd()) != 0) return describe("cannot flush " + std::string(temporary.name()), errno);
    if (temporary.closeNow() != 0) return describe("cannot close " + std::string(temporary.name()), errno);
    if (::rename(temporary.name(), path.c_str()) != 0)
        return describe("cannot replace " + path.string(), errno);
    temporary.committed();
    syncFolder(folder);
    return std::nullopt;
}

void removeAbandonedTemporaries(const std::filesystem::path& path) {
    const std::string prefix = temporaryPrefix(path);
    const std::filesystem::path folder = path.parent_path().empty() ? "." : path.parent_path();
    std::error_code ec;
    for (std::filesystem::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.size() == prefix.size() + temporarySuffixLength && name.starts_with(prefix)) {
            std::error_code ignored;
            std::filesystem::remove(it->path(), ignored);
        }
    }
}

// Read with the file's size known up front: one buffer, no stream copies, as a start reads a
// bindings file of a megabyte or more.
FileReadResult readWholeFile(const std::filesystem::path& path) {
    const auto unreadable = [&](int error) {
        return FileReadResult{
            FileReadResult::Status::unreadable, {}, describe("cannot read " + path.string(), error)};
    };
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOENT) return {FileReadResult::Status::missing, {}, {}};
        return unreadable(errno);
    }
    const struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};

    struct stat info {};
    if (::fstat(fd, &info) != 0) return unreadable(errno);
    if (S_ISDIR(info.st_mode)) return unreadable(EISDIR);
    std::string bytes;
    // One byte more than the size, so that reaching the end takes no second allocation; a file
    // that grows meanwhile is read on in steps.
    constexpr std::size_t step = std::size_t{64} * 1024;
    bytes.resize(static_cast<std::size_t>(std::max<off_t>(info.st_size, 0)) + 1);
    std::size_t filled = 0;
    for (;;) {
        if (filled == bytes.size()) bytes.resize(bytes.size() + step);
        const ssize_t n = ::read(fd, bytes.data() + filled, bytes.size() - filled);
        if (n < 0) {
            if (errno == EINTR) continue;
            return unreadable(errno);
        }
        if (n == 0) break;
        filled += static_cast<std::size_t>(n);
    }
    bytes.resize(filled);
    return {FileReadResult::Status::ok, std::move(bytes), {}};
}

}  // namespace ostrelle
