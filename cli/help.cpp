#include "cli/help.h"

#include <unistd.h>

#include <algorithm>

#include "cli/terminal.h"
#include "text/printable.h"
#include "text/wrapping.h"

namespace ombrix::cli {

namespace {

constexpr std::size_t kColumn = 24;  ///< where descriptions begin

std::string Usage(const std::string& lines, std::size_t width) {
    return "Usage:\n" + text::WrappedParagraphs(lines, width) + "\n";
}

std::string Row(const std::string& name, const std::string& description) {
    std::string row = "  " + name;
    if (description.empty()) return row + '\n';
    // A long name stands on a line of its own.
    row += row.size() + 2 > kColumn ? "\n" + std::string(kColumn, ' ') : std::string(kColumn - row.size(), ' ');
    const std::size_t start = row.rfind('\n') + 1;
    return row.substr(0, start) +
           text::Wrapped(row.substr(start) + text::Printable(description), LineWidth(STDOUT_FILENO), kColumn) + '\n';
}

class Layout : public CLI::Formatter {
  public:
    explicit Layout(MakeHelp help) : help_(std::move(help)) {}

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        std::string help = Formatter::make_help(app, std::move(name), mode);
        // A group that is not shown leaves an empty line.
        for (std::size_t gap; (gap = help.find("\n\n\n")) != std::string::npos;) help.erase(gap, 1);
        return help;
    }
    std::string make_description(const CLI::App*) const override {
        const HelpText help = help_();
        std::string description = text::WrappedParagraphs(help.about, LineWidth(STDOUT_FILENO)) + "\n";
        if (!help.values) return description;
        description += "\nValues:\n";
        for (const auto& [name, meaning] : help.values()) description += Row(name, meaning);
        return description;
    }
    std::string make_usage(const CLI::App*, std::string) const override {
        return "\n" + Usage(help_().usage, LineWidth(STDOUT_FILENO));
    }
    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        return Row(make_option_name(option, isPositional) + make_option_opts(option), make_option_desc(option));
    }
    std::string make_option_opts(const CLI::Option* option) const override {
        return option->get_type_size() == 0 ? "" : " " + option->get_type_name();
    }
    std::string make_subcommand(const CLI::App* command) const override {
        return Row(command->get_name(), command->get_description());
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
    const MakeHelp help_;
};

}  // namespace

std::shared_ptr<CLI::Formatter> HelpLayout(MakeHelp help) { return std::make_shared<Layout>(std::move(help)); }

std::string ShownUsage(const HelpText& help) { return Usage(help.usage, LineWidth(STDERR_FILENO)); }

}  // namespace ombrix::cli
