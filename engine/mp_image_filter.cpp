// The class MPImageFilter and the module OmbrixError, as hosts see them.
#include "engine/mp_image_filter.h"

#include "engine/driver.h"
#include "engine/executor.h"
#include "frame/definition_rows.h"
#include "frame/host_calls.h"
#include "frame/registered_classes.h"
#include "picture/function_lookup.h"

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

/// The flags of every property of this class.
constexpr std::int64_t kPropertyFlags = 4;

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

constexpr REALconstantDefinition OmbrixErrorConstants[] = {
    Constant("NO_ERROR = 0"),
    Constant("INVALID_MASK = 1"),
    Constant("INVALID_SOURCE_IMAGE = 2"),
    Constant("UNABLE_TO_CREATE_DESTINATION = 3"),
    Constant("ILLEGAL_INPUT_PARAMETER = 4"),
};

}  // namespace

REALclassDefinition MPImageFilterClass = ClassRecord({.name = "MPImageFilter",
                                                      .dataSize = sizeof(MPImageFilterData),
                                                      .constructor = DefaultConstructor,
                                                      .destructor = Destructor,
                                                      .properties = MPImageFilterProperties,
                                                      .constants = OmbrixCPUUsageConstants});

REALmoduleDefinition OmbrixErrorModule = ModuleRecord("OmbrixError", {}, OmbrixErrorConstants);

}  // namespace ombrix
