#include "cli/supervisor/channel.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace ombrix::cli {

namespace {

/// A kind and a length go before the text.
constexpr std::size_t kHeader = 1 + sizeof(std::uint32_t);

}  // namespace

void MessageWriter::Send(MessageKind kind, const std::string& text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    std::string bytes(kHeader, static_cast<char>(kind));
    std::memcpy(bytes.data() + 1, &length, sizeof length);
    bytes += text;
    const std::lock_guard lock(mutex_);
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = write(descriptor_, bytes.data() + sent, bytes.size() - sent);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            _exit(1);
        }
    }
}

bool MessageReader::Read(const Take& take) {
    std::array<char, 4096> buffer;
    const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return true;
    if (count <= 0) return false;
    received_.append(buffer.data(), static_cast<std::size_t>(count));
    while (received_.size() >= kHeader) {
        std::uint32_t length;
        std::memcpy(&length, received_.data() + 1, sizeof length);
        if (received_.size() < kHeader + length) break;
        const auto kind = static_cast<MessageKind>(received_.front());
        const std::string text = received_.substr(kHeader, length);
        received_.erase(0, kHeader + length);
        take(kind, text);
    }
    return true;
}

}  // namespace ombrix::cli
