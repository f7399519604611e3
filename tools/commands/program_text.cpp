#include "tools/commands/program_text.hpp"

#include <CLI/CLI.hpp>

namespace tallowmere::tools {
namespace {

OptionText optionOf(const CLI::Option& option) {
    OptionText text;
    for (const std::string& name : option.get_snames()) text.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) text.names.push_back("--" + name);
    if (option.get_items_expected_max() != 0) text.value = option.get_type_name();
    text.description = option.get_description();
    text.standard = option.get_default_str();
    return text;
}

OperandText operandOf(const CLI::Option& option) {
    return {option.get_name(true), option.get_description(), option.get_required(),
            option.get_items_expected_max() > 1};
}

} // namespace

CommandText describe(const CLI::App& app) {
    CommandText text{app.get_name(), app.get_description(), app.get_footer(), {}, {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty()) continue;
        if (option->get_positional())
            text.operands.push_back(operandOf(*option));
        else
            text.options.push_back(optionOf(*option));
    }
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        if (!command->get_group().empty()) text.commands.push_back(describe(*command));
    return text;
}

} // namespace tallowmere::tools
