#include "cli/images/output_format.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>
#include <vips/vips8>

#include "cli/failure.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

constexpr int kDefaultQuality = 90;  // above libvips' own: this is to be looked at, not served

constexpr std::array kFormats = {
    OutputFormat{".jpg", FileKind::Jpeg, "jpegsave_target", true, false},
    OutputFormat{".jpeg", FileKind::Jpeg, "jpegsave_target", true, false},
    OutputFormat{".png", FileKind::Png, "pngsave_target", false, true},
    OutputFormat{".webp", FileKind::WebP, "webpsave_target", true, true},
    OutputFormat{".tif", FileKind::Tiff, "tiffsave_target", false, true},
    OutputFormat{".tiff", FileKind::Tiff, "tiffsave_target", false, true},
    OutputFormat{".gif", FileKind::Gif, "gifsave_target", false, true},
    OutputFormat{".avif", FileKind::Heif, "heifsave_target", true, true},
    OutputFormat{".heic", FileKind::Heif, "heifsave_target", true, true},
    OutputFormat{".jxl", FileKind::Jxl, "jxlsave_target", true, true},
    OutputFormat{".jp2", FileKind::Jp2, "jp2ksave_target", true, true},
    OutputFormat{".bmp", FileKind::Other, "magicksave_bmp_buffer", false, true},
    OutputFormat{".ppm", FileKind::Other, "ppmsave_target", false, false},
    OutputFormat{".v", FileKind::Vips, "vipssave", false, true},
};

bool IsBuiltIn(const OutputFormat& format) {
    // Before libvips has started, which is when the command line is checked.
    if (g_type_from_name("VipsForeignSave") == 0) return true;
    return vips_type_find("VipsForeignSave", std::string(format.writer).c_str()) != 0;
}

/// An option of a writer.
struct WriterOption {
    std::string name;
    GParamSpec* type;
};

/// All but the pixels, where they go, and what the image itself says: its colours, its pages, its metadata.
std::vector<WriterOption> WriterOptions(const OutputFormat& format) {
    static const std::set<std::string> kDecided = {"in", "target", "filename", "profile", "page-height", "strip"};
    VipsOperation* writer = vips_operation_new(std::string(format.writer).c_str());
    if (writer == nullptr) throw vips::VError();
    const char** names = nullptr;
    int* flags = nullptr;
    int count = 0;
    std::vector<WriterOption> options;
    if (vips_object_get_args(VIPS_OBJECT(writer), &names, &flags, &count) == 0) {
        for (int i = 0; i < count; ++i) {
            if ((flags[i] & VIPS_ARGUMENT_INPUT) == 0 || (flags[i] & VIPS_ARGUMENT_DEPRECATED) != 0) continue;
            if (kDecided.contains(names[i])) continue;
            GParamSpec* type = nullptr;
            VipsArgumentClass* argument = nullptr;
            VipsArgumentInstance* instance = nullptr;
            if (vips_object_get_argument(VIPS_OBJECT(writer), names[i], &type, &argument, &instance) == 0) {
                options.push_back({names[i], type});
            }
        }
    }
    g_object_unref(writer);
    return options;
}

std::vector<std::string> Nicks(GType type) {
    std::vector<std::string> nicks;
    auto* values = static_cast<GEnumClass*>(g_type_class_ref(type));
    for (guint i = 0; i < values->n_values; ++i) {
        if (std::string_view(values->values[i].value_nick) != "last") nicks.emplace_back(values->values[i].value_nick);
    }
    g_type_class_unref(values);
    return nicks;
}

/// What a value must be, where the given one is not: "a whole number from 1 to 9". Empty where it is right.
std::string Objection(const WriterOption& option, const std::string& value) {
    if (G_IS_PARAM_SPEC_INT(option.type)) {
        const auto* range = G_PARAM_SPEC_INT(option.type);
        const auto number = text::ParseNumber<int>(value);
        if (number && *number >= range->minimum && *number <= range->maximum) return {};
        return "a whole number from " + std::to_string(range->minimum) + " to " + std::to_string(range->maximum);
    }
    if (G_IS_PARAM_SPEC_DOUBLE(option.type)) {
        const auto* range = G_PARAM_SPEC_DOUBLE(option.type);
        const auto number = text::ParseNumber<double>(value);
        if (number && *number >= range->minimum && *number <= range->maximum) return {};
        return "a number from " + text::Shown(range->minimum) + " to " + text::Shown(range->maximum);
    }
    if (G_IS_PARAM_SPEC_BOOLEAN(option.type)) {
        return value.empty() || value == "true" || value == "false" ? "" : "true or false";
    }
    if (G_IS_PARAM_SPEC_ENUM(option.type)) {
        const std::vector<std::string> nicks = Nicks(option.type->value_type);
        return std::ranges::find(nicks, value) != nicks.end() ? "" : "one of " + text::Listed(nicks);
    }
    if (G_IS_PARAM_SPEC_FLAGS(option.type)) {
        if (vips_flags_from_nick("ombrix", option.type->value_type, value.c_str()) >= 0) return {};
        vips_error_clear();
        return "the names of " + option.name + "s, joined by :";
    }
    return value.empty() ? "a value" : "";
}

std::vector<std::string> Suffixes() {
    std::vector<std::string> usable;
    for (const OutputFormat& format : kFormats) {
        if (IsBuiltIn(format)) usable.emplace_back(format.suffix);
    }
    return usable;
}

const OutputFormat* Find(std::string_view suffix) {
    const auto format = std::ranges::find_if(
        kFormats, [suffix](const OutputFormat& each) { return each.suffix == suffix && IsBuiltIn(each); });
    return format == kFormats.end() ? nullptr : &*format;
}

/// By a suffix with or without its dot.
const OutputFormat& FormatNamed(const std::string& name) {
    const std::string suffix = text::LowerCase(name);
    if (const OutputFormat* format = Find(suffix.starts_with('.') ? suffix : "." + suffix)) return *format;
    throw UsageError("--format takes the suffix of a kind of file, not " + text::Quoted(name) + "; there are " +
                     text::Listed(Suffixes()));
}

UsageError WrongValue(const std::string& name, const fs::path& file, const std::string& objection,
                      const std::string& value) {
    return UsageError(name + " of " + file.string() + " is " + objection + ", not " + text::Quoted(value));
}

/// A writer's options as they are typed: names, and values or nothing.
using GivenOptions = std::map<std::string, std::string>;

GivenOptions ParseOptions(const OutputName& output) {
    GivenOptions given;
    if (output.options.empty()) return given;
    for (std::size_t at = 0; at <= output.options.size();) {
        const std::size_t end = std::min(output.options.find(',', at), output.options.size());
        const std::string word = output.options.substr(at, end - at);
        at = end + 1;
        const std::size_t equals = std::min(word.find('='), word.size());
        const std::string name = word.substr(0, equals);
        if (!given.emplace(name, word.substr(std::min(equals + 1, word.size()))).second) {
            throw UsageError(name + " of " + output.file.string() + " is given twice");
        }
    }
    return given;
}

void CheckQuality(const OutputFormat& format, const Options& options, const GivenOptions& given) {
    if (options.keepQuality && format.kind != FileKind::Jpeg) {
        throw UsageError("--quality keep is for .jpg, whose quality is that of a JPEG file, not for " +
                         std::string(format.suffix));
    }
    if (!options.quality && !options.keepQuality) return;
    if (given.contains("Q")) throw UsageError("--quality and Q say the same; give one of them");
    if (format.lossy) return;
    std::vector<std::string> lossy;
    for (const OutputFormat& other : kFormats) {
        if (other.lossy && IsBuiltIn(other)) lossy.emplace_back(other.suffix);
    }
    throw UsageError("--quality means nothing for " + std::string(format.suffix) +
                     ", which keeps every pixel; it is for " + text::Listed(lossy));
}

}  // namespace

const OutputFormat& FormatFor(const fs::path& file) {
    const std::string suffix = text::LowerCase(file.extension().string());
    if (const OutputFormat* format = Find(suffix)) return *format;
    throw UsageError((suffix.empty() ? file.string() + " has no suffix to say what kind of file to write"
                                     : file.string() + " cannot be written: " + suffix + " is an unknown suffix") +
                     "; there are " + text::Listed(Suffixes()) + ", and --format names one where there is no suffix");
}

OutputName ParseOutputName(const std::string& word) {
    const std::size_t bracket = word.rfind('[');
    OutputName output{word, {}, false};
    if (word.ends_with(']') && bracket != std::string::npos) {
        output = {word.substr(0, bracket), word.substr(bracket + 1, word.size() - bracket - 2), false};
    }
    output.isStandardOutput = output.file == "-";
    if (output.isStandardOutput) output.file = "standard output";
    return output;
}

void Encoding::Prefer(const std::string& name, const std::string& value) {
    const std::string all = "," + options;
    if (all.find("," + name + "=") != std::string::npos || (all + ",").find("," + name + ",") != std::string::npos)
        return;
    if (!options.empty()) options += ',';
    options.append(name).append("=").append(value);
}

void Encoding::BeLossless() {
    quality.reset();
    Prefer("lossless", "true");
    if (format.kind == FileKind::Heif) Prefer("subsample-mode", "off");
}

Encoding EncodingFor(const OutputName& output, const Options& options) {
    const OutputFormat& format = options.format.empty() ? FormatFor(output.file) : FormatNamed(options.format);
    const GivenOptions given = ParseOptions(output);
    CheckQuality(format, options, given);
    const auto lossless = given.find("lossless");
    const bool isLossless = lossless != given.end() && lossless->second != "false";
    Encoding encoding{format, output.options, options.quality, options.strip};
    if (!encoding.quality && format.lossy && !given.contains("Q") && !isLossless) encoding.quality = kDefaultQuality;
    if (format.writer == "heifsave_target") {
        // A target has no suffix to tell the two kinds of HEIF by.
        if (format.suffix == ".avif") encoding.Prefer("compression", "av1");
    }
    if (isLossless) encoding.BeLossless();
    return encoding;
}

void CheckWriterOptions(const OutputName& output, const OutputFormat& format) {
    if (output.options.empty()) return;
    const std::vector<WriterOption> options = WriterOptions(format);
    for (const auto& [name, value] : ParseOptions(output)) {
        const auto option = std::ranges::find(options, name, &WriterOption::name);
        if (option == options.end()) {
            std::vector<std::string> names;
            for (const WriterOption& known : options) names.push_back(known.name);
            throw UsageError("a " + std::string(format.suffix) + " file has no option " + text::Quoted(name) +
                             text::Suggestion(name, names));
        }
        if (const std::string objection = Objection(*option, value); !objection.empty()) {
            throw WrongValue(name, output.file, objection, value);
        }
    }
}

}  // namespace ombrix::cli
