#include "bench/machine.h"

#include <fstream>

#include "platform/multiprocessing.h"

namespace ombrix::bench {
namespace {

constexpr std::pair<InstructionLevel, std::string_view> kLevels[] = {
    {InstructionLevel::Baseline, "baseline"},
    {InstructionLevel::V3, "v3"},
    {InstructionLevel::V4, "v4"},
    {InstructionLevel::V4Vbmi, "v4-vbmi"},
};

}  // namespace

std::string ProcessorName() {
    std::string name = "unknown processor";
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        if (line.starts_with("model name")) {
            name = line.substr(line.find(':') + 2);
            break;
        }
    }
    const unsigned long count = MPProcessorsScheduled();
    return name + ", " + std::to_string(count) + (count == 1 ? " core" : " cores");
}

std::string CompilerName() {
#if defined(__clang__)
    return "clang " __clang_version__;
#else
    return "g++ " __VERSION__;
#endif
}

std::vector<std::string> LevelNames() {
    std::vector<std::string> names;
    for (const auto& [level, name] : kLevels) names.emplace_back(name);
    return names;
}

std::string_view NameOf(InstructionLevel level) {
    for (const auto& [known, name] : kLevels) {
        if (known == level) return name;
    }
    return "?";
}

std::optional<InstructionLevel> LevelNamed(std::string_view name) {
    for (const auto& [level, known] : kLevels) {
        if (known == name) return level;
    }
    return std::nullopt;
}

}  // namespace ombrix::bench
