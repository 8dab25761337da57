#include "platform/bitmap_context.h"

#include <gtest/gtest.h>

namespace {

TEST(BitmapContext, TellsWhatItWasMadeWithAndLeavesThePixels) {
    unsigned char pixels[8] = {1, 2, 3};
    const CGContextRef context = OmbrixBitmapContextCreate(pixels, 64, 24);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(CGBitmapContextGetData(context), pixels);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(context), 64);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(context), 24);
    OmbrixBitmapContextRelease(context);
    EXPECT_EQ(pixels[2], 3);
}

TEST(BitmapContext, MayBeNull) {
    EXPECT_EQ(CGBitmapContextGetData(nullptr), nullptr);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(nullptr), 0);
    EXPECT_EQ(CGBitmapContextGetBitsPerPixel(nullptr), 0);
    OmbrixBitmapContextRelease(nullptr);
}

}  // namespace
