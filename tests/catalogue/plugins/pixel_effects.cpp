// Effects that work pixel by pixel or do not, and that leave alpha alone or do not. New, they change nothing.
#include <algorithm>

#include "platform/core_graphics.h"
#include "sdk/definition_rows.h"
#include "sdk/engine_functions.h"
#include "sdk/host_calls.h"
#include "sdk/plugin_main.h"

namespace {

using namespace ombrix;

struct Data {
    std::int64_t amount;
    std::int64_t other;
};

/// A picture's pixels for the time of its scope.
class Pixels {
  public:
    explicit Pixels(REALobjectStruct* picture) : picture_(picture) {
        REALLockPictureDescription(picture, &description_, kBitmapContextPicture);
    }
    ~Pixels() { REALUnlockPictureDescription(picture_); }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    REALobjectStruct* Picture() const { return picture_; }
    int Width() const { return description_.width; }
    int Height() const { return description_.height; }
    int Size() const { return static_cast<int>(CGBitmapContextGetBitsPerPixel(Context()) / 8); }
    std::uint8_t* At(int x, int y) const {
        return static_cast<std::uint8_t*>(CGBitmapContextGetData(Context())) +
               static_cast<std::size_t>(y) * CGBitmapContextGetBytesPerRow(Context()) +
               static_cast<std::size_t>(x) * static_cast<std::size_t>(Size());
    }

  private:
    CGContextRef Context() const { return static_cast<CGContextRef>(description_.data); }

    REALobjectStruct* const picture_;
    REALpictureDescription description_{};
};

REALobjectStruct* CopyOf(MPImageFilterData* base, REALobjectStruct* source) {
    const auto map = reinterpret_cast<ApplyMapEffectProc>(
        base->GetFunction(static_cast<std::int32_t>(EngineFunction::ApplyMapEffect)));
    std::uint8_t table[256];
    for (int value = 0; value < 256; ++value) table[value] = static_cast<std::uint8_t>(value);
    MapParams params;
    params.redTable = params.greenTable = params.blueTable = table;
    return map(base, source, nullptr, &params);
}

/// Changes `pixel`, which is that of `source` at x, y. Colours are its last three bytes, alpha its first of four.
using Change = void (*)(std::uint8_t* pixel, const Pixels& source, int x, int y, const Data& data);

/// Only with nothing but the amount set.
void TakeNeighbour(std::uint8_t* pixel, const Pixels& source, int x, int y, const Data& data) {
    if (data.other != 0) return;
    const int from = std::min(x + static_cast<int>(data.amount), source.Width() - 1);
    std::copy_n(source.At(from, y), source.Size(), pixel);
}

void AddColumn(std::uint8_t* pixel, const Pixels& source, int x, int, const Data& data) {
    std::uint8_t& blue = pixel[source.Size() - 1];
    blue = static_cast<std::uint8_t>(blue + x * data.amount);
}

void LowerAlpha(std::uint8_t* pixel, const Pixels& source, int, int, const Data& data) {
    if (source.Size() == 4) *pixel = static_cast<std::uint8_t>(*pixel * (100 - data.amount) / 100);
}

void LookAtAlpha(std::uint8_t* pixel, const Pixels& source, int, int, const Data& data) {
    if (source.Size() == 4 && data.amount > 0) pixel[1] = pixel[0];
}

void DropRed(std::uint8_t* pixel, const Pixels& source, int, int, const Data& data) {
    if (data.amount > 0) pixel[source.Size() - 3] = 0;
}

/// Breaks a rule of the host's: gives back a reference that it was not given.
void ReleaseTooOften(std::uint8_t*, const Pixels& source, int, int, const Data& data) {
    if (data.amount > 0) EUnlockObject(source.Picture());
}

template <Change kChange>
struct Effect {
    static inline REALclassDefinition record;

    static REALobjectStruct* Apply(REALobjectStruct* object, REALobjectStruct* source) {
        auto* data = static_cast<Data*>(REALGetClassData(object, &record));
        if (data->amount < 0 || data->amount > 20) return nullptr;
        REALobjectStruct* result = CopyOf(BaseDataOf(data), source);
        if (!result) return nullptr;
        const Pixels from(source), to(result);
        for (int y = 0; y < to.Height(); ++y) {
            for (int x = 0; x < to.Width(); ++x) kChange(to.At(x, y), from, x, y, *data);
        }
        return result;
    }

    static void Register(const char* name, const char* property, const char* other) {
        static REALpropertyDefinition properties[2];
        properties[0] = StandardProperty(property, "Integer", offsetof(Data, amount));
        properties[1] = StandardProperty(other, "Integer", offsetof(Data, other));
        static const REALmethodDefinition methods[] = {Method(Apply, "Apply(source as Picture) as Picture")};
        record = ClassRecord({.name = name,
                              .superclass = "MPImageFilter",
                              .interfaces = "IGraphicsEffect",
                              .dataSize = sizeof(Data),
                              .properties = properties,
                              .methods = methods});
        REALRegisterClass(&record);
    }
};

}  // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;
    LoadCommonEntryPoints(REALGetRBVersion());
    // Names that are hard to shorten.
    Effect<TakeNeighbour>::Register("BlurEffect", "BlurRadius", "Blurred");
    Effect<AddColumn>::Register("RampEffect", "AmountRamp", "Amount");
    Effect<LowerAlpha>::Register("FadeEffect", "Fade_amount", "FadeAmount");
    Effect<LookAtAlpha>::Register("VeilEffect", "Veil", "VeilRGBValue2x");
    Effect<DropRed>::Register("RedEffect", "Infrared", "Red2");
    Effect<ReleaseTooOften>::Register("CulpritEffect", "Amount", "Other");
}
