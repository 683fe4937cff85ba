// SPDX-License-Identifier: MIT
#include "usage/ManPage.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace usage {

namespace {

/// Text as it is meant, whatever the typesetter would take its characters for.
std::string escaped(std::string_view text) {
    std::string result;
    bool atStart = true;
    for (const char c : text) {
        if (atStart && (c == '.' || c == '\'')) result += "\\&";
        if (c == '\\') {
            result += "\\e";
        } else if (c == '-') {
            result += "\\-";
        } else {
            result += c;
        }
        atStart = c == '\n';
    }
    return result;
}

/// A sentence stands on a line of its own as one.
std::string sentence(std::string_view text) {
    std::string result = escaped(text);
    if (!result.empty() && !std::string_view(".:?!").contains(result.back())) result += '.';
    return result;
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fR";
}

std::string namesOf(const Argument& argument) {
    if (argument.isPositional) return italic(argument.value);
    std::string result;
    for (const std::string& name : argument.names) {
        if (!result.empty()) result += ", ";
        result += bold(name);
    }
    if (!argument.isFlag()) result += " " + italic(argument.value);
    return result;
}

void writeArguments(std::ostream& page, const std::vector<Argument>& arguments) {
    for (const Argument& argument : arguments)
        page << ".TP\n" << namesOf(argument) << '\n' << sentence(argument.description) << '\n';
}

std::string usageOf(const Syntax& command) {
    std::string result;
    for (const Argument& argument : command.positionals) {
        const std::string name = italic(argument.value) + (argument.repeats ? " ..." : "");
        result += argument.isRequired ? " " + name : " [" + name + "]";
    }
    return result;
}

void writeParagraphs(std::ostream& page, const std::string& text) {
    std::istringstream lines(text);
    bool isFirst = true;
    for (std::string line; std::getline(lines, line); isFirst = false) {
        if (line.empty()) {
            page << ".PP\n";
        } else {
            page << escaped(line) << '\n';
        }
    }
    if (isFirst) page << '\n';
}

/// Lines stay lines.
void writeLines(std::ostream& page, const std::string& text) {
    std::istringstream lines(text);
    bool isFirst = true;
    for (std::string line; std::getline(lines, line); isFirst = false) {
        if (line.empty()) continue;
        if (!isFirst) page << ".br\n";
        page << escaped(line) << '\n';
    }
}

}  // namespace

std::string manPage(const Syntax& program, const Manual& manual) {
    std::string title = program.name;
    std::ranges::transform(title, title.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    std::string inShort = program.description;
    if (inShort.ends_with('.')) inShort.pop_back();

    std::ostringstream page;
    page << ".TH " << escaped(title) << " 1 \"\" \"" << escaped(program.name) << ' '
         << escaped(manual.version) << "\" \"User Commands\"\n";
    page << ".SH NAME\n" << escaped(program.name) << " \\- " << escaped(inShort) << '\n';
    page << ".SH SYNOPSIS\n"
         << bold(program.name) << " [" << italic("OPTION") << " ...] " << italic("COMMAND") << " ["
         << italic("ARGUMENT") << " ...]\n";
    page << ".SH OPTIONS\n";
    writeArguments(page, program.options);
    page << ".SH COMMANDS\n";
    for (const Syntax& command : program.commands) {
        page << ".SS " << bold(command.name) << usageOf(command) << '\n'
             << sentence(command.description) << '\n';
        writeArguments(page, command.positionals);
        writeArguments(page, command.options);
    }
    if (!program.footer.empty()) {
        page << ".SH NOTES\n";
        writeLines(page, program.footer);
    }
    for (const Section& section : manual.sections) {
        page << ".SH " << escaped(section.title) << '\n';
        writeParagraphs(page, section.text);
    }
    return page.str();
}

}  // namespace usage
