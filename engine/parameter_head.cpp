#include "engine/parameter_head.h"

namespace ombrix {

void FillHead(StdMPEffectParams& head, const MPImageFilterData& base, const LockedPixels& source,
              const LockedPixels& destination) {
    head.generic.width = source.Width();
    head.generic.height = source.Height();
    head.generic.multiprocessingHint = static_cast<std::int32_t>(base.MultiprocessingHint);  // its low 32 bits
    head.generic.progressHandler = base.progressHandler;
    head.srcBase = source.Base();
    head.srcRowPadding = source.RowPadding(source.Width());
    head.srcRowBytes = source.RowBytes();
    head.dstBase = destination.Base();
    head.dstRowPadding = destination.RowPadding(source.Width());
    head.dstRowBytes = destination.RowBytes();
    head.bytesPerPixel = source.BytesPerPixel();
}

void FillMaskHead(StdMPEffectParams& head, const LockedPixels& mask) {
    head.maskBase = mask.Base();
    head.maskBytesPerPixel = mask.BytesPerPixel();
    head.maskRowPadding = mask.RowPadding(head.generic.width);
    head.maskRowBytes = mask.RowBytes();
}

}  // namespace ombrix
