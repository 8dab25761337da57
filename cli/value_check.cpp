#include "cli/value_check.h"

#include <algorithm>
#include <cmath>

#include "catalogue/accepted_range.h"
#include "catalogue/arguments.h"
#include "catalogue/error_code.h"
#include "catalogue/meaning.h"
#include "catalogue/refusal.h"
#include "cli/failure.h"
#include "cli/outcome.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/supervisor/supervisor.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

using catalogue::Prepare;
using host::PropertyInfo;

class ValueCheck {
  public:
    ValueCheck(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& settings)
        : session_(session), type_(type), settings_(settings) {
        std::vector<std::string> pictures;
        for (const PlannedSetting& setting : settings) {
            const auto* value = std::get_if<host::Value>(&setting.value);
            if (!value) pictures.push_back(setting.name);
            // Points are meant for the real pictures: in a small one a fill may lie outside.
            if (value && !value->IsObject()) values_.push_back({setting.name, *value});
        }
        setPictures_ = catalogue::WithTrialPictures(session.host, pictures);
    }

    void Run() const {
        const std::int64_t code = TriedCode();
        if (!Works()) {
            // An effect that could say why and does not is not tried with values that nobody gave.
            if (code == 0 && HasErrorCode()) return;
            RefuseValue(code);
            RefuseMissingPicture(code);
            return;  // the real picture may be one that it takes
        }
        for (const catalogue::GivenValue& given : values_) {
            const PropertyInfo& property = *session_.host.FindProperty(type_.name, given.property);
            if (given.value.IsInteger()) NoteNoConstant(property, given.value.AsInteger());
            if (given.value.IsDouble()) NoteBeyondBounds(property, given.value.AsDouble());
        }
        NoteNoValue();
    }

  private:
    Prepare Without(const std::string& property) const {
        return [this, setValues = catalogue::WithValues(values_, property)](const host::Object& object) {
            setPictures_(object);
            setValues(object);
        };
    }

    const PlannedSetting* GivenTo(const std::string& property) const {
        const auto given = std::ranges::find_if(
            settings_, [&](const PlannedSetting& setting) { return text::SameName(setting.name, property); });
        return given == settings_.end() ? nullptr : &*given;
    }

    std::string AsGiven(const PropertyInfo& property) const { return GivenTo(property.name)->given.AsGiven(); }

    host::Picture Result(const Prepare& prepare) const {
        return catalogue::Tried(session_.host, type_, session_.host.NewPicture(1, 1), prepare);
    }

    bool Works() const { return static_cast<bool>(Result(Without(""))); }

    bool HasErrorCode() const { return session_.host.FindProperty(type_.name, catalogue::kErrorCodeProperty); }

    /// 0 for an effect that has no ErrorCode.
    std::int64_t TriedCode() const {
        if (!HasErrorCode()) return 0;
        host::Object tried;
        Result([&](const host::Object& object) {
            Without("")(object);
            tried = object;
        });
        return tried.Get(catalogue::kErrorCodeProperty).AsInteger();
    }

    std::string InBrackets(std::int64_t code) const {
        return code == 0 ? "" : " (" + ErrorName(session_.host, code) + ")";
    }

    void RefuseValue(std::int64_t code) const {
        const auto refusal = catalogue::FindRefusal(session_.host, type_, values_, setPictures_);
        if (!refusal) return;
        const PlannedSetting* setting = GivenTo(refusal->property.name);
        const std::string name = setting ? setting->given.name : refusal->property.name;
        const std::string given = setting ? setting->given.AsGiven() : name + "=" + std::to_string(refusal->value);
        throw UsageError(type_.name + " refuses " + given + (setting ? "" : ", which it has when none is given") +
                         "; " + name + " goes from " + catalogue::Described(refusal->accepted) + InBrackets(code));
    }

    /// Says which picture the effect cannot do without.
    void RefuseMissingPicture(std::int64_t code) const {
        for (const PropertyInfo* property : catalogue::OwnProperties(session_.host, type_)) {
            if (!text::SameName(property->type, "Picture")) continue;
            const PlannedSetting* setting = GivenTo(property->name);
            if (setting && setting->File()) continue;
            const Prepare one = catalogue::WithTrialPictures(session_.host, {property->name});
            const host::Picture result = Result([&](const host::Object& object) {
                Without("")(object);
                one(object);
            });
            if (!result) continue;
            throw UsageError(type_.name + " needs a picture and was given no " + property->name + ", as in " +
                             property->name + "=FILE" + InBrackets(code));
        }
    }

    void NoteNoConstant(const PropertyInfo& property, std::int64_t value) const {
        const Prepare others = Without(property.name);
        const auto constant = catalogue::WorksAs(session_.host, type_, property, value, others);
        if (!constant) return;
        session_.console.Note(AsGiven(property) + " is none of its constants; " + type_.name + " takes it for " +
                              constant->name);
    }

    void NoteBeyondBounds(const PropertyInfo& property, double value) const {
        const auto bounds = catalogue::MeaningfulBounds(session_.host, type_, property, Without(property.name));
        if (!bounds || (value >= bounds->low && value <= bounds->high)) return;
        const std::string meaning = std::isnan(value)
                                        ? " is not a number"
                                        : " works as " + text::Shown(std::clamp(value, bounds->low, bounds->high));
        const std::string given = AsGiven(property);
        const bool isPercent = bounds->high == 1 && value > 1 && value <= 100 && !given.ends_with('%');
        session_.console.Note(
            given + meaning + "; it goes from " + text::Shown(bounds->low) + " to " + text::Shown(bounds->high) +
            (isPercent ? ", and " + text::Shown(value) + " percent is " + text::Shown(value) + "%" : ""));
    }

    /// An effect whose values are all initial and which changes no picture.
    void NoteNoValue() const {
        const catalogue::Effect* effect = session_.catalogue.Find(type_.name);
        if (!effect || &effect->Type() != &type_) return;
        std::vector<std::string> names;
        for (const catalogue::Property* property : effect->ByPosition()) {
            if (GivenTo(property->name)) return;
            names.push_back(property->name);
        }
        if (names.empty() || !catalogue::ChangesNothing(session_.host, type_, Without(""))) return;
        session_.console.Note(type_.name + " changes nothing without a value for " + text::Listed(names));
    }

    Session& session_;
    const host::ClassInfo& type_;
    const std::vector<PlannedSetting>& settings_;
    std::vector<catalogue::GivenValue> values_;  ///< without pictures and points
    Prepare setPictures_;
};

}  // namespace

void CheckValues(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& settings) {
    const Doing trying(Activity::Effect, type.name);
    ValueCheck(session, type, settings).Run();
}

void AfterValues(Session& session, const std::function<void(Session&)>& check, const std::function<void()>& openFiles) {
    try {
        openFiles();
    } catch (const WorkError&) {
        Supervise(session, {}, check);
        throw;
    }
}

}  // namespace ombrix::cli
