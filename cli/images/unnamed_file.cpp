#include "cli/images/unnamed_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "cli/failure.h"

namespace ombrix::cli {

namespace {

/// Of a system call that may be interrupted.
template <class Call>
std::size_t Count(Call call) {
    ssize_t count = 0;
    do count = call();
    while (count < 0 && errno == EINTR);
    if (count < 0) throw std::system_error(errno, std::generic_category());
    return static_cast<std::size_t>(count);
}

}  // namespace

int MakeUnnamedFile() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    int file = error ? -1 : open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600);
    if (file < 0) file = memfd_create("ombrix", MFD_CLOEXEC);
    if (file < 0) {
        throw WorkError("no temporary file can be made (" + std::generic_category().message(errno) + ")");
    }
    return file;
}

void CopyAll(int from, int to) {
    std::array<char, 65536> buffer;
    while (const std::size_t size = Count([&] { return read(from, buffer.data(), buffer.size()); })) {
        for (std::size_t done = 0; done < size;) {
            done += Count([&] { return write(to, buffer.data() + done, size - done); });
        }
    }
}

}  // namespace ombrix::cli
