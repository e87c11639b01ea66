// The embedded Python: where it finds its library and our packages, and how it is run.
#ifndef HOST_INTERPRETER_H
#define HOST_INTERPRETER_H

#include <stdexcept>
#include <string>
#include <vector>

class InterpreterError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

const char* interpreterVersion();

// Starts Python for a program of that name, with our packages on its path. Throws InterpreterError where it would end
// the process instead. `afterwards` is called once, when Python has ended and none of its objects is left.
void startInterpreter(const std::string& program, void (*afterwards)());

// Makes ready what a person at the prompt expects: names are completed, and `project` is the one that is open, if any.
void preparePrompt(bool hasProject);

// Runs what the arguments say and ends Python: returns the exit code, or ends the process with it.
int runInterpreter(const std::vector<std::string>& arguments);

#endif
