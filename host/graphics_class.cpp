#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "host/drawing.h"
#include "host/own_classes.h"
#include "host/serve.h"

namespace ombrix::host {
namespace {

struct GraphicsData {
    REALobjectStruct* picture;  ///< held
};

GraphicsData& GraphicsOf(REALobjectStruct* graphics) {
    return *static_cast<GraphicsData*>(ClassData(graphics, GraphicsDefinition()));
}

void Destruct(REALobjectStruct* graphics) {
    Serve<void>("Graphics.Destructor", [&](HostState& host) {
        REALobjectStruct* picture = std::exchange(GraphicsOf(graphics).picture, nullptr);
        if (picture != nullptr) host.objects.LetGo(picture);
    });
}

/// Pixels to draw from; a copy when they are the target's own.
class SourcePixels {
  public:
    SourcePixels(const PixelView& pixels, const PixelView& target) : view_(pixels) {
        if (pixels.base != target.base) return;
        copy_.assign(pixels.base, pixels.base + pixels.rowBytes * pixels.height);
        view_.base = copy_.data();
    }
    const PixelView& View() const { return view_; }

  private:
    std::vector<std::uint8_t> copy_;
    PixelView view_;
};

/// Null unless the picture has a mask that fits.
const PixelView* MaskPixelsOf(const PictureData& picture) {
    if (picture.mask == nullptr) return nullptr;
    const PictureData& mask = PictureOf(picture.mask);
    const bool fits = mask.pixels && mask.width == picture.width && mask.height == picture.height;
    return fits ? &mask.pixels->View() : nullptr;
}

void DrawPicture(REALobjectStruct* graphics, REALobjectStruct* image, std::int64_t x, std::int64_t y, std::int64_t w1,
                 std::int64_t h1, std::int64_t sx, std::int64_t sy, std::int64_t w2, std::int64_t h2) {
    constexpr char kService[] = "Graphics.DrawPicture";
    Serve<void>(kService, [&](HostState& host) {
        if (host.Passed(graphics, kService, kGraphicsClass) == nullptr) return;
        if (host.Passed(image, kService, kPictureClass) == nullptr) return;
        REALobjectStruct* target = GraphicsOf(graphics).picture;
        if (target == nullptr || !PictureOf(target).pixels || !PictureOf(image).pixels) return;

        const PixelView& to = PictureOf(target).pixels->View();
        const SourcePixels from(PictureOf(image).pixels->View(), to);
        std::optional<SourcePixels> mask;
        if (const PixelView* pixels = MaskPixelsOf(PictureOf(image))) mask.emplace(*pixels, to);
        Draw(to, from.View(), mask ? &mask->View() : nullptr, {x, y, w1, h1, sx, sy, w2, h2});
    });
}

const REALmethodDefinition kMethods[] = {
    MethodRow(reinterpret_cast<REALproc>(&DrawPicture),
              "DrawPicture(image as Picture,x as Integer,y as Integer,w1 as Integer,h1 as Integer,sx as Integer,"
              "sy as Integer,w2 as Integer,h2 as Integer)"),
};

REALclassDefinition graphicsDefinition = MakeDefinition({
    .name = kGraphicsClass,
    .dataSize = sizeof(GraphicsData),
    .destructor = Destruct,
    .methods = kMethods,
});

}  // namespace

REALclassDefinition& GraphicsDefinition() { return graphicsDefinition; }

void AttachGraphics(HostState& host, REALobjectStruct* graphics, REALobjectStruct* picture) {
    host.objects.Hold(picture);
    GraphicsOf(graphics).picture = picture;
}

}  // namespace ombrix::host
