#include "tests/cli/gallery/fixture.h"

#include <glib.h>

namespace ombrix::test {

using vips::VImage;

namespace {

struct Reading {
    std::vector<Element>& elements;
    std::vector<std::size_t> open;
};

void Start(GMarkupParseContext*, const gchar* name, const gchar** names, const gchar** values, gpointer data,
           GError**) {
    auto& reading = *static_cast<Reading*>(data);
    Element element{name, {}, {}};
    for (; *names; ++names, ++values) element.attributes[*names] = *values;
    reading.open.push_back(reading.elements.size());
    reading.elements.push_back(std::move(element));
}

void End(GMarkupParseContext*, const gchar*, gpointer data, GError**) { static_cast<Reading*>(data)->open.pop_back(); }

void Text(GMarkupParseContext*, const gchar* text, gsize size, gpointer data, GError**) {
    auto& reading = *static_cast<Reading*>(data);
    for (const std::size_t index : reading.open) reading.elements[index].text.append(text, size);
}

}  // namespace

Page::Page(const std::string& html) {
    const std::string doctype = "<!DOCTYPE html>\n";
    EXPECT_THAT(html, testing::StartsWith(doctype));
    const GMarkupParser parser{Start, End, Text, nullptr, nullptr};
    Reading reading{elements_, {}};
    GMarkupParseContext* context = g_markup_parse_context_new(&parser, GMarkupParseFlags(0), &reading, nullptr);
    GError* error = nullptr;
    const bool isWhole = g_markup_parse_context_parse(context, html.data() + doctype.size(),
                                                      static_cast<gssize>(html.size() - doctype.size()), &error) &&
                         g_markup_parse_context_end_parse(context, &error);
    EXPECT_TRUE(isWhole) << (error ? error->message : "");
    g_clear_error(&error);
    g_markup_parse_context_free(context);
}

std::vector<Element> Page::All(const std::string& name) const {
    std::vector<Element> found;
    for (const Element& element : elements_) {
        if (element.name == name) found.push_back(element);
    }
    return found;
}

std::vector<std::string> Page::Texts(const std::string& cssClass) const {
    std::vector<std::string> texts;
    for (const Element& element : elements_) {
        if (element.Has("class", cssClass)) texts.push_back(element.text);
    }
    return texts;
}

std::string BytesOfDataUri(const std::string& uri) {
    gsize size = 0;
    guchar* bytes = g_base64_decode(uri.c_str() + uri.find(',') + 1, &size);
    std::string result(reinterpret_cast<char*>(bytes), size);
    g_free(bytes);
    return result;
}

GalleryFixture::GalleryFixture() {
    Scene(150, 100, 1).write_to_file(Path("photo.jpg").c_str(), VImage::option()->set("Q", 95));
    Scene(90, 70, 2).write_to_file(Path("texture.png").c_str());
}

VImage GalleryFixture::Scene(int width, int height, double seed) {
    const auto wave = [&](double across, double down) {
        const VImage place = VImage::xyz(width, height);
        return ((place[0] * across + place[1] * down + seed * 40).sin() + 1) * 100 + place[1] * (50.0 / height);
    };
    return VImage::bandjoin({wave(5, 1), wave(2, 7), wave(9, -4)})
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

}  // namespace ombrix::test
