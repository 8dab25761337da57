// What records cannot say of effects, from a text file beside each plug-in.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "ombrix/host.h"

namespace ombrix::catalogue {

/// The file has the plug-in's name with the suffix .txt, and lines such as
///
///     # a comment
///     BlendEffect      = Lays a picture over another.
///     BlendEffect.Size = How much of the fill is used;
///         a line that begins with a blank continues the one before.
///     *.Mask           = What every class of the plug-in has by this name.
///
/// A plug-in without a file has no descriptions.
class Descriptions {
  public:
    /// Reads the files of all plug-ins that have registered something.
    explicit Descriptions(const host::Host& host);

    /// Of a class; empty when there is none.
    std::string OfClass(const host::ClassInfo& type) const;
    /// Of a property that the class has or inherits from `declaring`; empty when there is none.
    std::string OfProperty(const host::ClassInfo& declaring, std::string_view property) const;

  private:
    using Texts = std::map<std::string, std::string>;  ///< by key in small letters
    std::map<std::string, Texts> plugins_;             ///< by path
};

}  // namespace ombrix::catalogue
