// From handles to the engine's objects, and the checks of arguments that all classes share.
#pragma once

#include <QString>
#include <QStringList>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <fundo/colour.h>
#include <knob/parameter_tree.h>
#include <orrery/parameter.h>
#include <orrery/py_handle.h>
#include <orrery/view.h>
#include <stratum/exception.h>
#include <stratum/manager.h>
#include <stratum/shapes.h>
#include <stratum/tree.h>

namespace orrery {

// Throws the exception with this place in the source: raise<STRM_BadArgument>(message).
template <class Exception>
[[noreturn]] void raise(const QString& message, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    throw Exception(file, line, message, message);
}

// The manager, kept alive and still open, or STRM_BadState "Invalid object".
boost::shared_ptr<STRM_ProjectManager> openManager(const boost::weak_ptr<STRM_ProjectManager>& manager);

inline int idOf(const View& view) { return static_cast<int>(view.get_id()); }
// The id of the view that is meant. STRM_OutOfRange for one that the project does not have.
inline int resolveView(const STRM_ProjectManager& manager, const View& view) { return manager.resolveView(idOf(view)); }

// ---- Checks; each names the argument and the value that it refuses ----

void requireFinite(const char* argument, double value); // STRM_BadArgument
// Normalised; finite.
double requireTime(double time, const char* argument = "time");
void requireColor(const char* argument, const Fundo::Colour3<float>& color); // STRM_BadArgument, STRM_OutOfRange
// Any text without unpaired surrogates (STRM_BadArgument): what can be written to a file and read back.
void requireText(const char* argument, const QString& text);
// Such a text that is not empty and has at most 65535 characters.
void requireName(const char* argument, const QString& name);

// A value as messages show it: shortened, in quotes.
QString quoted(const QString& text);

// What a handle, or a call on a project, refers to: nothing when it leads nowhere.
Parameter parameterAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path);
ParameterSet parameterSetAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path);

} // namespace orrery
