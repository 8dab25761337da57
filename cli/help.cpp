#include "cli/help.h"

namespace ombrix::cli {

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
