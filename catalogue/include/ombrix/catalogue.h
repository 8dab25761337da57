// What is known of the effects that plug-ins register: what their records and descriptions say, and what trying tells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ombrix/api.h"
#include "ombrix/host.h"
#include "ombrix/parts.h"

namespace ombrix::catalogue {

/// Integers from `low` to `high`. kFarthest and its negative stand for an end that was not found.
struct Range {
    std::int64_t low;
    std::int64_t high;

    bool Holds(std::int64_t value) const { return low <= value && value <= high; }
};

/// No value farther from 0 is tried: an effect might take it and work for ages.
inline constexpr std::int64_t kFarthest = 1'000'000;

/// Doubles from `low` to `high`.
struct Bounds {
    double low;
    double high;
};

/// Nothing has the name; the sentence names the most similar that there is.
class OMBRIX_API NotFound : public host::Error {
  public:
    using host::Error::Error;
};

/// A number that an Integer property is meant to have.
struct Constant {
    std::string name;  ///< as registered: MODE_OVERLAY
    std::string word;  ///< without what all constants of the property begin with, in small letters: overlay
    std::int64_t value = 0;
};

/// The constant that is meant by its name or word, in any case, or null. "color-dodge" is color_dodge.
OMBRIX_API const Constant* FindConstant(const std::vector<Constant>& constants, std::string_view given);

/// What an Integer with these constants takes instead of `text`, which is none, with the most similar constants: "a
/// whole number or the name of a constant such as overlay".
OMBRIX_API std::string IntegerForms(const std::string& text, const std::vector<Constant>& constants);

struct Property {
    std::string name;         ///< as registered: SepiaValue
    std::string word;         ///< without the effect's name, in small letters, unique in the effect: value
    std::string type;         ///< Integer, Boolean, Double, Picture, Point or another class
    std::string declaredBy;   ///< the effect or a superclass
    std::string description;  ///< may be empty
    bool readOnly = false;
    bool inherited = false;  ///< from a class that is no effect, as all effects have it
};

/// What trying tells of a property. What cannot be found out is left out.
struct Values {
    host::Value initial;              ///< of a new object
    std::vector<Constant> constants;  ///< those that are for this property
    std::optional<Range> range;       ///< what the effect accepts, for an Integer
    std::optional<Bounds> bounds;     ///< beyond which the result stays the same, for a Double
    bool refusesInitial = false;      ///< the effect gives no picture until the property is set
};

/// A picture property whose pixels say how much of another picture shows at the same coordinates.
struct ShapeMask {
    std::string property;
    bool whiteHides;  ///< otherwise black does
};

/// What a new object has to be given before it works.
struct Needs {
    /// A value somewhere in a property's range.
    struct Number {
        std::string property;
        std::int64_t value;
    };
    std::vector<std::string> pictures;  ///< properties
    std::optional<Number> number;
    bool areMet = false;  ///< false when nothing that was tried makes the effect work
};

class Effect;

/// The effects of all plug-ins that are loaded when it is made. It reads records only; the first call that asks for
/// what records do not say tries the effect on a few pixels, and keeps the answer. Trying runs the plug-in's code, with
/// all that may come of it, and follows the Host's rule of threads. Valid until the next Load; must not outlive the
/// Host.
class OMBRIX_API Catalogue {
  public:
    /// Of the `broken` plug-ins, from Host::LoadInstalled, only the JSON tells.
    explicit Catalogue(host::Host& host, std::vector<host::BrokenPlugin> broken = {});
    ~Catalogue();
    Catalogue(Catalogue&&) noexcept;
    Catalogue& operator=(Catalogue&&) noexcept;

    /// In the order of registration.
    const std::vector<Effect>& Effects() const;
    /// By class or word, with or without the ending "Effect", in any case. Null when there is none.
    const Effect* Find(std::string_view name) const;
    /// A NotFound when there is none.
    const Effect& Named(std::string_view name) const;

    /// Of any class or property; empty when there is none. `declaring`: the class whose record has the property.
    std::string Description(const host::ClassInfo& type) const;
    std::string Description(const host::ClassInfo& declaring, std::string_view property) const;
    /// The constants that are for a property of any class, effect or not.
    std::vector<Constant> ConstantsFor(const host::ClassInfo& type, const host::PropertyInfo& property) const;

    /// All that is known of all effects, or of one, as a JSON object in UTF-8; docs/catalogue.md names the fields. On
    /// one line, or with `indent` blanks for each level.
    std::string Json(const Effect* only = nullptr, int indent = -1) const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// One effect of a Catalogue, which has to outlive it.
class OMBRIX_API Effect {
  public:
    Effect(Effect&&) noexcept;
    ~Effect();

    /// The class, as registered: SepiaEffect.
    const std::string& Name() const { return Type().name; }
    /// The class in small letters, without its ending "Effect" where no other class has that name: sepia.
    const std::string& Word() const;
    /// May be empty.
    const std::string& Description() const;
    const host::ClassInfo& Type() const;
    /// Whether it can change a picture instead of making one.
    bool WorksInPlace() const;

    /// Its own in the order of registration, then those of its superclasses.
    const std::vector<Property>& Properties() const;
    /// By name or word, in any case. Null when there is none.
    const Property* FindProperty(std::string_view nameOrWord) const;
    /// A NotFound when there is none.
    const Property& PropertyNamed(std::string_view nameOrWord) const;
    /// Those that people give without names, in this order.
    const std::vector<const Property*>& ByPosition() const;

    /// Properties are this effect's. Trying only where records do not tell which property a constant is for.
    const std::vector<Constant>& ConstantsOf(const Property& property) const;

    // ---- Found by trying ----

    const Values& ValuesOf(const Property& property) const;
    const Needs& WhatItNeeds() const;

    /// Whether each pixel of the result comes from the pixel at the same place of the source, and of pictures as masks,
    /// or from that of a picture which lies at a position, as a fill does. Then the result over parts of a picture is
    /// its result over the whole, when masks are cut like the source, and fills moved. Tried with all its values and
    /// pictures; false also when the effect never works.
    bool WorksPixelByPixel() const;
    /// What its pictures and points are in that work; none where it does not work so.
    const PartRoles& RolesInParts() const;
    /// The mask of the pictures that a property takes, which can show a transparent picture's shape. Nothing when there
    /// is none, or the property is no picture.
    const std::optional<ShapeMask>& ShapeMaskOf(const Property& property) const;
    /// Whether a 32-bit result has the source's alpha, and its colours do not depend on it: the fourth byte of each
    /// pixel can be anything. Tried, and false, likewise.
    bool KeepsAlpha() const;

  private:
    friend class Catalogue;
    struct State;
    explicit Effect(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace ombrix::catalogue
