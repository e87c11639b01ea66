// What the user asked for on the command line of the application.
#ifndef HOST_COMMAND_LINE_H
#define HOST_COMMAND_LINE_H

#include <stdexcept>
#include <string>
#include <vector>

struct CommandLine
{
    enum class Action { run, help, version };

    Action action = Action::run;
    std::string project;
    // The interpreter's own arguments, the program's name first: a script, "-c" and code, "-", or nothing, and what
    // follows them.
    std::vector<std::string> interpreter;
    // Is run by the interpreter; empty when it reads code or standard input.
    std::string script;
    bool isPrompt = false; // or reads standard input, where that is no terminal
};

// A command line that makes no sense; its text is one line that says why.
class CommandLineError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

CommandLine parseCommandLine(const std::vector<std::string>& arguments);

extern const char* const usage;

#endif
