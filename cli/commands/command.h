// The subcommands of ombrix.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "cli/completion.h"
#include "cli/help.h"
#include "cli/session.h"

namespace ombrix::cli {

/// What a subcommand takes, and what it does.
class Command {
  public:
    virtual ~Command() = default;

    struct About {
        std::string name;
        std::string summary;  ///< a line in the list of commands
        HelpText help;
    };
    virtual const About& Describe() const = 0;

    /// Adds words and options, which are read into this object.
    virtual void AddOptions(CLI::App& app) = 0;

    /// A subcommand that is read into this object too.
    struct Form {
        CLI::App* app;
        MakeHelp help;
    };
    /// Adds subcommands made from what the plug-ins register.
    virtual std::vector<Form> AddForms(CLI::App& program, const catalogue::Catalogue& catalogue);

    /// Called at a --then. A UsageError unless the command makes chains.
    virtual void Then();
    /// Called when all is read. A UsageError when it is wrong, as far as that shows without the plug-ins.
    virtual void Check() = 0;

    virtual void Run(Session& session) = 0;

    /// What shells are to offer after the words `given`. Files, unless the command knows better.
    virtual Candidates Words(const host::Host& host, const catalogue::Catalogue& catalogue,
                             const std::vector<std::string>& given) const;
};

std::unique_ptr<Command> MakeApply();
std::unique_ptr<Command> MakeCall();
std::unique_ptr<Command> MakeList();
std::unique_ptr<Command> MakeGallery();
std::unique_ptr<Command> MakeFrei0r();
std::unique_ptr<Command> MakeCompletion();

/// In the order of the help.
std::vector<std::unique_ptr<Command>> MakeCommands();

}  // namespace ombrix::cli
