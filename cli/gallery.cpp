// ombrix gallery: one picture under every effect that the plug-ins register, as a page and as a contact sheet.

#include <fstream>
#include <optional>
#include <system_error>

#include "cli/failure.h"
#include "cli/gallery_captions.h"
#include "cli/gallery_content.h"
#include "cli/gallery_page.h"
#include "cli/gallery_plan.h"
#include "cli/gallery_scene.h"
#include "cli/gallery_sheet.h"
#include "cli/image_reader.h"
#include "cli/output_file.h"
#include "cli/reflection.h"
#include "cli/result_file.h"
#include "cli/session.h"
#include "cli/text.h"
#include "host/text.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

constexpr int kTrialSize = 192;      // pixels of the longer side on which values are tried
constexpr int kThumbnailSize = 432;  // enough for screens with small pixels
constexpr int kCellSize = 296;       // in the contact sheet
constexpr int kThumbnailQuality = 74;
constexpr int kViewQuality = 72;  // what is judged here are colours and tones, not single pixels

struct Files {
    fs::path picture;
    std::optional<fs::path> fill, mask;
};

void CheckFiles(const GalleryCommand& command) {
    std::vector<fs::path> read{command.input};
    if (command.fill) read.push_back(*command.fill);
    if (command.mask) read.push_back(*command.mask);
    for (const auto& written : {command.page, command.sheet}) {
        for (const fs::path& file : read) {
            if (written) RefuseSameFile(file, *written);
        }
    }
    for (const fs::path& file : read) CheckImageFile(file);
    if (command.page) {
        const std::string suffix = host::LowerCase(command.page->extension().string());
        if (suffix != ".html" && suffix != ".htm") {
            throw UsageError("the gallery is a page, so --output is a file that ends with .html, not " +
                             command.page->string() + "; --sheet makes a picture");
        }
    }
    if (!command.page && !command.sheet) {
        throw UsageError("gallery needs a file to write: -o gallery.html, --sheet sheet.png or both");
    }
}

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

/// Makes the pictures of the gallery, one after the other.
class Studio {
  public:
    Studio(Session& session, const GalleryCommand& command, const Originals& originals)
        : session_(session),
          command_(command),
          originals_(originals),
          captions_(session, command, originals.Width(), originals.Height()),
          scene_(originals.At(session, command.size)) {}

    GalleryContent Content() {
        const std::vector<EffectPlan> plans = Plans();
        for (const EffectPlan& plan : plans) total_ += plan.shots.size();
        session_.console.BeginStage("gallery of " + Displayed(command_.input.filename()));

        GalleryContent content;
        content.title = Displayed(command_.input.filename()) + " under every effect";
        for (const EffectPlan& plan : plans) content.chapters.push_back(ChapterOf(plan));
        AddGiven(content);
        About(content);
        return content;
    }

  private:
    std::vector<EffectPlan> Plans() {
        const Scene small = originals_.At(session_, kTrialSize);
        std::vector<EffectPlan> plans;
        for (const host::ClassInfo& info : session_.host.Classes()) {
            const host::ClassInfo& type = *session_.host.FindClass(info.name);
            if (!Implements(session_.host, type, kEffectInterface)) continue;
            session_.console.BeginStage("trying values of " + type.name);
            plans.push_back(PlanShots(session_, type, small));
        }
        return plans;
    }

    Chapter ChapterOf(const EffectPlan& plan) {
        const host::ClassInfo& type = *plan.type;
        Chapter chapter{type.name, OriginOf(type), plan.facts, {}};
        for (const Shot& shot : plan.shots) {
            session_.console.Report(static_cast<std::int64_t>(done_++), static_cast<std::int64_t>(total_));
            const host::Picture result = Applied(session_, type, shot.settings, scene_);
            if (!result) continue;  // it took the values on the small picture only
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
            origin += (origin.empty() ? "" : ", ") + ("implements " + Listed(type.interfaces));
        }
        return origin + ", registered by " + Displayed(fs::path(type.plugin).filename());
    }

    Exhibit Shown(const host::Picture& picture) {
        const VImage image = OnWhite(session_, picture);
        Exhibit exhibit;
        exhibit.view = Encoded(image, session_.options.quality.value_or(kViewQuality));
        const VImage thumbnail = FittedInto(image, kThumbnailSize);
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
        add(scene_.source, command_.input, "the picture as it was given");
        if (command_.fill) add(scene_.fill, *command_.fill, "the fill for effects that lay one over the picture");
        if (!usesMask_) return;
        if (command_.mask) {
            add(scene_.mask, *command_.mask, "the mask: where it is black an effect is whole, where it is white gone");
        } else {
            content.drawnMask = originals_.DrawnMask();
            content.drawnMaskName = kDrawnMaskName;
            add(scene_.mask, kDrawnMaskName,
                "the mask, a spot of light that darkens towards the corners: where it is black an effect is whole, "
                "where it is white gone");
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
        if (usesFill_ && !command_.fill) {
            content.about.push_back(
                "No fill was given (--fill FILE): where an effect needs one, it is the picture itself.");
        }
        if (command_.fill &&
            (scene_.fill.Width() < scene_.source.Width() || scene_.fill.Height() < scene_.source.Height())) {
            content.about.push_back(Displayed(command_.fill->filename()) +
                                    " is smaller than the picture and need not reach all of it.");
        }
        if (!without.empty()) {
            content.about.push_back("No picture came from " + Listed(without) + ", whatever single values were tried.");
        }
    }

    Session& session_;
    const GalleryCommand& command_;
    const Originals& originals_;
    Captions captions_;
    const Scene scene_;
    std::size_t done_ = 0, total_ = 0;
    bool usesFill_ = false, usesMask_ = false;
};

void WriteText(const std::string& text, OutputFile& file) {
    std::ofstream stream(file.Create(), std::ios::binary);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream) throw WorkError(file.Target().string() + " cannot be written: the disk may be full");
}

}  // namespace

void Gallery(Session& session, const GalleryCommand& command) {
    CheckFiles(command);
    std::optional<OutputFile> page;
    if (command.page) page.emplace(*command.page, session.options.force);
    // The quality that was asked for is that of the page's pictures; the sheet has its own kind of file.
    Options sheetOptions = session.options;
    sheetOptions.quality.reset();
    Session sheetSession{session.host, sheetOptions, session.console};
    std::optional<ResultFile> sheet;
    if (command.sheet) sheet.emplace(sheetSession, *command.sheet, session.options.force);

    const Originals originals(session, command.input, command.fill, command.mask);
    try {
        const GalleryContent content = Studio(session, command, originals).Content();
        // Neither file takes its place before both are written.
        if (page) WriteText(LayOutPage(content), *page);
        if (sheet) sheet->Write(sheetSession, LayOutSheet(session, content), {});
        if (page) page->Commit();
    } catch (const vips::VError&) {
        throw WorkError("the gallery cannot be made: " + TakeLibraryMessage());
    }
}

}  // namespace ombrix::cli
