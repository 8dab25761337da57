#include "host/pixel_buffer.h"

#include <cstring>
#include <limits>
#include <utility>

#include "text/numbers.h"

namespace ombrix::host {
namespace {

constexpr std::int64_t kAlignment = 64;  // bytes, of the base address and of every row
/// Plug-ins keep sizes in 32 bits.
constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMostBytes = std::int64_t{1} << 39;

/// In bytes. `depth` is in bits per pixel, and the width is at most kMost.
std::int64_t PaddedRowBytes(std::int64_t width, std::int64_t depth) {
    return (width * (depth / 8) + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace

std::string PixelBuffer::Objection(std::int64_t width, std::int64_t height, std::int64_t depth) {
    if (depth != 16 && depth != 24 && depth != 32) {
        return "a picture has 16, 24 or 32 bits per pixel, not " + std::to_string(depth);
    }
    const std::string size = text::Size(width, height) + " pixels";
    if (width < 0 || height < 0) return "there is no size of " + size;
    if (width > kMost || height > kMost || PaddedRowBytes(width, depth) > kMost) {
        return size + " of " + std::to_string(depth) + " bits are more than a plug-in can address";
    }
    if (height > 0 && PaddedRowBytes(width, depth) > kMostBytes / height) {
        return size + " of " + std::to_string(depth) + " bits do not fit into memory";
    }
    return {};
}

std::unique_ptr<PixelBuffer> PixelBuffer::Make(std::int64_t width, std::int64_t height, std::int64_t depth,
                                               Content content) {
    if (!Objection(width, height, depth).empty()) return nullptr;
    const std::int64_t rowBytes = PaddedRowBytes(width, depth);
    auto buffer = std::make_unique<PixelBuffer>();
    buffer->memory_ = TakePixelMemory(static_cast<std::size_t>(rowBytes * height), content);
    if (!buffer->memory_) return nullptr;
    buffer->holdsAnything_ = content == Content::Any;
    buffer->view_ = {buffer->memory_.get(), rowBytes, width, height, static_cast<int>(depth)};
    return buffer->MakeContext() ? std::move(buffer) : nullptr;
}

std::unique_ptr<PixelBuffer> PixelBuffer::Wrap(const PixelView& pixels) {
    if (!Objection(pixels.width, pixels.height, pixels.depth).empty()) return nullptr;
    auto buffer = std::make_unique<PixelBuffer>();
    buffer->view_ = pixels;
    return buffer->MakeContext() ? std::move(buffer) : nullptr;
}

bool PixelBuffer::MakeContext() {
    context_.reset(OmbrixBitmapContextCreate(view_.base, static_cast<std::size_t>(view_.rowBytes),
                                             static_cast<std::size_t>(view_.depth)));
    return context_ != nullptr;
}

const PixelView& PixelBuffer::View() {
    if (std::exchange(holdsAnything_, false)) {
        std::memset(view_.base, 0, static_cast<std::size_t>(view_.rowBytes * view_.height));
    }
    return view_;
}

CGContextRef PixelBuffer::Context() {
    holdsAnything_ = false;
    return context_.get();
}

}  // namespace ombrix::host
