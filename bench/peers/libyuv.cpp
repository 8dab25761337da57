// libyuv. Its matrices have whole numbers of 6 bits; its mix of two pictures takes no mask.
#include <libyuv.h>

#include <array>
#include <map>
#include <memory>
#include <string>

#include "bench/blend_modes.h"
#include "bench/peers/peers.h"
#include "bench/tone_effects.h"

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

using InPlaceFunction = void (*)(const Argb& picture);
using BlendFunction = void (*)(const Argb& source, const Argb& fill, const Argb& destination);

void Map(const Argb& picture) {
    static const auto table = [] {
        const MapTables tables;
        std::array<std::uint8_t, 1024> all;  // 4 channels of 256
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

const std::map<std::string, InPlaceFunction> kInPlaceFunctions = {
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

const std::map<std::string, BlendFunction> kBlendFunctions = {
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

std::function<void()> LibyuvCounterpart(const LineName& line, PictureSet& pictures) {
    const Argb source(pictures.source);
    if (line.table == kInPlace && kInPlaceFunctions.contains(line.measured)) {
        return [function = kInPlaceFunctions.at(line.measured), source] { function(source); };
    }
    const Argb fill(pictures.fill);
    const Argb destination(pictures.destination);
    if (line.table == kIntoNew && line.measured == "grey NTSC_PAL") {
        return [=] {
            libyuv::ARGBGrayTo(source.bytes, source.stride, destination.bytes, destination.stride, source.width,
                               source.height);
        };
    }
    if (line.table == kBlend && kBlendFunctions.contains(line.measured)) {
        return [=, function = kBlendFunctions.at(line.measured)] { function(source, fill, destination); };
    }
    if (line.table == kBlendMixed && line.measured == "normal") return [=] { Mix(source, fill, destination); };
    return nullptr;
}

}  // namespace ombrix::bench
