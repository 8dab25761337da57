// A chain of effects on an image: in strips where effects can work by parts, on whole pictures where they cannot.
#pragma once

#include <memory>
#include <vector>
#include <vips/vips8>

#include "cli/effect_object.h"
#include "cli/images/image_reader.h"
#include "cli/images/step_pictures.h"
#include "cli/images/strips.h"
#include "cli/session.h"

namespace ombrix::cli {

/// An effect of the chain, its class found and its properties checked.
struct PlannedStep {
    const host::ClassInfo& type;
    std::vector<PlannedSetting> properties;
};

/// Builds the image step by step. Pixels are computed when the image is read, and may be until the Chain ends.
class Chain {
  public:
    Chain(Session& session, OpenedImage source);
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    /// Opens the pictures of the step. A WorkError when one cannot be, or the effect fails at once.
    void Add(const PlannedStep& step);
    /// What has been added so far.
    vips::VImage Image();
    /// Checks what no effect has needed of their pictures. A WorkError when one is damaged there.
    void CheckTheRest();
    /// Throws what an effect threw while pixels were computed, if anything.
    void Rethrow() const;

  private:
    bool AddInStrips(const PlannedStep& step, const std::vector<StepPicture>& given);
    void AddWhole(const PlannedStep& step, const std::vector<StepPicture>& given);
    host::Picture WholeSource();
    /// The results of the last step, page by page, as the image.
    void Stack(const std::vector<vips::VImage>& pages);

    /// A picture that the image is a view of.
    struct Shown {
        explicit Shown(host::Picture viewed) : picture(std::move(viewed)), pixels(picture) {}
        host::Picture picture;
        host::Picture::Lock pixels;
    };

    Session& session_;
    OpenedImage image_;               ///< after the steps that are not pending
    std::vector<StripStep> pending_;  ///< to be worked on together
    std::vector<std::unique_ptr<Shown>> shown_;
    std::vector<std::unique_ptr<Strips>> strips_;
};

}  // namespace ombrix::cli
