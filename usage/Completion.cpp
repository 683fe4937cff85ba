// SPDX-License-Identifier: MIT
#include "usage/Completion.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

namespace usage {

namespace {

std::string identifier(std::string_view name) {
    std::string result;
    for (const char c : name) {
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        result += isPlain ? c : '_';
    }
    return result;
}

/// A word of any shell, whatever it holds.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

bool isDirectory(const std::string& value) {
    return value == "DIR" || value == "BUNDLE";
}

bool hasRoot(const Syntax& program) {
    const auto has = [](const Syntax& each) {
        return std::ranges::any_of(each.options, [](const Argument& option) {
            return std::ranges::find(option.names, "--root") != option.names.end();
        });
    };
    return has(program) || std::ranges::any_of(program.commands, has);
}

/// Options of the program may stand behind a command too.
std::vector<Argument> optionsOf(const Syntax& program, const Syntax& command) {
    std::vector<Argument> result = command.options;
    for (const Argument& option : program.options) {
        const bool isThere = std::ranges::any_of(
            result, [&](const Argument& own) { return own.names.back() == option.names.back(); });
        if (!isThere) result.push_back(option);
    }
    return result;
}

std::string namesOf(const std::vector<Argument>& options) {
    std::string result;
    for (const Argument& option : options) {
        for (const std::string& name : option.names) result += (result.empty() ? "" : " ") + name;
    }
    return result;
}

class BashScript {
  public:
    BashScript(const Syntax& program, const Candidates& candidates)
        : program_(program), candidates_(candidates), function_("_" + identifier(program.name)) {}

    std::string text() {
        script_ << "# Completion of " << program_.name << " for bash.\n" << function_ << "() {\n";
        script_ << "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
                   "    local command= kind= position=0 i candidate root=()\n"
                   "    COMPREPLY=()\n";
        writeWalk();
        writeKinds();
        writeReplies();
        script_ << "}\ncomplete -F " << function_ << ' ' << program_.name << '\n';
        return script_.str();
    }

  private:
    /// Which command there is, and how many arguments stand behind it.
    void writeWalk() {
        script_ << "    for ((i = 1; i < COMP_CWORD; ++i)); do\n        case ${COMP_WORDS[i]} in\n";
        // A value may stand behind "=", which is a word of its own here.
        constexpr std::string_view skipEquals = "[ \"${COMP_WORDS[i+1]-}\" != = ] || ((++i)); ";
        if (hasRoot(program_)) {
            // As it was typed: in quotes perhaps, and nothing in it may be run.
            script_ << "            --root) " << skipEquals << "candidate=${COMP_WORDS[++i]}\n"
                    << "                [[ $candidate == *[$'\\n$`()<>;&|']* ]] || "
                       "eval \"root=(--root $candidate)\" 2> /dev/null ;;\n";
        }
        std::string valued;
        const auto add = [&](const Syntax& each) {
            for (const Argument& option : each.options) {
                for (const std::string& name : option.names) {
                    const bool isKnown = ("|" + valued + "|").find("|" + name + "|") != std::string::npos;
                    if (!option.isFlag() && !isKnown && name != "--root")
                        valued += (valued.empty() ? "" : "|") + name;
                }
            }
        };
        add(program_);
        for (const Syntax& command : program_.commands) add(command);
        if (!valued.empty()) script_ << "            " << valued << ") " << skipEquals << "((++i)) ;;\n";
        script_ << "            -*) ;;\n"
                   "            *) if [ -z \"$command\" ]; then command=${COMP_WORDS[i]}; else "
                   "((++position)); fi ;;\n"
                   "        esac\n    done\n";
    }

    /// What the word is: the value of the option before it, an option, a command or an argument of one.
    void writeKinds() {
        script_ << "    case $command:$before in\n";
        writeValues("", program_.options);
        for (const Syntax& command : program_.commands)
            writeValues(command.name, optionsOf(program_, command));
        script_ << "        *)\n            case $command:$word in\n"
                   "                :-*) kind='"
                << "words " << namesOf(program_.options) << "' ;;\n                :*) kind='words";
        for (const Syntax& command : program_.commands) script_ << ' ' << command.name;
        script_ << "' ;;\n";
        for (const Syntax& command : program_.commands) {
            script_ << "                " << command.name << ":-*) kind='words "
                    << namesOf(optionsOf(program_, command)) << "' ;;\n";
        }
        script_ << "            esac\n            [ -n \"$kind\" ] || case $command:$position in\n";
        for (const Syntax& command : program_.commands) {
            for (std::size_t i = 0; i < command.positionals.size(); ++i) {
                const Argument& argument = command.positionals[i];
                script_ << "                " << command.name << ':'
                        << (argument.repeats ? "*" : std::to_string(i)) << ") kind=" << quoted(argument.value)
                        << " ;;\n";
            }
        }
        script_ << "            esac ;;\n    esac\n";
    }

    void writeValues(const std::string& command, const std::vector<Argument>& options) {
        for (const Argument& option : options) {
            for (const std::string& name : option.names) {
                if (!option.isFlag())
                    script_ << "        " << command << ':' << name << ") kind=" << quoted(option.value)
                            << " ;;\n";
            }
        }
    }

    void writeReplies() {
        script_
            << "    case $kind in\n"
               "        'words '*) COMPREPLY=($(compgen -W \"${kind#words }\" -- \"$word\")) ;;\n"
               "        DIR|BUNDLE) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\") "
               ";;\n"
               "        FILE) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n";
        for (const auto& [kind, command] : candidates_) {
            // A word that is begun with a quote or a backslash stands here with it.
            script_ << "        " << quoted(kind)
                    << ")\n            while IFS= read -r candidate; do\n"
                       "                printf -v candidate %q \"$candidate\"\n"
                       "                [[ $candidate != \"$word\"* ]] || COMPREPLY+=(\"$candidate\")\n"
                       "            done < <("
                    << rootFor(command) << " 2>/dev/null) ;;\n";
        }
        script_ << "    esac\n    [[ ${COMPREPLY[0]-} != *= ]] || compopt -o nospace\n";
    }

    static std::string rootFor(std::string command) {
        const std::size_t place = command.find("$root");
        if (place != std::string::npos) command.replace(place, 5, "\"${root[@]}\"");
        return command;
    }

    const Syntax& program_;
    const Candidates& candidates_;
    std::string function_;
    std::ostringstream script_;
};

class ZshScript {
  public:
    ZshScript(const Syntax& program, const Candidates& candidates)
        : program_(program), candidates_(candidates), function_("_" + identifier(program.name)) {}

    std::string text() {
        script_ << "#compdef " << program_.name << '\n';
        for (const auto& [kind, command] : candidates_) writeCandidates(kind, command);
        script_ << function_
                << "() {\n    local curcontext=$curcontext state line ret=1\n"
                   "    local -a root=()\n    typeset -A opt_args\n";
        if (hasRoot(program_))
            script_ << "    (( ${words[(I)--root]} )) && root=(--root "
                       "\"${(Q)${words[${words[(I)--root]}+1]/#\\~\\//$HOME/}}\")\n";
        script_ << "    _arguments -C";
        for (const Argument& option : program_.options) writeOption(option);
        script_
            << " \\\n        '1: :->command' '*:: :->rest' && ret=0\n    case $state in\n        command)\n"
               "            local -a commands=(";
        for (const Syntax& command : program_.commands) {
            script_ << "\n                "
                    << quoted(escapedColons(command.name) + ":" + escapedColons(command.description));
        }
        script_ << ")\n            _describe command commands && ret=0 ;;\n        rest)\n"
                   "            case $words[1] in\n";
        for (const Syntax& command : program_.commands) {
            script_ << "                " << command.name << ") _arguments";
            for (const Argument& option : optionsOf(program_, command)) writeOption(option);
            for (std::size_t i = 0; i < command.positionals.size(); ++i) {
                const Argument& argument = command.positionals[i];
                script_ << " \\\n        "
                        << quoted((argument.repeats ? std::string("*") : std::to_string(i + 1)) + ":" +
                                  escapedColons(argument.value) + ":" + actionFor(argument.value));
            }
            script_ << " && ret=0 ;;\n";
        }
        script_ << "            esac ;;\n    esac\n    return ret\n}\n" << function_ << " \"$@\"\n";
        return script_.str();
    }

  private:
    std::string functionFor(const std::string& kind) const { return function_ + "_" + identifier(kind); }

    void writeCandidates(const std::string& kind, std::string command) {
        const std::size_t place = command.find("$root");
        if (place != std::string::npos) command.replace(place, 5, "\"${root[@]}\"");
        script_ << functionFor(kind) << "() {\n    local -a candidates=(\"${(@f)$(" << command
                << " 2>/dev/null)}\")\n    compadd" << (kind.find('=') == std::string::npos ? "" : " -S ''")
                << " -a candidates\n}\n";
    }

    std::string actionFor(const std::string& value) const {
        if (isDirectory(value)) return "_directories";
        if (value == "FILE") return "_files";
        return candidates_.contains(value) ? functionFor(value) : " ";
    }

    static std::string escapedColons(std::string_view text) {
        std::string result;
        for (const char c : text) {
            if (c == ':' || c == '[' || c == ']' || c == '\\') result += '\\';
            result += c;
        }
        return result;
    }

    void writeOption(const Argument& option) {
        for (const std::string& name : option.names) {
            std::string text =
                (option.isFlag() ? "" : "*") + name + "[" + escapedColons(option.description) + "]";
            if (!option.isFlag()) text += ":" + escapedColons(option.value) + ":" + actionFor(option.value);
            script_ << " \\\n        " << quoted(text);
        }
    }

    const Syntax& program_;
    const Candidates& candidates_;
    std::string function_;
    std::ostringstream script_;
};

class FishScript {
  public:
    FishScript(const Syntax& program, const Candidates& candidates)
        : program_(program),
          candidates_(candidates),
          complete_("complete -c " + program.name),
          function_("__" + identifier(program.name)) {}

    std::string text() {
        script_ << "# Completion of " << program_.name << " for fish.\n";
        for (const auto& [kind, command] : candidates_) writeCandidates(kind, command);
        std::string commands;
        for (const Syntax& command : program_.commands) commands += " " + command.name;
        const std::string noCommand = "not __fish_seen_subcommand_from" + commands;
        script_ << complete_ << " -f\n";
        for (const Argument& option : program_.options) writeOption("", option);
        for (const Syntax& command : program_.commands) {
            script_ << complete_ << " -n " << quoted(noCommand) << " -a " << quoted(command.name) << " -d "
                    << quoted(command.description) << '\n';
        }
        for (const Syntax& command : program_.commands) {
            const std::string seen = "__fish_seen_subcommand_from " + command.name;
            for (const Argument& option : command.options) writeOption(seen, option);
            for (const Argument& argument : command.positionals) {
                script_ << complete_ << " -n " << quoted(seen);
                writeAction(argument.value);
                script_ << '\n';
            }
        }
        return script_.str();
    }

  private:
    std::string functionFor(const std::string& kind) const { return function_ + "_" + identifier(kind); }

    void writeCandidates(const std::string& kind, std::string command) {
        const std::size_t place = command.find("$root");
        if (place != std::string::npos) command.replace(place, 5, "$root");
        script_ << "function " << functionFor(kind)
                << "\n    set -l words (commandline -opc)\n    set -l root\n"
                << "    if set -l i (contains -i -- --root $words); and set -q words[(math $i + 1)]\n"
                   "        set root --root $words[(math $i + 1)]\n    end\n    "
                << command << " 2>/dev/null\nend\n";
    }

    void writeAction(const std::string& value) {
        if (isDirectory(value)) {
            script_ << " -a '(__fish_complete_directories (commandline -ct))'";
        } else if (value == "FILE") {
            script_ << " -F";
        } else if (candidates_.contains(value)) {
            script_ << " -a " << quoted("(" + functionFor(value) + ")");
        }
    }

    void writeOption(const std::string& condition, const Argument& option) {
        script_ << complete_;
        if (!condition.empty()) script_ << " -n " << quoted(condition);
        for (const std::string& name : option.names)
            script_ << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
        script_ << " -d " << quoted(option.description);
        if (!option.isFlag()) {
            script_ << (option.value == "FILE" ? " -r" : " -x");
            writeAction(option.value);
        }
        script_ << '\n';
    }

    const Syntax& program_;
    const Candidates& candidates_;
    std::string complete_;
    std::string function_;
    std::ostringstream script_;
};

}  // namespace

std::string completion(const Syntax& program, Shell shell, const Candidates& candidates) {
    switch (shell) {
        case Shell::Bash:
            return BashScript(program, candidates).text();
        case Shell::Zsh:
            return ZshScript(program, candidates).text();
        case Shell::Fish:
            break;
    }
    return FishScript(program, candidates).text();
}

}  // namespace usage
