#include "ombrix/effect_on_rows.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "catalogue/accepted_range.h"
#include "catalogue/refusal.h"
#include "catalogue/row_call.h"
#include "catalogue/row_plan.h"
#include "catalogue/row_traits.h"
#include "host/pixel_memory.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::catalogue {
namespace {

using host::Layout;
using host::Overlap;
using host::Rows;

constexpr std::string_view kProgressProperty = "ProgressHandler";
constexpr std::string_view kTasksProperty = "MultiprocessingHint";
/// Bytes whose work takes less time than handing it over to tasks does: one does them all.
constexpr std::int64_t kBytesForTasks = 64 << 10;
/// Bytes that are copied in less time than a further call of an effect takes.
constexpr std::int64_t kBytesForCalls = 16 << 10;
/// Copies stay in a cache until the effect, and the copy back, are done with them.
constexpr std::int64_t kCopiedBytes = 512 << 10;
/// Between two calls of a progress function: some tens of microseconds.
constexpr std::int64_t kReportedBytes = 1 << 20;

void Check(const Rows& rows, const char* which) {
    const std::string objection = host::Objection(rows);
    if (!objection.empty()) throw BadRows("the " + std::string(which) + " cannot be used: " + objection);
}

void Check(const Rows& source, const Rows& destination) {
    Check(source, "source");
    Check(destination, "destination");
    if (source.width != destination.width || source.height != destination.height) {
        throw BadRows("the destination is " + text::Size(destination.width, destination.height) +
                      " pixels, and the source " + text::Size(source.width, source.height));
    }
    if (host::OverlapOf(source, destination) == Overlap::Some) {
        throw BadRows("source and destination overlap, and are not the same rows");
    }
}

/// Rows of their own.
struct Copy {
    host::PixelMemory memory;
    Rows rows;
};

Copy MakeCopy(std::int64_t width, std::int64_t height, Layout layout, host::Alpha alpha) {
    const std::int64_t rowBytes = width * host::BytesPerPixel(layout);
    Copy copy{host::TakePixelMemory(static_cast<std::size_t>(rowBytes * height), host::Content::Any), {}};
    if (!copy.memory) throw std::bad_alloc();
    copy.rows = {copy.memory.get(), rowBytes, width, height, layout, alpha};
    return copy;
}

}  // namespace

struct EffectOnRows::State {
    State(host::Host& givenHost, const Effect& givenEffect)
        : host(givenHost),
          type(givenEffect.Type()),
          worksPixelByPixel(givenEffect.WorksPixelByPixel()),
          keepsAlpha(givenEffect.KeepsAlpha()),
          effect(host.New(type.name)) {}

    host::Host& host;
    const host::ClassInfo type;
    const bool worksPixelByPixel;
    const bool keepsAlpha;
    const host::Object effect;
    std::vector<GivenValue> values;
    std::vector<std::pair<std::string, Rows>> pictures;
    std::function<bool(std::int64_t, std::int64_t)> progress;
    std::optional<bool> takesRedForBlue, landsInPlace;  ///< as tried
    std::optional<host::Value> usualTasks;              ///< what the effect has, while it has one task instead
    bool choosesTasks = host.FindProperty(type.name, kTasksProperty) != nullptr;  ///< until they are set

    /// Has one task do what is not worth two.
    void ChooseTasks(std::int64_t bytes) {
        if (!choosesTasks || usualTasks.has_value() == (bytes < kBytesForTasks)) return;
        if (usualTasks) {
            effect.Set(kTasksProperty, *usualTasks);
            usualTasks.reset();
        } else {
            usualTasks = effect.Get(kTasksProperty);
            effect.Set(kTasksProperty, 1);
        }
    }

    /// Tries once for the values that the effect has.
    bool Tried(std::optional<bool>& answer, bool (*tries)(host::Host&, const host::ClassInfo&, const Prepare&)) {
        if (!answer) answer = tries(host, type, WithValues(values));
        return *answer;
    }

    bool CanBeParted() { return pictures.empty() && worksPixelByPixel; }

    RowTraits Traits() {
        return {.worksPixelByPixel = CanBeParted(),
                .keepsAlpha = keepsAlpha,
                .takesRedForBlue = [this] { return pictures.empty() && Tried(takesRedForBlue, TakesRedForBlue); },
                .landsInPlace = [this] { return Tried(landsInPlace, LandsInPlace); },
                .worksInPlace = effect.IsA(host::kInPlaceInterface)};
    }

    [[noreturn]] void Refuse(const Rows& source) const {
        const std::string code = ErrorCodeInBrackets();
        for (const auto& [property, rows] : pictures) {
            if (!text::SameName(property, "Mask") || (rows.width >= source.width && rows.height >= source.height))
                continue;
            throw Refused("the mask is " + text::Size(rows.width, rows.height) + " pixels, smaller than the source, " +
                          text::Size(source.width, source.height) + code);
        }
        const auto setPictures = [this](const host::Object& object) {
            for (const auto& [property, rows] : pictures) object.Set(property, host.NewPicture(1, 1));
        };
        if (const auto refusal = FindRefusal(host, type, values, setPictures)) {
            throw Refused(type.name + " refuses " + refusal->property.name + "=" + std::to_string(refusal->value) +
                          "; it goes from " + Described(refusal->accepted) + code);
        }
        throw Refused(type.name + " refuses what it was given" + code);
    }

    std::string ErrorCodeInBrackets() const {
        const host::PropertyInfo* property = host.FindProperty(type.name, "ErrorCode");
        const host::ModuleInfo* module = host.FindModule("OmbrixError");
        if (!property || !module) return "";
        const std::int64_t code = effect.Get(property->name).AsInteger();
        for (const host::ConstantInfo& constant : module->constants) {
            if (constant.value == code && code != 0) return " (" + constant.name + ")";
        }
        return "";
    }

    void Apply(Rows source, Rows destination);
    void ApplyPart(const RowPlan& plan, const Rows& source, const Rows& destination);
    void Report(std::int64_t done, std::int64_t all) const {
        if (progress && !progress(done, all)) throw Cancelled(type.name + " was cancelled");
    }
};

namespace {

/// The pictures of properties and the progress handler, which the effect has for the time of a call.
class Lent {
  public:
    Lent(host::Host& host, const host::Object& effect) : host_(host), effect_(effect) {}
    ~Lent() {
        for (const std::string& property : properties_) {
            try {
                effect_.Set(property, nullptr);
            } catch (const host::Error&) {
                // A plug-in's fault, which the host has noted.
            }
        }
        for (const host::Picture& picture : pictures_) picture.DropPixels();
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;

    void Picture(const std::string& property, const Rows& rows, const Rows& destination) {
        const bool canStay = (rows.layout == Layout::Argb || rows.layout == Layout::Rgb) &&
                             rows.alpha != host::Alpha::Premultiplied && rows.rowBytes > 0 &&
                             host::OverlapOf(rows, destination) == Overlap::None;
        Rows seen = rows;
        if (!canStay) {
            const bool hasFour = host::BytesPerPixel(rows.layout) == 4;
            copies_.push_back(MakeCopy(rows.width, rows.height, hasFour ? Layout::Argb : Layout::Rgb,
                                       hasFour ? host::Alpha::Straight : host::Alpha::None));
            seen = copies_.back().rows;
            host::CopyPixels(rows, seen);
        }
        const int bytes = host::BytesPerPixel(seen.layout);
        const std::ptrdiff_t rowBytes = seen.height > 1 ? seen.rowBytes : seen.width * bytes;
        pictures_.push_back(host_.WrapPixels({seen.base, rowBytes, seen.width, seen.height, 8 * bytes}));
        Set(property, pictures_.back());
    }

    void Set(const std::string& property, const host::Value& value) {
        properties_.push_back(property);
        effect_.Set(property, value);
    }

  private:
    host::Host& host_;
    const host::Object& effect_;
    std::vector<std::string> properties_;
    std::vector<host::Picture> pictures_;
    std::vector<Copy> copies_;
};

}  // namespace

void EffectOnRows::State::Apply(Rows source, Rows destination) {
    const RowPlan plan = PlanFor(source, destination, Traits());
    ChooseTasks(source.width * source.height * host::BytesPerPixel(plan.layout));
    if (plan.isUpsideDown) {
        source = host::UpsideDown(source);
        destination = host::UpsideDown(destination);
    }
    Lent lent(host, effect);
    for (const auto& [property, rows] : pictures) lent.Picture(property, rows, destination);

    const bool reports = static_cast<bool>(progress);
    std::int64_t height = source.height;
    bool inParts = false;
    if ((reports || plan.Copies() > 0) && CanBeParted()) {
        inParts = true;
        const std::int64_t most = plan.Copies() > 0 ? kCopiedBytes : kReportedBytes;
        height = std::clamp<std::int64_t>(most / (source.width * host::BytesPerPixel(plan.layout)), 1, height);
    } else if (reports && host.FindProperty(type.name, kProgressProperty)) {
        lent.Set(std::string(kProgressProperty),
                 host.NewProgressHandler([this](std::int64_t done, std::int64_t all) { Report(done, all); }));
    }
    for (std::int64_t top = 0; top < source.height; top += height) {
        const std::int64_t rows = std::min(height, source.height - top);
        ApplyPart(plan, host::Part(source, top, rows), host::Part(destination, top, rows));
        if (inParts) Report(top + rows, source.height);
    }
}

/// A plan whose pixels are seen without the first column, which takes a call of its own. Few pixels are rather copied.
RowPlan WithoutShift(RowPlan plan, const Rows& source) {
    plan.layout = IsSwapped(plan.layout) ? Layout::Abgr : Layout::Argb;
    plan.alpha = source.alpha;
    plan.copiesSource = plan.copiesDestination = true;
    return plan;
}

void EffectOnRows::State::ApplyPart(const RowPlan& planned, const Rows& source, const Rows& destination) {
    const bool isFew = source.width * source.height * host::BytesPerPixel(source.layout) < kBytesForCalls;
    const bool unshifts = isFew && IsShifted(planned.layout) && source.alpha == destination.alpha;
    const RowPlan plan = unshifts ? WithoutShift(planned, source) : planned;
    const auto newCopy = [&] { return MakeCopy(source.width, source.height, plan.layout, plan.alpha); };
    Copy sourceCopy, destinationCopy;
    Rows from = source, to = destination;
    from.layout = to.layout = plan.layout;
    if (plan.copiesSource) {
        sourceCopy = newCopy();
        from = sourceCopy.rows;
        host::CopyPixels(source, from);
    }
    if (plan.copiesDestination) {
        if (!plan.changesInPlace) destinationCopy = newCopy();
        to = plan.changesInPlace ? from : destinationCopy.rows;
    }
    CallOnRows(host, effect, from, to, [&] { Refuse(source); });
    if (!plan.copiesDestination) return;
    to.alpha = plan.copiesSource ? plan.alpha : source.alpha;
    host::CopyPixels(to, destination);
}

EffectOnRows::EffectOnRows(host::Host& host, const Effect& effect) : state_(std::make_unique<State>(host, effect)) {}
EffectOnRows::~EffectOnRows() = default;

const std::string& EffectOnRows::ClassName() const { return state_->type.name; }

host::Value EffectOnRows::Get(std::string_view property) const {
    if (state_->usualTasks && text::SameName(property, kTasksProperty)) return *state_->usualTasks;
    return state_->effect.Get(property);
}

void EffectOnRows::Set(std::string_view property, const host::Value& value) {
    state_->effect.Set(property, value);
    if (text::SameName(property, kTasksProperty)) {
        state_->choosesTasks = false;
        state_->usualTasks.reset();
    }
    std::erase_if(state_->values, [&](const GivenValue& each) { return text::SameName(each.property, property); });
    state_->values.push_back({std::string(property), value});
    state_->takesRedForBlue.reset();
    state_->landsInPlace.reset();
}

void EffectOnRows::SetPicture(std::string_view property, const std::optional<Rows>& rows) {
    const host::PropertyInfo* found = state_->host.FindProperty(ClassName(), property);
    if (!found || !text::SameName(found->type, "Picture") || found->readOnly) {
        throw host::Error(ClassName() + " has no picture " + text::Quoted(property) + " that can be set");
    }
    if (rows) Check(*rows, "picture");
    std::erase_if(state_->pictures, [&](const auto& each) { return text::SameName(each.first, property); });
    if (rows) state_->pictures.emplace_back(found->name, *rows);
}

void EffectOnRows::SetProgress(std::function<bool(std::int64_t, std::int64_t)> progress) {
    state_->progress = std::move(progress);
}

void EffectOnRows::Apply(const Rows& source, const Rows& destination) {
    Check(source, destination);
    if (source.width > 0 && source.height > 0) state_->Apply(source, destination);
}

int EffectOnRows::CopyingPasses(const Rows& source, const Rows& destination) {
    Check(source, destination);
    if (source.width == 0 || source.height == 0) return 0;
    const RowTraits traits = state_->Traits();
    const RowPlan plan = PlanFor(source, destination, traits);
    return plan.Copies() + (plan.changesInPlace || traits.landsInPlace() ? 0 : 1);
}

}  // namespace ombrix::catalogue
