// Where parts of placed pictures lie, how effects can be given parts, and what masks what.
#include "catalogue/parts.h"

#include <gtest/gtest.h>

#include "catalogue/shape_mask.h"

namespace ombrix::catalogue {
namespace {

TEST(PlaceInPart, EveryPixelIsThatOfTheWholePicture) {
    constexpr std::int64_t kWide = std::int64_t{1} << 62;
    std::vector<std::int64_t> positions{-kWide, kWide};
    for (std::int64_t position = -5; position <= 8; ++position) positions.push_back(position);
    const std::vector<std::optional<std::int64_t>> extents{std::nullopt, -1, 0, 1, 2, 3, 4, kWide};
    int covered = 0;
    for (const std::int64_t size : {1, 3}) {
        for (const std::int64_t position : positions) {
            for (const auto extent : extents) {
                for (std::int64_t left = 0; left < 7; ++left) {
                    for (std::int64_t width = 1; left + width <= 7; ++width) {
                        const PlacedPart placed =
                            PlaceInPart({left, 0, width, 1}, {size, 1}, {position, 0},
                                        extent ? std::optional(Coordinates{*extent, 1}) : std::nullopt);
                        ASSERT_TRUE(placed.cut.left >= 0 && placed.cut.width >= 1 &&
                                    placed.cut.left + placed.cut.width <= size);
                        const std::int64_t used = extent && *extent >= 0 ? std::min(*extent, size) : size;
                        for (std::int64_t x = 0; x < width; ++x) {
                            const std::int64_t whole = left + x - position;
                            const std::int64_t cut = x - placed.position.x;
                            const bool isCovered = whole >= 0 && whole < used;
                            const bool isInCut = placed.isThere && cut >= 0 && cut < placed.extent.x;
                            ASSERT_EQ(isCovered, isInCut) << size << " at " << position << ", part from " << left;
                            if (isCovered && whole != placed.cut.left + cut) FAIL() << whole;
                            covered += isCovered ? 1 : 0;
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(covered, 1000);
}

class CatalogueTest : public testing::Test {
  protected:
    CatalogueTest() {
        host.Load(OMBRIX_BUILD_DIR "/libombrix.so");
        host.Load(OMBRIX_BUILD_DIR "/tests/odd_effects.so");
    }
    const host::ClassInfo& Type(const std::string& name) { return *host.FindClass(name); }

    host::Host host;
};

TEST_F(CatalogueTest, RolesAreFoundByTrying) {
    const auto find = [this](const std::string& type, const std::vector<PictureToSet>& pictures,
                             const std::vector<std::string>& points) {
        return FindPartRoles(host, Type(type), pictures, points, 24, [](const host::Object&) {});
    };
    const auto invert = find("InvertEffect", {{"Mask", true}}, {});
    ASSERT_TRUE(invert);
    EXPECT_EQ(invert->pictures[0].role, PictureRole::AlongSource);

    const auto blend = find("BlendEffect", {{"FillPicture", true}, {"FillMask", true}}, {"Size"});
    ASSERT_TRUE(blend);
    for (const auto& picture : blend->pictures) EXPECT_EQ(picture.role, PictureRole::Placed) << picture.name;
    for (const auto& point : blend->points) {
        EXPECT_EQ(point.role, point.name == "Size" ? PointRole::Extent : PointRole::Position) << point.name;
    }
    EXPECT_FALSE(find("SizeEffect", {}, {})) << "it looks at the size of the whole picture";
}

TEST_F(CatalogueTest, AFillIsMaskedByTheMaskThatLiesWithIt) {
    const auto fill = FindShapeMask(host, Type("BlendEffect"), "FillPicture");
    ASSERT_TRUE(fill);
    EXPECT_EQ(fill->property, "FillMask");
    EXPECT_TRUE(fill->whiteHides);
    EXPECT_FALSE(FindShapeMask(host, Type("BlendEffect"), "FillMask"));
    EXPECT_FALSE(FindShapeMask(host, Type("InvertEffect"), "Mask"));
}

}  // namespace
}  // namespace ombrix::catalogue
