#include "cli/gallery/content.h"

#include <algorithm>
#include <optional>

#include "cli/gallery/captions.h"
#include "cli/gallery/plan.h"
#include "cli/reflection.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

constexpr int kTrialSize = 192;      // longer side, in pixels, to try values on
constexpr int kThumbnailSize = 432;  // sharp on dense screens
constexpr int kCellSize = 296;       // for the contact sheet
constexpr int kThumbnailQuality = 74;
constexpr int kViewQuality = 72;  // enough to judge colours and tones

EncodedPicture Encoded(const VImage& image, int quality) {
    VipsBlob* blob = image.jpegsave_buffer(VImage::option()->set("Q", quality)->set("optimize_coding", true));
    std::size_t size = 0;
    const void* bytes = vips_blob_get(blob, &size);
    EncodedPicture encoded{image.width(), image.height(), std::string(static_cast<const char*>(bytes), size)};
    vips_area_unref(VIPS_AREA(blob));
    return encoded;
}

VImage FittedInto(const VImage& image, int size) {
    const double scale = std::min(1.0, static_cast<double>(size) / std::max(image.width(), image.height()));
    return image.resize(scale).cast(VIPS_FORMAT_UCHAR).copy_memory();
}

/// Without the ends of a very wide or very tall image: of all of it, little would be seen on a card.
VImage Middle(const VImage& image) {
    constexpr double kWidest = 4, kTallest = 16.0 / 9;  // phones' pictures are shown whole
    const int width = std::min(image.width(), static_cast<int>(kWidest * image.height()));
    const int height = std::min(image.height(), static_cast<int>(kTallest * image.width()));
    return image.extract_area((image.width() - width) / 2, (image.height() - height) / 2, width, height);
}

class Maker {
  public:
    Maker(Session& session, const GalleryRequest& request, const Originals& originals)
        : session_(session),
          request_(request),
          originals_(originals),
          captions_(session, request, originals.Width(), originals.Height()),
          scene_(originals.Whole()) {}

    GalleryContent Content() {
        const std::vector<EffectPlan> plans = Plans();
        for (const EffectPlan& plan : plans) total_ += plan.shots.size();
        session_.console.BeginStage("gallery of " + Displayed(request_.picture.filename()));

        GalleryContent content;
        content.title = Displayed(request_.picture.filename()) + " under every effect";
        for (const EffectPlan& plan : plans) content.chapters.push_back(ChapterOf(plan));
        AddGiven(content);
        About(content);
        return content;
    }

  private:
    std::vector<EffectPlan> Plans() {
        const Scene small = originals_.At(session_, kTrialSize);
        std::vector<EffectPlan> plans;
        for (const catalogue::Effect& effect : session_.catalogue.Effects()) {
            session_.console.BeginStage("trying values of " + effect.Name());
            plans.push_back(PlanShots(session_, effect, small));
        }
        return plans;
    }

    Chapter ChapterOf(const EffectPlan& plan) {
        const host::ClassInfo& type = *plan.type;
        Chapter chapter{type.name, OriginOf(type), plan.facts, {}};
        for (const Shot& shot : plan.shots) {
            session_.console.Report(static_cast<std::int64_t>(done_++), static_cast<std::int64_t>(total_));
            const host::Picture result = Applied(session_, type, shot.settings, scene_);
            if (!result) continue;  // refused on the large picture only
            Exhibit exhibit = Shown(result);
            exhibit.title = captions_.Title(type, shot);
            exhibit.description = captions_.Description(type, shot);
            exhibit.command = captions_.CommandLine(type, shot);
            for (const SceneSetting& setting : shot.settings) {
                const auto* role = std::get_if<Role>(&setting.value);
                (role && *role == Role::Fill ? usesFill_ : usesMask_) |= role != nullptr;
            }
            chapter.exhibits.push_back(std::move(exhibit));
        }
        return chapter;
    }

    static std::string OriginOf(const host::ClassInfo& type) {
        std::string origin = type.superclass.empty() ? "" : "derived from " + type.superclass;
        if (!type.interfaces.empty()) {
            origin += (origin.empty() ? "" : ", ") + ("implements " + text::Listed(type.interfaces));
        }
        return origin + ", registered by " + Displayed(fs::path(type.plugin).filename());
    }

    Exhibit Shown(const host::Picture& picture) {
        const VImage image = OnChecks(session_.host, picture);
        Exhibit exhibit;
        exhibit.view = Encoded(image, session_.options.quality.value_or(kViewQuality));
        const VImage thumbnail = FittedInto(Middle(image), kThumbnailSize);
        exhibit.thumbnail = Encoded(thumbnail, kThumbnailQuality);
        exhibit.cell = FittedInto(thumbnail, kCellSize);
        return exhibit;
    }

    void AddGiven(GalleryContent& content) {
        const auto add = [&](const host::Picture& picture, const fs::path& file, const std::string& what) {
            Exhibit exhibit = Shown(picture);
            exhibit.title = Displayed(file.filename());
            exhibit.description = exhibit.title + ", " + what;
            content.given.push_back(std::move(exhibit));
        };
        add(scene_.source, request_.picture, "the picture as it was given");
        if (request_.fill) add(scene_.fill, *request_.fill, "the fill, for effects that blend one over the picture");
        if (!usesMask_) return;
        if (request_.mask) {
            add(scene_.mask, *request_.mask, "the mask: the whole effect where it is black, none where it is white");
        } else {
            content.drawnMask = originals_.DrawnMask();
            content.drawnMaskName = kDrawnMaskName;
            add(scene_.mask, kDrawnMaskName,
                "the mask, a spot of light that darkens towards the corners: the whole effect where it is black, none "
                "where it is white");
        }
    }

    void About(GalleryContent& content) const {
        std::size_t effects = 0;
        std::vector<std::string> without;
        for (const Chapter& chapter : content.chapters) {
            if (chapter.exhibits.empty()) {
                without.push_back(chapter.title);
            } else {
                ++effects;
            }
        }
        content.about.push_back(
            std::to_string(done_) + " pictures from " + std::to_string(effects) +
            (effects == 1 ? " effect." : " effects.") + " Each command line makes its picture at full size, " +
            std::to_string(originals_.Width()) + " × " + std::to_string(originals_.Height()) + " pixels.");
        if (usesFill_ && !request_.fill) {
            content.about.push_back(
                "No fill was given (--fill FILE): where an effect needs one, it is the picture itself.");
        }
        if (request_.fill &&
            (scene_.fill.Width() < scene_.source.Width() || scene_.fill.Height() < scene_.source.Height())) {
            content.about.push_back(Displayed(request_.fill->filename()) +
                                    " is smaller than the picture and need not reach all of it.");
        }
        if (!without.empty()) {
            content.about.push_back("No picture came from " + text::Listed(without) +
                                    ", whatever single values were tried.");
        }
    }

    Session& session_;
    const GalleryRequest& request_;
    const Originals& originals_;
    Captions captions_;
    const Scene scene_;
    std::size_t done_ = 0, total_ = 0;
    bool usesFill_ = false, usesMask_ = false;
};

}  // namespace

GalleryContent MakeContent(Session& session, const GalleryRequest& request, const Originals& originals) {
    return Maker(session, request, originals).Content();
}

}  // namespace ombrix::cli
