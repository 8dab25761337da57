#include "host/invoke.h"

#include <ffi.h>

#include <vector>

#include "ombrix/error.h"

namespace ombrix::host {
namespace {

ffi_type* TypeOf(Kind kind) {
    switch (kind) {
        case Kind::Integer:
            return &ffi_type_sint64;
        case Kind::Boolean:
            return &ffi_type_uint8;
        case Kind::Double:
            return &ffi_type_double;
        case Kind::Object:
            return &ffi_type_pointer;
    }
    return &ffi_type_void;
}

}  // namespace

Word Invoke(REALproc function, std::span<TypedWord> arguments, std::optional<Kind> result) {
    std::vector<ffi_type*> types;
    std::vector<void*> addresses;
    for (TypedWord& argument : arguments) {
        types.push_back(TypeOf(argument.kind));
        addresses.push_back(&argument.word);
    }
    ffi_cif signature;
    if (ffi_prep_cif(&signature, FFI_DEFAULT_ABI, static_cast<unsigned>(types.size()),
                     result ? TypeOf(*result) : &ffi_type_void, types.data()) != FFI_OK) {
        throw Error("a call with " + std::to_string(types.size()) + " arguments cannot be made on this machine");
    }
    // libffi widens smaller results to this.
    static_assert(sizeof(Word) >= sizeof(ffi_arg));
    Word word;
    ffi_call(&signature, function, &word, addresses.data());
    return word;
}

}  // namespace ombrix::host
