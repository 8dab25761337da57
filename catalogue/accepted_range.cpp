#include "catalogue/accepted_range.h"

namespace ombrix::catalogue {

namespace {

/// The search for a first value tries all up to the first limit, then steps that double.
constexpr std::int64_t kNear = 256;
constexpr std::int64_t kNotSoNear = 65536;

class Trial {
  public:
    Trial(host::Host& host, const host::ClassInfo& type, std::string property, const Prepare& prepare)
        : host_(host), type_(type), property_(std::move(property)), prepare_(prepare) {}

    bool Accepts(std::int64_t value) const {
        return static_cast<bool>(Tried(host_, type_, host_.NewPicture(1, 1), [&](const host::Object& object) {
            prepare_(object);
            object.Set(property_, value);
        }));
    }

    /// The value of a new object, or else one near 0.
    std::optional<std::int64_t> FirstAccepted() const {
        const std::int64_t initial = host_.New(type_.name).Get(property_).AsInteger();
        if (Accepts(initial)) return initial;
        for (std::int64_t size = 1; size <= kNotSoNear; size < kNear ? ++size : size *= 2) {
            for (const std::int64_t value : {size, -size}) {
                if (Accepts(value)) return value;
            }
        }
        return std::nullopt;
    }

    /// The last accepted value on the way to `farthest`.
    std::int64_t LastAccepted(std::int64_t accepted, std::int64_t farthest) const {
        if (Accepts(farthest)) return farthest;
        std::int64_t refused = farthest;
        while (accepted + 1 != refused && accepted - 1 != refused) {
            const std::int64_t middle = accepted + (refused - accepted) / 2;
            (Accepts(middle) ? accepted : refused) = middle;
        }
        return accepted;
    }

  private:
    host::Host& host_;
    const host::ClassInfo& type_;
    const std::string property_;
    const Prepare& prepare_;
};

}  // namespace

std::optional<Range> AcceptedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                   const Prepare& prepare) {
    const Trial trial(host, type, property.name, prepare);
    const std::optional<std::int64_t> inside = trial.FirstAccepted();
    if (!inside) return std::nullopt;
    return Range{trial.LastAccepted(*inside, -kFarthest), trial.LastAccepted(*inside, kFarthest)};
}

std::string Described(const Range& range) {
    if (range.low == -kFarthest && range.high == kFarthest) return "any number";
    if (range.low == -kFarthest) return "up to " + std::to_string(range.high);
    if (range.high == kFarthest) return std::to_string(range.low) + " or more";
    return std::to_string(range.low) + " to " + std::to_string(range.high);
}

}  // namespace ombrix::catalogue
