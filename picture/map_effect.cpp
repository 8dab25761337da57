#include "picture/map_effect.h"

#include "engine/effect_walk.h"

#if defined(OMBRIX_HAS_LEVELS)
#include <immintrin.h>
#endif

namespace ombrix {
namespace {

/// Replaces each channel by its entry in a table.
struct ChannelTables {
    Rgb<const std::uint8_t*> table;

    Rgb<int> operator()(Rgb<int> source) const {
        return {table.red[source.red], table.green[source.green], table.blue[source.blue]};
    }
};

#if defined(OMBRIX_HAS_LEVELS)
/// A table of 256 bytes in four vectors, and the bytes of a block that it is for.
struct ByteTable {
    __m512i quarters[4];
    __mmask64 bytes;
};

[[gnu::target(OMBRIX_V4_VBMI_FEATURES)]] inline ByteTable LoadTable(const std::uint8_t* table, int shift) {
    return {{_mm512_loadu_si512(table), _mm512_loadu_si512(table + 64), _mm512_loadu_si512(table + 128),
             _mm512_loadu_si512(table + 192)},
            0x1111111111111111u << shift / 8};
}

/// The bytes of `found` that the table is for, replaced by what `sought` finds in it. A permutation looks at 7 bits.
[[gnu::target(OMBRIX_V4_VBMI_FEATURES)]] inline __m512i LookUp(const ByteTable& table, __m512i sought, __m512i found) {
    const __m512i low = _mm512_permutex2var_epi8(table.quarters[0], sought, table.quarters[1]);
    const __m512i high = _mm512_permutex2var_epi8(table.quarters[2], sought, table.quarters[3]);
    const __m512i entry = _mm512_mask_mov_epi8(low, _mm512_movepi8_mask(sought), high);
    return _mm512_mask_mov_epi8(found, table.bytes, entry);
}

/// The kernel of ChannelTables where 64 bytes can be looked up at once, three times as fast as one by one. No compiler
/// makes such code of table reads.
[[gnu::target(OMBRIX_V4_VBMI_FEATURES)]] void LookUpBlocks(const void* tablesAddress, const WordPixels& pixels) {
    const auto& table = static_cast<const ChannelTables*>(tablesAddress)->table;
    const WordFormat format;
    const ByteTable red = LoadTable(table.red, format.red);
    const ByteTable green = LoadTable(table.green, format.green);
    const ByteTable blue = LoadTable(table.blue, format.blue);
    constexpr Roles roles{};
    for (std::int64_t first = 0; first < pixels.count; first += kBlockPixels) {
        const std::int64_t count = std::min<std::int64_t>(kBlockPixels, pixels.count - first);
        const WordPixels block = PartOf<roles>(pixels, first, count);
        PrefetchBehind<roles>(block);
        const __mmask64 touched = ~std::uint64_t{0} >> (kBlockBytes - 4 * count);
        const __m512i source = _mm512_maskz_loadu_epi8(touched, block.source);
        const __m512i result = LookUp(blue, source, LookUp(green, source, LookUp(red, source, source)));
        _mm512_mask_storeu_epi8(block.destination, touched, result);
    }
}
#endif

WordKernel KernelOf(const ChannelTables& tables) {
#if defined(OMBRIX_HAS_LEVELS)
    if (gInstructionLevel >= InstructionLevel::V4Vbmi) return {LookUpBlocks, &tables};
#endif
    return {RunForm<ChannelTables>, &tables};
}

std::int32_t MapBand(const MPParamBlock* band, bool withMask) {
    auto& params = *static_cast<MapParams*>(band->params);
    const ChannelTables tables{{params.redTable, params.greenTable, params.blueTable}};
    return RunOverBand(band, params.head, KernelOf(tables), withMask);
}

std::int32_t MapPart(MPParamBlock* band) { return MapBand(band, false); }
std::int32_t MapMaskPart(MPParamBlock* band) { return MapBand(band, true); }

/// False, with the error code set, when there is nothing to work on.
bool Accept(MPImageFilterData* base, const REALobjectStruct* source, const MapParams* params) {
    if (!base) return false;
    if (source && params && params->redTable && params->greenTable && params->blueTable) return true;
    base->ErrorCode = ILLEGAL_INPUT_PARAMETER;
    return false;
}

}  // namespace

REALobjectStruct* ApplyMapEffect(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                                 MapParams* params) {
    if (!Accept(base, source, params)) return nullptr;
    return base->ApplyEffect(base, &params->head, MapPart, MapMaskPart, source, mask, kToneTaskCount);
}

void ApplyMapEffectInPlace(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                           MapParams* params) {
    if (!Accept(base, source, params)) return;
    base->ApplyEffectInPlace(base, &params->head, MapPart, MapMaskPart, source, mask, kToneTaskCount);
}

}  // namespace ombrix
