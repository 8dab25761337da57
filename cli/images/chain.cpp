#include "cli/images/chain.h"

#include <algorithm>

#include "cli/failure.h"
#include "cli/images/image_writer.h"
#include "cli/images/pages.h"
#include "cli/images/result_file.h"
#include "cli/outcome.h"
#include "cli/supervisor/progress_of_work.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

/// What a step sets of a role; null when it sets nothing.
const PlannedSetting* Giving(const PlannedStep& step, const catalogue::PartRoles& roles, catalogue::PointRole role) {
    for (const auto& property : roles.points) {
        if (property.role != role) continue;
        for (const PlannedSetting& setting : step.properties) {
            const auto* value = std::get_if<host::Value>(&setting.value);
            if (value && !value->IsNil() && text::SameName(setting.name, property.name)) return &setting;
        }
    }
    return nullptr;
}

std::optional<catalogue::Coordinates> GivenPoint(const PlannedStep& step, const catalogue::PartRoles& roles,
                                                 catalogue::PointRole role) {
    const PlannedSetting* setting = Giving(step, roles, role);
    if (!setting) return std::nullopt;
    const host::Point point(std::get<host::Value>(setting->value).AsObject());
    return catalogue::Coordinates{point.X(), point.Y()};
}

/// Whether all placed pictures have one size, so that their parts have as well.
bool ArePlacedAlike(const std::vector<OpenedImage>& images, const catalogue::PartRoles& roles) {
    const VImage* first = nullptr;
    for (std::size_t i = 0; i < images.size(); ++i) {
        const VImage& image = images[i].image;
        if (roles.pictures[i].role != catalogue::PictureRole::Placed) continue;
        if (!first) first = &image;
        if (image.width() != first->width() || image.height() != first->height()) return false;
    }
    return true;
}

std::string Typed(catalogue::Coordinates point) { return std::to_string(point.x) + "," + std::to_string(point.y); }

/// Says so when a given extent below 0 means the whole of a placed image.
void NoteWholeExtent(Session& session, const PlannedStep& step, const catalogue::PartRoles& roles,
                     const OpenedImage& placed) {
    const auto extent = GivenPoint(step, roles, catalogue::PointRole::Extent);
    if (!extent || (extent->x >= 0 && extent->y >= 0)) return;
    const catalogue::Coordinates size{placed.image.width(), placed.pageHeight};
    const catalogue::Coordinates works{extent->x < 0 ? size.x : extent->x, extent->y < 0 ? size.y : extent->y};
    session.console.Note(Giving(step, roles, catalogue::PointRole::Extent)->given.AsGiven() + " works as " +
                         Typed(works) + ", since " + placed.file.string() + " is " + text::Size(size.x, size.y));
}

/// Says so when the step's points leave nothing of what it lays over the image.
void NoteIfNothingShows(Session& session, const PlannedStep& step, const catalogue::PartRoles& roles,
                        const std::vector<OpenedImage>& images, catalogue::Coordinates size) {
    for (std::size_t i = 0; i < images.size(); ++i) {
        if (roles.pictures[i].role != catalogue::PictureRole::Placed) continue;
        const VImage& image = images[i].image;
        const auto position = GivenPoint(step, roles, catalogue::PointRole::Position);
        const auto placed = catalogue::PlaceInPart({0, 0, size.x, size.y}, {image.width(), image.height()},
                                                   position.value_or(catalogue::Coordinates{}),
                                                   GivenPoint(step, roles, catalogue::PointRole::Extent));
        NoteWholeExtent(session, step, roles, images[i]);
        if (placed.isThere) return;  // placed pictures have one size
        std::vector<std::string> points;
        for (const PlannedSetting& setting : step.properties) {
            const auto* value = std::get_if<host::Value>(&setting.value);
            if (value && value->IsObject()) points.push_back(setting.given.AsGiven());
        }
        session.console.Note("nothing of " + images[i].file.string() + " lies in the picture, " +
                             text::Size(size.x, size.y) + ", with " + text::Listed(points));
        return;  // placed pictures have one size
    }
}

VImage Colours(const VImage& image) {
    return image.bands() > 3 ? image.extract_band(0, VImage::option()->set("n", 3)) : image;
}

}  // namespace

Chain::Chain(Session& session, OpenedImage source) : session_(session), image_(std::move(source)) {}

void Chain::Add(const PlannedStep& step) {
    const std::vector<StepPicture> given = OpenStepPictures(session_, step.type, step.properties);
    if (!AddInStrips(step, given)) AddWhole(step, given);
}

VImage Chain::Image() {
    if (!pending_.empty()) {
        strips_.push_back(std::make_unique<Strips>(session_, image_, std::exchange(pending_, {})));
        image_.image = strips_.back()->Image();
    }
    return image_.image;
}

void Chain::CheckTheRest() {
    for (const auto& strips : strips_) strips->CheckTheRest();
}

void Chain::Rethrow() const {
    for (const auto& strips : strips_) strips->Rethrow();
}

bool Chain::AddInStrips(const PlannedStep& step, const std::vector<StepPicture>& given) {
    std::vector<OpenedImage> images;
    std::vector<catalogue::PictureToSet> pictures;
    std::vector<std::string> points;
    for (const StepPicture& picture : given) {
        images.push_back(picture.image);
        VImage& image = images.back().image;
        image = Colours(image);
        pictures.push_back(
            {picture.property, image.width() >= image_.image.width() && image.height() >= image_.pageHeight});
    }
    for (const PlannedSetting& setting : step.properties) {
        if (!setting.File() && std::get<host::Value>(setting.value).IsObject()) points.push_back(setting.name);
    }
    const auto roles = [&] {
        const Doing trying(Activity::Effect, step.type.name);
        return catalogue::FindPartRoles(session_.host, step.type, pictures, points, 8 * image_.image.bands(),
                                        [&step](const host::Object& object) { SetValues(step.properties, object); });
    }();
    if (!roles || !ArePlacedAlike(images, *roles)) return false;

    NoteIfNothingShows(session_, step, *roles, images, {image_.image.width(), image_.pageHeight});
    const host::Object effect = session_.host.New(step.type.name);
    SetCores(session_, step.type, effect);
    SetValues(step.properties, effect);
    pending_.push_back(
        {.effect = effect,
         .roles = *roles,
         .pictures = std::move(images),
         .position = GivenPoint(step, *roles, catalogue::PointRole::Position).value_or(catalogue::Coordinates{}),
         .extent = GivenPoint(step, *roles, catalogue::PointRole::Extent),
         .check = [this, &step, effect] {
             CheckErrorCode(session_, {step.type, effect, {}, step.properties, {}});
         }});
    return true;
}

host::Picture Chain::WholeSource() {
    const VImage before = Image();
    session_.console.BeginStage("reading " + image_.file.string());
    const Doing reading(Activity::Reading, image_.file.string());
    try {
        return PictureOf(session_.host, before, session_.console);
    } catch (const vips::VError&) {
        Rethrow();
        throw DamagedFile(image_.file);
    }
}

void Chain::AddWhole(const PlannedStep& step, const std::vector<StepPicture>& given) {
    const host::Picture source = WholeSource();
    std::vector<GivenPicture> pictures;
    const host::Object effect = session_.host.New(step.type.name);
    SetCores(session_, step.type, effect);
    SetValues(step.properties, effect);
    for (const StepPicture& picture : given) {
        pictures.push_back({picture.setting, Decoded(session_, picture.image)});
        effect.Set(picture.property, pictures.back().read.picture);
    }
    SetProgressHandler(session_, step.type, effect);
    session_.console.BeginStage(step.type.name);
    const Doing working(Activity::Effect, step.type.name);
    const host::Picture::Lock pixels(source);
    std::vector<VImage> pages;
    for (int top = 0; top < source.Height(); top += image_.pageHeight) {
        const host::Picture page = session_.host.WrapPixels({pixels.Base() + top * pixels.RowBytes(), pixels.RowBytes(),
                                                             source.Width(), image_.pageHeight, source.Depth()});
        const host::Picture result(
            effect.CallInterface(host::kEffectInterface, "Apply", {host::Object(page)}).AsObject());
        CheckErrorCode(session_, {step.type, effect, page, step.properties, pictures});
        if (!result) throw WorkError(step.type.name + " gave no picture and no reason");
        shown_.push_back(std::make_unique<Shown>(Usable(session_.host, result)));
        const Shown& shown = *shown_.back();
        pages.push_back(Viewed(shown.picture, shown.pixels, image_.image.bands() == 4 && shown.picture.Depth() == 32));
    }
    Stack(pages);
}

void Chain::Stack(const std::vector<VImage>& pages) {
    const VImage before = image_.image;
    image_.image = pages.front();
    if (pages.size() == 1) {
        image_.pageHeight = image_.image.height();
        return;
    }
    for (const VImage& page : pages) {
        if (page.width() == image_.image.width() && page.height() == image_.image.height()) continue;
        throw WorkError("an effect gave pages of several sizes");
    }
    image_.pageHeight = pages.front().height();
    image_.image = AsPagesOf(VImage::arrayjoin(pages, VImage::option()->set("across", 1)), before, image_.pageHeight);
}

}  // namespace ombrix::cli
