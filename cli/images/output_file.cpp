#include "cli/images/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <random>
#include <system_error>
#include <utility>

#include "cli/failure.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

/// For the signal handler.
struct Unfinished {
    char name[PATH_MAX];
    std::atomic<bool> exists = false;
};
static_assert(std::atomic<bool>::is_always_lock_free);

Unfinished unfinished[kUnfinishedAtOnce];

void OnSignal(int signal) {
    for (const Unfinished& file : unfinished) {
        if (file.exists) unlink(file.name);
    }
    // SA_RESETHAND has restored the default action, which ends the process.
    raise(signal);
}

std::string Reason(int error) { return std::generic_category().message(error); }

/// Follows a link, so that it stays one.
fs::path Resolved(const fs::path& target) {
    std::error_code error;
    if (fs::is_symlink(target, error)) {
        fs::path real = fs::canonical(target, error);
        if (!error) return real;
    }
    return target;
}

fs::path FolderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

void CheckFolder(const fs::path& target) {
    const fs::path folder = FolderOf(target);
    std::error_code error;
    const fs::file_status status = fs::status(folder, error);
    if (!fs::exists(status)) {
        throw WorkError("the folder " + folder.string() + " for " + target.filename().string() + " is not there" +
                        (error && error != std::errc::no_such_file_or_directory ? " (" + error.message() + ")"
                                                                                : "; make it first"));
    }
    if (!fs::is_directory(status)) {
        throw WorkError(folder.string() + " is not a folder, so " + target.filename().string() +
                        " cannot be written into it");
    }
    if (access(folder.c_str(), W_OK | X_OK) != 0) {
        throw WorkError("the folder " + folder.string() + " is not writable (" + Reason(errno) +
                        "); choose another for " + target.filename().string());
    }
}

/// A name unlikely to exist. It keeps the target's suffix, by which writers go.
fs::path NameBeside(const fs::path& target) {
    static std::mt19937_64 random{std::random_device{}()};
    char number[17];
    std::snprintf(number, sizeof number, "%016llx", static_cast<unsigned long long>(random()));
    return FolderOf(target) / (".ombrix-" + std::string(number) + target.extension().string());
}

/// Does not replace a file that has appeared meanwhile, where the file system can tell.
int RenameToNew(const fs::path& from, const fs::path& to) {
    const int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) return std::rename(from.c_str(), to.c_str());
    return result;
}

/// Puts the bytes on the disk before the name does.
void Synchronize(const fs::path& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) throw std::system_error(errno, std::generic_category());
    const int error = fsync(descriptor) == 0 ? 0 : errno;
    close(descriptor);
    if (error != 0 && error != EINVAL) throw std::system_error(error, std::generic_category());
}

}  // namespace

OutputFile::OutputFile(fs::path target, bool mayReplace)
    : given_(std::move(target)), target_(Resolved(given_)), mayReplace_(mayReplace) {
    CheckFolder(target_);
    std::error_code error;
    const fs::file_status status = fs::symlink_status(target_, error);
    if (!fs::exists(status)) return;
    if (fs::is_directory(status)) throw WorkError(given_.string() + " is a folder; name a file in it");
    if (!fs::is_regular_file(status) && !fs::is_symlink(status)) {
        throw WorkError(given_.string() + " is not an ordinary file, so it cannot be replaced");
    }
    if (!mayReplace_) throw WorkError(given_.string() + " exists; --force replaces it");
}

OutputFile::~OutputFile() {
    if (temporary_.empty()) return;
    unlink(temporary_.c_str());
    unfinished[place_].exists = false;
}

const fs::path& OutputFile::Create() {
    fs::path name = NameBeside(target_);
    if (name.native().size() >= PATH_MAX) throw WorkError("the path of " + given_.string() + " is too long");
    place_ = 0;
    while (unfinished[place_].exists) ++place_;
    // Noted before it exists, so that no interrupt can miss it.
    std::strcpy(unfinished[place_].name, name.c_str());
    unfinished[place_].exists = true;
    const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        const int error = errno;
        unfinished[place_].exists = false;
        throw WorkError("no file can be made in the folder " + FolderOf(target_).string() + " for " +
                        given_.filename().string() + " (" + Reason(error) + ")");
    }
    struct stat replaced;
    if (stat(target_.c_str(), &replaced) == 0) (void)fchmod(descriptor, replaced.st_mode & 07777);
    close(descriptor);
    temporary_ = std::move(name);
    return temporary_;
}

void OutputFile::Commit() {
    try {
        // Where nothing is replaced, nothing is lost if the system fails.
        if (fs::exists(target_)) Synchronize(temporary_);
        const int result =
            mayReplace_ ? std::rename(temporary_.c_str(), target_.c_str()) : RenameToNew(temporary_, target_);
        if (result != 0) throw std::system_error(errno, std::generic_category());
    } catch (const std::system_error& failure) {
        throw WorkError(given_.string() + " cannot be put in its place (" + failure.code().message() + ")");
    }
    unfinished[place_].exists = false;
    temporary_.clear();
}

void RefuseSameFile(const fs::path& read, const fs::path& written) {
    std::error_code error;
    if (fs::equivalent(read, written, error)) {
        throw UsageError(written.string() +
                         " is read by the same command, so it cannot be the output; name another file, or use apply "
                         "--in-place to change a picture's own file");
    }
}

void RemoveUnfinishedFileOnSignals() {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU}) {
        struct sigaction current;
        // Stays ignored, as under nohup.
        if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
        sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace ombrix::cli
