// Services, called as plug-ins call them.
#include "tests/host/support.h"

namespace ombrix::host {
namespace {

using ::testing::HasSubstr;

constexpr const char* kServices[] = {
    "PluginRegisterClass",    "PluginRegisterModule",       "REALGetRBVersion",       "pluginObjectType",
    "CreateInstance",         "REALLoadObjectMethod",       "REALGetPropValueObject", "REALGetPropValueInteger",
    "lockPictureDescription", "REALLockPictureDescription", "RegisterPluginVersion",  "unlockPictureDescription",
    "REALLockObject",         "REALUnlockObject",
};

using ServicesTest = HostTest;

TEST_F(ServicesTest, AreFoundByTheirNames) {
    const REALresolver resolve = ResolverOfProbe();
    for (const char* name : kServices) EXPECT_NE(resolve(name), nullptr) << name;
    for (const char* name : {"", "realLockObject", "REALRegisterClass", "REALLockObject "})
        EXPECT_EQ(resolve(name), nullptr) << name;
    EXPECT_EQ(resolve(nullptr), nullptr);
    EXPECT_EQ(Services(resolve).version(), 2024.0);
}

TEST(WithheldServices, AreMissingAndNoOthers) {
    for (const char* withheld : kServices) {
        HostOptions options;
        options.version = 2011.0;
        options.withheldServices = {withheld};
        Host host(options);
        const std::string error = ErrorOf([&] { host.Load(TestPlugin("host_probe")); });
        if (!error.empty()) continue;  // nothing registers without PluginRegisterClass
        const REALresolver resolve = ResolverOfProbe();
        for (const char* name : kServices) EXPECT_EQ(resolve(name) == nullptr, name == std::string(withheld)) << name;
    }
}

TEST_F(ServicesTest, FindMethodsByWhatTheyDeclare) {
    const Services services = ServicesOfProbe();
    const Picture picture = host.NewPicture(1, 1);
    const Object item = host.New("Item");
    struct Case {
        Object object;
        const char* declaration;
        bool found;
    };
    const Case cases[] = {
        {picture, "Constructor(width as Integer, height as Integer, Depth as Integer)", true},
        {picture, "constructor(a as integer,b as integer,c AS INTEGER)", true},
        {picture, "Constructor(width as Integer, height as Integer)", false},
        {picture, "Mask(Create as Boolean) as Picture", true},
        {picture, " Mask ( Create  as  Boolean )  as  Picture ", true},
        {picture, "Mask(Create as Boolean)", false},
        {picture, "Mask(Create as Integer) as Picture", false},
        {picture, "Mask(assigns newMask as Picture)", true},
        {picture, "Mask(newMask as Picture)", false},
        {picture, "Mask(assigns newMask as Picture) as Picture", false},
        {picture, "DrawPicture(image as Picture,x as Integer,y as Integer)", false},
        {picture.Get("Graphics").AsObject(),
         "DrawPicture(image as Picture,x as Integer,y as Integer,w1 as Integer,h1 as Integer,sx as Integer,sy as "
         "Integer,w2 as Integer,h2 as Integer)",
         true},
        {item, "OnProgress(value as Integer,total as Integer)", false},
        {host.NewProgressHandler({}), "OnProgress(value as Integer,total as Integer)", true},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(services.loadMethod(each.object.Handle(), each.declaration) != nullptr, each.found)
            << each.declaration;
    }
}

TEST_F(ServicesTest, ReadProperties) {
    const Services services = ServicesOfProbe();
    const Object point = host.NewPoint(-5, std::int64_t{1} << 40);
    std::int64_t number = 7;
    EXPECT_TRUE(services.integerProperty(point.Handle(), "Y", &number));
    EXPECT_EQ(number, std::int64_t{1} << 40);
    EXPECT_FALSE(services.integerProperty(point.Handle(), "z", &number));
    EXPECT_EQ(number, std::int64_t{1} << 40);

    const std::int64_t before = host.LiveObjects();
    REALobjectStruct* graphics = nullptr;
    const Picture picture = host.NewPicture(1, 1);
    EXPECT_FALSE(services.integerProperty(picture.Handle(), "Graphics", &number));
    EXPECT_FALSE(services.objectProperty(picture.Handle(), "Width", &graphics));
    ASSERT_TRUE(services.objectProperty(picture.Handle(), "Graphics", &graphics));
    services.unlockObject(graphics);
    // Without pixels there is nothing to draw on.
    EXPECT_FALSE(services.objectProperty(host.NewDrawing(1, 1).Handle(), "Graphics", &graphics));
    EXPECT_EQ(graphics, nullptr);
    EXPECT_EQ(host.LiveObjects(), before + 1);
}

TEST_F(ServicesTest, TakeNilObjectsToLock) {
    const Services services = ServicesOfProbe();
    services.lockObject(nullptr);
    services.unlockObject(nullptr);
    EXPECT_EQ(services.findClass("Missing"), nullptr);
}

TEST(NoService, IsHurtByNilOrRubbish) {
    HostOptions options;
    options.faults = FaultPolicy::Note;
    Host host(options);
    host.Load(TestPlugin("host_probe"));
    const Services services = ServicesOfProbe();
    const Picture picture = host.NewPicture(1, 1);
    char rubbish[256] = {};
    std::size_t faults = 0;
    for (REALobjectStruct* handle :
         {static_cast<REALobjectStruct*>(nullptr), reinterpret_cast<REALobjectStruct*>(rubbish)}) {
        REALpictureDescription description;
        std::int64_t number;
        REALobjectStruct* object;
        EXPECT_FALSE(services.lockDescription(handle, &description, 8));
        EXPECT_FALSE(services.lockNative(handle, &description));
        services.unlockDescription(handle);
        EXPECT_EQ(services.loadMethod(handle, "Mask(Create as Boolean) as Picture"), nullptr);
        EXPECT_FALSE(services.integerProperty(handle, "x", &number));
        EXPECT_FALSE(services.objectProperty(handle, "Graphics", &object));
        EXPECT_EQ(services.createInstance(reinterpret_cast<REALclassRef>(handle)), nullptr);
        const auto getMask = reinterpret_cast<REALobjectStruct* (*)(REALobjectStruct*, char)>(
            services.loadMethod(picture.Handle(), "Mask(Create as Boolean) as Picture"));
        EXPECT_EQ(getMask(handle, 1), nullptr);
        EXPECT_EQ(host.Faults().size(), faults += 8);
    }
    EXPECT_FALSE(services.lockDescription(picture.Handle(), nullptr, 8));
    EXPECT_EQ(services.loadMethod(picture.Handle(), nullptr), nullptr);
    EXPECT_FALSE(services.integerProperty(picture.Handle(), nullptr, nullptr));
    EXPECT_EQ(services.findClass(nullptr), nullptr);
    services.unlockObject(reinterpret_cast<REALobjectStruct*>(rubbish));
    EXPECT_EQ(host.Faults().size(), faults + 5);
    EXPECT_THAT(host.Faults().back(), HasSubstr("no object"));
}

}  // namespace
}  // namespace ombrix::host
