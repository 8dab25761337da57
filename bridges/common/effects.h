// The effects of all plug-ins, as the catalogue describes them, and objects of them: what every bridge is made from.
#pragma once

#include <ombrix/ombrix.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ombrix::bridge {

/// What a function of the C interface said when it failed, and what a bridge refuses itself.
class Error : public std::runtime_error {
  public:
    explicit Error(const std::string& sentence, ombrix_status given = OMBRIX_INVALID_ARGUMENT)
        : std::runtime_error(sentence), status(given) {}

    const ombrix_status status;
};

struct Constant {
    std::string name;  ///< MODE_OVERLAY
    std::string word;  ///< overlay
    std::int64_t value = 0;
};

struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

enum class Type { Integer, Number, Boolean, Picture, Point, Other };

/// What a picture or a point is in work by parts, of effects that work pixel by pixel; ombrix/parts.h says more.
enum class Role {
    None,      ///< the same for every part
    Along,     ///< a picture that is cut like the source: a mask
    Placed,    ///< a picture that lies at the position: a fill
    Position,  ///< the point where placed pictures lie
    Extent,    ///< the point that says how much of placed pictures counts
};

/// What a new effect has; nothing for pictures and where it is not known.
using Default = std::variant<std::monostate, std::int64_t, double, bool, Point>;

/// The mask that shows the shape of a placed picture.
struct ShapeMask {
    std::string property;
    bool whiteHides = false;  ///< otherwise black does
};

struct Property {
    std::string name;  ///< as registered: SepiaValue
    std::string word;  ///< unique in the effect: value
    std::string description;
    Type type = Type::Other;
    Role role = Role::None;
    bool inherited = false;       ///< from the base class, as all effects have it
    bool refusesDefault = false;  ///< the effect gives no picture until it is set
    std::optional<int> position;  ///< for those that people give without a name
    Default initial;
    std::optional<std::pair<std::int64_t, std::int64_t>> range;  ///< of an Integer, when both ends are known
    std::optional<std::pair<double, double>> bounds;             ///< of a Number
    std::vector<Constant> constants;
    std::optional<ShapeMask> shapeMask;
};

struct Effect {
    std::string name;  ///< SepiaEffect
    std::string word;  ///< sepia
    std::string description;
    bool pixelByPixel = false;
    bool keepsAlpha = false;
    std::vector<Property> properties;  ///< those that can be set
};

/// In the order of registration. Throws an Error.
std::vector<Effect> ReadEffects();

/// An object of an effect, for one thread at a time. All functions throw an Error with the sentence.
class Object {
  public:
    explicit Object(const std::string& effect);

    void Set(const std::string& property, std::int64_t value);
    void Set(const std::string& property, double value);
    void Set(const std::string& property, bool value);
    void Set(const std::string& property, Point value);
    void Set(const std::string& property, const std::string& text);
    /// The rows have to outlive their use.
    void Set(const std::string& property, const ombrix_rows& rows);
    void Unset(const std::string& property);

    void Apply(const ombrix_rows& source, const ombrix_rows& destination);

  private:
    struct Free {
        void operator()(ombrix_effect* effect) const { ombrix_effect_free(effect); }
    };
    std::unique_ptr<ombrix_effect, Free> effect_;
};

/// A description as part of a line.
std::string WithoutStop(const std::string& description);

/// Throws an Error with the sentence of the call unless it is OMBRIX_OK.
void Check(ombrix_status status);

}  // namespace ombrix::bridge
