// Reads the command line as the interpreter's own is read: what follows the script or the code is the script's.
#include "command_line.h"

#include <algorithm>
#include <iterator>

const char* const usage = R"(usage: vireo [--project FILE] [SCRIPT | -c CODE | -m MODULE | -] [ARGUMENT...]
       vireo COMMAND [ARGUMENT...]

Runs a Python 2.7 script with vireo.project at hand. Without a script: an interactive prompt, which completes names and
has `project`, the one that is open.

  SCRIPT          the script to run; its arguments are sys.argv[1:]
  -c CODE         runs code instead
  -m MODULE       runs a module as a script
  -               reads the script from standard input
  --project FILE  opens a project and makes it the current one
  --version       prints the versions of the application, of Python and of Qt
  --help          prints this text

  COMMAND         info, track, export, render, sheet, report or farm: what each does says vireo COMMAND --help;
                  a script of that name is run as ./info

The exit code is the script's own: 0, what it gave to sys.exit(), or 1 after an exception that it did not catch.
It is 2 when the command line makes no sense, or names a script or a project that cannot be opened.
)";

namespace {

class Reader
{
public:
    explicit Reader(const std::vector<std::string>& arguments) : m_arguments(arguments) {}

    bool atEnd() const { return m_next >= m_arguments.size(); }
    const std::string& peek() const { return m_arguments[m_next]; }
    const std::string& take() { return m_arguments[m_next++]; }

    const std::string& takeValue(const std::string& option, const std::string& what)
    {
        if (atEnd())
            throw CommandLineError(option + " needs " + what);
        return take();
    }

    void appendRest(std::vector<std::string>& list)
    {
        list.insert(list.end(), m_arguments.begin() + static_cast<std::ptrdiff_t>(m_next), m_arguments.end());
        m_next = m_arguments.size();
    }

private:
    const std::vector<std::string>& m_arguments;
    std::size_t m_next = 1;
};

std::string fileName(const std::string& value)
{
    if (value.empty())
        throw CommandLineError("--project needs a file");
    return value;
}

// Our own commands, which are written in Python. Nothing of theirs is looked for in the folder that they are run in.
bool isCommand(const std::string& word)
{
    static const char* const commands[] = {"info", "track", "export", "render", "sheet", "report", "farm"};
    return std::find(std::begin(commands), std::end(commands), word) != std::end(commands);
}

void readCommand(CommandLine& line, Reader& reader)
{
    line.interpreter.push_back("-c");
    line.interpreter.push_back("import sys; sys.path.remove(''); from vireo.commands import main\n"
                               "sys.exit(main(sys.argv[1:]))");
    line.interpreter.push_back(reader.take());
    if (!line.project.empty()) // which the command opens itself
        line.interpreter.insert(line.interpreter.end(), {"--project", line.project});
    line.project.clear();
    reader.appendRest(line.interpreter);
}

void readScript(CommandLine& line, Reader& reader, bool mayBeCommand)
{
    line.isPrompt = reader.atEnd();
    if (line.isPrompt)
        return;
    if (mayBeCommand && isCommand(reader.peek())) {
        readCommand(line, reader);
        return;
    }
    line.interpreter.push_back("--");
    if (reader.peek() != "-")
        line.script = reader.peek();
    reader.appendRest(line.interpreter);
}

// Takes one option; false at the first argument that is none.
bool readOption(CommandLine& line, Reader& reader)
{
    static const std::string project = "--project";
    const std::string option = reader.peek();
    if (option.size() < 2 || option[0] != '-' || option == "-c" || option == "-m")
        return false;
    reader.take();
    if (option == "--help" || option == "-h")
        line.action = CommandLine::Action::help;
    else if (option == "--version" || option == "-V")
        line.action = CommandLine::Action::version;
    else if (option == project)
        line.project = fileName(reader.takeValue(option, "a file"));
    else if (option.compare(0, project.size() + 1, project + "=") == 0)
        line.project = fileName(option.substr(project.size() + 1));
    else
        throw CommandLineError("unknown option '" + option + "'; see vireo --help");
    return line.action == CommandLine::Action::run;
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine line;
    line.interpreter.push_back(arguments.front());
    Reader reader(arguments);
    bool onlyScripts = false; // what follows is a script, whatever its name
    while (!reader.atEnd()) {
        if (reader.peek() == "--") {
            reader.take();
            onlyScripts = true;
            break;
        }
        if (!readOption(line, reader))
            break;
    }
    if (line.action != CommandLine::Action::run)
        return line;
    if (!reader.atEnd() && !onlyScripts && (reader.peek() == "-c" || reader.peek() == "-m")) {
        const std::string option = reader.take();
        line.interpreter.push_back(option);
        line.interpreter.push_back(reader.takeValue(option, option == "-c" ? "code" : "a module"));
        reader.appendRest(line.interpreter);
        return line;
    }
    readScript(line, reader, !onlyScripts);
    return line;
}
