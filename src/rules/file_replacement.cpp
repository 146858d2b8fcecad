// Whole-file replacement through a temporary file beside the target and a rename.
#include "rules/file_replacement.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// The file that a chain of symbolic links ends at: `name` itself when it is none. False, with
// errno set, for a chain that loops or a name the file system refuses; a name that does not
// exist yet is fine.
bool followLinks(std::string name, std::string& path) {
    for (int hops = 0; hops < 40; ++hops) {
        struct stat status;
        if (lstat(name.c_str(), &status) != 0) {
            path = name;
            return errno == ENOENT;
        }
        if (!S_ISLNK(status.st_mode)) {
            path = name;
            return true;
        }
        char target[PATH_MAX];
        ssize_t length = readlink(name.c_str(), target, sizeof target);
        if (length <= 0) {
            if (length == 0) errno = ENOENT;
            return false;
        }
        std::string next(target, static_cast<std::size_t>(length));
        // A relative link is read from the directory that holds it.
        if (next.front() != '/') next = name.substr(0, name.rfind('/') + 1) + next;
        name = std::move(next);
    }
    errno = ELOOP;
    return false;
}

bool writeAll(int fd, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}
} // namespace

FileReplacement::~FileReplacement() {
    if (!temporary.empty()) unlink(temporary.c_str());
}

bool FileReplacement::prepare(const std::string& name, const std::string& text) {
    if (!followLinks(name, path)) return false;
    struct stat old;
    existed = stat(path.c_str(), &old) == 0;
    if (existed && S_ISDIR(old.st_mode)) {
        errno = EISDIR;
        return false;
    }
    // A rename would replace a file that the user has made read-only; writing it would not.
    if (existed && access(path.c_str(), W_OK) != 0) return false;

    // Short, so that it fits wherever the file's own name does; never a name the program reads.
    std::string pattern = path.substr(0, path.rfind('/') + 1) + ".saving-XXXXXX";
    int fd = mkstemp(pattern.data());
    if (fd < 0) return false;
    temporary = pattern;
    // The new version keeps the old one's permissions; a new file gets what a plain one would.
    mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, existed ? old.st_mode & 07777 : 0666 & ~mask);
    bool written = writeAll(fd, text) && fsync(fd) == 0;
    int error = errno;
    if (close(fd) != 0 && written) written = false, error = errno;
    errno = error;
    return written;
}

bool FileReplacement::commit() {
    if (temporary.empty() || rename(temporary.c_str(), path.c_str()) != 0) return false;
    temporary.clear();
    return true;
}

bool FileReplacement::undoNewFile() {
    return !existed && temporary.empty() && !path.empty() && unlink(path.c_str()) == 0;
}
