#include "cli/images/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fstream>
#include <random>
#include <system_error>
#include <utility>

#include "cli/failure.h"
#include "cli/images/unnamed_file.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

std::string Reason(int error) { return std::generic_category().message(error); }

fs::path FolderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

/// Whether another user may have laid the link there, to have its target replaced.
bool IsTrap(const fs::path& link) {
    struct stat own = {}, folder = {};
    if (lstat(link.c_str(), &own) != 0 || stat(FolderOf(link).c_str(), &folder) != 0) return false;
    const bool isShared = (folder.st_mode & S_IWOTH) != 0;
    return isShared && own.st_uid != geteuid() && own.st_uid != folder.st_uid;
}

/// Follows a link, so that it stays one.
fs::path Resolved(const fs::path& target) {
    std::error_code error;
    if (fs::is_symlink(target, error)) {
        if (IsTrap(target)) {
            throw WorkError(target.string() +
                            " is another user's link in a folder that all may write to, so it is "
                            "not followed");
        }
        fs::path real = fs::canonical(target, error);
        if (!error) return real;
    }
    return target;
}

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

/// New files have the permissions that the user's mask leaves. No thread runs yet that could make a file meanwhile.
mode_t ModeOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// Puts the bytes on the disk before the name does.
void Synchronize(int file) {
    if (fsync(file) != 0 && errno != EINVAL) throw std::system_error(errno, std::generic_category());
}

void Check(int result) {
    if (result != 0) throw std::system_error(errno, std::generic_category());
}

}  // namespace

OutputFile::OutputFile(fs::path target, Replace replace)
    : given_(std::move(target)), target_(Resolved(given_)), replace_(replace) {
    CheckFolder(target_);
    std::error_code error;
    const fs::file_status status = fs::symlink_status(target_, error);
    if (!fs::exists(status)) return;
    if (fs::is_directory(status)) throw WorkError(given_.string() + " is a folder; name a file in it");
    if (!fs::is_regular_file(status) && !fs::is_symlink(status)) {
        throw WorkError(given_.string() + " is not an ordinary file, so it cannot be replaced");
    }
    if (replace_ == Replace::Nothing) throw WorkError(given_.string() + " exists; --force replaces it");
    if (fs::is_symlink(status) || access(target_.c_str(), W_OK) == 0) return;
    struct stat replaced = {};
    if (stat(target_.c_str(), &replaced) == 0 && replaced.st_uid != geteuid()) {
        throw WorkError(given_.string() + " belongs to another user and is not writable");
    }
    if (replace_ == Replace::Writable) throw WorkError(given_.string() + " is read-only; --force replaces it");
}

OutputFile::OutputFile() : given_("standard output"), replace_(Replace::Nothing), isCopied_(true) {
    if (isatty(STDOUT_FILENO) != 0) {
        throw UsageError("standard output is a terminal; send it into a file or another program");
    }
}

OutputFile::~OutputFile() {
    if (!name_.empty()) unlinkat(folder_, name_.c_str(), 0);
    if (file_ >= 0) close(file_);
    if (folder_ >= 0) close(folder_);
}

fs::path OutputFile::BesideTarget() const {
    static std::mt19937_64 random{std::random_device{}()};
    char number[17];
    std::snprintf(number, sizeof number, "%016llx", static_cast<unsigned long long>(random()));
    return FolderOf(target_) / (".ombrix-" + std::string(number) + target_.extension().string());
}

void OutputFile::Create() {
    if (isCopied_) {
        file_ = MakeUnnamedFile();
        return;
    }
    folder_ = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // The user alone may read it before it is finished.
    if (folder_ >= 0 && access("/proc/self/fd", X_OK) == 0) {
        file_ = openat(folder_, ".", O_RDWR | O_TMPFILE | O_CLOEXEC, 0600);
    }
    if (folder_ >= 0 && file_ < 0) {
        const fs::path path = BesideTarget();
        if (path.native().size() >= PATH_MAX) throw WorkError("the path of " + given_.string() + " is too long");
        removed_.emplace(path);
        file_ = openat(folder_, path.filename().c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (file_ >= 0) name_ = path.filename();
    }
    if (file_ < 0) {
        throw WorkError("no file can be made in the folder " + FolderOf(target_).string() + " for " +
                        given_.filename().string() + " (" + Reason(errno) + ")");
    }
}

fs::path OutputFile::NameOfDescriptor() const { return "/proc/self/fd/" + std::to_string(file_); }

void OutputFile::TakeOverAttributes() const {
    struct stat replaced = {}, own = {};
    if (fstatat(folder_, target_.filename().c_str(), &replaced, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(replaced.st_mode)) {
        return Check(fchmod(file_, ModeOfNewFiles()));
    }
    Check(fstat(file_, &own));
    mode_t mode = replaced.st_mode & 0777;
    if (own.st_uid != replaced.st_uid) (void)!fchown(file_, replaced.st_uid, static_cast<gid_t>(-1));
    if (own.st_gid != replaced.st_gid && fchown(file_, static_cast<uid_t>(-1), replaced.st_gid) != 0) {
        // What one group was allowed is not for another.
        mode &= ~mode_t{070} | ((mode & 07) << 3);
    }
    Check(fchmod(file_, mode));
}

void OutputFile::PutInPlace() {
    const fs::path name = target_.filename();
    if (replace_ == Replace::Nothing) {
        // Neither replaces a file that has appeared meanwhile.
        if (name_.empty()) {
            return Check(linkat(AT_FDCWD, NameOfDescriptor().c_str(), folder_, name.c_str(), AT_SYMLINK_FOLLOW));
        }
        if (renameat2(folder_, name_.c_str(), folder_, name.c_str(), RENAME_NOREPLACE) == 0) return name_.clear();
        if (errno != EINVAL && errno != ENOSYS) Check(-1);
    } else if (name_.empty()) {
        // A link never replaces, so the file has a name for an instant.
        const fs::path path = BesideTarget();
        removed_.emplace(path);
        Check(linkat(AT_FDCWD, NameOfDescriptor().c_str(), folder_, path.filename().c_str(), AT_SYMLINK_FOLLOW));
        name_ = path.filename();
    }
    Check(renameat(folder_, name_.c_str(), folder_, name.c_str()));
    name_.clear();
}

void OutputFile::CopyOut() const {
    try {
        Check(lseek(file_, 0, SEEK_SET) < 0 ? -1 : 0);
        CopyAll(file_, STDOUT_FILENO);
    } catch (const std::system_error& failure) {
        throw WorkError("standard output cannot be written (" + failure.code().message() + ")");
    }
}

void OutputFile::Write(std::string_view bytes) {
    std::ofstream stream(NameOfDescriptor(), std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw WorkError(Target().string() + " cannot be written: the disk may be full");
}

void OutputFile::Commit() {
    if (isCopied_) return CopyOut();
    try {
        TakeOverAttributes();
        // Where nothing is replaced, nothing is lost if the system fails.
        if (faccessat(folder_, target_.filename().c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) Synchronize(file_);
        PutInPlace();
    } catch (const std::system_error& failure) {
        throw WorkError(given_.string() + " cannot be put in its place (" + failure.code().message() + ")");
    }
    removed_.reset();
}

void RefuseSameFile(const fs::path& read, const fs::path& written) {
    std::error_code error;
    if (fs::equivalent(read, written, error)) {
        throw UsageError(written.string() +
                         " is read by the same command, so it cannot be the output; name another file, or use apply "
                         "--in-place to change a picture's own file");
    }
}

}  // namespace ombrix::cli
