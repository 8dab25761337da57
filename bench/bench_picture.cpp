#include "bench/bench_picture.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "bench/cache_line.h"
#include "platform/bitmap_context.h"

namespace ombrix::bench {
namespace {

std::uint8_t* Allocate(std::size_t bytes) {
    const std::size_t rounded = (bytes + kCacheLine - 1) / kCacheLine * kCacheLine;
    void* memory = std::aligned_alloc(kCacheLine, rounded);
    if (!memory) throw std::bad_alloc();
    std::memset(memory, 0xff, rounded);
    return static_cast<std::uint8_t*>(memory);
}

}  // namespace

void BenchPicture::Free::operator()(std::uint8_t* bytes) const { std::free(bytes); }

BenchPicture::BenchPicture(Size size, int bits)
    : BenchPicture(size, bits, Allocate(static_cast<std::size_t>(size.width) * (bits / 8) * size.height)) {
    owned_.reset(bytes_);
}

BenchPicture::BenchPicture(Size size, int bits, std::uint8_t* bytes)
    : size_(size),
      bytesPerPixel_(bits / 8),
      bytes_(bytes),
      context_(OmbrixBitmapContextCreate(bytes, RowBytes(), static_cast<std::size_t>(bits))) {
    if (!context_) throw std::bad_alloc();
}

BenchPicture::~BenchPicture() { OmbrixBitmapContextRelease(context_); }

}  // namespace ombrix::bench
