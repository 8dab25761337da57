// libyuv. Its matrices have whole numbers of 6 bits; its mix of two pictures takes no mask.
#include <libyuv.h>

#include <array>
#include <map>
#include <memory>
#include <string>

#include "bench/peers/peers.h"
#include "bench/tone_works.h"

namespace ombrix::bench {
namespace {

/// A picture as libyuv takes it.
struct Argb {
    explicit Argb(const BenchPicture& picture)
        : bytes(picture.Bytes()),
          stride(static_cast<int>(picture.RowBytes())),
          width(picture.Extent().width),
          height(picture.Extent().height) {}

    std::uint8_t* bytes;
    int stride;
    int width;
    int height;
};

using PictureWork = void (*)(const Argb& picture);
using BlendWork = void (*)(const Argb& source, const Argb& fill, const Argb& destination);

void Map(const Argb& picture) {
    static const auto table = [] {
        const MapTables tables;
        std::array<std::uint8_t, 4 * 256> all;
        for (std::size_t i = 0; i < 256; ++i) {
            all[4 * i] = static_cast<std::uint8_t>(i);
            all[4 * i + 1] = tables.red[i];
            all[4 * i + 2] = tables.green[i];
            all[4 * i + 3] = tables.blue[i];
        }
        return all;
    }();
    libyuv::ARGBColorTable(picture.bytes, picture.stride, table.data(), 0, 0, picture.width, picture.height);
}

/// Weights in units of 1/64.
template <int red, int green, int blue>
void Grey(const Argb& picture) {
    static constexpr std::int8_t kMatrix[16] = {64, 0,   0,     0,    0, red, green, blue,
                                                0,  red, green, blue, 0, red, green, blue};
    libyuv::ARGBColorMatrix(picture.bytes, picture.stride, picture.bytes, picture.stride, kMatrix, picture.width,
                            picture.height);
}

const std::map<std::string, PictureWork> kInPlaceWorks = {
    {"map", Map},
    {"grey NTSC_PAL", [](const Argb& p) { libyuv::ARGBGray(p.bytes, p.stride, 0, 0, p.width, p.height); }},
    {"grey ITU_R", Grey<14, 46, 4>},
    {"grey AVERAGE", Grey<21, 22, 21>},
    {"grey WEIGHTEDAVERAGE", Grey<21, 29, 14>},
    {"sepia", [](const Argb& p) { libyuv::ARGBSepia(p.bytes, p.stride, 0, 0, p.width, p.height); }},
};

/// Any of libyuv's functions that make one picture of two.
template <auto function>
void Combine(const Argb& source, const Argb& fill, const Argb& destination) {
    function(source.bytes, source.stride, fill.bytes, fill.stride, destination.bytes, destination.stride, source.width,
             source.height);
}

const std::map<std::string, BlendWork> kBlendWorks = {
    {"normal",
     [](const Argb&, const Argb& fill, const Argb& destination) {
         libyuv::ARGBCopy(fill.bytes, fill.stride, destination.bytes, destination.stride, fill.width, fill.height);
     }},
    {"multiply", Combine<libyuv::ARGBMultiply>},
    {"linear dodge", Combine<libyuv::ARGBAdd>},
    {"add", Combine<libyuv::ARGBAdd>},
};

void Mix(const Argb& source, const Argb& fill, const Argb& destination) {
    libyuv::ARGBInterpolate(source.bytes, source.stride, fill.bytes, fill.stride, destination.bytes, destination.stride,
                            source.width, source.height, static_cast<int>(256 * kMixedOpacity));
}

}  // namespace

std::function<void()> LibyuvWork(const RowName& row, PictureSet& pictures) {
    const Argb source(pictures.source);
    if (row.group == kInPlace && kInPlaceWorks.contains(row.work)) {
        return [work = kInPlaceWorks.at(row.work), source] { work(source); };
    }
    const Argb fill(pictures.fill);
    const Argb destination(pictures.destination);
    if (row.group == kIntoNew && row.work == "grey NTSC_PAL") {
        return [=] {
            libyuv::ARGBGrayTo(source.bytes, source.stride, destination.bytes, destination.stride, source.width,
                               source.height);
        };
    }
    if (row.group == kBlend && kBlendWorks.contains(row.work)) {
        return [=, work = kBlendWorks.at(row.work)] { work(source, fill, destination); };
    }
    if (row.group == kBlendMixed && row.work == "normal") return [=] { Mix(source, fill, destination); };
    return nullptr;
}

}  // namespace ombrix::bench
