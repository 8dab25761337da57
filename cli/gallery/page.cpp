#include "cli/gallery/page.h"

#include <glib.h>

#include <algorithm>

#include "cli/gallery/style.h"

namespace ombrix::cli {

namespace {

/// For text and attributes.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

/// Escaped, and breakable inside long names.
std::string Breakable(const std::string& text) {
    std::string result;
    for (const char c : Escaped(text)) {
        result += c;
        if (c == '_' || c == '=' || c == '/') result += "<wbr/>";
    }
    return result;
}

std::string DataUri(const char* type, const std::string& bytes) {
    gchar* encoded = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    std::string uri = std::string("data:") + type + ";base64," + encoded;
    g_free(encoded);
    return uri;
}

std::string Image(const EncodedPicture& picture, const std::string& description) {
    return "<img src=\"" + DataUri("image/jpeg", picture.bytes) + "\" width=\"" + std::to_string(picture.width) +
           "\" height=\"" + std::to_string(picture.height) + "\" alt=\"" + Escaped(description) +
           "\" decoding=\"async\"/>";
}

std::string Link(const std::string& target, const std::string& text, const std::string& attributes = "") {
    return "<a href=\"#" + target + "\"" + attributes + ">" + text + "</a>";
}

class Page {
  public:
    explicit Page(const GalleryContent& content) : content_(content) {
        Collect("", content.given);
        for (const Chapter& chapter : content.chapters) Collect(chapter.title, chapter.exhibits);
    }

    std::string Html() {
        Add("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
            "<meta name=\"generator\" content=\"ombrix " OMBRIX_VERSION "\"/>\n<title>" +
            Escaped(content_.title) + "</title>\n<style>" + kGalleryStyle + "</style>\n</head>\n<body>\n");
        AddHeader();
        Add("<main>\n");
        AddGiven();
        for (const Chapter& chapter : content_.chapters) AddChapter(chapter);
        Add("</main>\n<footer><p>Made by ombrix " OMBRIX_VERSION
            " from what the loaded plug-ins register.</p></footer>\n");
        for (std::size_t i = 0; i < entries_.size(); ++i) AddView(i);
        Add("</body>\n</html>\n");
        return std::move(html_);
    }

  private:
    struct Entry {
        std::string chapter;  // empty for the given pictures
        const Exhibit& exhibit;
    };

    void Collect(const std::string& chapter, const std::vector<Exhibit>& exhibits) {
        for (const Exhibit& exhibit : exhibits) {
            entries_.push_back({chapter, exhibit});
            // Most of the page: each picture small and large, in base64.
            expected_ += (exhibit.view.bytes.size() + exhibit.thumbnail.bytes.size()) * 4 / 3 + 2000;
        }
        html_.reserve(expected_);
    }

    void Add(const std::string& text) { html_ += text; }

    /// Numbers run through the whole page.
    static std::string PlaceOf(std::size_t number) { return "picture-" + std::to_string(number + 1); }
    static std::string ViewOf(std::size_t number) { return "view-" + std::to_string(number + 1); }

    void AddHeader() {
        Add("<header>\n<h1>" + Escaped(content_.title) + "</h1>\n");
        for (const std::string& sentence : content_.about) Add("<p>" + Escaped(sentence) + "</p>\n");
        Add("<nav aria-label=\"Effects\"><ul>\n");
        for (const Chapter& chapter : content_.chapters) {
            if (chapter.exhibits.empty()) continue;
            Add("<li>" + Link(Escaped(chapter.title), Escaped(chapter.title)) + " <span>" +
                std::to_string(chapter.exhibits.size()) + "</span></li>\n");
        }
        Add("</ul></nav>\n</header>\n");
    }

    void AddGiven() {
        Add("<section aria-labelledby=\"given\">\n<h2 id=\"given\">What was given</h2>\n");
        AddGrid(content_.given);
        Add("</section>\n");
    }

    void AddChapter(const Chapter& chapter) {
        if (chapter.exhibits.empty()) return;
        const std::string name = Escaped(chapter.title);
        Add("<section aria-labelledby=\"" + name + "\">\n<h2 id=\"" + name + "\">" + name +
            "</h2>\n<p class=\"origin\">" + Escaped(chapter.origin) + "</p>\n");
        if (!chapter.facts.empty()) {
            Add("<ul class=\"facts\" aria-label=\"Properties\">\n");
            for (const PropertyFact& fact : chapter.facts) {
                Add("<li><code>" + Escaped(fact.name) + "</code> <span>" + Escaped(fact.type) +
                    (fact.remark.empty() ? "" : ", " + Escaped(fact.remark)) + "</span></li>\n");
            }
            Add("</ul>\n");
        }
        AddGrid(chapter.exhibits);
        Add("</section>\n");
    }

    void AddGrid(const std::vector<Exhibit>& exhibits) {
        Add("<ul class=\"grid\">\n");
        for (const Exhibit& exhibit : exhibits) {
            const std::size_t number = placed_++;
            Add("<li id=\"" + PlaceOf(number) + "\"><figure>" +
                Link(ViewOf(number), Image(exhibit.thumbnail, exhibit.description)));
            AddCaption(exhibit, exhibit.title, true);
            Add("</figure></li>\n");
        }
        Add("</ul>\n");
    }

    void AddCaption(const Exhibit& exhibit, const std::string& title, bool inGrid) {
        Add("<figcaption><span class=\"title\">" + Breakable(title) + "</span>");
        if (!exhibit.command.empty()) Add("<code class=\"command\">" + Escaped(exhibit.command) + "</code>");
        if (inGrid && exhibit.command.empty() && exhibit.title == content_.drawnMaskName) AddMaskFile();
        Add("</figcaption>");
    }

    void AddMaskFile() {
        Add("<a class=\"save\" download=\"" + Escaped(content_.drawnMaskName) + "\" href=\"" +
            DataUri("image/svg+xml", content_.drawnMask) + "\">Save it, for the command lines that name it</a>");
    }

    /// Its links come first, where a keyboard reaches them at once.
    void AddView(std::size_t number) {
        const auto& [chapter, exhibit] = entries_[number];
        const std::size_t last = entries_.size() - 1;
        const std::string title =
            chapter.empty() || chapter == exhibit.title ? exhibit.title : chapter + " " + exhibit.title;
        Add("<section class=\"view\" id=\"" + ViewOf(number) + "\" aria-label=\"" + Escaped(title) +
            "\">\n<div class=\"bar\"><span>" + std::to_string(number + 1) + " of " + std::to_string(last + 1) +
            "</span>" + Link(ViewOf(number == 0 ? last : number - 1), "Previous") + " " +
            Link(ViewOf(number == last ? 0 : number + 1), "Next") + " " + Link(PlaceOf(number), "Close") +
            "</div>\n<figure>" +
            Link(PlaceOf(number), Image(exhibit.view, exhibit.description), " class=\"stage\" tabindex=\"-1\""));
        AddCaption(exhibit, title, false);
        Add("</figure>\n</section>\n");
    }

    const GalleryContent& content_;
    std::vector<Entry> entries_;
    std::string html_;
    std::size_t expected_ = 20'000;
    std::size_t placed_ = 0;
};

}  // namespace

std::string LayOutPage(const GalleryContent& content) { return Page(content).Html(); }

}  // namespace ombrix::cli
