// What the tests of the host have in common.
#pragma once

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host/host.h"
#include "tests/host/plugins/services.h"

namespace ombrix::host {

inline std::string TestPlugin(const std::string& name) { return OMBRIX_BUILD_DIR "/tests/" + name + ".so"; }

/// What the Error says that `action` ends with; empty when it ends without.
template <class Action>
std::string ErrorOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

/// The resolver that the probe, which must be loaded, was given.
inline REALresolver ResolverOfProbe() {
    void* library = dlopen(TestPlugin("host_probe").c_str(), RTLD_NOW | RTLD_NOLOAD);
    const auto given = reinterpret_cast<GivenResolverFunction>(dlsym(library, "GivenResolver"));
    dlclose(library);
    return given();
}

/// The services as a plug-in sees them, for calling them from a test.
inline Services ServicesOfProbe() { return Services(ResolverOfProbe()); }

/// A host in which every fault fails the test, at its end too, and which holds the probe.
class HostTest : public ::testing::Test {
  protected:
    static HostOptions Options() {
        HostOptions options;
        options.onFault = [](const std::string& fault) { ADD_FAILURE() << fault; };
        return options;
    }
    HostTest() { host.Load(TestPlugin("host_probe")); }

    Host host{Options()};
};

}  // namespace ombrix::host
