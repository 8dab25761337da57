#include "catalogue/row_call.h"

#include <cstdint>
#include <vector>

#include "catalogue/error_code.h"
#include "catalogue/row_plan.h"

namespace ombrix::catalogue {
namespace {

using host::Layout;
using host::PixelRows;
using host::Rows;

/// The rows without their first `columns`, from byte `offset` of their first pixel on.
PixelRows Seen(const Rows& rows, std::int64_t columns, int offset) {
    const std::int64_t width = rows.width - columns;
    const int bytes = host::BytesPerPixel(rows.layout);
    // The distance from a single row to the next means nothing, but plug-ins look at it.
    const std::ptrdiff_t rowBytes = rows.height > 1 ? rows.rowBytes : width * bytes;
    return {static_cast<std::uint8_t*>(rows.base) + offset, rowBytes, width, rows.height, 8 * bytes};
}

Rows RowsOf(const host::Picture& picture, const host::Picture::Lock& pixels) {
    return {pixels.Base(),
            pixels.RowBytes(),
            picture.Width(),
            picture.Height(),
            picture.Depth() == 24 ? Layout::Rgb : Layout::Argb,
            host::Alpha::Straight};
}

class Call {
  public:
    Call(host::Host& host, const host::Object& effect, const std::function<void()>& refuse)
        : host_(host), effect_(effect), refuse_(refuse) {}

    void Run(const PixelRows& source, const PixelRows& destination) const {
        if (source.base == destination.base) return InPlace(source);
        const host::Picture from = host_.WrapPixels(source);
        const host::Host::ResultPlace place(host_, destination);
        const host::Value value = effect_.CallInterface(host::kEffectInterface, "Apply", {host::Object(from)});
        from.DropPixels();
        if (value.IsNil() || ReportsError(host_, effect_)) refuse_();
        const host::Picture result(value.AsObject());
        if (!place.Holds(result)) CopyResult(result, destination);
    }

  private:
    void InPlace(const PixelRows& rows) const {
        const host::Picture picture = host_.WrapPixels(rows);
        effect_.CallInterface(host::kInPlaceInterface, "ApplyInPlace", {host::Object(picture)});
        picture.DropPixels();
        if (ReportsError(host_, effect_)) refuse_();
    }

    /// Of an effect that has made its result elsewhere.
    void CopyResult(const host::Picture& result, const PixelRows& destination) const {
        if (!result || result.Width() != destination.width || result.Height() != destination.height) {
            throw host::Error(effect_.ClassName() + " returns a picture of another size");
        }
        const host::Picture::Lock pixels(result);
        host::CopyPixels(RowsOf(result, pixels),
                         {destination.base, destination.rowBytes, destination.width, destination.height,
                          destination.depth == 24 ? Layout::Rgb : Layout::Argb, host::Alpha::Straight});
    }

    host::Host& host_;
    const host::Object& effect_;
    const std::function<void()>& refuse_;
};

/// Pixels whose alpha is their last byte look like ARGB, from there on: each has its own alpha after its colours, and
/// another pixel's before. The first column has none before, and is done apart.
void RunShifted(const Call& call, const Rows& source, const Rows& destination) {
    const Rows sourceColumn{source.base, source.rowBytes, 1, source.height, source.layout, host::Alpha::Straight};
    Rows destinationColumn = sourceColumn;
    destinationColumn.base = destination.base;
    destinationColumn.rowBytes = destination.rowBytes;

    std::vector<std::uint32_t> memory(static_cast<std::size_t>(source.height));
    const Rows column{memory.data(), 4, 1, source.height, Layout::Argb, host::Alpha::Straight};
    std::vector<std::uint32_t> resultMemory(static_cast<std::size_t>(source.height));
    Rows result = column;
    result.base = resultMemory.data();
    host::CopyPixels(sourceColumn, column);
    call.Run(Seen(column, 0, 0), Seen(result, 0, 0));

    if (source.width > 1) call.Run(Seen(source, 1, 3), Seen(destination, 1, 3));
    const std::int64_t lastAlpha = 4 * source.width - 1;
    for (std::int64_t y = 0; y < source.height; ++y) destination.Row(y)[lastAlpha] = source.Row(y)[lastAlpha];
    host::CopyPixels(result, destinationColumn);
}

}  // namespace

void CallOnRows(host::Host& host, const host::Object& effect, const Rows& source, const Rows& destination,
                const std::function<void()>& refuse) {
    const Call call(host, effect, refuse);
    if (IsShifted(source.layout)) {
        RunShifted(call, source, destination);
    } else {
        call.Run(Seen(source, 0, 0), Seen(destination, 0, 0));
    }
}

}  // namespace ombrix::catalogue
