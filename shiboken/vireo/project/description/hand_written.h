// The manual of what the module itself makes of the library's classes, in the form of the platform's headers. Read for
// the reference, and compiled nowhere: these operations stand in the class files, or answer otherwise in Python.

class Project
{
public:
    // The layer at that place among all layers, bottom first; None past the end.
    boost::optional<Layer> layer(unsigned int index);
};

class Layer
{
public:
    // The layer's shapes, in the order in which they were added: a BezierContour or an XSplineContour each.
    QList<Contour> get_contours();

    // The group that holds the layer; None at the top of the project. Setting it puts the layer at the bottom of the
    // group, or of the project.
    boost::optional<LayerGroup> get_parent_group();
    void set_parent_group(LayerGroup* group);
};

class BezierContour
{
public:
    // The point at that place in the contour's order; None past the end.
    boost::optional<BezierControlPoint> control_point(unsigned int index);
};

class XSplineContour
{
public:
    // The point at that place in the contour's order; None past the end.
    boost::optional<XControlPoint> control_point(unsigned int index);
};

class BezierControlPoint
{
public:
    // The point that this one follows: a BezierControlPoint or an XControlPoint, None where there is none.
    boost::optional<ControlPoint> get_master_point();

    // As setPointConstraint().
    void set_master_point(boost::optional<ControlPoint> master, float time, View view, bool lock_tangents);
};

class XControlPoint
{
public:
    // The point that this one follows: a BezierControlPoint or an XControlPoint, None where there is none.
    boost::optional<ControlPoint> get_master_point();

    // As setPointConstraint().
    void set_master_point(boost::optional<ControlPoint> master, float time, View view);
};

class ParameterSet
{
public:
    // What a name leads to: a subset, else a parameter; several names in a sequence lead from set to set. KeyError
    // where they lead nowhere.
    ParameterOrSet __getitem__(NameOrNames names);
};

class UndoGroup
{
public:
    // Begins the group. `with` binds None to the name behind `as`: keep the group in a name of its own. RuntimeError
    // for one that is open.
    void __enter__();

    // Commits the group; after an exception in the block takes its changes back, and lets the exception go on.
    void __exit__(object kind, object exception, object traceback);
};
