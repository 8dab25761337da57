// ombrix completion: what makes a shell complete command lines of ombrix.

#include <iostream>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp =
    R"(Shows the lines that make a shell complete commands, effects, their properties and values, options and files.

Examples:
  source <(ombrix completion bash)
  ombrix completion zsh > ~/.zfunc/_ombrix
  ombrix completion fish > ~/.config/fish/completions/ombrix.fish

The Debian package brings them along.)";

constexpr const char* kUsage = R"(  ombrix completion bash|zsh|fish)";

const Command::About kAbout = {"completion", "Show what makes a shell complete command lines", {kHelp, kUsage}};

struct Shell {
    const char* name;
    const char* script;
};

// Each asks "ombrix complete", which reads the words of the line and answers with a line for each candidate: a word,
// a tab, what it is about. An answer of ":files" alone stands for names of files.
constexpr Shell kShells[] = {
    {"bash", R"sh(# Completion of ombrix for bash.
_ombrix() {
    local words=() word line typed i cur=${COMP_WORDS[COMP_CWORD]}
    for ((i = 1; i <= COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]//[\\\"\']/}
        # Bash splits words at = and :, which belong to them here.
        if ((i > 1)) && [[ $word == [=:]* || ${words[-1]} == *[=:] ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
    done
    [[ $cur != [=:] ]] || cur=
    typed=${words[-1]%"${cur//[\\\"\']/}"}
    COMPREPLY=()
    while IFS= read -r line; do
        if [[ $line == :files ]]; then
            compopt -o filenames
            while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -- "$cur")
        else
            word=${line%%$'\t'*}
            [[ $word != *= ]] || compopt -o nospace
            COMPREPLY+=("${word#"$typed"}")
        fi
    done < <(printf '%s\0' "${words[@]}" | "$1" complete 2> /dev/null)
}
complete -F _ombrix ombrix
)sh"},
    {"zsh", R"sh(#compdef ombrix
# Completion of ombrix for zsh.
_ombrix() {
    local line word files
    local -a typed ended open
    typed=("${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}")
    for line in ${(f)"$(printf '%s\0' "${typed[@]}" | ${(Q)words[1]} complete 2> /dev/null)"}; do
        word=${line%%$'\t'*}
        if [[ $line == :files ]]; then
            files=yes
        elif [[ $word == *= ]]; then
            open+=("${word//:/\\:}:${line#*$'\t'}")
        else
            ended+=("${word//:/\\:}:${line#*$'\t'}")
        fi
    done
    (( ! $#ended )) || _describe -V 'value' ended
    (( ! $#open )) || _describe -V 'property' open -S ''
    if [[ -n $files ]]; then
        compset -P '*='
        _files
    fi
}
if [[ $funcstack[1] == _ombrix ]]; then
    _ombrix "$@"
else
    compdef _ombrix ombrix
fi
)sh"},
    {"fish", R"sh(# Completion of ombrix for fish.
function __ombrix_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    set typed (string unescape -- $typed; or echo $typed)
    for line in (printf '%s\0' $words[2..] "$typed" | $words[1] complete 2> /dev/null)
        if test "$line" = :files
            set -l before (string match -r '^[^/]*=' -- $typed)
            for file in (__fish_complete_path (string replace -- "$before" '' $typed))
                echo "$before$file"
            end
        else
            echo $line
        end
    end
end
complete -c ombrix -f -a '(__ombrix_complete)'
)sh"},
};

class Completion : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override { app.add_option("words", words_)->group(""); }

    Candidates Words(const host::Host&, const catalogue::Catalogue&,
                     const std::vector<std::string>& given) const override {
        Candidates words;
        for (const Shell& shell : kShells) {
            if (given.empty()) words.words.push_back({shell.name, ""});
        }
        return words;
    }

    void Check() override {
        std::vector<std::string> names;
        for (const Shell& shell : kShells) {
            if (words_ == std::vector<std::string>{shell.name}) shell_ = &shell;
            names.emplace_back(shell.name);
        }
        if (shell_ == nullptr) {
            throw UsageError("completion takes the name of a shell: " + text::Join(names, " or ") +
                             (words_.empty() ? "" : ", and was given " + text::Listed(words_)));
        }
    }

    void Run(Session&) override { std::cout << shell_->script; }

  private:
    std::vector<std::string> words_;
    const Shell* shell_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> MakeCompletion() { return std::make_unique<Completion>(); }

}  // namespace ombrix::cli
