// A host with the plug-in loaded, as a program has it, and pictures to try effects on.
#pragma once

#include <gtest/gtest.h>

#include <array>

#include "ombrix/host.h"

namespace ombrix::testing {

using host::Host;
using host::HostOptions;
using host::Named;
using host::Object;
using host::Picture;
using host::Value;

using Colour = std::array<int, 3>;

/// Every host fault ends the test program.
class Effects : public ::testing::Test {
  protected:
    Effects() : host_(HostOptions{.version = 2024.0, .faults = host::FaultPolicy::Abort, .withheldServices = {}}) {
        host_.Load(OMBRIX_BUILD_DIR "/libombrix.so");
    }

    /// A picture of 32 bits whose colours are told by a function of column and row.
    template <class ColourAt>
    Picture Painted(int width, int height, ColourAt colour) {
        Picture picture = host_.NewPicture(width, height, 32);
        const Picture::Lock pixels(picture);
        for (int y = 0; y < height; ++y) {
            std::uint8_t* pixel = pixels.Row(y).data();
            for (int x = 0; x < width; ++x, pixel += 4) {
                const Colour c = colour(x, y);
                pixel[0] = static_cast<std::uint8_t>(x + y);
                for (int i = 0; i < 3; ++i) pixel[i + 1] = static_cast<std::uint8_t>(c[i]);
            }
        }
        return picture;
    }

    Picture Single(Colour colour) {
        return Painted(1, 1, [&](int, int) { return colour; });
    }

    static Colour At(const Picture& picture, int x = 0, int y = 0) {
        const Picture::Lock pixels(picture);
        const std::uint8_t* pixel = pixels.Row(y).data() + x * (picture.Depth() / 8) + (picture.Depth() == 32);
        return {pixel[0], pixel[1], pixel[2]};
    }

    std::int64_t ErrorOf(const Object& effect) { return effect.Get("ErrorCode").AsInteger(); }

    Host host_;
};

}  // namespace ombrix::testing
