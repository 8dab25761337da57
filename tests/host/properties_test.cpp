// Properties with standard and custom accessors.
#include <limits>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

using Properties = HostTest;

TEST_F(Properties, KeepTheirValues) {
    const Object item = host.New("Item");
    for (const char* name : {"Number", "Real", "Flag", "Photo", "Place", "Handler", "Ancestor"}) {
        SCOPED_TRACE(name);
        const Value value = item.Get(name);
        EXPECT_TRUE(value.IsNil() || (value.IsInteger() && value.AsInteger() == 0) ||
                    (value.IsDouble() && value.AsDouble() == 0) || (value.IsBoolean() && !value.AsBoolean()));
    }
    for (const std::int64_t value : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{1} << 32,
                                     std::numeric_limits<std::int64_t>::max()}) {
        item.Set("NUMBER", value);
        EXPECT_EQ(item.Get("number").AsInteger(), value);
        EXPECT_EQ(item.Get("NumberToRead").AsInteger(), value);
    }
    item.Set("Real", -0.375);
    EXPECT_EQ(item.Get("Real").AsDouble(), -0.375);
    item.Set("Real", 3);
    EXPECT_EQ(item.Get("Real").AsDouble(), 3.0);
    for (const bool value : {true, false}) {
        item.Set("Flag", value);
        EXPECT_EQ(item.Get("Flag").AsBoolean(), value);
        EXPECT_TRUE(item.Get("GuardsStand").AsBoolean());  // a Boolean is one byte
    }
    item.Set("Place", host.NewPoint(-3, 4));
    EXPECT_EQ(Point(item.Get("Place").AsObject()).X(), -3);
}

TEST_F(Properties, GoThroughTheirOwnFunctionsWithTheirParameter) {
    const Object item = host.New("Item");
    item.Set("Sum", 10);  // the setter takes its parameter, -7, off; the getter adds it
    EXPECT_EQ(item.Get("Number").AsInteger(), 17);
    EXPECT_EQ(item.Get("Sum").AsInteger(), 10);
    item.Set("Half", 1.5);
    EXPECT_EQ(item.Get("Real").AsDouble(), 17.0);
    EXPECT_EQ(item.Get("Half").AsDouble(), 1.5);
    item.Set("CustomFlag", true);
    EXPECT_TRUE(item.Get("CustomFlag").AsBoolean());
    EXPECT_TRUE(item.Get("GuardsStand").AsBoolean());
}

TEST_F(Properties, HoldOneReferenceToWhatTheyAreSetTo) {
    const std::int64_t before = host.LiveObjects();
    for (const char* name : {"Photo", "Held"}) {
        SCOPED_TRACE(name);
        Object item = host.New("Item");
        Picture picture = host.NewPicture(2, 2);
        item.Set(name, picture);
        item.Set(name, picture);
        EXPECT_TRUE(item.Get(name).AsObject() == picture);
        picture = Picture();
        EXPECT_EQ(host.LiveObjects(), before + 2);
        item.Set(name, item.Get(name));  // the property's own reference is the only one
        EXPECT_EQ(Picture(item.Get(name).AsObject()).Width(), 2);
        item.Set(name, nullptr);
        EXPECT_TRUE(item.Get(name).IsNil());
        EXPECT_EQ(host.LiveObjects(), before + 1);
        item.Set(name, host.NewPicture(1, 1));
        item = nullptr;  // the destructor releases the picture
        EXPECT_EQ(host.LiveObjects(), before);
    }
}

TEST_F(Properties, RefuseWhatTheyCannotTake) {
    const Object item = host.New("Item");
    EXPECT_THAT(ErrorOf([&] { item.Set("Number", 1.5); }),
                AllOf(HasSubstr("Item.Number"), HasSubstr("Integer"), HasSubstr("Double")));
    EXPECT_NE(ErrorOf([&] { item.Set("Number", true); }), "");
    EXPECT_NE(ErrorOf([&] { item.Set("Number", nullptr); }), "");
    EXPECT_NE(ErrorOf([&] { item.Set("Flag", 1); }), "");
    EXPECT_NE(ErrorOf([&] { item.Set("Real", true); }), "");
    EXPECT_THAT(ErrorOf([&] { item.Set("Photo", host.NewPoint(0, 0)); }),
                AllOf(HasSubstr("Picture"), HasSubstr("Point")));
    EXPECT_NE(ErrorOf([&] { item.Set("Handler", item); }), "");
    item.Set("Handler", host.NewProgressHandler({}));
    EXPECT_NE(ErrorOf([&] { item.Set("Ancestor", item); }), "");
    item.Set("Ancestor", host.New("Middle"));

    EXPECT_THAT(ErrorOf([&] { item.Set("NumberToRead", 1); }), HasSubstr("read"));
    EXPECT_THAT(ErrorOf([&] { item.Get("Numbr"); }), AllOf(HasSubstr("\"Numbr\""), HasSubstr("\"Number\"")));
    EXPECT_THAT(ErrorOf([&] { item.Set("Colour", 1); }), HasSubstr("Number, Real, Flag"));
}

}  // namespace
}  // namespace ombrix::host
