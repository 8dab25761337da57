#include "capi/names.h"

namespace ombrix::capi {
namespace {

std::string Added(const std::string& list, const std::string& word) { return list.empty() ? word : list + ", " + word; }

}  // namespace

const catalogue::Effect& EffectNamed(const Session& session, const char* name) {
    Required(name, "the name");
    if (const catalogue::Effect* effect = session.Catalogue().Find(name)) return *effect;
    std::string words;
    for (const catalogue::Effect& each : session.Catalogue().Effects()) words = Added(words, each.Word());
    throw Failure{OMBRIX_NOT_FOUND, "there is no effect \"" + std::string(name) + "\"; there are: " + words};
}

const catalogue::Effect& EffectOf(const Session& session, const ombrix_effect* effect) {
    return EffectNamed(session, Required(effect, "the effect")->onRows.ClassName().c_str());
}

const catalogue::Property& PropertyNamed(const catalogue::Effect& effect, const char* name) {
    Required(name, "the property");
    if (const catalogue::Property* property = effect.FindProperty(name)) return *property;
    std::string words;
    for (const catalogue::Property& each : effect.Properties()) {
        if (!each.inherited) words = Added(words, each.word);
    }
    throw Failure{OMBRIX_NOT_FOUND, effect.Name() + " has no property \"" + std::string(name) + "\"; it has: " + words};
}

}  // namespace ombrix::capi
