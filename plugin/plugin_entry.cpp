#include "plugin/plugin_entry.h"

#include "blend/blend_procs.h"
#include "plugin/registered_classes.h"
#include "sdk/host_calls.h"
#include "sdk/plugin_main.h"
#include "sdk/row_walk.h"

namespace ombrix {
namespace {

constexpr double kOldestHostVersion = 2011.0;
constexpr double kDevelopmentHostVersion = 100.0;  // of hosts under development

void AnnounceRecordVersion() {
    using Register = void (*)(int version);
    if (const auto announce = reinterpret_cast<Register>(HCallResolver("RegisterPluginVersion"))) {
        announce(static_cast<int>(kDefinitionVersion));
    }
}

}  // namespace

void SetClassConsoleSafe(REALclassDefinition* record) { record->flags |= kClassConsoleSafe; }

void SetClassWebOnly(REALclassDefinition* record) {
    // 0x8 marks a class for desktop programs.
    record->flags = (record->flags & ~0x108u) | kClassWebOnly;
}

void PluginEntry() {
    const double version = REALGetRBVersion();
    if (version < kOldestHostVersion && version != kDevelopmentHostVersion) return;

    PictureRef = nullptr;
    EPictureConstructor = nullptr;
    EPictureSetMask = nullptr;
    EPictureGetMask = nullptr;
    LoadCommonEntryPoints(version);

#define OMBRIX_REGISTER(name) REALRegisterModule(&name##Module);
    OMBRIX_MODULES(OMBRIX_REGISTER)
#undef OMBRIX_REGISTER

    BlendHandlers[0] = nullptr;
    SetClassConsoleSafe(&MPImageFilterClass);
    NULL_PIX = 0;
    RED_PIX = kPositionsIn4.red;
    GREEN_PIX = kPositionsIn4.green;
    BLUE_PIX = kPositionsIn4.blue;

#define OMBRIX_REGISTER(name) REALRegisterClass(&name##Class);
    OMBRIX_CLASSES(OMBRIX_REGISTER)
#undef OMBRIX_REGISTER
}

}  // namespace ombrix

void REALPluginMain(REALresolver resolver) {
    ombrix::gResolver = resolver;
    ombrix::AnnounceRecordVersion();
    ombrix::PluginEntry();
}
