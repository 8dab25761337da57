// Plug-ins that load or are refused, and what they register.
#include <cstdlib>
#include <fstream>
#include <limits>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct BadRecord {
    const char* sort;
    std::vector<std::string> says;  ///< parts of the Error
};

TEST(Loading, RefusesEachBadRecordWithClassAndRow) {
    const BadRecord cases[] = {
        {"version", {"version 12", "13"}},
        {"class version", {"class \"Bad\"", "version 14", "13"}},
        {"module version", {"module \"BadModule\"", "version 0"}},
        {"superclass", {"class \"Bad\"", "\"Missing\""}},
        {"own superclass", {"class \"Bad\"", "superclass \"Bad\""}},
        {"no name", {"a class has no name"}},
        {"class name", {"\"Not a name\""}},
        {"host's name", {"class \"picture\"", "exists"}},
        {"type's name", {"class \"Double\"", "exists"}},
        {"module's name", {"module \"BAD\"", "exists"}},
        {"data size", {"class \"Bad\"", "-1 bytes"}},
        {"property count", {"class \"Bad\"", "-2 properties"}},
        {"rows without table", {"class \"Bad\"", "2 methods", "no table"}},
        {"constant count", {"module \"BadModule\"", "1048576 constants"}},
        {"property name", {"class \"Bad\", property 2", "no name"}},
        {"property twice", {"class \"Bad\", property 2 (\"LEFT\")"}},
        {"property type", {"class \"Bad\", property 1 (\"Left\")", "\"Pictur\""}},
        {"property outside", {"class \"Bad\", property 2 (\"Value\")", "1 bytes at offset 16", "16 bytes"}},
        {"property half outside", {"class \"Bad\", property 1 (\"Left\")", "8 bytes at offset 9"}},
        {"property before", {"class \"Bad\", property 1 (\"Left\")", "offset -1"}},
        {"no getter", {"class \"Bad\", property 2 (\"Value\")", "getter"}},
        {"no function", {"class \"Bad\", method 1 (\"Rest()\")", "no function"}},
        {"declaration", {"class \"Bad\", method 1 (\"Rest(a Integer)\")", "\"Integer)\"", "\"as\""}},
        {"open declaration", {"class \"Bad\", method 1", "\")\""}},
        {"no declaration", {"class \"Bad\", method 1:"}},
        {"words after", {"class \"Bad\", method 1", "\"5\""}},
        {"assigns first", {"class \"Bad\", method 1", "assigns"}},
        {"parameter type", {"class \"Bad\", method 1", "\"Missing\""}},
        {"result type", {"module \"BadModule\", method 1", "\"Missing\""}},
        {"method twice", {"class \"Bad\", method 2 (\"Apply(source as Picture) as Picture\")"}},
        {"constant", {"class \"Bad\", constant 2 (\"TWO 2\")", "\"=\""}},
        {"constant's value", {"class \"Bad\", constant 2", "Integer"}},
        {"constant twice", {"class \"Bad\", constant 2 (\"one = 2\")"}},
        {"interface", {"class \"Bad\"", "\"IMissing\""}},
        {"interface method", {"class \"Bad\"", "IGraphicsEffectInPlace", "\"ApplyInPlace(source as Picture)\""}},
        {"interface result", {"class \"Bad\"", "IGraphicsEffect"}},
    };
    const std::string path = TestPlugin("host_bad_records");
    Host host;
    const std::size_t ownClasses = host.Classes().size();
    for (const BadRecord& each : cases) {
        SCOPED_TRACE(each.sort);
        setenv("OMBRIX_TEST_RECORD", each.sort, 1);
        const std::string error = ErrorOf([&] { host.Load(path); });
        EXPECT_THAT(error, HasSubstr(path));
        for (const std::string& part : each.says) EXPECT_THAT(error, HasSubstr(part));
        EXPECT_EQ(host.Classes().size(), ownClasses);
        EXPECT_THAT(host.Modules(), IsEmpty());
    }
    // The refused records leave nothing behind.
    unsetenv("OMBRIX_TEST_RECORD");
    host.Load(path);
    EXPECT_TRUE(host.New("Bad").Get("Left").IsInteger());
    EXPECT_THAT(host.Faults(), IsEmpty());
}

TEST(Loading, RefusesWhatIsNoPlugin) {
    const std::string noLibrary = ::testing::TempDir() + "no_library.so";
    std::ofstream(noLibrary) << "text";
    Host host;
    EXPECT_THAT(ErrorOf([&] { host.Load("/missing/plugin.so"); }),
                AllOf(HasSubstr("no plug-in file"), HasSubstr("\"/missing/plugin.so\"")));
    EXPECT_THAT(ErrorOf([&] { host.Load(::testing::TempDir()); }), HasSubstr("no file"));
    EXPECT_THAT(ErrorOf([&] { host.Load(noLibrary); }), HasSubstr("cannot be loaded"));
    EXPECT_THAT(ErrorOf([&] { host.Load(OMBRIX_BUILD_DIR "/libombrix_platform.so"); }), HasSubstr("REALPluginMain"));
    std::remove(noLibrary.c_str());
}

TEST(Loading, RefusesPluginsThatRegisterNothing) {
    HostOptions options;
    options.version = 2010.5;
    options.withheldServices = {"PluginRegisterClass", "PluginRegisterModule", "RegisterPluginVersion"};
    Host host(options);
    EXPECT_THAT(ErrorOf([&] { host.Load(TestPlugin("host_probe")); }),
                AllOf(HasSubstr("registered nothing"), HasSubstr("2010.5")));
}

TEST(Loading, RefusesAPluginTwiceAndAHostTwice) {
    Host host;
    host.Load(TestPlugin("host_probe"));
    EXPECT_THAT(ErrorOf([&] { host.Load(OMBRIX_BUILD_DIR "/tests/../tests/host_probe.so"); }),
                HasSubstr("loaded already"));
    EXPECT_TRUE(host.New("Item"));
    EXPECT_THAT(ErrorOf([] { Host second; }), HasSubstr("already"));
}

TEST(Loading, KeepsHostsApart) {
    for (int i = 0; i < 2; ++i) {
        Host host;
        EXPECT_EQ(host.FindClass("Item"), nullptr);
        host.Load(TestPlugin("host_probe"));
        EXPECT_TRUE(host.New("Item"));
    }
}

TEST(Loading, NeedsTheSuperclassFirst) {
    Host host;
    EXPECT_THAT(ErrorOf([&] { host.Load(TestPlugin("host_derived")); }),
                AllOf(HasSubstr("class \"Grand\""), HasSubstr("\"Middle\"")));
    host.Load(TestPlugin("host_probe"));
    host.Load(TestPlugin("host_derived"));
    EXPECT_TRUE(host.New("Grand"));
}

using Reflection = HostTest;

TEST_F(Reflection, TellsWhatIsRegistered) {
    std::vector<std::string> names;
    for (const ClassInfo& type : host.Classes()) names.push_back(type.name);
    EXPECT_THAT(names, ElementsAre("Picture", "Graphics", "Point", "ProgressHandler", "Base", "Middle", "Item"));

    const ClassInfo* item = host.FindClass("ITEM");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->plugin, TestPlugin("host_probe"));
    EXPECT_THAT(item->interfaces, ElementsAre("IGraphicsEffect"));
    EXPECT_EQ(item->properties[0].flags, 4);
    EXPECT_FALSE(item->properties[0].readOnly);
    EXPECT_EQ(item->properties[7].name, "NumberToRead");
    EXPECT_TRUE(item->properties[7].readOnly);
    const MethodInfo& pick = item->methods[3];
    EXPECT_EQ(pick.declaration, "Pick(source as Picture,value as Integer, mask as Picture) as Integer");
    EXPECT_EQ(pick.flags, 4);
    EXPECT_EQ(pick.parameters[1].name, "value");
    EXPECT_EQ(pick.parameters[2].type, "Picture");
    EXPECT_EQ(pick.resultType, "Integer");
    EXPECT_EQ(item->methods[7].parameters[0].type, "bOOLEAN");
    EXPECT_EQ(item->constants[0].value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(item->constants[1].name, "SPACED");
    EXPECT_EQ(item->constants[1].value, 7);

    EXPECT_EQ(host.FindClass("Middle")->superclass, "Base");
    EXPECT_EQ(host.Ancestry("middle").size(), 2u);
    EXPECT_EQ(host.FindModule("probemodule")->constants[0].value, 42);
    EXPECT_EQ(host.FindModule("Probe"), nullptr);
}

}  // namespace
}  // namespace ombrix::host
