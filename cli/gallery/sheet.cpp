#include "cli/gallery/sheet.h"

#include <glib.h>

#include <algorithm>

#include "cli/images/image_reader.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

using Colour = std::vector<double>;

const Colour kPaper = {246, 246, 245};
const Colour kInk = {28, 28, 30};
const Colour kQuiet = {93, 93, 99};

// In pixels.
constexpr int kMargin = 60;
constexpr int kGap = 24;
constexpr int kWidest = 2200;     // of the sheet, roughly
constexpr int kLabelHeight = 68;  // three lines
constexpr int kLeastCell = 220;   // room for labels
constexpr int kDotsPerInch = 96;

VImage Paper(int width, int height) {
    return (VImage::black(width, height, VImage::option()->set("bands", 3)) + kPaper)
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

VImage OnPaper(const VImage& image, int x, int y, int width, int height) {
    return image.embed(x, y, width, height,
                       VImage::option()->set("extend", VIPS_EXTEND_BACKGROUND)->set("background", kPaper));
}

/// Wraps at `width` and cuts off at `height`.
VImage Text(const std::string& text, const std::string& font, const Colour& colour, int width, int height) {
    if (text.empty()) return Paper(width, height);
    gchar* markup = g_markup_escape_text(text.c_str(), -1);
    VImage letters;
    try {
        letters = VImage::text(markup, VImage::option()
                                           ->set("font", font.c_str())
                                           ->set("width", width)
                                           ->set("dpi", kDotsPerInch)
                                           ->set("wrap", VIPS_TEXT_WRAP_WORD_CHAR));
    } catch (...) {
        g_free(markup);
        throw;
    }
    g_free(markup);
    letters = letters.embed(0, 0, width, height);  // each pixel says how much of it is letter
    return letters.ifthenelse(colour, kPaper, VImage::option()->set("blend", true))
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

/// All cells have one size.
struct Grid {
    int cellWidth = kLeastCell, cellHeight = 0;
    int across = 1;
    int width = 0;

    explicit Grid(const GalleryContent& content) {
        std::size_t longest = content.given.size();
        Enclose(content.given);
        for (const Chapter& chapter : content.chapters) {
            Enclose(chapter.exhibits);
            longest = std::max(longest, chapter.exhibits.size());
        }
        cellHeight += kLabelHeight + kGap / 2;
        across = std::clamp((kWidest - 2 * kMargin + kGap) / (cellWidth + kGap), 1, static_cast<int>(longest));
        width = across * (cellWidth + kGap) - kGap;
    }

  private:
    void Enclose(const std::vector<Exhibit>& exhibits) {
        for (const Exhibit& exhibit : exhibits) {
            cellWidth = std::max(cellWidth, exhibit.cell.width());
            cellHeight = std::max(cellHeight, exhibit.cell.height());
        }
    }
};

VImage Cell(const Exhibit& exhibit, const Grid& grid) {
    const int pictureHeight = grid.cellHeight - kLabelHeight;
    return OnPaper(exhibit.cell, 0, 0, grid.cellWidth, pictureHeight)
        .join(Text(exhibit.title, "sans 11", kInk, grid.cellWidth, kLabelHeight), VIPS_DIRECTION_VERTICAL)
        .copy_memory();
}

/// A heading, then rows of pictures.
void AddChapter(const std::string& title, const std::vector<Exhibit>& exhibits, const Grid& grid,
                std::vector<VImage>& strips) {
    if (exhibits.empty()) return;
    strips.push_back(Paper(grid.width, kGap));
    strips.push_back(Text(title, "sans bold 17", kInk, grid.width, 44));
    std::vector<VImage> cells;
    for (const Exhibit& exhibit : exhibits) cells.push_back(Cell(exhibit, grid));
    const VImage rows = VImage::arrayjoin(
        cells, VImage::option()->set("across", grid.across)->set("shim", kGap)->set("background", kPaper));
    strips.push_back(OnPaper(rows, 0, 0, grid.width, rows.height()));
}

}  // namespace

host::Picture LayOutSheet(Session& session, const GalleryContent& content) {
    const Grid grid(content);
    std::vector<VImage> strips{Text(content.title, "sans bold 26", kInk, grid.width, 64)};
    AddChapter("What was given", content.given, grid, strips);
    for (const Chapter& chapter : content.chapters) AddChapter(chapter.title, chapter.exhibits, grid, strips);
    strips.push_back(Text("Made by ombrix " OMBRIX_VERSION, "sans 10", kQuiet, grid.width, 24));
    VImage sheet = strips.front();
    for (std::size_t i = 1; i < strips.size(); ++i) sheet = sheet.join(strips[i], VIPS_DIRECTION_VERTICAL);
    sheet = OnPaper(sheet, kMargin, kMargin, sheet.width() + 2 * kMargin, sheet.height() + 2 * kMargin);
    return PictureOf(session.host, sheet, session.console);
}

}  // namespace ombrix::cli
