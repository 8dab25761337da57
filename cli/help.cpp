#include "cli/help.h"

namespace ombrix::cli {

const HelpText kProgramHelp = {R"(ombrix puts image effects on pictures: image files in, image files out.

Examples:
  ombrix apply sepia SepiaValue=30 photo.jpg old.jpg
  ombrix apply ColorFilterEffect Red=40 --mask vignette.png photo.jpg warm.png
  ombrix apply contrast ContrastValue=25 --then brightness BrightnessValue=-10 photo.jpg look.jpg
  ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix list
  ombrix list ColorFilterEffect
  ombrix gallery photo.jpg --fill texture.jpg -o gallery.html)",
                               R"(  ombrix COMMAND ... [OPTIONS])"};

const HelpText kApplyHelp = {R"(Puts one effect, or a chain of effects, on a picture.

Examples:
  ombrix apply sepia SepiaValue=30 photo.jpg old.jpg
  ombrix apply blend FillPicture=logo.png BlendMode=MODE_OVERLAY Location=-20,40 photo.jpg out.png
  ombrix apply invert --mask spot.png --then sepia SepiaValue=20 photo.png out.webp --quality 80
  ombrix apply sepia SepiaValue=30 --in-place photo.jpg

EFFECT is a class in any case, with or without its ending "Effect". NAME=VALUE sets a property; what there is tells
"ombrix list EFFECT". A value is a whole number or the name of a constant, a number, true or false, x,y for a point, or
an image file; nothing after the = takes an object away. Write ./a=b.png for a file whose name looks like NAME=VALUE.)",
                             R"(  ombrix apply EFFECT [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] INPUT OUTPUT
  ombrix apply EFFECT [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] --in-place FILE)"};

const HelpText kCallHelp = {R"(Calls one method of a class or a module, with its arguments by name.

Examples:
  ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix call ColorFilterEffect.ApplyInPlace source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix call OmbrixUtilities.EnsurePictureBits src=photo.png depth=24 small.tif

A picture that comes back is written to OUTPUT; any other result is printed. A method that changes the picture it is
given, and returns none, has that picture written to OUTPUT. Names that are no arguments of the method, but properties
of its class, are set before the call.)",
                            R"(  ombrix call CLASS.METHOD [NAME=VALUE ...] [OUTPUT]
  ombrix call MODULE.METHOD [NAME=VALUE ...] [OUTPUT])"};

const HelpText kListHelp = {R"(Shows every class, property, method and constant that the plug-ins register.

Examples:
  ombrix list
  ombrix list BlendEffect
  ombrix list | grep Picture

With NAME, a class or a module, shows that one, with what the class inherits.)",
                            R"(  ombrix list [NAME])"};

const HelpText kGalleryHelp = {R"(Shows a picture under every effect that the plug-ins register.

Examples:
  ombrix gallery photo.jpg -o gallery.html
  ombrix gallery photo.jpg --fill texture.jpg -o gallery.html
  ombrix gallery photo.jpg --fill texture.jpg --sheet sheet.png

The page is one file that needs no other. Under each picture is the command line that makes it.)",
                               R"(  ombrix gallery PICTURE [--fill FILE] [--mask FILE] [-o PAGE.html] [--sheet FILE])"};

namespace {

class Layout : public CLI::Formatter {
  public:
    explicit Layout(const HelpText& text) : text_(text) { column_width(24); }

    std::string make_description(const CLI::App*) const override { return std::string(text_.about) + "\n"; }
    std::string make_usage(const CLI::App*, std::string) const override {
        return "\nUsage:\n" + std::string(text_.usage) + "\n";
    }
    std::string make_footer(const CLI::App* app) const override {
        const CLI::App* parent = app->get_parent();
        if (!parent) return "COMMAND --help shows more examples.\n";
        std::string footer = "Options of every command:\n";
        for (const CLI::Option* option : parent->get_options()) {
            if (option != parent->get_help_ptr() && option != parent->get_version_ptr()) {
                footer += make_option(option, false);
            }
        }
        return footer;
    }

  private:
    const HelpText& text_;
};

}  // namespace

std::shared_ptr<CLI::Formatter> HelpLayout(const HelpText& text) { return std::make_shared<Layout>(text); }

}  // namespace ombrix::cli
