#include "tools/commands/completion.hpp"

#include "calibration/item_table.hpp"
#include "core/channels/channel_lookup.hpp"
#include "tools/commands/text.hpp"

#include <string_view>

namespace tallowmere::tools {
namespace {

/// What words a placeholder of the help stands for.
std::string_view kindOf(std::string_view placeholder) {
    if (placeholder == "CHANNEL") return "channel";
    if (placeholder == "ITEM") return "item";
    if (placeholder == "TARGET") return "item+file";
    if (placeholder == "FILE" || placeholder == "SOURCE") return "file";
    if (placeholder == "SHELL") return "shell";
    return "none";
}

/// One word of the shell, whatever is in it.
std::string quotedWord(std::string_view text) {
    std::string word = "'";
    for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

std::string channelNames() {
    std::string names;
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        std::string name = printable(shortNameOf(nullptr, channel));
        if (name.empty()) name = printable(longNameOf(nullptr, channel));
        names += "    " + quotedWord(name) + '\n';
    }
    return names;
}

std::string itemNames() {
    std::string names;
    for (const CalibrationItemDef& row : kCalibrationItems) names += "    " + quotedWord(printable(row.name)) + '\n';
    return names;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

/// One branch of a case for each command: what may come after it.
void addBranches(std::string& script, const CommandText& command, const std::string& path) {
    std::vector<std::string> commands;
    std::vector<std::string> options;
    std::vector<std::string> values;
    std::vector<std::string> operands;
    for (const CommandText& below : command.commands) commands.push_back(below.name);
    for (const OptionText& option : command.options)
        for (const std::string& name : option.names) {
            options.push_back(name);
            if (!option.value.empty()) values.push_back(name + ":" + std::string(kindOf(option.value)));
        }
    for (const OperandText& operand : command.operands)
        operands.push_back(std::string(kindOf(operand.name)) + (operand.several ? "..." : ""));
    script += "    " + quotedWord(path) + ")\n";
    script += "        commands=" + quotedWord(joined(commands)) + " options=" + quotedWord(joined(options)) + '\n';
    script += "        values=" + quotedWord(joined(values)) + " operands=" + quotedWord(joined(operands)) + " ;;\n";
    for (const CommandText& below : command.commands)
        addBranches(script, below, path.empty() ? below.name : path + " " + below.name);
}

/// What both shells read in the same way: the names, and what may come after which command.
std::string sharedPart(const CommandText& program) {
    std::vector<std::string> shells;
    for (const CompletionShell& shell : kCompletionShells) shells.emplace_back(shell.name);
    std::string script = "_tallowmere_channels=(\n" + channelNames() + ")\n";
    script += "_tallowmere_items=(\n" + itemNames() + ")\n";
    script += "_tallowmere_shells=(" + joined(shells) + ")\n";
    script += "\n# What may come after a command, whose words are $1.\n_tallowmere_command() {\n    case $1 in\n";
    addBranches(script, program, {});
    return script + "    esac\n}\n";
}

constexpr char kBashHead[] =
    "# Completes the command line of tallowmere in bash. Made by: tallowmere completion bash\n";

// Names hold blanks, so candidates are lines, and are quoted unless the user has begun a quotation.
constexpr char kBashTail[] = R"(
# Offers the words after $1 that begin with what is typed; where none does, those that do but for case.
_tallowmere_offer() {
    local typed=$1 word exact=() loose=()
    shift
    for word in "$@"; do
        if [[ $word == "$typed"* ]]; then exact+=("$word"); fi
        if [[ ${word,,} == "${typed,,}"* ]]; then loose+=("$word"); fi
    done
    if ((${#exact[@]} == 0)); then exact=("${loose[@]}"); fi
    for word in "${exact[@]}"; do
        if [[ -z $quote ]]; then printf -v word %q "$word"; fi
        COMPREPLY+=("$word")
    done
}

_tallowmere_files() {
    local file
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do COMPREPLY+=("$file"); done < <(compgen -f -- "$1")
}

_tallowmere() {
    local commands options values operands path= kind= count=0 i word quote=
    COMPREPLY=()
    _tallowmere_command ''
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        kind=
        case $word in
        -*)
            if [[ " $values" == *" $word:"* ]]; then
                kind=${values#*"$word:"}
                kind=${kind%% *}
                if ((i + 1 < COMP_CWORD)); then ((++i)) && kind=; fi
            fi
            ;;
        *)
            if [[ " $commands " == *" $word "* ]]; then
                path+=${path:+ }$word
                _tallowmere_command "$path"
            else
                ((++count))
            fi
            ;;
        esac
    done

    local typed=${COMP_WORDS[COMP_CWORD]}
    case $typed in
    [\'\"]*)
        quote=${typed:0:1}
        typed=${typed:1}
        ;;
    *) typed=${typed//\\/} ;;
    esac

    if [[ -z $kind && $typed == -* ]]; then
        _tallowmere_offer "$typed" $options
        return
    fi
    if [[ -z $kind && -n $commands ]]; then
        _tallowmere_offer "$typed" $commands
        return
    fi
    if [[ -z $kind ]]; then
        local shapes=($operands)
        if ((count >= ${#shapes[@]} && ${#shapes[@]} > 0)) && [[ ${shapes[-1]} == *... ]]; then
            count=$((${#shapes[@]} - 1))
        fi
        kind=${shapes[count]-none}
    fi
    case ${kind%...} in
    channel) _tallowmere_offer "$typed" "${_tallowmere_channels[@]}" ;;
    item) _tallowmere_offer "$typed" "${_tallowmere_items[@]}" ;;
    item+file)
        _tallowmere_offer "$typed" "${_tallowmere_items[@]}"
        if ((${#COMPREPLY[@]} == 0)); then _tallowmere_files "$typed"; fi
        ;;
    file) _tallowmere_files "$typed" ;;
    shell) _tallowmere_offer "$typed" "${_tallowmere_shells[@]}" ;;
    esac
}

complete -F _tallowmere tallowmere
)";

constexpr char kZshHead[] = R"(#compdef tallowmere
# Completes the command line of tallowmere in zsh. Made by: tallowmere completion zsh
)";

// zsh quotes what it puts in and matches by itself; the case of names does not matter.
constexpr char kZshTail[] = R"(
_tallowmere_names() {
    compadd -M 'm:{a-zA-Z}={A-Za-z}' -a "$1"
}

_tallowmere() {
    local commands options values operands kind= word before=
    local -a shapes
    local -i i count=0
    _tallowmere_command ''
    for ((i = 2; i < CURRENT; ++i)); do
        word=${(Q)words[i]}
        kind=
        if [[ $word == -* ]]; then
            if [[ " $values" == *" $word:"* ]]; then
                kind=${values#*"$word:"}
                kind=${kind%% *}
                if ((i + 1 < CURRENT)); then
                    ((++i))
                    kind=
                fi
            fi
        elif [[ " $commands " == *" $word "* ]]; then
            before+=${before:+ }$word
            _tallowmere_command "$before"
        else
            ((++count))
        fi
    done

    if [[ -z $kind && ${words[CURRENT]} == -* ]]; then
        compadd -- ${=options}
        return
    fi
    if [[ -z $kind && -n $commands ]]; then
        compadd -- ${=commands}
        return
    fi
    if [[ -z $kind ]]; then
        shapes=(${=operands})
        if (($#shapes > 0 && count >= $#shapes)) && [[ ${shapes[-1]} == *... ]]; then
            count=$(($#shapes - 1))
        fi
        kind=none
        if ((count < $#shapes)); then kind=${shapes[count + 1]}; fi
    fi
    case ${kind%...} in
    channel) _tallowmere_names _tallowmere_channels ;;
    item) _tallowmere_names _tallowmere_items ;;
    item+file)
        _tallowmere_names _tallowmere_items
        _files
        ;;
    file) _files ;;
    shell) _tallowmere_names _tallowmere_shells ;;
    esac
}

# Found by zsh in the function path it is called as a function; else it was read by "source".
if [[ ${funcstack[1]-} == _tallowmere ]]; then
    _tallowmere "$@"
else
    compdef _tallowmere tallowmere
fi
)";

} // namespace

std::string bashCompletion(const CommandText& program) {
    return kBashHead + sharedPart(program) + kBashTail;
}

std::string zshCompletion(const CommandText& program) {
    return kZshHead + sharedPart(program) + kZshTail;
}

} // namespace tallowmere::tools
