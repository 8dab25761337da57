// An effect for pictures in memory of the program, of any layout.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ombrix/api.h"
#include "ombrix/catalogue.h"
#include "ombrix/host.h"
#include "ombrix/rows.h"

namespace ombrix::catalogue {

/// Rows that cannot be worked on.
class OMBRIX_API BadRows : public host::Error {
  public:
    using host::Error::Error;
};

/// The effect does not take the values or pictures that it has.
class OMBRIX_API Refused : public host::Error {
  public:
    using host::Error::Error;
};

/// The progress function asked for the end.
class OMBRIX_API Cancelled : public host::Error {
  public:
    using host::Error::Error;
};

/// An object of an effect's class. Follows the Host's rule of threads.
class OMBRIX_API EffectOnRows {
  public:
    /// `effect` is not used afterwards.
    EffectOnRows(host::Host& host, const Effect& effect);
    ~EffectOnRows();
    EffectOnRows(const EffectOnRows&) = delete;
    EffectOnRows& operator=(const EffectOnRows&) = delete;

    const std::string& ClassName() const;
    /// As Object::Get and Object::Set.
    host::Value Get(std::string_view property) const;
    void Set(std::string_view property, const host::Value& value);
    /// Gives the effect these rows whenever it is applied; nothing takes them away. They have to outlive that.
    void SetPicture(std::string_view property, const std::optional<host::Rows>& rows);
    /// Called within Apply with the rows that are done and all there are; false ends it. Effects that do not work pixel
    /// by pixel, or have pictures, are not ended before all is done. Empty for none.
    void SetProgress(std::function<bool(std::int64_t, std::int64_t)> progress);

    /// Puts the result for `source` into `destination`, of the same size and any layout and alpha: as if the source was
    /// copied to ARGB with straight alpha, and the result from there, both as by CopyPixels. Both may be the same rows,
    /// and do not overlap otherwise. Touches no byte that is of no pixel.
    ///
    /// BadRows and Refused leave the destination as it was, Cancelled and other Errors may leave it partly written.
    void Apply(const host::Rows& source, const host::Rows& destination);

    /// The passes over all pixels that Apply takes beside the effect's own: 0 when it works on the rows as they lie.
    /// Passes over the pictures of properties are not among them, nor are those over a few pixels that save a call.
    /// BadRows as for Apply.
    int CopyingPasses(const host::Rows& source, const host::Rows& destination);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace ombrix::catalogue
