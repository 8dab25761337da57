// Memory, construction and destruction, and counting of objects.
#include <functional>
#include <thread>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Objects : public HostTest {
  protected:
    Objects() { host.Load(TestPlugin("host_derived")); }
    std::int64_t TakeDestructions() { return host.CallModule("ProbeModule", "TakeDestructions").AsInteger(); }
};

TEST_F(Objects, AreConstructedBaseFirstAndDestroyedDerivedFirst) {
    Object grand = host.New("grand");
    EXPECT_EQ(grand.ClassName(), "Grand");
    EXPECT_EQ(grand.Get("Order").AsInteger(), 123);
    EXPECT_TRUE(grand.IsA("BASE"));
    EXPECT_FALSE(grand.IsA("Item"));
    // Each class has its own data, though Base's size is no multiple of 8 bytes.
    grand.Set("Own", std::int64_t{-1});
    EXPECT_EQ(grand.Get("Order").AsInteger(), 123);
    EXPECT_EQ(grand.Get("Own").AsInteger(), -1);
    EXPECT_EQ(host.New("Middle").Get("Order").AsInteger(), 12);
    EXPECT_EQ(TakeDestructions(), 21);
    grand = nullptr;
    EXPECT_EQ(TakeDestructions(), 321);
}

TEST_F(Objects, LiveAsLongAsTheirLastReference) {
    const std::int64_t before = host.LiveObjects();
    {
        const Object first = host.New("Base");
        Object second = first;
        EXPECT_TRUE(first == second);
        second = host.New("Item");
        EXPECT_EQ(host.LiveObjects(), before + 2);
        second.Set("Ancestor", first);
    }
    EXPECT_EQ(host.LiveObjects(), before);
    EXPECT_EQ(TakeDestructions(), 1);
}

TEST_F(Objects, MayDeriveFromTheHostsOwnClasses) {
    const Object titled = host.New("TitledPicture");
    titled.Set("Title", 77);
    titled.Call("Constructor", {5, 4, 24});
    const Picture picture(titled);
    EXPECT_EQ(picture.Width(), 5);
    EXPECT_EQ(picture.Get("Depth").AsInteger(), 24);
    EXPECT_EQ(titled.Get("Title").AsInteger(), 77);
    EXPECT_EQ(host.New("Item").Call("Pick", {picture}).AsInteger(), 3);
}

TEST_F(Objects, OfNoClassCannotBeMade) {
    EXPECT_THAT(ErrorOf([&] { host.New("Grant"); }), AllOf(HasSubstr("\"Grant\""), HasSubstr("\"Grand\"")));
    EXPECT_NE(ErrorOf([&] { host.New("IGraphicsEffect"); }), "");
    EXPECT_NE(ErrorOf([&] { Picture(host.New("Base")); }), "");
    EXPECT_NE(ErrorOf([&] { Object().Get("Order"); }), "");
}

TEST(HostsEnd, DestroysWhatStillLives) {
    std::vector<std::string> faults;
    Object kept, picture;
    {
        HostOptions options;
        options.onFault = [&](const std::string& fault) { faults.push_back(fault); };
        Host host(options);
        host.Load(TestPlugin("host_probe"));
        kept = host.New("Item");
        picture = host.NewPicture(3, 3);
        kept.Set("Photo", picture);
        // A picture and its holder may be destroyed in any order.
        const Object later = host.New("Item");
        later.Set("Held", picture);
    }
    EXPECT_THAT(faults, ElementsAre(AllOf(HasSubstr("an Item"), HasSubstr("the program")), HasSubstr("a Picture")));
    EXPECT_NE(ErrorOf([&] { kept.ClassName(); }), "");
}

TEST(OtherThreads, CannotUseTheHost) {
    std::vector<std::string> faults;
    HostOptions options;
    options.faults = FaultPolicy::Note;
    Host host(options);
    const Object point = host.NewPoint(1, 2);
    const std::function<void()> uses[] = {[&] { point.Get("x"); }, [&] { host.NewPoint(1, 2); },
                                          [&] { host.Faults(); }};
    for (const auto& use : uses) {
        std::string error;
        std::thread([&] { error = ErrorOf(use); }).join();
        EXPECT_THAT(error, HasSubstr("thread"));
    }
}

}  // namespace
}  // namespace ombrix::host
