#include "cli/images/result_file.h"

#include "cli/failure.h"
#include "cli/images/compression.h"
#include "cli/images/jpeg_file.h"
#include "cli/supervisor/progress_of_work.h"
#include "text/numbers.h"

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

void ResultFile::KeepQualityOf(const std::filesystem::path& file, Console& console) {
    const auto quality = ReadJpegQuality(file);
    if (!quality) throw WorkError(file.string() + " is no JPEG file, so --quality keep has nothing to keep");
    encoding_.quality = quality->quality;
    encoding_.Prefer("subsample-mode", quality->HasHalfChroma() ? "on" : "off");
    if (!quality->HasHalfChroma() && !quality->HasWholeChroma()) {
        console.Note(text::Size(quality->chromaAcross, quality->chromaDown) + " pixels of " + file.string() +
                     " share their chroma, which cannot be written; in " + file_.Target().string() +
                     " each has its own");
    }
    if (quality->isProgressive) encoding_.Prefer("interlace", "true");
}

void ResultFile::StayLossless(const std::filesystem::path& file, Losses& losses, Console& console) {
    const Compression compression = CompressionOf(file);
    if (compression == Compression::Lossy || !Format().lossy) return;
    if (!Format().CanBeLossless()) {
        losses.Add(file.string() + " is no lossy file, as it is written now", "its exact pixels in a lossy file");
        return;
    }
    encoding_.BeLossless();
    if (compression == Compression::Unknown) {
        console.Note(file.string() + " may be lossless, so it is written without loss; --quality makes it smaller");
    }
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
