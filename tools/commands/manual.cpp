#include "tools/commands/manual.hpp"

#include "tools/commands/exit_codes.hpp"
#include "tools/commands/text.hpp"

#include <cstdio>
#include <sstream>

namespace tallowmere::tools {
namespace {

/// Running text: nothing in it is a request or an escape of the formatter.
std::string plainText(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const Decoded each = firstOf(text);
        text.remove_prefix(each.bytes);
        if (each.character == U'\\') {
            out += "\\e";
        } else if (each.character == U'-') {
            out += "\\-";
        } else if (each.character < 0x80) {
            out += static_cast<char>(each.character);
        } else {
            char escape[16];
            std::snprintf(escape, sizeof escape, "\\[u%04X]", static_cast<unsigned>(each.character));
            out += escape;
        }
    }
    return out;
}

/// A paragraph's lines; none may begin like a request.
std::string paragraph(std::string_view text) {
    std::istringstream lines{std::string(text)};
    std::string out;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty())
            out += ".PP\n";
        else
            out += (line.front() == '.' || line.front() == '\'' ? "\\&" : "") + plainText(line) + '\n';
    }
    return out;
}

std::string bold(std::string_view text) {
    return "\\fB" + plainText(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + plainText(text) + "\\fR";
}

std::string operandShape(const OperandText& operand) {
    const std::string shape = italic(operand.name) + (operand.several ? "..." : "");
    return operand.required ? shape : "[" + shape + "]";
}

std::string optionShape(const OptionText& option) {
    std::string shape;
    for (const std::string& name : option.names) shape += (shape.empty() ? "" : ", ") + bold(name);
    return option.value.empty() ? shape : shape + " " + italic(option.value);
}

void addItem(std::string& page, const std::string& head, const std::string& description) {
    page += ".TP\n" + head + '\n' + paragraph(description);
}

void addOption(std::string& page, const OptionText& option) {
    addItem(page, optionShape(option),
            option.description + (option.standard.empty() ? "" : " (standard: " + option.standard + ")"));
}

void addFooter(std::string& page, const std::string& footer) {
    if (!footer.empty()) page += ".PP\n" + paragraph(footer);
}

/// parent   its name, empty for the program, and its footer, which commands inherit
void addCommand(std::string& page, const CommandText& command, const CommandText& parent) {
    CommandText named = command;
    named.name = parent.name + (parent.name.empty() ? "" : " ") + command.name;
    for (const CommandText& below : command.commands) addCommand(page, below, named);
    if (!command.commands.empty()) return addFooter(page, command.footer);
    page += ".SS " + bold(named.name);
    if (!command.options.empty()) page += " [options]";
    for (const OperandText& operand : command.operands) page += " " + operandShape(operand);
    page += '\n' + paragraph(command.description + ".");
    for (const OperandText& operand : command.operands) addItem(page, italic(operand.name), operand.description);
    for (const OptionText& option : command.options)
        if (option.names.back() != "--help") addOption(page, option);
    if (command.footer != parent.footer) addFooter(page, command.footer);
}

} // namespace

std::string manualPage(const CommandText& program, std::string_view version) {
    std::string page = ".TH TALLOWMERE 1 \"\" \"tallowmere " + std::string(version) + "\" \"User Commands\"\n";
    page += ".SH NAME\ntallowmere \\- read, write and feed the live sailing data of this PC\n";
    page += ".SH SYNOPSIS\n.B tallowmere\n" + italic("COMMAND") + " [" + italic("options") + "] [" +
            italic("operands") + "]\n";
    page += ".SH DESCRIPTION\n" + paragraph(program.description) + ".PP\n" + paragraph(program.footer);
    page += ".SH OPTIONS\n";
    for (const OptionText& option : program.options) addOption(page, option);
    page += ".PP\n" + bold("--help") + " after a command tells about it alone.\n";
    page += ".SH COMMANDS\n";
    for (const CommandText& command : program.commands) addCommand(page, command, {});
    page += ".SH EXIT STATUS\n";
    for (const exit_code::Meaning& meaning : exit_code::kAll)
        addItem(page, bold(std::to_string(meaning.code)), std::string(meaning.text) + ".");
    return page;
}

} // namespace tallowmere::tools
