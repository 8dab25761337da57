// Calls: overloads, arguments, results, refusals.
#include <stdexcept>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

using Methods = HostTest;

TEST_F(Methods, AreChosenByTheirArguments) {
    host.Load(TestPlugin("host_derived"));
    const Object item = host.New("Item");
    const Picture picture = host.NewPicture(1, 1);
    const Point point = host.NewPoint(0, 0);
    struct Case {
        std::vector<Argument> arguments;
        std::int64_t overload;
    };
    const Case cases[] = {
        {{}, 9},
        {{3}, 1},
        {{3.5}, 2},
        {{true}, 8},
        {{picture}, 3},  // leaves nothing out, unlike the longer ones
        {{picture, 7}, 471},
        {{picture, 7, picture}, 473},
        {{picture, 7, nullptr}, 471},
        {{picture, point}, 5},
        {{picture, nullptr}, 5},
        {{host.New("Base")}, 6},
        {{host.New("Middle")}, 7},
        {{host.New("Grand")}, 7},  // takes the nearest superclass
        {{Named("Base", host.New("Middle"))}, 6},
        {{Named("MASK", picture), Named("value", 5)}, 452},
        {{picture, Named("mask", picture), Named("value", 5)}, 453},
        {{Named("location", point)}, 5},
        {{Named("flag", false)}, 8},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(&each - cases);
        EXPECT_EQ(item.Call("pICK", each.arguments).AsInteger(), each.overload);
    }
    EXPECT_EQ(host.New("Base").Call("Level").AsInteger(), 1);
    EXPECT_EQ(host.New("Grand").Call("Level").AsInteger(), 2);  // the derived class's own
}

TEST_F(Methods, RefuseArgumentsThatFitNoneOrSeveral) {
    const Object item = host.New("Item");
    const Picture picture = host.NewPicture(1, 1);
    EXPECT_THAT(
        ErrorOf([&] { item.Call("Pick", {nullptr}); }),
        AllOf(HasSubstr("Item.Pick(nil)"), HasSubstr("ambiguous"), HasSubstr("\"Pick(base as Base) as Integer\"")));
    EXPECT_THAT(ErrorOf([&] {
                    item.Call("Pick", {picture, 1.5});
                }),
                AllOf(HasSubstr("(Picture, Double)"), HasSubstr("needs Integer for \"value\"")));
    EXPECT_THAT(ErrorOf([&] { item.Call("Invert", {Named("valu", true)}); }), HasSubstr("did you mean \"value\""));
    EXPECT_THAT(ErrorOf([&] { item.Call("Invert", {true, Named("value", true)}); }), HasSubstr("twice"));
    EXPECT_THAT(ErrorOf([&] { item.Call("Invert"); }), HasSubstr("needs \"value\" (Boolean)"));
    EXPECT_THAT(ErrorOf([&] { item.Call("Invert", {true, true}); }), HasSubstr("takes 1"));
    EXPECT_THAT(ErrorOf([&] { item.Call("Pick", {Named("source", picture), 5}); }), HasSubstr("by position"));
    EXPECT_THAT(ErrorOf([&] { item.Call("Pik"); }), HasSubstr("\"Pick\""));
    EXPECT_THAT(ErrorOf([&] { item.Call("Everything"); }), HasSubstr("Pick, Mixed, Invert"));
}

TEST_F(Methods, AreChosenByTheNamesOfArgumentsWhoseTypesAreNotKnown) {
    const struct {
        std::vector<std::string> names;
        const char* declaration;  ///< empty when none fits
    } cases[] = {
        {{}, "Pick as Integer"},
        {{"source"}, "Pick(source as Picture) as Integer"},
        {{"SOURCE", "value"}, "Pick(source as Picture,value as Integer, mask as Picture) as Integer"},
        {{"mask", "value"}, "Pick(source as Picture,value as Integer, mask as Picture) as Integer"},
        {{"location"}, "Pick(source as Picture, location as Point) as Integer"},
        {{"flag"}, "\t PICK (Flag  AS\tbOOLEAN )as INTEGER "},
        {{"mask"}, ""},  // `value` is required
        {{"sauce"}, ""},
    };
    for (const auto& [names, declaration] : cases) {
        SCOPED_TRACE(declaration);
        const auto method = host.ChooseMethod("item", "pick", names);
        EXPECT_EQ(method ? method->declaration : "", declaration);
    }
    EXPECT_THAT(ErrorOf([&] { host.ChooseMethod("Item", "Pick", {"a"}); }),
                AllOf(HasSubstr("Item.Pick(a) is ambiguous"), HasSubstr("(a as Integer)"), HasSubstr("(a as Double)")));
    EXPECT_EQ(host.FindMethods("Item", "Pick").size(), 9u);
    EXPECT_TRUE(host.FindMethods("ProbeModule", "Pick").empty());
    EXPECT_THAT(ErrorOf([&] { host.FindMethods("Itm", "Pick"); }), HasSubstr("\"Item\""));
}

TEST_F(Methods, OnceChosenAreCalledAsTheyAre) {
    host.Load(TestPlugin("host_derived"));
    const Object item = host.New("Item");
    const Picture picture = host.NewPicture(1, 1);
    const MethodInfo withMask = *host.ChooseMethod("Item", "Pick", {"source", "value"});
    EXPECT_EQ(item.Call(withMask, {picture, 7}).AsInteger(), 471);
    EXPECT_EQ(item.Call(withMask, {Named("value", 7)}).AsInteger(), 470);
    EXPECT_THAT(ErrorOf([&] { item.Call(withMask, {picture}); }), HasSubstr("needs \"value\""));  // chooses no other
    // By types alone this would be the Integer one.
    EXPECT_EQ(item.Call(host.FindMethods("Item", "Pick")[1], {3}).AsInteger(), 2);
    // The derived class's own method.
    EXPECT_EQ(host.FindMethods("Grand", "Level").size(), 1u);
    EXPECT_EQ(host.New("Grand").Call(host.FindMethods("Base", "Level").front(), {}).AsInteger(), 2);
    EXPECT_THAT(ErrorOf([&] { host.New("Base").Call(withMask, {picture, 7}); }), HasSubstr("Base has no method"));

    const MethodInfo same = *host.ChooseMethod("ProbeModule", "Same", {"picture"});
    EXPECT_TRUE(host.CallModule("ProbeModule", same, {picture}).AsObject() == picture);
}

TEST_F(Methods, ReceiveEveryArgument) {
    const Object item = host.New("Item");
    const Picture picture = host.NewPicture(1, 1);
    const Point point = host.NewPoint(12, 34);
    EXPECT_EQ(item.Call("Mixed", {1, 2.0, true, picture, 5, true, 7.0, 8, point, true, 9.0, 6}).AsDouble(),
              6.0e11 + 9e10 + 1e9 + 1e8 + 8e7 + 7e6 + 1e5 + 5e4 + 1e3 + 1e2 + 20 + 1);
    EXPECT_EQ(item.Call("Mixed", {0, 0.5, false, nullptr, 0, false, 0.0, -1, nullptr, false, 0.0, 0}).AsDouble(),
              -1e7 + 5);
    EXPECT_FALSE(item.Call("Invert", {true}).AsBoolean());
    EXPECT_TRUE(item.Call("Invert", {false}).AsBoolean());
    EXPECT_TRUE(item.Call("Number", {77}).IsNil());
    EXPECT_EQ(item.Get("Number").AsInteger(), 77);
    EXPECT_EQ(item.Call("Across", {point}).AsInteger(), 12034);
}

TEST_F(Methods, HandOverTheirResult) {
    const Object item = host.New("Item");
    const std::int64_t before = host.LiveObjects();
    {
        const Picture picture = host.NewPicture(1, 1);
        EXPECT_TRUE(item.CallInterface("igraphicseffect", "APPLY", {picture}).AsObject() == picture);
        EXPECT_TRUE(host.CallModule("probeMODULE", "same", {picture}).AsObject() == picture);
        EXPECT_TRUE(item.Call("Apply").IsNil());
        const Picture made(item.Call("MakePicture", {3, 2, 24}).AsObject());
        EXPECT_EQ(made.Height(), 2);
        EXPECT_EQ(host.LiveObjects(), before + 2);
    }
    EXPECT_EQ(host.LiveObjects(), before);
}

TEST_F(Methods, OfInterfacesAndModulesAreRefusedByName) {
    const Object item = host.New("Item");
    EXPECT_THAT(ErrorOf([&] { item.CallInterface("IGraphicsEffectInPlace", "ApplyInPlace", {}); }),
                HasSubstr("it implements: IGraphicsEffect"));
    EXPECT_NE(ErrorOf([&] { item.CallInterface("IGraphicsEffect", "Pick", {}); }), "");
    EXPECT_NE(ErrorOf([&] { item.CallInterface("IMissing", "Apply", {}); }), "");
    EXPECT_THAT(ErrorOf([&] { host.CallModule("ProbeModul", "Same"); }), HasSubstr("\"ProbeModule\""));
    EXPECT_THAT(ErrorOf([&] { host.CallModule("ProbeModule", "Sane"); }), HasSubstr("\"Same\""));
}

TEST_F(Methods, ReportProgressToTheProgram) {
    const Object item = host.New("Item");
    std::vector<std::pair<std::int64_t, std::int64_t>> reports;
    const Object handler =
        host.NewProgressHandler([&](std::int64_t done, std::int64_t all) { reports.emplace_back(done, all); });
    EXPECT_EQ(item.Call("Report", {handler, 2}).AsInteger(), 2);
    EXPECT_THAT(reports, ElementsAre(Pair(1, 2), Pair(2, 2)));
    EXPECT_EQ(host.New("ProgressHandler").IsA("IProgressHandler"), true);
}

TEST_F(Methods, EndWithWhatAProgressReportThrew) {
    const Object item = host.New("Item");
    int reports = 0;
    const Object handler = host.NewProgressHandler([&](std::int64_t, std::int64_t) {
        ++reports;
        throw std::out_of_range("enough");
    });
    EXPECT_THROW(item.Call("Report", {handler, 5}), std::out_of_range);
    EXPECT_EQ(reports, 1);
    EXPECT_THROW(item.Call("Report", {handler, 5}), std::out_of_range);
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(item.Call("Invert", {true}).AsBoolean(), false);
}

TEST_F(Methods, MayBeCalledFromAProgressReport) {
    const Object item = host.New("Item");
    std::int64_t inner = 0;
    item.Set("Handler", host.NewProgressHandler([&](std::int64_t, std::int64_t) {
        item.Set("Handler", nullptr);  // its last reference, while it reports
        const Picture::Lock lock(host.NewPicture(1, 1));
        inner += item.Call("Pick", {3}).AsInteger();
    }));
    EXPECT_EQ(item.Call("Report", {Named("count", 1)}).AsInteger(), 1);
    EXPECT_EQ(inner, 1);
}

}  // namespace
}  // namespace ombrix::host
