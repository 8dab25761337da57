#include "cli/gallery/plan.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <set>

#include "catalogue/accepted_range.h"
#include "cli/reflection.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/values.h"
#include "text/names.h"

namespace ombrix::cli {

using catalogue::Constant;
using catalogue::kFarthest;
using catalogue::Range;
using catalogue::Values;
using host::ClassInfo;
using host::PropertyInfo;

namespace {

using Settings = std::vector<SceneSetting>;

constexpr std::size_t kValuesOfOne = 4;      // pictures for the only property
constexpr std::size_t kValuesOfSeveral = 2;  // pictures for each of several
constexpr std::int64_t kModest = 256;        // where values have no end

/// Those that a command line can set, inherited ones too.
std::vector<PropertyInfo> PropertiesOf(const host::Host& host, const ClassInfo& type) {
    std::vector<PropertyInfo> properties;
    for (const ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const PropertyInfo& property : ancestor->properties) {
            if (!property.readOnly && CanBeTyped(property.type)) properties.push_back(property);
        }
    }
    return properties;
}

/// Replaces the setting of the same property, if any.
Settings With(Settings settings, SceneSetting setting) {
    std::erase_if(settings, [&setting](const SceneSetting& other) { return other.property == setting.property; });
    settings.push_back(std::move(setting));
    return settings;
}

/// Values that people might choose: near the ends, and round ones.
std::vector<std::int64_t> Samples(Range range) {
    if (range.low == -kFarthest) range.low = std::max(range.low, std::min(-kModest, range.high - kModest));
    if (range.high == kFarthest) range.high = std::min(range.high, std::max(kModest, range.low + kModest));
    std::set<std::int64_t> samples{range.low, range.high};
    for (std::int64_t distance = 1; distance <= 8; distance *= 2) {
        samples.insert({range.low + distance, range.high - distance});
    }
    const std::int64_t span = range.high - range.low;
    constexpr std::int64_t kSteps[] = {1, 2, 5, 10, 20, 50, 100, 1000, 10000, 100000};
    const auto* step = std::find_if(std::begin(kSteps), std::end(kSteps) - 1,
                                    [span](std::int64_t candidate) { return span / candidate <= 60; });
    for (std::int64_t value = range.low / *step * *step; value <= range.high; value += *step) samples.insert(value);
    std::vector<std::int64_t> inside;
    std::copy_if(samples.begin(), samples.end(), std::back_inserter(inside),
                 [range](std::int64_t value) { return range.Holds(value); });
    return inside;
}

class Planner {
  public:
    Planner(Session& session, const catalogue::Effect& effect, const Scene& small)
        : session_(session),
          effect_(effect),
          type_(effect.Type()),
          small_(small),
          original_(small.source),
          properties_(PropertiesOf(session.host, type_)) {}

    EffectPlan Plan() {
        if (FindBase()) {
            ShowIntegers();
            ShowCombination();
            if (!baseIsGuessed_) Show(base_);
            ShowOthers();
            // An effect that never changes the picture is shown once.
            if (shots_.empty()) ShowAnyway(base_);
        }
        return {&type_, Facts(), Shots()};
    }

  private:
    struct Trial {
        Settings settings;
        Look look;
    };

    host::Host& Host() const { return session_.host; }

    std::optional<Trial> Try(const Settings& settings) const {
        const host::Picture result = cli::Applied(session_, type_, settings, small_);
        if (!result) return std::nullopt;
        return Trial{settings, Look(result)};
    }

    // ---- What an object needs -------------------------------------------------------------------------------

    /// Settings without which an object gives no picture.
    bool FindBase() {
        const catalogue::Needs& needs = effect_.WhatItNeeds();
        for (const std::string& picture : needs.pictures) base_.push_back({picture, Role::Fill, {}});
        if (needs.number) base_.push_back({needs.number->property, host::Value(needs.number->value), {}});
        baseIsGuessed_ = needs.number.has_value();
        return needs.areMet;
    }

    // ---- Integers -------------------------------------------------------------------------------------------

    const Values& ValuesOf(const PropertyInfo& property) const {
        return effect_.ValuesOf(*effect_.FindProperty(property.name));
    }

    std::vector<Trial> TrialsOf(const PropertyInfo& property, const Values& values) const {
        std::vector<SceneSetting> candidates;
        for (const Constant& constant : values.constants) {
            candidates.push_back({property.name, host::Value(constant.value), constant.name});
        }
        if (candidates.empty() && values.range) {
            for (const std::int64_t value : Samples(*values.range)) {
                candidates.push_back({property.name, host::Value(value), {}});
            }
        }
        std::vector<Trial> trials;
        for (const SceneSetting& candidate : candidates) {
            if (auto trial = Try(With(base_, candidate))) trials.push_back(std::move(*trial));
        }
        return trials;
    }

    /// Whether an effect declares the property, and not a class that effects derive from.
    bool IsOfEffects(const PropertyInfo& property) const {
        for (const ClassInfo* ancestor : Host().Ancestry(type_.name)) {
            for (const PropertyInfo& declared : ancestor->properties) {
                if (declared.name == property.name) return Host().IsA(ancestor->name, host::kEffectInterface);
            }
        }
        return false;
    }

    static bool MakesNoDifference(const std::vector<Trial>& trials) {
        return trials.size() > 1 && std::all_of(trials.begin() + 1, trials.end(), [&trials](const Trial& trial) {
                   return trial.look.DistanceTo(trials.front().look) < kSameLook;
               });
    }

    void ShowIntegers() {
        struct Candidate {
            const PropertyInfo* property;
            const Values& values;
            std::vector<Trial> trials;
        };
        std::vector<Candidate> candidates;
        for (const PropertyInfo& property : properties_) {
            if (!text::SameName(property.type, "Integer")) continue;
            const Values& values = ValuesOf(property);
            std::vector<Trial> trials = TrialsOf(property, values);
            // The number of cores, for example, does not change pictures. An effect's own constants are shown anyway.
            const bool isTold = IsOfEffects(property) && !values.constants.empty();
            if (trials.empty() || (MakesNoDifference(trials) && !isTold)) continue;
            Describe(property, values);
            candidates.push_back({&property, values, std::move(trials)});
        }
        const std::size_t count = candidates.size() > 1 ? kValuesOfSeveral : kValuesOfOne;
        for (Candidate& candidate : candidates) {
            if (candidate.values.constants.empty()) {
                KeepMostTelling(*candidate.property, candidate.trials, count);
                if (!candidate.trials.empty()) {
                    varied_.push_back({SettingOf(*candidate.property, candidate.trials.front()),
                                       SettingOf(*candidate.property, candidate.trials.back())});
                }
            }
            // Each constant is shown, even where two look alike.
            for (Trial& trial : candidate.trials) shots_.push_back(std::move(trial));
        }
    }

    /// Shows values from both sides of the initial one.
    void KeepMostTelling(const PropertyInfo& property, std::vector<Trial>& trials, std::size_t count) const {
        const std::int64_t initial = Host().New(type_.name).Get(property.name).AsInteger();
        std::vector<Trial> below, above;
        for (Trial& trial : trials) {
            const SceneSetting setting = SettingOf(property, trial);
            const bool isBelow = std::get<host::Value>(setting.value).AsInteger() < initial;
            (isBelow ? below : above).push_back(std::move(trial));
        }
        // The initial value is among those above.
        const bool hasTwoSides = !below.empty() && above.size() > 1;
        trials.clear();
        for (std::vector<Trial>* side : {&below, &above}) {
            std::vector<Look> looks;
            for (const Trial& trial : *side) looks.push_back(trial.look);
            for (const std::size_t index : MostTelling(looks, original_, hasTwoSides ? count / 2 : count)) {
                trials.push_back(std::move((*side)[index]));
            }
        }
    }

    static SceneSetting SettingOf(const PropertyInfo& property, const Trial& trial) {
        return *std::find_if(trial.settings.begin(), trial.settings.end(),
                             [&property](const SceneSetting& setting) { return setting.property == property.name; });
    }

    void Describe(const PropertyInfo& property, const Values& values) {
        std::string remark;
        if (values.constants.size() == 1) {
            remark = values.constants.front().name;
        } else if (!values.constants.empty()) {
            remark = std::to_string(values.constants.size()) + " constants, from " + values.constants.front().name +
                     " to " + values.constants.back().name;
        } else if (values.range) {
            remark = catalogue::Described(*values.range);
        }
        remarks_.push_back({property.name, remark});
    }

    // ---- Several properties at once -------------------------------------------------------------------------

    /// The lowest and highest value shown.
    struct Varied {
        SceneSetting low, high;
    };

    /// The first property high and the last low.
    void ShowCombination() {
        if (varied_.size() < 2) return;
        Show(With(With(base_, varied_.front().high), varied_.back().low));
    }

    // ---- All other types ------------------------------------------------------------------------------------

    void ShowOthers() {
        const std::vector<Settings> on = Anchors();
        for (const PropertyInfo& property : properties_) {
            const std::string& name = property.name;
            if (text::SameName(property.type, "Boolean")) {
                const bool initial = Host().New(type_.name).Get(name).AsBoolean();
                Show(With(on.front(), {name, host::Value(!initial), {}}));
            } else if (text::SameName(property.type, "Double")) {
                for (const Settings& settings : on) Show(With(settings, {name, host::Value(0.5), {}}));
            } else if (text::SameName(property.type, "Point")) {
                Show(With(on.front(), {name, PointShare{0.25, 0.25}, {}}));
            } else if (text::SameName(property.type, "Picture") && !IsNeeded(name)) {
                Show(With(on.front(), {name, Role::Mask, {}}));
            }
        }
    }

    /// Settings to show other properties on: the initial constant, if there is one, and whatever differs most from the
    /// original.
    std::vector<Settings> Anchors() const {
        std::vector<Look> looks;
        for (const Trial& shot : shots_) looks.push_back(shot.look);
        const std::vector<std::size_t> telling = MostTelling(looks, original_, 1);
        std::vector<Settings> anchors;
        for (std::size_t i = 0; i < shots_.size(); ++i) {
            if (IsInitialConstant(shots_[i]) && shots_[i].look.DistanceTo(original_) > kSameLook) {
                anchors.push_back(shots_[i].settings);
                if (!telling.empty() && telling.front() == i) return anchors;
                break;
            }
        }
        if (!telling.empty()) anchors.push_back(shots_[telling.front()].settings);
        if (anchors.empty()) anchors.push_back(base_);
        return anchors;
    }

    bool IsInitialConstant(const Trial& shot) const {
        return std::any_of(shot.settings.begin(), shot.settings.end(), [this](const SceneSetting& setting) {
            return !setting.constant.empty() && Host().New(type_.name).Get(setting.property).AsInteger() ==
                                                    std::get<host::Value>(setting.value).AsInteger();
        });
    }

    bool IsNeeded(const std::string& property) const {
        return std::any_of(base_.begin(), base_.end(),
                           [&property](const SceneSetting& setting) { return setting.property == property; });
    }

    /// Adds a shot that looks new. False when it does not or is refused.
    bool Show(const Settings& settings) {
        auto trial = Try(settings);
        if (!trial || trial->look.DistanceTo(original_) < kSameLook) return false;
        for (const Trial& shot : shots_) {
            if (shot.look.DistanceTo(trial->look) < kSameLook) return false;
        }
        shots_.push_back(std::move(*trial));
        return true;
    }

    void ShowAnyway(const Settings& settings) {
        if (auto trial = Try(settings)) shots_.push_back(std::move(*trial));
    }

    // ---- The outcome ----------------------------------------------------------------------------------------

    std::vector<PropertyFact> Facts() const {
        std::vector<PropertyFact> facts;
        for (const PropertyInfo& property : properties_) {
            const auto known = std::find_if(remarks_.begin(), remarks_.end(),
                                            [&property](const auto& remark) { return remark.first == property.name; });
            const bool isOwn = std::any_of(type_.properties.begin(), type_.properties.end(),
                                           [&property](const PropertyInfo& own) { return own.name == property.name; });
            if (!isOwn && known == remarks_.end()) continue;
            const bool isNeededPicture = text::SameName(property.type, "Picture") && IsNeeded(property.name);
            facts.push_back({property.name, property.type,
                             isNeededPicture           ? "needed"
                             : known != remarks_.end() ? known->second
                                                       : ""});
        }
        return facts;
    }

    std::vector<Shot> Shots() const {
        std::vector<Shot> shots;
        for (const Trial& shot : shots_) shots.push_back({shot.settings, shot.look.ComparedWith(original_)});
        return shots;
    }

    Session& session_;
    const catalogue::Effect& effect_;
    const ClassInfo& type_;
    const Scene& small_;
    const Look original_;
    const std::vector<PropertyInfo> properties_;
    Settings base_;
    bool baseIsGuessed_ = false;  // with a value that nobody chose, since the initial one is refused
    std::vector<Trial> shots_;
    std::vector<Varied> varied_;
    std::vector<std::pair<std::string, std::string>> remarks_;  // by property
};

}  // namespace

EffectPlan PlanShots(Session& session, const catalogue::Effect& effect, const Scene& small) {
    const Doing trying(Activity::Effect, effect.Name());
    return Planner(session, effect, small).Plan();
}

}  // namespace ombrix::cli
