// No plug-in: something else in the process that uses effects, and does so by the shared library.
#include <optional>
#include <string>

#include "ombrix/host.h"

using ombrix::host::Error;
using ombrix::host::Host;

namespace {

std::optional<Host> host;
std::string sentence;

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

/// The sentence of the Error when there can be no Host; empty when there is one.
const char* MakeOtherHost() {
    try {
        host.emplace(ombrix::host::HostOptions{.owner = "the other"});
        sentence.clear();
    } catch (const Error& error) {
        sentence = error.what();
    }
    return sentence.c_str();
}

void EndOtherHost() { host.reset(); }

}  // extern "C"
#pragma GCC visibility pop
