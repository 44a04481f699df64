#pragma once

#include <span>
#include <string>

/// How a line of shell ended and what it printed.
struct ShellResult {
    int exitCode;
    std::string output;
    std::string errors;
};

/// Runs a line of shell in which "nuxml" is the tool that was built, in a folder of its own that
/// holds the example documents.
ShellResult runShell(const std::string& line);

/// A line of shell and exactly what it must do.
struct ShellCase {
    const char* line;
    int exitCode;
    const char* output;
    const char* errors;
};

void expectShell(std::span<const ShellCase> cases);
