#include "cli/images/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "cli/images/standard_input.h"

namespace ombrix::cli {

MappedFile::MappedFile(int descriptor) { Map(descriptor); }

MappedFile::MappedFile(const std::filesystem::path& file) {
    const int descriptor = open(NameToOpen(file).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return;
    Map(descriptor);
    close(descriptor);
}

void MappedFile::Map(int descriptor) {
    struct stat status = {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0 || status.st_size <= 0) return;
    const auto size = static_cast<std::size_t>(status.st_size);
    void* bytes = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
    if (bytes != MAP_FAILED) bytes_ = {static_cast<const std::uint8_t*>(bytes), size};
}

MappedFile::~MappedFile() {
    if (!bytes_.empty()) munmap(const_cast<std::uint8_t*>(bytes_.data()), bytes_.size());
}

void WriteAt(int descriptor, std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t written = pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) throw std::system_error(written < 0 ? errno : ENOSPC, std::generic_category());
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += static_cast<std::uint64_t>(written);
    }
}

}  // namespace ombrix::cli
