// ParameterSet: a named node that holds parameters and further sets, found by subscript.
#include "module.h"

using namespace binding;

class ParameterSetWrapper : public NullDispatch<ParameterSet>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

// The first of the members whose own name, the last of its path, is `name`; null when there is none.
template <class Members>
auto memberNamed(Members& members, const QString& name) -> decltype(&members[0])
{
    for (auto& member : members) {
        const QStringList path = member.get_name_components();
        if (!path.isEmpty() && path.last() == name)
            return &member;
    }
    return nullptr;
}

// The names that a subscript stands for; false when it stands for none.
bool namesFromKey(PyObject* key, QStringList& names)
{
    if (PyString_Check(key) || PyUnicode_Check(key)) {
        QString name;
        Converter<QString>::accepts(key)(key, &name);
        names.append(name);
        return !errorPending();
    }
    const FromPython convert = PySequence_Check(key) ? Converter<QStringList>::accepts(key) : nullptr;
    if (!convert)
        return false;
    convert(key, &names);
    return !errorPending() && names.size() == PySequence_Size(key);
}

// What the names lead to: a set, or with the last name a parameter. Subsets come before parameters.
struct Found
{
    boost::optional<ParameterSet> set;
    boost::optional<Parameter> parameter;
};

Found find(const ParameterSet& start, const QStringList& names)
{
    ParameterSet current(start);
    for (int i = 0; i < names.size(); ++i) {
        QVector<ParameterSet> subsets = current.get_subsets();
        if (const ParameterSet* const subset = memberNamed(subsets, names[i])) {
            current = *subset;
            continue;
        }
        Found found;
        if (i == names.size() - 1) {
            QVector<Parameter> parameters = current.get_parameters();
            if (const Parameter* const parameter = memberNamed(parameters, names[i]))
                found.parameter = *parameter;
        }
        return found;
    }
    return Found{current, boost::none};
}

PyObject* subscript(PyObject* self, PyObject* key)
{
    const ParameterSet* const set =
        static_cast<const ParameterSet*>(libraryObject(self, Wrapped<ParameterSet>::type()));
    if (!set)
        return nullptr;
    try {
        QStringList names;
        Found found;
        if (namesFromKey(key, names)) {
            const Unlocked unlocked;
            found = find(*set, names);
        }
        clearRefusal();
        if (errorPending())
            return nullptr;
        if (found.set)
            return Converter<ParameterSet>::toPython(*found.set);
        if (found.parameter)
            return Converter<Parameter>::toPython(*found.parameter);
        PyErr_SetObject(PyExc_KeyError, Reference(PyTuple_Pack(1, key)).get());
    } catch (...) {
        raiseCaughtException();
    }
    return nullptr;
}

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<ParameterSetWrapper, const ParameterSet&>));

constexpr auto members = memberTable(noArguments("isNull", lockedOperation<&isNull<ParameterSet>>),

                                     property("name_components", operation<&ParameterSet::get_name_components>),
                                     property("parameters", operation<&ParameterSet::get_parameters>),
                                     property("subsets", operation<&ParameterSet::get_subsets>),
                                     property("keyframes", operation<&ParameterSet::get_keyframes>),
                                     property("display_name", operation<&ParameterSet::get_display_name>),
                                     property("script_name", operation<&ParameterSet::get_script_name>));

} // namespace

template <>
ClassTable vireo::tableOf<ParameterSet>()
{
    ClassTable set = handleClass<ParameterSet, ParameterSetWrapper, making, members>();
    set.compare = &ComparisonOf<ParameterSet, Equal | NotEqual>::compare;
    set.hash = &hash<ParameterSet>;
    set.subscript = &subscript;
    return set;
}
