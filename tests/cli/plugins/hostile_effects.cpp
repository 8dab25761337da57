// An effect that does to its process what broken decoders do.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "sdk/definition_rows.h"
#include "sdk/host_calls.h"
#include "sdk/plugin_main.h"

namespace {

using namespace ombrix;

struct HostileData {
    std::int64_t deed;
};

extern REALclassDefinition HostileEffectClass;

bool IsOpen(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(file)) return true;
    }
    return false;
}

/// Memory that is never used, which a compiler may not leave out.
void* Allocate(std::size_t bytes) {
    void* volatile memory = std::malloc(bytes);
    return memory;
}

void EatMemory() {
    for (;;) {
        constexpr std::size_t kMouthful = 1 << 20;
        auto* bytes = static_cast<char*>(std::malloc(kMouthful));
        if (bytes == nullptr) std::abort();
        std::memset(bytes, 1, kMouthful);
        usleep(100);
    }
}

/// Crashes if the process that waits for this one has more threads than one.
void CountThreadsOfParent() {
    const std::filesystem::path tasks = "/proc/" + std::to_string(getppid()) + "/task";
    if (std::distance(std::filesystem::directory_iterator(tasks), {}) != 1) std::raise(SIGSEGV);
}

REALobjectStruct* ApplyHostile(REALobjectStruct* object, REALobjectStruct* source) {
    switch (static_cast<HostileData*>(REALGetClassData(object, &HostileEffectClass))->deed) {
        case 1:
            std::raise(SIGSEGV);
            break;
        case 2:
            for (;;) usleep(1000);
        case 3:
            EatMemory();
            break;
        case 4:
            std::puts("a library's line\n");
            std::fputs("another\x1b[2J\n", stderr);
            std::fflush(nullptr);
            break;
        case 5:
            std::exit(0);
        case 6:
            std::abort();
        case 7:
            CountThreadsOfParent();
            break;
        case 8:
            std::raise(SIGKILL);
            break;
        case 9:
            kill(getppid(), SIGKILL);
            for (;;) usleep(1000);
        case 10:
            // Changes no pixel, so it is given strips. Later ones are gone when the first has come.
            if (IsOpen("mapped.ppm")) (void)!truncate("mapped.ppm", 20);
            ELockObject(source);
            return source;
        case 11:
            std::thread([] { std::raise(SIGSEGV); }).join();
            break;
        case 12:
            while (Allocate(1 << 26) != nullptr) {
            }
            std::abort();
        case 13:
            if (Allocate(3'000'000'000) == nullptr) std::abort();
            break;
        default:
            break;
    }
    return nullptr;
}

constexpr REALpropertyDefinition HostileProperties[] = {
    StandardProperty("Deed", "Integer", offsetof(HostileData, deed)),
};
const REALmethodDefinition HostileMethods[] = {Method(ApplyHostile, "Apply(source as Picture) as Picture")};

REALclassDefinition HostileEffectClass = ClassRecord({.name = "HostileEffect",
                                                      .superclass = "MPImageFilter",
                                                      .interfaces = "IGraphicsEffect",
                                                      .dataSize = sizeof(HostileData),
                                                      .properties = HostileProperties,
                                                      .methods = HostileMethods});

}  // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;
    LoadCommonEntryPoints(REALGetRBVersion());
    REALRegisterClass(&HostileEffectClass);
}
