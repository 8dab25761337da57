#include "bridges/vips/work.h"

#include <ombrix/parts.h>

#include <algorithm>
#include <memory>
#include <string>

#include "bridges/vips/images.h"

namespace ombrix::bridge {

using catalogue::Coordinates;
using vips::VImage;

namespace {

struct Unref {
    void operator()(VipsRegion* region) const { g_object_unref(region); }
};
using Region = std::unique_ptr<VipsRegion, Unref>;

std::string SizeOf(const VImage& image) {
    return std::to_string(image.width()) + " x " + std::to_string(image.height()) + " pixels";
}

void Prepare(VipsRegion* region, const VipsRect& area) {
    if (vips_region_prepare(region, &area) != 0) throw vips::VError();
}

/// Runs `body` for libvips, which wants its error in a buffer.
template <class Body>
auto Told(const Effect& effect, Body body, decltype(body()) failed) {
    try {
        return body();
    } catch (const vips::VError&) {  // which is in the buffer
    } catch (const std::exception& error) {
        vips_error(("ombrix_" + effect.word).c_str(), "%s", error.what());
    }
    return failed;
}

}  // namespace

/// What a thread of libvips has for itself.
struct Work::Sequence {
    Object object;
    Region source;
    std::vector<Region> pictures;
};

Work::Work(const Effect& effect, VImage source, const Settings& settings)
    : effect_(effect), values_(settings.values), source_(InColours(std::move(source))) {
    if (source_.bands() > 4) {
        const int more = source_.bands() - 3;
        extra_ = source_.extract_band(3, VImage::option()->set("n", more));
        source_ = Colours(source_);
    }
    for (const auto& [property, image] : settings.pictures) pictures_.push_back({property, InColours(image)});
    for (std::size_t i = 0; i < pictures_.size(); ++i) ShowShape(i);
    for (auto& [property, image] : pictures_) {
        image = Colours(image);
        if (property->role != Role::Along) continue;
        if (image.width() < source_.width() || image.height() < source_.height()) {
            throw Error(property->word + " is " + SizeOf(image) + ", smaller than the input, " + SizeOf(source_));
        }
    }
}

void Work::ShowShape(std::size_t index) {
    const auto [shown, image] = pictures_[index];
    if (!shown->shapeMask || image.bands() < 4) return;
    const std::string& name = shown->shapeMask->property;
    const bool whiteHides = shown->shapeMask->whiteHides;
    const auto given = std::ranges::find(pictures_, name, [](const Picture& each) { return each.property->name; });
    VImage visible = image[3];
    if (given != pictures_.end()) {
        // Of other sizes they are for the effect to judge.
        if (given->image.width() != image.width() || given->image.height() != image.height()) return;
        const VImage red = given->image[0];
        visible = (visible * (whiteHides ? red.invert() : red) / 255.0).rint().cast(VIPS_FORMAT_UCHAR);
    }
    const VImage grey = whiteHides ? visible.invert() : visible;
    const VImage mask =
        VImage::bandjoin({grey, grey, grey}).copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    if (given != pictures_.end()) {
        given->image = mask;
        return;
    }
    const auto property = std::ranges::find(effect_.properties, name, &Property::name);
    if (property != effect_.properties.end()) pictures_.push_back({&*property, mask});
}

VImage Work::Result() {
    const VImage result = CanGoByRegions() ? ByRegions() : AsAWhole();
    return extra_ ? result.bandjoin(*extra_) : result;
}

bool Work::CanGoByRegions() const {
    const VImage* placed = nullptr;
    for (const Picture& picture : pictures_) {
        if (picture.property->role == Role::None) return false;
        if (picture.property->role != Role::Placed) continue;
        // Of different sizes they cannot be cut alike.
        const VImage& image = picture.image;
        if (placed && (placed->width() != image.width() || placed->height() != image.height())) return false;
        placed = &image;
    }
    return effect_.pixelByPixel;
}

Object Work::NewObject() const {
    Object object(effect_.name);
    for (const auto& [property, value] : values_) {
        std::visit(
            [&](const auto& given) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(given)>, std::monostate>) {
                    object.Set(property->name, given);
                }
            },
            value);
    }
    return object;
}

VImage Work::AsAWhole() const {
    Object object = NewObject();
    std::vector<VImage> held;
    for (const Picture& picture : pictures_) {
        held.push_back(picture.image.copy_memory());
        object.Set(picture.property->name, RowsOf(held.back()));
    }
    const VImage memory = source_.copy_memory();
    const std::size_t bytes = VIPS_IMAGE_SIZEOF_IMAGE(memory.get_image());
    VipsImage* copy = vips_image_new_from_memory_copy(memory.data(), bytes, memory.width(), memory.height(),
                                                      memory.bands(), VIPS_FORMAT_UCHAR);
    if (copy == nullptr) throw vips::VError();
    const VImage result(copy);
    object.Apply(RowsOf(memory), RowsOf(result));
    // The header comes from the source, the pixels from the result.
    return memory.copy().insert(result, 0, 0);
}

VImage Work::ByRegions() {
    VImage result(vips_image_new());
    std::vector<VipsImage*> inputs{source_.get_image()};
    for (const Picture& picture : pictures_) inputs.push_back(picture.image.get_image());
    inputs.push_back(nullptr);
    // A call costs some microseconds, which strips of sixteen rows outweigh.
    if (vips_image_pipeline_array(result.get_image(), VIPS_DEMAND_STYLE_FATSTRIP, inputs.data()) != 0 ||
        vips_image_generate(result.get_image(), Start, Generate, Stop, this, nullptr) != 0) {
        throw vips::VError();
    }
    return result;
}

std::optional<Point> Work::PointOf(Role role) const {
    for (const auto& [property, value] : values_) {
        if (property->role == role) return std::get<Point>(value);
    }
    for (const Property& property : effect_.properties) {
        const auto* initial = std::get_if<Point>(&property.initial);
        if (property.role == role && initial != nullptr) return *initial;
    }
    return std::nullopt;
}

void Work::SetPart(Sequence& sequence, const VipsRect& area) const {
    const catalogue::Rectangle part{area.left, area.top, area.width, area.height};
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        VipsRegion* region = sequence.pictures[i].get();
        VipsRect seen = area;
        if (pictures_[i].property->role == Role::Placed) {
            const Point position = PointOf(Role::Position).value_or(Point{});
            const std::optional<Point> extent = PointOf(Role::Extent);
            const catalogue::PlacedPart placed =
                catalogue::PlaceInPart(part, {region->im->Xsize, region->im->Ysize}, {position.x, position.y},
                                       extent ? std::optional(Coordinates{extent->x, extent->y}) : std::nullopt);
            seen = {static_cast<int>(placed.cut.left), static_cast<int>(placed.cut.top),
                    static_cast<int>(placed.cut.width), static_cast<int>(placed.cut.height)};
            for (const Property& property : effect_.properties) {
                if (property.role == Role::Position) {
                    sequence.object.Set(property.name, Point{placed.position.x, placed.position.y});
                }
                if (property.role == Role::Extent) {
                    sequence.object.Set(property.name, Point{placed.extent.x, placed.extent.y});
                }
            }
        }
        Prepare(region, seen);
        sequence.object.Set(pictures_[i].property->name, RowsOf(region, seen));
    }
}

void Work::Generate(Sequence& sequence, VipsRegion* out) const {
    const VipsRect area = out->valid;
    SetPart(sequence, area);
    Prepare(sequence.source.get(), area);
    sequence.object.Apply(RowsOf(sequence.source.get(), area), RowsOf(out, area));
}

void* Work::Start(VipsImage*, void* given, void*) {
    const Work& work = *static_cast<Work*>(given);
    return Told(
        work.effect_,
        [&]() -> void* {
            auto sequence =
                std::make_unique<Sequence>(work.NewObject(), Region(vips_region_new(work.source_.get_image())));
            for (const Picture& picture : work.pictures_) {
                sequence->pictures.emplace_back(vips_region_new(picture.image.get_image()));
            }
            return sequence.release();
        },
        nullptr);
}

int Work::Generate(VipsRegion* out, void* sequence, void* given, void*, gboolean*) {
    const Work& work = *static_cast<Work*>(given);
    return Told(
        work.effect_,
        [&] {
            work.Generate(*static_cast<Sequence*>(sequence), out);
            return 0;
        },
        -1);
}

int Work::Stop(void* sequence, void*, void*) {
    delete static_cast<Sequence*>(sequence);
    return 0;
}

}  // namespace ombrix::bridge
