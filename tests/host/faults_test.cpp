// Plug-ins that break the rules are found out and named, and do no harm.
#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A method of the culprit, its fault, and the objects and locks that it leaves behind.
struct Deed {
    const char* method;
    bool takesPicture;
    std::vector<std::string> says;
    std::int64_t objects = 0;
    std::int64_t locks = 0;
};

const Deed kDeeds[] = {
    {"ReleaseArgument", true, {"Culprit.ReleaseArgument released a Picture once more"}},
    {"ReleaseTwice", false, {"Culprit.ReleaseTwice passed a Picture that was destroyed in Culprit.ReleaseTwice"}},
    {"LeaveLocked", true, {"Culprit.LeaveLocked left a Picture locked"}, 0, 1},
    {"Unlock", true, {"Culprit.Unlock unlocked a Picture without having locked it"}},
    {"LockFromThread", true, {"Culprit.LockFromThread called REALLockPictureDescription from a thread"}},
    {"ReturnArgument", true, {"Culprit.ReturnArgument handed out a Picture without a reference"}},
    {"ReturnItself", false, {"Culprit.ReturnItself returned a Culprit where Picture is declared"}},
    {"ReturnRubbish", false, {"Culprit.ReturnRubbish returned something that is no object"}},
    {"PassNil", false, {"Culprit.PassNil passed nil to lockPictureDescription"}},
    {"CreateRubbish", false, {"Culprit.CreateRubbish", "CreateInstance", "no class"}},
    {"AskInRubbish", false, {"Culprit.AskInRubbish asked for a method", "\"is Picture)\""}},
    {"RegisterLate", false, {"Culprit.RegisterLate called PluginRegisterModule after"}},
    {"DestroyLocked", false, {"Culprit.DestroyLocked", "destroyed while it was locked"}},
};

HostOptions WithPolicy(FaultPolicy policy) {
    HostOptions options;
    options.faults = policy;
    return options;
}

TEST(Faults, NameTheCulpritAndBreakNothing) {
    for (const Deed& deed : kDeeds) {
        SCOPED_TRACE(deed.method);
        Host host;
        host.Load(TestPlugin("host_culprit"));
        const Object culprit = host.New("Culprit");
        const Picture picture = host.NewPicture(4, 4);
        const std::int64_t objects = host.LiveObjects();
        std::vector<Argument> arguments;
        if (deed.takesPicture) arguments.push_back(picture);

        const std::string error = ErrorOf([&] { culprit.Call(deed.method, arguments); });
        for (const std::string& part : deed.says) EXPECT_THAT(error, HasSubstr(part));
        EXPECT_THAT(host.Faults(), ElementsAre(error));
        EXPECT_EQ(host.LiveObjects(), objects + deed.objects);
        EXPECT_EQ(host.OutstandingLocks(), deed.locks);
        EXPECT_EQ(Picture::Lock(picture).Row(3).size(), 16u);
        culprit.Call("BehaveWell", {picture});
        EXPECT_EQ(host.Faults().size(), 1u);
    }
}

TEST(Faults, OfDeadObjectsTellWhereTheyDied) {
    Host host(WithPolicy(FaultPolicy::Note));
    host.Load(TestPlugin("host_culprit"));
    const Object culprit = host.New("Culprit");
    culprit.Call("ReleaseTwice");
    const Object another = host.NewPicture(1, 1);  // must not be taken for the dead one
    culprit.Call("UseDead");
    ASSERT_EQ(host.Faults().size(), 2u);
    EXPECT_THAT(host.Faults()[1], AllOf(HasSubstr("Culprit.UseDead passed a Picture that was destroyed in "
                                                  "Culprit.ReleaseTwice to REALLockPictureDescription")));
    culprit.Call("UnlockPoint", {host.NewPoint(0, 0)});
    EXPECT_THAT(host.Faults()[2], HasSubstr("a Point to unlockPictureDescription, which takes a Picture"));
}

TEST(Faults, AreCountedPerCall) {
    Host host(WithPolicy(FaultPolicy::Note));
    host.Load(TestPlugin("host_culprit"));
    const Object culprit = host.New("Culprit");
    const Picture picture = host.NewPicture(4, 4);
    {
        // The program's own lock is neither left behind nor the plug-in's to end.
        const Picture::Lock lock(picture);
        culprit.Call("BehaveWell", {picture});
        EXPECT_THAT(host.Faults(), IsEmpty());
        culprit.Call("Unlock", {picture});
        EXPECT_EQ(host.Faults().size(), 1u);
        EXPECT_EQ(host.OutstandingLocks(), 1);
    }
    EXPECT_EQ(host.OutstandingLocks(), 0);
    // Any call may end a lock that another left behind.
    culprit.Call("LeaveLocked", {picture});
    EXPECT_EQ(host.Faults().size(), 2u);
    culprit.Call("BehaveWell", {picture});
    culprit.Call("Unlock", {picture});
    EXPECT_EQ(host.Faults().size(), 2u);
    EXPECT_EQ(host.OutstandingLocks(), 0);
}

TEST(Faults, KeepLockedPixelsInTheirPlace) {
    Host host(WithPolicy(FaultPolicy::Note));
    const Picture picture = host.NewPicture(4, 4);
    const Picture::Lock lock(picture);
    picture.Call("Constructor", {8, 8, 32});
    EXPECT_EQ(picture.Width(), 4);
    lock.Row(3)[0] = 1;
    EXPECT_THAT(host.Faults(), ElementsAre(HasSubstr("locked")));
}

TEST(Faults, OfReferencesKeptShowAtTheEnd) {
    std::vector<std::string> faults;
    {
        HostOptions options;
        options.onFault = [&](const std::string& fault) { faults.push_back(fault); };
        Host host(options);
        host.Load(TestPlugin("host_culprit"));
        const Object culprit = host.New("Culprit");
        culprit.Call("Keep", {host.NewPicture(1, 1)});
        culprit.Call("MakeAndForget");
        EXPECT_EQ(host.LiveObjects(), 3);
        EXPECT_THAT(faults, IsEmpty());
    }
    EXPECT_THAT(faults, ElementsAre(HasSubstr("a Picture was never released by a plug-in"),
                                    HasSubstr("a Picture was never released by a plug-in")));
}

TEST(FaultsDeathTest, AbortAtTheSpotWhenTheyAreTo) {
    GTEST_FLAG_SET(death_test_style, OMBRIX_DEATH_TEST_STYLE);
    const auto commit = [](const char* deed) {
        Host host(WithPolicy(FaultPolicy::Abort));
        host.Load(TestPlugin("host_culprit"));
        host.New("Culprit").Call(deed, {host.NewPicture(1, 1)});
    };
    EXPECT_DEATH(commit("Unlock"), "Culprit.Unlock unlocked a Picture");
    EXPECT_DEATH(commit("LockFromThread"), "REALLockPictureDescription .*thread");
}

}  // namespace
}  // namespace ombrix::host
