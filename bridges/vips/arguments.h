// What an operation takes, besides its input and output: the effect's properties as arguments of libvips.
#pragma once

#include <vips/vips.h>

#include <string>
#include <vector>

#include "bridges/common/effects.h"

namespace ombrix::bridge {

/// Of a point, which takes two arguments.
enum class Coordinate { None, X, Y };

struct Argument {
    std::string name;  ///< as people type it
    const Property* property = nullptr;
    Coordinate coordinate = Coordinate::None;
    bool isRequired = false;
};

/// Where an operation keeps a value.
union Slot {
    VipsImage* image;
    int integer;  ///< of an Integer, a Boolean or a coordinate
    double number;
};

/// The arguments that `effect`, which has to outlive them, makes: required pictures first.
std::vector<Argument> ArgumentsOf(const Effect& effect);

/// For g_object_class_install_property. It takes any number: CheckValue refuses those that are out of range.
GParamSpec* SpecOf(const Effect& effect, const Argument& argument);

/// Of an argument that is a coordinate: what it is unless given.
int InitialCoordinate(const Argument& argument);

/// An Error when the effect is known to refuse the value.
void CheckValue(const Argument& argument, const Slot& slot);

}  // namespace ombrix::bridge
