#include "cli/gallery/scene.h"

#include <algorithm>
#include <cmath>

#include "catalogue/error_code.h"
#include "cli/effect_object.h"
#include "cli/failure.h"
#include "cli/images/colour.h"
#include "cli/images/image_writer.h"
#include "cli/images/result_file.h"
#include "cli/outcome.h"
#include "cli/reflection.h"
#include "cli/supervisor/progress_of_work.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

host::Value ValueIn(const Scene& scene, host::Host& host, const SceneValue& value) {
    if (const auto* plain = std::get_if<host::Value>(&value)) return *plain;
    if (const auto* role = std::get_if<Role>(&value)) {
        return host::Value(host::Object(*role == Role::Fill ? scene.fill : scene.mask));
    }
    const auto [x, y] = PointIn(std::get<PointShare>(value), scene.source.Width(), scene.source.Height());
    return host::Value(host::Object(host.NewPoint(x, y)));
}

host::Picture Scaled(Session& session, const host::Picture& picture, double scale) {
    if (scale == 1) return picture;
    const host::Picture::Lock pixels(picture);
    VImage image = Viewed(picture, pixels, true);
    // Transparent pixels must not bleed into their neighbours.
    image = image.premultiply()
                .resize(scale, VImage::option()->set("vscale", std::max(scale, 1.0 / picture.Height())))
                .unpremultiply()
                .cast(VIPS_FORMAT_UCHAR);
    return PictureOf(session.host, image, session.console);
}

std::string SpotOfLight(int width, int height) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) + "\" height=\"" +
           std::to_string(height) +
           "\"><radialGradient id=\"spot\" r=\"0.68\"><stop offset=\"0.3\" stop-color=\"#fff\"/>"
           "<stop offset=\"0.65\" stop-color=\"#888\"/><stop offset=\"1\" stop-color=\"#000\"/></radialGradient>"
           "<rect width=\"100%\" height=\"100%\" fill=\"url(#spot)\"/></svg>\n";
}

host::Picture DrawMask(Session& session, int width, int height) {
    const std::string drawing = SpotOfLight(width, height);
    VipsBlob* bytes = vips_blob_copy(drawing.data(), drawing.size());
    const VImage image = VImage::svgload_buffer(bytes);
    vips_area_unref(VIPS_AREA(bytes));
    return PictureOf(session.host, ToSrgb(image, "the mask", session.console), session.console);
}

}  // namespace

host::Picture Applied(Session& session, const host::ClassInfo& type, const std::vector<SceneSetting>& settings,
                      const Scene& scene) {
    const host::Object effect = session.host.New(type.name);
    SetCores(session, type, effect);
    SetIn(scene, session.host, settings, effect);
    const Doing working(Activity::Effect, effect.ClassName());
    const host::Value result = effect.CallInterface(host::kEffectInterface, "Apply", {host::Object(scene.source)});
    if (result.IsNil() || catalogue::ReportsError(session.host, effect)) return {};
    return Usable(session.host, host::Picture(result.AsObject()));
}

void SetIn(const Scene& scene, host::Host& host, const std::vector<SceneSetting>& settings,
           const host::Object& object) {
    for (const SceneSetting& setting : settings) object.Set(setting.property, ValueIn(scene, host, setting.value));
}

std::pair<std::int64_t, std::int64_t> PointIn(PointShare share, int width, int height) {
    return {std::llround(share.x * width), std::llround(share.y * height)};
}

Originals::Originals(Session& session, const std::filesystem::path& picture,
                     const std::optional<std::filesystem::path>& fill, const std::optional<std::filesystem::path>& mask)
    : file_(picture) {
    const auto read = [&session](const std::filesystem::path& file) { return ReadImage(session, file).picture; };
    picture_ = read(picture);
    if (fill) fill_ = read(*fill);
    if (mask) mask_ = read(*mask);
    const std::string objection = mask ? ObjectionToMask(mask->string(), mask_, picture_) : "";
    if (!objection.empty()) throw WorkError(objection);
}

Scene Originals::At(Session& session, int longSide) const {
    const double scale = std::min(1.0, static_cast<double>(longSide) / std::max(Width(), Height()));
    try {
        Scene scene;
        scene.source = Scaled(session, picture_, scale);
        scene.fill = fill_ ? Scaled(session, fill_, scale) : scene.source;
        scene.mask =
            mask_ ? Scaled(session, mask_, scale) : DrawMask(session, scene.source.Width(), scene.source.Height());
        return scene;
    } catch (const vips::VError&) {
        throw WorkError(file_.string() + " cannot be made smaller: " + TakeLibraryMessage());
    }
}

std::string Originals::DrawnMask() const { return SpotOfLight(Width(), Height()); }

VImage OnWhite(host::Host& host, const host::Picture& picture) {
    const host::Picture usable = Usable(host, picture);
    const host::Picture::Lock pixels(usable);
    VImage image = Viewed(usable, pixels, usable.Depth() == 32);
    if (image.bands() == 4) {
        image = image.flatten(VImage::option()->set("background", std::vector<double>{255, 255, 255}));
    }
    return image.copy_memory();
}

}  // namespace ombrix::cli
