// The class MPImageFilter, as hosts see it.
#include "sdk/mp_image_filter.h"

#include "engine/driver.h"
#include "engine/executor.h"
#include "plugin/function_lookup.h"
#include "plugin/registered_classes.h"
#include "sdk/definition_rows.h"
#include "sdk/host_calls.h"

namespace ombrix {
namespace {

MPImageFilterData* DataOf(REALobjectStruct* instance) {
    return static_cast<MPImageFilterData*>(REALGetClassData(instance, &MPImageFilterClass));
}

void DefaultConstructor(REALobjectStruct* instance) {
    *DataOf(instance) = {.Execute = Execute,
                         .ApplyEffect = ApplyEffect,
                         .ApplyEffectInPlace = ApplyEffectInPlace,
                         .GetFunction = GetFunction,
                         .MultiprocessingHint = 0,
                         .ErrorCode = NO_ERROR,
                         .progressHandler = nullptr};
}

void Destructor(REALobjectStruct* instance) {
    if (REALobjectStruct* handler = DataOf(instance)->progressHandler) EUnlockObject(handler);
}

REALobjectStruct* GetProgressHandler(REALobjectStruct* instance, std::int64_t /*parameter*/) {
    REALobjectStruct* handler = DataOf(instance)->progressHandler;
    ELockObject(handler);
    return handler;
}

void SetProgressHandler(REALobjectStruct* instance, std::int64_t /*parameter*/, REALobjectStruct* handler) {
    MPImageFilterData* data = DataOf(instance);
    EUnlockObject(data->progressHandler);
    data->progressHandler = handler;
    ELockObject(handler);
}

constexpr std::int64_t kPropertyFlags = 4;  // of all properties of this class

const REALpropertyDefinition MPImageFilterProperties[] = {
    CustomProperty("ProgressHandler", "IProgressHandler", GetProgressHandler, SetProgressHandler, kPropertyFlags),
    ReadOnlyStandardProperty("ErrorCode", "Integer", offsetof(MPImageFilterData, ErrorCode), kPropertyFlags),
    StandardProperty("MultiprocessingHint", "Integer", offsetof(MPImageFilterData, MultiprocessingHint),
                     kPropertyFlags),
    ReadOnlyCustomProperty("CPUCoreCount", "Integer", GetCPUCoreCount, kPropertyFlags),
};

constexpr REALconstantDefinition OmbrixCPUUsageConstants[] = {
    Constant("CPU_USE_MACHINE_CORE_COUNT = -1"),
    Constant("CPU_USE_AUTOMATIC = 0"),
    Constant("CPU_USE_1_CORE = 1"),
    Constant("CPU_USE_2_CORES = 2"),
    Constant("CPU_USE_3_CORES = 3"),
    Constant("CPU_USE_4_CORES = 4"),
    Constant("CPU_USE_5_CORES = 5"),
    Constant("CPU_USE_6_CORES = 6"),
    Constant("CPU_USE_7_CORES = 7"),
    Constant("CPU_USE_8_CORES = 8"),
};

}  // namespace

REALclassDefinition MPImageFilterClass = ClassRecord({.name = "MPImageFilter",
                                                      .dataSize = sizeof(MPImageFilterData),
                                                      .constructor = DefaultConstructor,
                                                      .destructor = Destructor,
                                                      .properties = MPImageFilterProperties,
                                                      .constants = OmbrixCPUUsageConstants});

}  // namespace ombrix
