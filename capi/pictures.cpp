// Effects on rows of the caller's.
#include <algorithm>

#include "capi/handles.h"
#include "capi/memory.h"
#include "capi/session.h"

using namespace ombrix;
using namespace ombrix::capi;

namespace {

/// A record of a later version has members that this one does not know: they must be as if they were not there.
void CheckSize(const ombrix_rows& rows, const char* what) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&rows);
    const bool isKnown =
        rows.size >= sizeof rows && rows.size <= 4096 &&
        std::all_of(bytes + sizeof rows, bytes + rows.size, [](unsigned char byte) { return byte == 0; });
    if (!isKnown) {
        throw Failure{OMBRIX_INVALID_ARGUMENT,
                      std::string(what) + " has a size of " + std::to_string(rows.size) + ", not sizeof(ombrix_rows)"};
    }
}

}  // namespace

host::Rows ombrix::capi::RowsOf(const ombrix_rows* rows, const char* what) {
    CheckSize(*Required(rows, what), what);
    return {rows->base,
            rows->row_bytes,
            rows->width,
            rows->height,
            static_cast<host::Layout>(rows->layout),
            static_cast<host::Alpha>(rows->alpha)};
}

ombrix_status ombrix_apply(ombrix_effect* effect, const ombrix_rows* source, const ombrix_rows* destination) {
    return Guarded([&] {
        Required(effect, "the effect");
        const host::Rows from = RowsOf(source, "the source"), to = RowsOf(destination, "the destination");
        const Session session;
        effect->onRows.Apply(from, to);
    });
}

ombrix_status ombrix_apply_new(ombrix_effect* effect, const ombrix_rows* source, ombrix_rows* rows) {
    return Guarded([&] {
        Required(effect, "the effect");
        const host::Rows from = RowsOf(source, "the source");
        CheckSize(*Required(rows, "the result"), "the result");
        rows->base = nullptr;
        const std::string objection = host::Objection(from);
        if (!objection.empty()) throw catalogue::BadRows("the source cannot be used: " + objection);
        host::Rows to = from;
        to.rowBytes = from.width * host::BytesPerPixel(from.layout);
        const std::size_t bytes = static_cast<std::size_t>(to.rowBytes) * static_cast<std::size_t>(from.height);
        Memory memory = NewMemory(bytes);
        to.base = memory.get();
        const Session session;
        effect->onRows.Apply(from, to);
        ombrix_rows made = *source;
        made.size = rows->size;
        made.base = to.base;
        made.row_bytes = to.rowBytes;
        *rows = made;
        static_cast<void>(memory.release());
    });
}

ombrix_status ombrix_copies(ombrix_effect* effect, const ombrix_rows* source, const ombrix_rows* destination,
                            int* copies) {
    return Guarded([&] {
        Required(effect, "the effect");
        const host::Rows from = RowsOf(source, "the source"), to = RowsOf(destination, "the destination");
        const Session session;
        *Required(copies, "the copies") = effect->onRows.CopyingPasses(from, to);
    });
}
