#include "cli/commands/command.h"

#include "cli/failure.h"

namespace ombrix::cli {

std::vector<Command::Form> Command::AddForms(CLI::App&, const catalogue::Catalogue&) { return {}; }

void Command::Then() { throw UsageError("--then goes between the effects of apply"); }

Candidates Command::Words(const host::Host&, const catalogue::Catalogue&, const std::vector<std::string>&) const {
    return {{}, true};
}

std::vector<std::unique_ptr<Command>> MakeCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    for (const auto make : {MakeApply, MakeCall, MakeList, MakeGallery, MakeFrei0r, MakeCompletion})
        commands.push_back(make());
    return commands;
}

}  // namespace ombrix::cli
