// Pictures: their pixels, their locks, their masks.
#include <sys/resource.h>

#include <cstring>
#include <limits>

#include "platform/core_graphics.h"
#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::Each;
using ::testing::HasSubstr;

using Pictures = HostTest;

constexpr std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();

TEST_F(Pictures, HaveAlignedRowsOfZeros) {
    for (const int depth : {16, 24, 32}) {
        for (const int width : {0, 1, 15, 16, 17, 21, 22, 100}) {
            for (const int height : {0, 1, 3}) {
                SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + " x " + std::to_string(depth));
                const Picture picture = host.NewPicture(width, height, depth);
                EXPECT_EQ(picture.Width(), width);
                EXPECT_EQ(picture.Height(), height);
                EXPECT_EQ(picture.Depth(), depth);
                const Picture::Lock lock(picture);
                EXPECT_NE(lock.Base(), nullptr);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lock.Base()) % 64, 0u);
                EXPECT_EQ(lock.RowBytes(), (width * depth / 8 + 63) / 64 * 64);
                for (int y = 0; y < height; ++y) {
                    EXPECT_EQ(lock.Row(y).size(), static_cast<std::size_t>(width * depth / 8));
                    EXPECT_THAT(lock.Row(y), Each(0));
                }
            }
        }
    }
}

long PageFaults() {
    rusage used;
    getrusage(RUSAGE_SELF, &used);
    return used.ru_minflt;
}

TEST_F(Pictures, UseTheMemoryOfReleasedOnesAndStillBeginAsZeros) {
    const Object item = host.New("Item");
    const Services services = ServicesOfProbe();
    // Makes, locks and writes a picture as an effect does. Returns the page faults of the writing.
    const auto make = [&] {
        const Picture made(item.Call("MakePicture", {4000, 3000, 32}).AsObject());
        REALpictureDescription description;
        EXPECT_TRUE(services.lockDescription(made.Handle(), &description, kBitmapContextPicture));
        const long before = PageFaults();
        std::memset(CGBitmapContextGetData(static_cast<CGContextRef>(description.data)), 0x77, 4000 * 3000 * 4);
        const long faults = PageFaults() - before;
        services.unlockDescription(made.Handle());
        return faults;
    };
    make();
    EXPECT_LT(make(), 12);  // of 11,719 small pages, or 23 huge ones

    const auto expectZeros = [](const Picture& picture) {
        const Picture::Lock lock(picture);
        for (int y = 0; y < picture.Height(); y += 97) EXPECT_THAT(lock.Row(y), Each(0));
    };
    expectZeros(host.NewPicture(4000, 3000));
    make();
    // Read before anybody wrote to it.
    expectZeros(Picture(item.Call("MakePicture", {4000, 3000, 32}).AsObject()));
}

TEST_F(Pictures, AreDescribedToPluginsWhenLocked) {
    const Services services = ServicesOfProbe();
    const Picture picture = host.NewPicture(10, 5, 24);
    REALpictureDescription description, nested;
    EXPECT_FALSE(services.lockDescription(picture.Handle(), &description, 1));
    ASSERT_TRUE(services.lockDescription(picture.Handle(), &description, kBitmapContextPicture));
    ASSERT_TRUE(services.lockNative(picture.Handle(), &nested));
    EXPECT_EQ(host.OutstandingLocks(), 2);
    EXPECT_EQ(description.type, 8u);
    EXPECT_EQ(description.width, 10);
    EXPECT_EQ(description.height, 5);
    EXPECT_EQ(nested.data, description.data);
    auto* context = static_cast<CGContextRef>(description.data);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(context), 24u);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(context), 64u);
    services.unlockDescription(picture.Handle());
    EXPECT_EQ(CGBitmapContextGetData(context), Picture::Lock(picture).Base());
    services.unlockDescription(picture.Handle());
    EXPECT_EQ(host.OutstandingLocks(), 0);
}

TEST_F(Pictures, ThatAreDrawingsHaveNoPixels) {
    const Services services = ServicesOfProbe();
    const Picture drawing = host.NewDrawing(30, 20);
    EXPECT_EQ(drawing.Depth(), 0);
    EXPECT_THAT(ErrorOf([&] { Picture::Lock lock(drawing); }), HasSubstr("not a bitmap"));
    REALpictureDescription description;
    EXPECT_FALSE(services.lockDescription(drawing.Handle(), &description, kBitmapContextPicture));
    ASSERT_TRUE(services.lockNative(drawing.Handle(), &description));
    EXPECT_NE(description.type, kBitmapContextPicture);
    EXPECT_EQ(description.data, nullptr);
    EXPECT_EQ(description.width, 30);
    EXPECT_EQ(description.height, 20);
    services.unlockDescription(drawing.Handle());
}

TEST_F(Pictures, ThatCannotBeMadeAreRefused) {
    struct Case {
        std::int64_t width, height, depth;
    };
    const Case cases[] = {
        {1, 1, 0},
        {1, 1, 8},
        {1, 1, 31},
        {1, 1, -32},
        {1, 1, kHuge},
        {-1, 1, 32},
        {1, -1, 32},
        {-kHuge - 1, 1, 32},
        {kHuge, 1, 16},
        {1, kHuge, 16},
        {kHuge, kHuge, 32},
        {std::int64_t{1} << 31, 1, 32},
        {1 << 29, 1, 32},
        {1 << 28, 1 << 30, 32},
        {std::int64_t{1} << 62, 4, 32},
    };
    const Object item = host.New("Item");
    const Services services = ServicesOfProbe();
    for (const Case& each : cases) {
        SCOPED_TRACE(&each - cases);
        EXPECT_NE(ErrorOf([&] { host.NewPicture(each.width, each.height, each.depth); }), "");
        // Plug-ins get a picture without pixels.
        const Picture made(item.Call("MakePicture", {each.width, each.height, each.depth}).AsObject());
        REALpictureDescription description;
        EXPECT_FALSE(services.lockDescription(made.Handle(), &description, kBitmapContextPicture));
        EXPECT_FALSE(services.lockNative(made.Handle(), &description));
        EXPECT_EQ(made.Width(), 0);
        EXPECT_TRUE(made.Get("Graphics").IsNil());
        EXPECT_TRUE(made.Mask(false) == Picture());
    }
}

TEST_F(Pictures, HaveMasks) {
    const std::int64_t before = host.LiveObjects();
    {
        const Picture picture = host.NewPicture(7, 3, 24);
        EXPECT_FALSE(picture.Mask());
        EXPECT_TRUE(picture.Call("Mask", {false}).IsNil());
        const Picture white(picture.Call("Mask", {true}).AsObject());
        EXPECT_TRUE(picture.Mask() == white);
        EXPECT_TRUE(picture.Mask(true) == white);
        EXPECT_EQ(white.Width(), 7);
        for (int y = 0; y < 3; ++y) EXPECT_THAT(Picture::Lock(white).Row(y), Each(255));

        const Picture other = host.NewPicture(7, 3);
        picture.Call("Mask", {other});
        picture.SetMask(other);  // once more
        EXPECT_TRUE(picture.Mask() == other);
        picture.SetMask(picture.Mask());
        EXPECT_THAT(ErrorOf([&] { picture.SetMask(host.NewPicture(7, 2)); }), HasSubstr("7x2"));
        EXPECT_THAT(ErrorOf([&] { picture.SetMask(picture); }), HasSubstr("its own mask"));
        EXPECT_NE(ErrorOf([&] { other.SetMask(picture); }), "");
        EXPECT_TRUE(picture.Mask() == other);
        // A new bitmap has no mask.
        picture.Call("Constructor", {2, 2, 32});
        EXPECT_FALSE(picture.Mask());
        picture.SetMask(host.NewPicture(2, 2));
        EXPECT_EQ(host.LiveObjects(), before + 4);
        picture.Call("Mask", {nullptr});
        EXPECT_FALSE(picture.Mask());
    }
    EXPECT_EQ(host.LiveObjects(), before);
}

TEST_F(Pictures, ThatAreNilSaySo) {
    EXPECT_THAT(ErrorOf([] { Picture().Width(); }), HasSubstr("nil"));
    EXPECT_THAT(ErrorOf([] { Picture::Lock lock((Picture())); }), HasSubstr("nil"));
    EXPECT_THAT(ErrorOf([] { Point().X(); }), HasSubstr("nil"));
}

}  // namespace
}  // namespace ombrix::host
