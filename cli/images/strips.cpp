#include "cli/images/strips.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "cli/failure.h"
#include "cli/supervisor/progress_of_work.h"

namespace ombrix::cli {

using catalogue::Rectangle;
using vips::VImage;

namespace {

VipsRect ToVips(const Rectangle& area, int top) {
    return {static_cast<int>(area.left), static_cast<int>(area.top) + top, static_cast<int>(area.width),
            static_cast<int>(area.height)};
}

/// The pixels of a prepared region as a picture, without a copy.
host::Picture Wrapped(host::Host& host, VipsRegion* region, const VipsRect& area) {
    return host.WrapPixels({VIPS_REGION_ADDR(region, area.left, area.top),
                            static_cast<std::ptrdiff_t>(VIPS_REGION_LSKIP(region)), area.width, area.height,
                            8 * region->im->Bands});
}

constexpr bool kLittleEndian = std::endian::native == std::endian::little;

/// Red, green, blue, alpha to alpha, red, green, blue.
void AlphaFirst(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + 4 * i, sizeof pixel);
        pixel = kLittleEndian ? std::rotl(pixel, 8) : std::rotr(pixel, 8);
        std::memcpy(to + 4 * i, &pixel, sizeof pixel);
    }
}

void AlphaLast(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + 4 * i, sizeof pixel);
        pixel = kLittleEndian ? std::rotr(pixel, 8) : std::rotl(pixel, 8);
        std::memcpy(to + 4 * i, &pixel, sizeof pixel);
    }
}

/// The source of a part: without a copy, or alpha first.
host::Picture SourceOf(host::Host& host, VipsRegion* region, const VipsRect& area) {
    if (region->im->Bands == 3) return Wrapped(host, region, area);
    const host::Picture picture = host.NewPicture(area.width, area.height);
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < area.height; ++y) {
        AlphaFirst(VIPS_REGION_ADDR(region, area.left, area.top + y), pixels.Row(y).data(),
                   static_cast<std::size_t>(area.width));
    }
    return picture;
}

void PutInto(VipsRegion* out, const VipsRect& area, const host::Picture& picture) {
    if (picture.Width() != area.width || picture.Height() != area.height || picture.Depth() != 8 * out->im->Bands) {
        throw WorkError("an effect gave a part of another size or depth than it was given");
    }
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < area.height; ++y) {
        std::uint8_t* to = VIPS_REGION_ADDR(out, area.left, area.top + y);
        if (out->im->Bands == 3) {
            std::memcpy(to, pixels.Row(y).data(), pixels.Row(y).size());
        } else {
            AlphaLast(pixels.Row(y).data(), to, static_cast<std::size_t>(area.width));
        }
    }
}

void Prepare(VipsRegion* region, const VipsRect& area, const OpenedImage& image) {
    const Doing reading(Activity::Reading, image.file.string());
    if (vips_region_prepare(region, &area) != 0) throw DamagedFile(image.file);
    Work().pixels += std::int64_t{area.width} * area.height;
}

void Raise(std::atomic<int>& most, int value) {
    int before = most;
    while (before < value && !most.compare_exchange_weak(before, value)) {
    }
}

/// All placed pictures of a step have one size.
catalogue::PlacedPart PlaceIn(const Rectangle& part, const StripStep& step) {
    for (std::size_t i = 0; i < step.pictures.size(); ++i) {
        if (step.roles.pictures[i].role != catalogue::PictureRole::Placed) continue;
        const VImage& picture = step.pictures[i].image;
        return catalogue::PlaceInPart(part, {picture.width(), picture.height()}, step.position, step.extent);
    }
    return {};
}

}  // namespace

VImage Strips::Image() {
    std::vector<VipsImage*> inputs{source_.image.get_image()};
    for (const StripStep& step : steps_) {
        for (const OpenedImage& picture : step.pictures) inputs.push_back(picture.image.get_image());
    }
    inputs.push_back(nullptr);

    VipsImage* out = vips_image_new();
    const VImage result(out);
    // libvips wants the array to live as long as the image.
    VipsImage** images = VIPS_ARRAY(VIPS_OBJECT(out), inputs.size(), VipsImage*);
    std::copy(inputs.begin(), inputs.end(), images);
    for (VipsImage** each = images; *each != nullptr; ++each) {
        g_object_ref(*each);
        vips_object_local(out, *each);
    }
    if (vips_image_pipeline_array(out, VIPS_DEMAND_STYLE_FATSTRIP, images) != 0 ||
        vips_image_generate(out, vips_start_many, Generate, vips_stop_many, images, this) != 0) {
        throw vips::VError();
    }
    return result;
}

std::size_t Strips::PictureCount() const {
    std::size_t count = 0;
    for (const StripStep& step : steps_) count += step.pictures.size();
    return count;
}

void Strips::CheckTheRest() {
    auto rows = rowsRead_.begin();
    for (const StripStep& step : steps_) {
        for (const OpenedImage& picture : step.pictures) {
            if (*rows++ < picture.image.height()) CheckWholeImage(picture.file);
        }
    }
}

void Strips::Rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
}

int Strips::Generate(VipsRegion* out, void* inputs, void* /*images*/, void* self, gboolean* /*stop*/) {
    auto& strips = *static_cast<Strips*>(self);
    const VipsRect& area = out->valid;
    try {
        const int pageHeight = strips.source_.pageHeight;
        for (int y = area.top; y < VIPS_RECT_BOTTOM(&area);) {
            const int top = y / pageHeight * pageHeight;
            const int end = std::min(VIPS_RECT_BOTTOM(&area), top + pageHeight);
            strips.Fill(out, static_cast<VipsRegion**>(inputs), {area.left, y - top, area.width, end - y}, top);
            y = end;
        }
        strips.session_.console.Report(VIPS_RECT_BOTTOM(&area), out->im->Ysize);
        return 0;
    } catch (...) {
        const std::lock_guard lock(strips.mutex_);
        if (!strips.failure_) strips.failure_ = std::current_exception();
    }
    vips_error("ombrix", "%s", "an effect failed");
    return -1;
}

void Strips::Fill(VipsRegion* out, VipsRegion** inputs, const Rectangle& part, int top) {
    const VipsRect area = ToVips(part, top);
    Prepare(inputs[0], area, source_);
    struct Given {
        VipsRegion* region;  ///< null where nothing of the picture lies in the part
        VipsRect area;
    };
    std::vector<Given> given;
    std::vector<catalogue::PlacedPart> placed;
    VipsRegion** input = inputs;
    // All before the turn begins, since they may wait for other threads.
    for (const StripStep& step : steps_) {
        const catalogue::PlacedPart place = PlaceIn(part, step);
        for (std::size_t i = 0; i < step.pictures.size(); ++i) {
            const bool isPlaced = step.roles.pictures[i].role == catalogue::PictureRole::Placed;
            VipsRegion* region = *++input;
            if (isPlaced && !place.isThere) region = nullptr;
            given.push_back({region, ToVips(isPlaced ? place.cut : part, 0)});
            if (region == nullptr) continue;
            Prepare(region, given.back().area, step.pictures[i]);
            Raise(rowsRead_[given.size() - 1], VIPS_RECT_BOTTOM(&given.back().area));
        }
        placed.push_back(place);
    }

    const host::Host::Turn turn(session_.host);
    host::Picture picture = SourceOf(session_.host, inputs[0], area);
    auto next = given.begin();
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const StripStep& step = steps_[i];
        for (const auto& property : step.roles.pictures) {
            step.effect.Set(property.name, next->region != nullptr ? Wrapped(session_.host, next->region, next->area)
                                                                   : session_.host.NewPicture(1, 1, 24));
            ++next;
        }
        for (const auto& point : step.roles.points) {
            const auto set = [&](catalogue::Coordinates to) {
                step.effect.Set(point.name, session_.host.NewPoint(to.x, to.y));
            };
            if (point.role == catalogue::PointRole::Position) set(placed[i].position);
            if (point.role == catalogue::PointRole::Extent) set(placed[i].extent);
        }
        const Doing working(Activity::Effect, step.effect.ClassName());
        const host::Value result = step.effect.CallInterface(host::kEffectInterface, "Apply", {host::Object(picture)});
        step.check();
        if (result.IsNil()) throw WorkError(step.effect.ClassName() + " gave no picture and no reason");
        picture = host::Picture(result.AsObject());
        // The regions' memory is not theirs for longer.
        for (const auto& property : step.roles.pictures) step.effect.Set(property.name, nullptr);
    }
    PutInto(out, area, picture);
}

}  // namespace ombrix::cli
