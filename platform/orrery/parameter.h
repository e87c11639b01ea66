// One animatable value, and the tree of sets that holds all of an object's.
#ifndef ORRERY_PARAMETER_H
#define ORRERY_PARAMETER_H

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <orrery/py_handle.h>
#include <orrery/view.h>

// A handle on one value that may change over time, with keyframes per view.
//
// Times are frames of the project, fractions allowed; not-a-number and infinite times throw STRM_BadArgument. The time
// 4294967295.0 (UINT_MAX) means "not animated": get() there answers the value that holds where there are no
// keyframes, and set() there sets that value and removes the view's keyframes.
//
// Errors of every operation but isNull(), == and qHash: STRM_BadState for a null handle.
class Parameter : public PyHandle<Knob::ParameterSet>
{
public:
    Parameter();
    Parameter(const Parameter& other);
    Parameter(boost::shared_ptr<Knob::ParameterSet> parameter, boost::weak_ptr<STRM_ProjectManager> manager);
    Parameter& operator=(const Parameter& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~Parameter();

    // The value at a time: the keyframe's there, else between keyframes interpolated linearly for numbers and held for
    // everything else, and the first's before the first and the last's after the last. A view without keyframes of its
    // own answers the hero view's.
    QVariant get(double time, View view);

    // Sets a keyframe. A value of a type that the parameter does not take throws STRM_BadArgument, one outside the
    // parameter's range STRM_OutOfRange, and the parameter stays as it was.
    void set(const QVariant& value, double time, View view);

    // Removes the keyframe at exactly that time; STRM_OutOfRange when there is none. The hero view's last one leaves
    // its value as the one that holds without keyframes.
    void delete_keyframe(double time, View view);

    // The path from the object's own set: {"transform", "corner0_x"}.
    QStringList get_name_components();

    // The keyframes of all views, by view and then by time.
    QVector<QPair<View, double>> get_keyframes();

    bool operator==(const Parameter& other) const;
    bool operator!=(const Parameter& other) const;
};

unsigned int qHash(const Parameter& parameter);

// A handle on a named node that holds parameters and further sets.
class ParameterSet : public PyHandle<Knob::ParameterSet>
{
public:
    ParameterSet();
    ParameterSet(const ParameterSet& other);
    ParameterSet(boost::shared_ptr<Knob::ParameterSet> set, boost::weak_ptr<STRM_ProjectManager> manager);
    ParameterSet& operator=(const ParameterSet& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~ParameterSet();

    // The path from the object's own set; empty for that one.
    QStringList get_name_components();
    // The values in the set itself, not those of its subsets.
    QVector<Parameter> get_parameters();
    // The sets in this one.
    QVector<ParameterSet> get_subsets();

    // The times at which anything in the set, or in the sets in it, has a keyframe; each once, by view and time.
    QVector<QPair<View, double>> get_keyframes();

    // For people, translated: "Edge width".
    QString get_display_name();
    // For scripts, a Python name: "edge_width".
    QString get_script_name();

    bool operator==(const ParameterSet& other) const;
    bool operator!=(const ParameterSet& other) const;
};

unsigned int qHash(const ParameterSet& set);

#endif
