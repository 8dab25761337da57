// Shared by the tests of the host.
#pragma once

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "ombrix/host.h"
#include "tests/host/plugins/services.h"

namespace ombrix::host {

inline std::string TestPlugin(const std::string& name) { return OMBRIX_BUILD_DIR "/tests/" + name + ".so"; }

/// The text of the Error that `action` throws; empty when it throws none.
template <class Action>
std::string ErrorOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

/// The resolver that the loaded probe was given.
inline REALresolver ResolverOfProbe() {
    void* library = dlopen(TestPlugin("host_probe").c_str(), RTLD_NOW | RTLD_NOLOAD);
    const auto given = reinterpret_cast<GivenResolverFunction>(dlsym(library, "GivenResolver"));
    dlclose(library);
    return given();
}

/// For calling services from a test.
inline Services ServicesOfProbe() { return Services(ResolverOfProbe()); }

/// A host with the probe, in which every fault fails the test.
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
