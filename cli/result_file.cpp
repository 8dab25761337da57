#include "cli/result_file.h"

#include "cli/failure.h"

namespace ombrix::cli {

namespace {

constexpr std::string_view kUtilities = "OmbrixUtilities";
constexpr std::string_view kConvert = "EnsurePictureCompatible";

const OutputFormat& CheckedFormat(const Session& session, const std::filesystem::path& target) {
    const OutputFormat& format = FormatFor(target);
    CheckQuality(format, session.options.quality);
    return format;
}

}  // namespace

host::Picture Usable(Session& session, const host::Picture& picture) {
    const int depth = picture.Depth();
    if (depth == 24 || depth == 32) return picture;
    host::Picture converted;
    if (session.host.FindModule(kUtilities)) {
        converted = host::Picture(session.host.CallModule(kUtilities, kConvert, {host::Object(picture)}).AsObject());
    }
    if (!converted) throw WorkError("a picture of " + std::to_string(depth) + " bits cannot be made usable");
    return converted;
}

ResultFile::ResultFile(const Session& session, const std::filesystem::path& target, bool mayReplace)
    : format_(CheckedFormat(session, target)), file_(target, mayReplace) {}

void ResultFile::Write(Session& session, const host::Picture& picture, const ImageOrigin& origin) {
    const std::filesystem::path& unfinished = file_.Create();
    WriteImage(Usable(session, picture), origin, format_, session.options.quality, unfinished, file_.Target(),
               session.console);
    file_.Commit();
}

}  // namespace ombrix::cli
