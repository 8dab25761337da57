// What a catalogue keeps of an effect.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "catalogue/descriptions.h"
#include "catalogue/pixel_work.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// Answers are found when they are first asked for.
struct Effect::State {
    State(host::Host& givenHost, const host::ClassInfo& givenType, const Descriptions& givenDescriptions);

    const host::PropertyInfo& InfoOf(const Property& property) const;
    const std::vector<Property>& Properties();
    const std::vector<const Property*>& ByPosition();
    const std::vector<Constant>& ConstantsOf(const Property& property);
    const Values& ValuesOf(const Property& property);
    const Needs& WhatItNeeds();
    const PixelWork& Work();
    const std::optional<ShapeMask>& ShapeMaskOf(const Property& property);

    host::Host& host;
    const host::ClassInfo& type;
    const Descriptions& descriptions;
    const std::string word;
    const std::string description;

  private:
    const Property& PropertyNamed(const std::string& name);

    std::optional<std::vector<Property>> properties_;
    std::optional<std::vector<const Property*>> byPosition_;
    std::map<const Property*, std::vector<Constant>> constants_;
    std::map<const Property*, Values> values_;
    std::optional<Needs> needs_;
    std::optional<PixelWork> work_;
    std::map<const Property*, std::optional<ShapeMask>> shapes_;
};

}  // namespace ombrix::catalogue
