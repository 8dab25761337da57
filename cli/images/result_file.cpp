#include "cli/images/result_file.h"

#include "cli/failure.h"
#include "cli/images/jpeg_file.h"
#include "cli/supervisor/progress_of_work.h"

namespace ombrix::cli {

namespace {

constexpr std::string_view kUtilities = "OmbrixUtilities";
constexpr std::string_view kConvert = "EnsurePictureCompatible";

}  // namespace

host::Picture Usable(host::Host& host, const host::Picture& picture) {
    const int depth = picture.Depth();
    if (depth == 24 || depth == 32) return picture;
    host::Picture converted;
    if (host.FindModule(kUtilities)) {
        converted = host::Picture(host.CallModule(kUtilities, kConvert, {host::Object(picture)}).AsObject());
    }
    if (!converted) throw WorkError("no plug-in can convert a picture of " + std::to_string(depth) + " bits");
    return converted;
}

ResultFile::ResultFile(const OutputName& output, Replace replace, const Options& options)
    : output_(output),
      encoding_(EncodingFor(output, options)),
      file_(output.isStandardOutput ? OutputFile::ToStandardOutput() : OutputFile(output.file, replace)) {
    file_.Create();
}

void ResultFile::KeepQualityOf(const std::filesystem::path& file) {
    const auto quality = ReadJpegQuality(file);
    if (!quality) throw WorkError(file.string() + " is no JPEG file, so --quality keep has nothing to keep");
    encoding_.quality = quality->quality;
    encoding_.Prefer("subsample-mode", quality->hasHalfChroma ? "on" : "off");
    if (quality->isProgressive) encoding_.Prefer("interlace", "true");
}

void ResultFile::Write(Session& session, const host::Picture& picture, const ImageOrigin& origin) {
    const host::Picture usable = Usable(session.host, picture);
    const host::Picture::Lock pixels(usable);
    session.console.BeginStage("writing " + file_.Target().string());
    try {
        Write(session, Viewed(usable, pixels, origin.hasAlpha && usable.Depth() == 32), origin);
    } catch (const vips::VError&) {
        throw WorkError(file_.Target().string() + " cannot be written: " + TakeLibraryMessage());
    }
}

void ResultFile::Write(Session& session, const vips::VImage& image, const ImageOrigin& origin,
                       const std::function<void()>& check) {
    const Doing writing(Activity::Writing, file_.Target().string());
    WriteImage(image, origin, encoding_, file_.Descriptor(), file_.Target(), session.console);
    if (check) check();
}

}  // namespace ombrix::cli
