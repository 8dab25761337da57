// Plug-ins that are found, and the process that one Host has.
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/host/support.h"

namespace ombrix::host {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A folder with plug-ins, which goes away with the test.
class InstalledPlugins : public ::testing::Test {
  protected:
    InstalledPlugins() {
        std::string pattern = (fs::temp_directory_path() / "ombrix-plugins-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        setenv("HOME", folder_.c_str(), 1);
        unsetenv("XDG_DATA_HOME");
        unsetenv("OMBRIX_PLUGINS");
    }
    ~InstalledPlugins() override { fs::remove_all(folder_); }

    fs::path Place(const std::string& plugin, const std::string& folder) const {
        fs::create_directories(folder_ / folder);
        const fs::path placed = folder_ / folder / (plugin + ".so");
        fs::copy_file(TestPlugin(plugin), placed);
        return placed;
    }

    fs::path Break(const std::string& folder) const {
        fs::create_directories(folder_ / folder);
        fs::path broken = folder_ / folder / "broken.so";
        std::ofstream(broken) << "no shared object";
        return broken;
    }

    fs::path folder_;
};

auto IsBroken(const fs::path& file, const std::string& part) {
    return AllOf(Field(&BrokenPlugin::file, file), Field(&BrokenPlugin::reason, HasSubstr(part)));
}

TEST_F(InstalledPlugins, AreTheStandardOneAndThoseOfTheUser) {
    const fs::path broken = Break("named"), missing = folder_ / "missing.so";
    Place("host_probe", "named");
    const fs::path derived = Place("host_derived", ".local/share/ombrix/plugins");
    std::ofstream(derived.parent_path() / "notes.txt") << "not looked at";
    // Each is taken once, by whatever names it is found.
    fs::create_symlink(broken, derived.parent_path() / "again.so");
    const std::string named = missing.string() + ":" + broken.parent_path().string();
    setenv("OMBRIX_PLUGINS", (":" + named + ":" + named).c_str(), 1);

    Host host;
    EXPECT_THAT(host.LoadInstalled(), ElementsAre(IsBroken(missing, "there is no plug-in file"),
                                                  IsBroken(broken, "cannot be loaded as a plug-in")));
    EXPECT_NE(host.FindClass("SepiaEffect"), nullptr);
    EXPECT_NE(host.FindClass("Item"), nullptr);
    EXPECT_NE(host.FindClass("Grand"), nullptr);
    // Once more finds nothing new.
    const std::size_t classes = host.Classes().size();
    EXPECT_EQ(host.LoadInstalled().size(), 2u);
    EXPECT_EQ(host.Classes().size(), classes);
}

TEST_F(InstalledPlugins, LieWhereTheUserSaysThatDataDoes) {
    Place("host_probe", "data/ombrix/plugins");
    setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
    Host host;
    EXPECT_THAT(host.LoadInstalled(), IsEmpty());
    EXPECT_NE(host.FindClass("Item"), nullptr);
}

TEST(Process, HasOneHost) {
    HostOptions options;
    options.owner = "the first";
    const Host first(options);
    EXPECT_THAT(ErrorOf([] { Host second; }), AllOf(HasSubstr("has a Host already"), HasSubstr("the first, by \"/")));
}

TEST(Process, HasOneHostInAllCopiesOfTheLibrary) {
    void* other = dlopen(TestPlugin("host_other_user").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(other, nullptr) << dlerror();
    const auto makeOtherHost = reinterpret_cast<const char* (*)()>(dlsym(other, "MakeOtherHost"));
    const auto endOtherHost = reinterpret_cast<void (*)()>(dlsym(other, "EndOtherHost"));
    {
        const Host own;
        EXPECT_THAT(makeOtherHost(), AllOf(HasSubstr("has a Host already"), HasSubstr("the program, by \"/"),
                                           HasSubstr("host_tests\"")));
    }
    EXPECT_STREQ(makeOtherHost(), "");
    EXPECT_THAT(ErrorOf([] { Host own; }), AllOf(HasSubstr("the other, by \"/"), HasSubstr("libombrix_host.so")));
    endOtherHost();
    const Host own;
    dlclose(other);
}

TEST(Process, GivesTurnsToThreadsOfTheHostsProcessAlone) {
    Host host;
    { const Host::Turn turn(host); }
    const pid_t child = fork();
    if (child == 0) {
        // Used as before, by the one thread that there is.
        const bool isUsable = host.NewPoint(1, 2).X() == 1;
        const std::string error = ErrorOf([&] { const Host::Turn turn(host); });
        _exit(isUsable && error.find("forked") != std::string::npos ? 3 : 4);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
    const Host::Turn turn(host);
    EXPECT_EQ(host.NewPoint(1, 2).Y(), 2);
}

}  // namespace
}  // namespace ombrix::host
