// ombrix gallery: a picture under every effect, as a page and as a contact sheet.

#include <optional>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/gallery/content.h"
#include "cli/gallery/page.h"
#include "cli/gallery/request.h"
#include "cli/gallery/scene.h"
#include "cli/gallery/sheet.h"
#include "cli/images/image_reader.h"
#include "cli/images/output_file.h"
#include "cli/images/picture_work.h"
#include "cli/images/result_file.h"
#include "cli/settings.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* kHelp = R"(Shows a picture under every effect that the plug-ins register.

Examples:
  ombrix gallery photo.jpg -o gallery.html
  ombrix gallery photo.jpg --fill texture.jpg -o gallery.html
  ombrix gallery photo.jpg --fill texture.jpg --sheet sheet.png

The page is one file that needs no other. Under each picture is the command line that makes it.)";

constexpr const char* kUsage = R"(  ombrix gallery PICTURE [--fill FILE] [--mask FILE] [-o PAGE.html] [--sheet FILE])";

constexpr int kPictures = 40;  // about as many effects and modes as plug-ins have

const Command::About kAbout = {"gallery", "Show a picture under every effect", {kHelp, kUsage}};

class Gallery : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override {
        app.add_option("words", words_)->group("");
        const auto add = [&app](const char* name, const char* type, const char* about, std::string& word) {
            app.add_option(name, word, about)->type_name(type);
        };
        add("-o,--output", "FILE", "The page to write, a .html file", page_);
        add("--sheet", "FILE", "The same as one picture, a contact sheet", sheet_);
        add("--fill", "FILE", "Image for effects that blend one over the picture", fill_);
        add("--mask", "FILE", "Mask image, instead of a drawn one", mask_);
        add("--size", "N", "Pixels of the longer side of the page's pictures, 64 to 8192 (1120)", size_);
    }

    void Check() override {
        if (words_.size() != 1) {
            throw UsageError("gallery shows one picture, and was given " +
                             (words_.empty() ? "none" : text::Listed(words_)));
        }
        RefuseEmpty(words_.front(), "PICTURE");
        request_.picture = words_.front();
        if (!fill_.empty()) request_.fill = fill_;
        if (!mask_.empty()) request_.mask = mask_;
        if (!size_.empty()) request_.size = static_cast<int>(ParseCount("--size", size_, 64, 8192));
        if (page_.empty() && sheet_.empty()) {
            throw UsageError("gallery needs a file to write: -o gallery.html, --sheet sheet.png or both");
        }
        const std::string suffix = text::LowerCase(fs::path(page_).extension().string());
        if (!page_.empty() && suffix != ".html" && suffix != ".htm") {
            throw UsageError("the gallery is a page, so --output is a file that ends with .html, not " + page_ +
                             "; --sheet makes a picture");
        }
    }

    void Run(Session& session) override {
        if (session.options.keepQuality) throw UsageError("--quality keep is for apply and call");
        CheckFiles();
        std::optional<OutputFile> page;
        const Replace replace = session.options.force ? Replace::Anything : Replace::Nothing;
        std::vector<const OutputFile*> written;
        if (!page_.empty()) {
            page.emplace(page_, replace).Create();
            written.push_back(&*page);
        }
        // --quality is for the page's pictures. The sheet may be a file that has none.
        std::optional<ResultFile> sheet;
        Options options = session.options;
        options.quality.reset();
        if (!sheet_.empty()) sheet.emplace(ParseOutputName(sheet_), replace, options);
        if (sheet) written.push_back(&sheet->File());
        WorkOnPictures(
            session, written, [&](Session& worker) { Work(worker, page, sheet); }, kPictures);
        // Both are written before either takes its place.
        if (sheet) sheet->File().Commit();
        if (page) page->Commit();
    }

  private:
    void Work(Session& session, std::optional<OutputFile>& page, std::optional<ResultFile>& sheet) const {
        if (sheet) sheet->CheckOptions();
        try {
            const Originals originals(session, request_.picture, request_.fill, request_.mask, request_.size);
            const GalleryContent content = MakeContent(session, request_, originals);
            if (page) page->Write(LayOutPage(content));
            if (sheet) sheet->Write(session, LayOutSheet(session, content), {});
        } catch (const vips::VError&) {
            throw WorkError("the gallery cannot be made: " + TakeLibraryMessage());
        }
    }

    void CheckFiles() const {
        std::vector<fs::path> read{request_.picture};
        for (const auto& file : {request_.fill, request_.mask}) {
            if (file) read.push_back(*file);
        }
        for (const fs::path& file : read) {
            for (const std::string& written : {page_, sheet_}) {
                if (!written.empty()) RefuseSameFile(file, ParseOutputName(written).file);
            }
        }
        for (const fs::path& file : read) CheckImageFile(file);
    }

    std::vector<std::string> words_;
    std::string page_, sheet_, fill_, mask_, size_;

    GalleryRequest request_;
};

}  // namespace

std::unique_ptr<Command> MakeGallery() { return std::make_unique<Gallery>(); }

}  // namespace ombrix::cli
