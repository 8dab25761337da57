// What the catalogue says of effects, and its JSON.
#include "ombrix/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

namespace ombrix::catalogue {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using testing::ElementsAre;

constexpr const char* kStandard = OMBRIX_BUILD_DIR "/libombrix.so";
constexpr const char* kPosterize = OMBRIX_BUILD_DIR "/libposterize.so";
constexpr const char* kOddEffects = OMBRIX_BUILD_DIR "/tests/odd_effects.so";
constexpr const char* kPixelEffects = OMBRIX_BUILD_DIR "/tests/pixel_effects.so";

class CatalogueOf {
  public:
    explicit CatalogueOf(const std::vector<fs::path>& further) {
        host.Load(kStandard);
        for (const fs::path& plugin : further) host.Load(plugin);
        catalogue.emplace(host);
    }
    const Effect& operator[](const char* name) const { return *catalogue->Find(name); }

    host::Host host;
    std::optional<Catalogue> catalogue;
};

std::vector<std::string> WordsIn(const Effect& effect) {
    std::vector<std::string> words;
    for (const Property& property : effect.Properties()) {
        if (!property.inherited) words.push_back(property.word);
    }
    return words;
}

TEST(Catalogue, WordsAreShortAndUnique) {
    const CatalogueOf all({kPixelEffects});
    EXPECT_THAT(WordsIn(all["colorfilter"]), ElementsAre("ignore_alpha", "mask", "red", "green", "blue"));
    EXPECT_THAT(WordsIn(all["BLEND"]), ElementsAre("mode", "fill_picture", "fill_mask", "location", "size", "opacity"));
    EXPECT_THAT(WordsIn(all["blur"]), ElementsAre("radius", "blurred"));
    EXPECT_THAT(WordsIn(all["ramp"]), ElementsAre("amount_ramp", "amount"));
    EXPECT_THAT(WordsIn(all["fade"]), ElementsAre("fade_amount", "fadeamount"));
    EXPECT_THAT(WordsIn(all["veil"]), ElementsAre("veil", "rgb_value2x"));
    EXPECT_THAT(WordsIn(all["red"]), ElementsAre("infrared", "red2"));
    EXPECT_EQ(all["SepiaEffect"].Word(), "sepia");
    EXPECT_EQ(all["grayscale"].FindProperty("TYPE")->name, "GrayscaleType");
    EXPECT_EQ(all["sepia"].FindProperty("cpu_core_count")->name, "CPUCoreCount");
    EXPECT_EQ(all.catalogue->Find("MPImageFilter"), nullptr);
}

TEST(Catalogue, PixelWorkIsFoundByTrying) {
    const CatalogueOf all({kPosterize, kOddEffects, kPixelEffects});
    const struct {
        const char* effect;
        bool isPixelByPixel, keepsAlpha;
    } kCases[] = {{"colorfilter", true, true}, {"contrast", true, true},  {"brightness", true, true},
                  {"sepia", true, true},       {"blend", true, true},     {"invert", true, true},
                  {"grayscale", true, true},   {"posterize", true, true}, {"narrow", true, true},
                  {"needy", true, true},       {"size", false, true},     {"stubborn", false, false},
                  {"blur", false, false},      {"ramp", false, true},     {"fade", true, false},
                  {"veil", true, false},       {"red", true, true},       {"culprit", false, false}};
    EXPECT_EQ(std::size(kCases), all.catalogue->Effects().size());
    for (const auto& expected : kCases) {
        EXPECT_EQ(all[expected.effect].WorksPixelByPixel(), expected.isPixelByPixel) << expected.effect;
        EXPECT_EQ(all[expected.effect].KeepsAlpha(), expected.keepsAlpha) << expected.effect;
    }
}

TEST(Catalogue, NeedsAndValuesAreFoundByTrying) {
    const CatalogueOf all({kOddEffects});
    EXPECT_THAT(all["blend"].WhatItNeeds().pictures, ElementsAre("FillPicture"));
    EXPECT_THAT(all["needy"].WhatItNeeds().pictures, ElementsAre("Over"));
    EXPECT_FALSE(all["stubborn"].WhatItNeeds().areMet);
    const Effect& narrow = all["narrow"];
    EXPECT_EQ(narrow.WhatItNeeds().number->property, "Strength");
    const Values& strength = narrow.ValuesOf(*narrow.FindProperty("strength"));
    EXPECT_TRUE(strength.refusesInitial);
    EXPECT_EQ(strength.range->low, 33);
    EXPECT_EQ(strength.range->high, 47);
    // Found although the initial strength is refused.
    const Values& kind = narrow.ValuesOf(*narrow.FindProperty("kind"));
    EXPECT_EQ(kind.range->low, 2);
    EXPECT_EQ(kind.range->high, 3);
    EXPECT_EQ(FindConstant(kind.constants, "Reversed")->value, 3);
}

TEST(CatalogueJson, SaysWhatTheCatalogueSays) {
    CatalogueOf all({kPosterize, kOddEffects, kPixelEffects});
    const std::string text = all.catalogue->Json();
    EXPECT_EQ(text, Catalogue(all.host).Json()) << "it has to be the same every time";
    const Json json = Json::parse(text);
    EXPECT_EQ(json, Json::parse(all.catalogue->Json(nullptr, 2)));
    ASSERT_EQ(json["plugins"].size(), 4u);
    EXPECT_EQ(json["plugins"][1], Json({{"path", kPosterize}}));
    ASSERT_EQ(json["effects"].size(), all.catalogue->Effects().size());
    for (std::size_t i = 0; i < json["effects"].size(); ++i) {
        const Effect& effect = all.catalogue->Effects()[i];
        const Json& told = json["effects"][i];
        EXPECT_EQ(told["name"], effect.Name());
        EXPECT_EQ(told["word"], effect.Word());
        EXPECT_EQ(told["plugin"], effect.Type().plugin);
        EXPECT_EQ(told["description"], effect.Description());
        EXPECT_EQ(told["pixelByPixel"], effect.WorksPixelByPixel());
        EXPECT_EQ(told["keepsAlpha"], effect.KeepsAlpha());
        EXPECT_EQ(told["inPlace"], effect.WorksInPlace());
        ASSERT_EQ(told["properties"].size(), effect.Properties().size());
    }
    EXPECT_EQ(Json::parse(all.catalogue->Json(&all["sepia"]))["effects"], Json::array({json["effects"][3]}));
}

TEST(CatalogueJson, HasTheFieldsOfEachType) {
    const CatalogueOf all({kOddEffects});
    const Json json = Json::parse(all.catalogue->Json());
    const auto property = [&](std::size_t effect, std::size_t index) {
        return json["effects"][effect]["properties"][index];
    };
    EXPECT_EQ(property(3, 2), Json::parse(R"({
        "name": "SepiaValue", "word": "value", "type": "Integer", "description": "How strong the tone is.",
        "readOnly": false, "inherited": false, "position": 0, "default": 0, "refusesDefault": true,
        "range": {"low": 10, "high": 55}, "bounds": null, "role": null, "shapeMask": null, "constants": []})"));
    const struct {
        const char *effect, *property, *role;
    } kRoles[] = {{"blend", "FillPicture", "placed"}, {"blend", "FillMask", "placed"},
                  {"blend", "Location", "position"},  {"blend", "Size", "extent"},
                  {"sepia", "Mask", "along"},         {"needy", "Over", "along"},
                  {"blend", "BlendMode", nullptr}};
    for (const auto& expected : kRoles) {
        Json role = "missing";
        for (const Json& effect : json["effects"]) {
            for (const Json& each : effect["properties"]) {
                if (effect["word"] == expected.effect && each["name"] == expected.property) role = each["role"];
            }
        }
        EXPECT_EQ(role, expected.role ? Json(expected.role) : Json()) << expected.effect << " " << expected.property;
    }
    EXPECT_EQ(property(4, 1)["shapeMask"], Json::parse(R"({"property": "FillMask", "whiteHides": true})"));
    Json mode = property(4, 0);
    EXPECT_EQ(mode["constants"].size(), 24u);
    EXPECT_EQ(mode["constants"][3], Json::parse(R"({"name": "MODE_OVERLAY", "word": "overlay", "value": 3})"));
    EXPECT_EQ(mode["range"], Json::parse(R"({"low": null, "high": null})"));
    EXPECT_EQ(mode["position"], 0);
    EXPECT_EQ(property(4, 1)["refusesDefault"], true) << "a fill is needed";
    EXPECT_EQ(property(4, 2)["refusesDefault"], false);
    const Json opacity = property(4, 5);
    EXPECT_EQ(opacity["default"], 1.0);
    EXPECT_EQ(opacity["bounds"], Json::parse(R"({"low": 0.0, "high": 1.0})"));
    const Json cores = property(5, 5);
    EXPECT_EQ(cores["name"], "CPUCoreCount");
    EXPECT_TRUE(cores["readOnly"]);
    EXPECT_TRUE(cores["inherited"]);
    EXPECT_TRUE(cores["position"].is_null());
    EXPECT_TRUE(cores["default"].is_null()) << "it is the machine's, not the effect's";
}

TEST(CatalogueJson, HoldsAnyBytes) {
    const fs::path folder = fs::temp_directory_path() / ("catalogue \"\x01\\\xff" + std::to_string(getpid()));
    fs::create_directories(folder);
    const fs::path plugin = folder / "odd\n.so";
    fs::copy_file(kOddEffects, plugin, fs::copy_options::overwrite_existing);
    std::ofstream(folder / "odd\n.txt") << "NarrowEffect = \"quoted\" \\ \x01\x7f \xc3\xa9 \xff\xc3 \xed\xa0\x80 end\n"
                                        << "NarrowEffect.Kind = \xe2\x82\n";
    const std::vector<host::BrokenPlugin> broken{{folder / "broken.so", "it is \"no\" plug-in\x1b\xfe"}};
    CatalogueOf all({plugin});
    all.catalogue.emplace(all.host, broken);
    for (const int indent : {-1, 2}) {
        const Json json = Json::parse(all.catalogue->Json(nullptr, indent));
        const Json& narrow = json["effects"][7];
        EXPECT_EQ(narrow["description"], "\"quoted\" \\ \x01\x7f é \ufffd\ufffd \ufffd\ufffd\ufffd end");
        EXPECT_EQ(narrow["properties"][1]["description"], "\ufffd");
        EXPECT_EQ(json["plugins"][2]["error"], "it is \"no\" plug-in\x1b\ufffd");
    }
    fs::remove_all(folder);
}

}  // namespace
}  // namespace ombrix::catalogue
