// The application `vireo`: embeds Python, opens the current project, and runs a script, code or a prompt. It shows what
// a host of the module does and in which order: the application object, the project, Python; and backwards at the end.
#include "command_line.h"
#include "interpreter.h"
#include "progress_display.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <engine/embedding.h>
#include <fcntl.h>
#include <memory>
#include <orrery/project.h>
#include <unistd.h>

namespace {

constexpr int failed = 1;
constexpr int refused = 2;

int complain(int code, const QString& text)
{
    std::fprintf(stderr, "vireo: %s\n", text.simplified().toLocal8Bit().constData());
    return code;
}

// What outlives the interpreter. A script's end may end the process from within Python, so that nothing here can wait
// for main() to return.
struct ApplicationState
{
    // A script may destroy the project, and the binding of Qt may end the application object.
    QPointer<Project> project;
    QPointer<QCoreApplication> application;
};

ApplicationState state;

void endApplication()
{
    orrery::setCurrentProject(nullptr);
    delete state.project;
    delete state.application;
}

// The application object takes numbers written the user's way into account for everything in the process, and Python
// and the image libraries expect the C way.
void startApplication(const std::string& program)
{
    static int count = 1;
    static std::string name = program;
    static char* arguments[] = {name.data(), nullptr};
    state.application = new QCoreApplication(count, arguments);
    QCoreApplication::setApplicationName("vireo");
    QCoreApplication::setApplicationVersion(VIREO_VERSION);
    std::setlocale(LC_NUMERIC, "C");
}

void openProject(const std::string& file)
{
    state.project = new Project(QFile::decodeName(file.c_str()), nullptr);
    orrery::setCurrentProject(state.project);
}

// Asked before a project is opened, which may take its time.
QString whyUnreadable(const std::string& script)
{
    const int descriptor = script.empty() ? -1 : open(script.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
    if (descriptor >= 0 || script.empty())
        return QString();
    return QString::fromLocal8Bit("cannot open script '%1': %2")
        .arg(QString::fromLocal8Bit(script.c_str()), QString::fromLocal8Bit(std::strerror(errno)));
}

int run(const CommandLine& line)
{
    const QString unreadable = whyUnreadable(line.script);
    if (!unreadable.isEmpty())
        return complain(refused, unreadable);
    startApplication(line.interpreter.front());
    orrery::setEmbedded(true);
    try {
        if (!line.project.empty())
            openProject(line.project);
    } catch (const std::exception& error) {
        endApplication();
        // The library's text names the file.
        return complain(refused, "cannot open project: " + QString::fromUtf8(error.what()));
    }
    showProgress();
    try {
        startInterpreter(line.interpreter.front(), endApplication);
    } catch (const InterpreterError& error) {
        endApplication();
        return complain(failed, QString::fromLocal8Bit(error.what()));
    }
    if (line.isPrompt)
        preparePrompt(!line.project.empty());
    return runInterpreter(line.interpreter);
}

} // namespace

int main(int count, char** arguments)
{
    try {
        const CommandLine line = parseCommandLine(std::vector<std::string>(arguments, arguments + count));
        switch (line.action) {
        case CommandLine::Action::help:
            std::fputs(usage, stdout);
            return 0;
        case CommandLine::Action::version:
            std::printf("vireo %s (Python %s, Qt %s)\n", VIREO_VERSION, interpreterVersion(), qVersion());
            return 0;
        case CommandLine::Action::run:
            break;
        }
        return run(line);
    } catch (const CommandLineError& error) {
        return complain(refused, QString::fromLocal8Bit(error.what()));
    }
}
