#include "cli/images/source_losses.h"

#include "cli/images/hidden_parts.h"
#include "cli/images/metadata_writer.h"
#include "text/phrases.h"

namespace ombrix::cli {

void TellLosses(const std::filesystem::path& file, const ImageOrigin& origin, const ResultFile& result,
                Losses& losses) {
    const std::string from = file.string(), to = result.File().Target().string();
    const std::string isLeftOut = " of " + from + " is left out";
    for (const std::string& part : HiddenParts(file)) {
        const std::string what = part + isLeftOut;
        losses.Add("the " + what, "its " + part);
    }
    const OutputFormat& format = result.Format();
    const std::string suffix(format.suffix);
    if (const auto lost = LostMetadata(origin.metadata, result.HowToWrite()); !lost.empty()) {
        losses.Add(
            to + " is without the " + text::Listed(lost) + " of " + from + ", which " + suffix + " files cannot hold",
            "its " + text::Listed(lost));
    }
    // To another file, it is told when a pixel proves transparent.
    if (losses.AreRefused() && origin.hasAlpha && !format.alpha) losses.Add({}, "its transparency");
}

}  // namespace ombrix::cli
