#include "cli/images/jpeg_file.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <string_view>
// After <cstdio>, whose types it uses.
#include <jpeglib.h>

#include "cli/images/mapped_file.h"

namespace ombrix::cli {

namespace {

constexpr std::size_t kMostInSegment = 65'533;  // bytes

using Tables = std::array<std::array<int, DCTSIZE2>, 2>;  // luma, chroma

struct Failure {
    jpeg_error_mgr base;
    std::jmp_buf place;
};

void Leave(j_common_ptr info) { std::longjmp(reinterpret_cast<Failure*>(info->err)->place, 1); }
void SayNothing(j_common_ptr /*info*/) {}

void Prepare(Failure& failure, jpeg_error_mgr*& error) {
    error = jpeg_std_error(&failure.base);
    failure.base.error_exit = Leave;
    failure.base.output_message = SayNothing;
}

Tables TablesOf(JQUANT_TBL* const* tables) {
    Tables all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (tables[i] != nullptr) std::copy_n(tables[i]->quantval, DCTSIZE2, all[i].begin());
    }
    return all;
}

/// The tables that the library makes for a quality.
Tables StandardTables(int quality) {
    Failure failure;
    jpeg_compress_struct info = {};
    Prepare(failure, info.err);
    Tables tables{};
    if (setjmp(failure.place) == 0) {
        jpeg_create_compress(&info);
        info.input_components = 3;
        info.in_color_space = JCS_RGB;
        jpeg_set_defaults(&info);
        jpeg_set_quality(&info, quality, TRUE);
        tables = TablesOf(info.quant_tbl_ptrs);
    }
    jpeg_destroy_compress(&info);
    return tables;
}

int NearestQuality(const Tables& tables) {
    int nearest = 0;
    int least = INT32_MAX;
    const bool hasChroma = tables[1][0] != 0;
    for (int quality = 1; quality <= 100; ++quality) {
        const Tables standard = StandardTables(quality);
        int difference = 0;
        for (std::size_t i = 0; i < (hasChroma ? 2 : 1); ++i) {
            for (std::size_t k = 0; k < DCTSIZE2; ++k) difference += std::abs(tables[i][k] - standard[i][k]);
        }
        if (difference >= least) continue;
        least = difference;
        nearest = quality;
    }
    return nearest;
}

void TakeMarkers(const jpeg_decompress_struct& info, JpegHeader& header) {
    for (const jpeg_marker_struct* marker = info.marker_list; marker != nullptr; marker = marker->next) {
        const std::string_view data(reinterpret_cast<const char*>(marker->data), marker->data_length);
        // JFIF, EXIF and XMP, profiles, Photoshop's and the kind of colours are known.
        constexpr std::array kKnown = {0, 1, 2, 13, 14};
        if (marker->marker != JPEG_COM && std::ranges::find(kKnown, marker->marker - JPEG_APP0) == kKnown.end()) {
            const std::string name = "APP" + std::to_string(marker->marker - JPEG_APP0);
            if (std::ranges::find(header.unknownSegments, name) == header.unknownSegments.end()) {
                header.unknownSegments.push_back(name);
            }
        }
        if (data.starts_with("http://ns.adobe.com/xmp/extension/")) header.hasExtendedXmp = true;
        if (marker->marker == JPEG_COM) header.comments.emplace_back(data.substr(0, data.find('\0')));
        if (marker->marker == JPEG_APP0 + 2 && data.starts_with(std::string_view("MPF\0", 4))) {
            header.hasMorePictures = true;
        }
        const bool isGainMap = data.find("ns.adobe.com/hdr-gain-map") != std::string_view::npos ||
                               data.starts_with("urn:iso:std:iso:ts:21496:-1") ||
                               data.find("HDRGainMap") != std::string_view::npos;
        if (marker->marker != JPEG_COM && isGainMap) header.hasGainMap = true;
    }
}

/// False when the bytes are no JPEG file.
bool ReadMarkers(std::span<const std::uint8_t> bytes, JpegHeader& header, Tables& tables, JpegQuality& quality) {
    Failure failure;
    jpeg_decompress_struct info = {};
    Prepare(failure, info.err);
    if (setjmp(failure.place) != 0) {
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, bytes.data(), bytes.size());
    jpeg_save_markers(&info, JPEG_COM, static_cast<unsigned>(kMostInSegment));
    for (int i = 1; i < 16; ++i) jpeg_save_markers(&info, JPEG_APP0 + i, static_cast<unsigned>(kMostInSegment));
    jpeg_read_header(&info, TRUE);
    TakeMarkers(info, header);
    tables = TablesOf(info.quant_tbl_ptrs);
    quality.isProgressive = info.progressive_mode != 0;
    if (info.num_components >= 3) {
        quality.chromaAcross = info.comp_info[0].h_samp_factor / std::max(1, info.comp_info[1].h_samp_factor);
        quality.chromaDown = info.comp_info[0].v_samp_factor / std::max(1, info.comp_info[1].v_samp_factor);
    }
    jpeg_destroy_decompress(&info);
    return true;
}

bool Read(const std::filesystem::path& file, JpegHeader& header, Tables& tables, JpegQuality& quality) {
    const MappedFile mapped(file);
    const auto bytes = mapped.Bytes();
    return bytes.size() > 2 && bytes[0] == 0xff && bytes[1] == 0xd8 && ReadMarkers(bytes, header, tables, quality);
}

void AppendSegment(Bytes& segments, int marker, std::string_view data) {
    const std::size_t at = segments.size();
    segments.insert(segments.end(), {0xff, static_cast<std::uint8_t>(marker), 0, 0});
    PutNumber(segments, at + 2, 2, false, data.size() + 2);
    segments.insert(segments.end(), data.begin(), data.end());
}

}  // namespace

std::optional<JpegHeader> ReadJpegHeader(const std::filesystem::path& file) {
    JpegHeader header;
    Tables tables{};
    JpegQuality quality;
    return Read(file, header, tables, quality) ? std::optional(header) : std::nullopt;
}

std::optional<JpegQuality> ReadJpegQuality(const std::filesystem::path& file) {
    JpegHeader header;
    Tables tables{};
    JpegQuality quality;
    if (!Read(file, header, tables, quality)) return std::nullopt;
    quality.quality = NearestQuality(tables);
    return quality;
}

JpegSegments::JpegSegments(const Bytes& resources, const std::vector<Metadata::Comment>& comments) {
    const auto add = [this](int marker, std::string_view data) {
        if (bytes.size() + data.size() > kMostInSegment) return false;
        AppendSegment(bytes, marker, data);
        return true;
    };
    const Bytes inJpeg = ResourcesInJpeg(resources);
    if (!resources.empty()) {
        losesResources = !add(JPEG_APP0 + 13, {reinterpret_cast<const char*>(inJpeg.data()), inJpeg.size()});
    }
    for (const Metadata::Comment& comment : comments) {
        if (!add(JPEG_COM, comment.WithKey())) losesComments = true;
    }
}

}  // namespace ombrix::cli
