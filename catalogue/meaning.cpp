#include "catalogue/meaning.h"

#include <algorithm>
#include <vector>

#include "catalogue/constants.h"

namespace ombrix::catalogue {

namespace {

constexpr int kWidth = 16, kHeight = 8, kDepth = 24;
constexpr std::uint32_t kSourceSeed = 1;

host::Picture TrialSource(host::Host& host) { return TrialPicture(host, kWidth, kHeight, kDepth, kSourceSeed); }

/// Results for values of one property.
class Results {
  public:
    Results(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property, const Prepare& prepare)
        : host_(host), type_(type), property_(property), prepare_(prepare), source_(TrialSource(host)) {}

    host::Picture Of(const host::Value& value) const {
        return Tried(host_, type_, source_, [&](const host::Object& object) {
            prepare_(object);
            object.Set(property_.name, value);
        });
    }

    bool AreSame(double a, double b) const {
        const host::Picture first = Of(a), second = Of(b);
        return first && second && IsSamePicture(first, second);
    }

  private:
    host::Host& host_;
    const host::ClassInfo& type_;
    const host::PropertyInfo& property_;
    const Prepare& prepare_;
    const host::Picture source_;
};

}  // namespace

Prepare WithTrialPictures(host::Host& host, const std::vector<std::string>& properties) {
    std::vector<std::pair<std::string, host::Picture>> pictures;
    for (const std::string& property : properties) {
        const auto seed = static_cast<std::uint32_t>(kSourceSeed + 1 + pictures.size());
        pictures.emplace_back(property, TrialPicture(host, kWidth, kHeight, kDepth, seed));
    }
    return [pictures](const host::Object& object) {
        for (const auto& [property, picture] : pictures) object.Set(property, picture);
    };
}

std::optional<Constant> WorksAs(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                std::int64_t value, const Prepare& prepare) {
    const std::vector<Constant> constants = ConstantsFor(host, type, property, prepare);
    const auto isValue = [value](const Constant& constant) { return constant.value == value; };
    if (constants.size() < 2 || std::ranges::any_of(constants, isValue)) return std::nullopt;
    const Results results(host, type, property, prepare);
    const host::Picture result = results.Of(value);
    if (!result) return std::nullopt;
    std::optional<Constant> same;
    bool differ = false;
    for (const Constant& constant : constants) {
        const host::Picture other = results.Of(constant.value);
        const bool isSame = other && IsSamePicture(result, other);
        if (isSame && !same) same = constant;
        differ = differ || !isSame;
    }
    return differ ? same : std::nullopt;
}

std::optional<Bounds> MeaningfulBounds(host::Host& host, const host::ClassInfo& type,
                                       const host::PropertyInfo& property, const Prepare& prepare) {
    const Results results(host, type, property, prepare);
    for (const double high : {1.0, 100.0, 255.0}) {
        const bool endsHigh =
            results.AreSame(high, high * 2) && results.AreSame(high, high * 1000) && !results.AreSame(high, high / 2);
        if (!endsHigh) continue;
        for (const double low : {0.0, -high}) {
            const double inside = low + high / 2;
            if (results.AreSame(low, low - high) && results.AreSame(low, low - high * 1000) &&
                !results.AreSame(low, inside))
                return Bounds{low, high};
        }
    }
    return std::nullopt;
}

bool ChangesNothing(host::Host& host, const host::ClassInfo& type, const Prepare& prepare) {
    const host::Picture source = TrialSource(host);
    const host::Picture result = Tried(host, type, source, prepare);
    return result && IsSamePicture(source, result);
}

}  // namespace ombrix::catalogue
