// The measured operations bound by SWIG, with its built-in types and threads.
%module with_swig

%{
#include "conversions.h"

#include <orrery/clip.h>
#include <orrery/project.h>
%}

%exception {
    try {
        $action
    } catch (...) {
        calls::raiseCaughtException();
        SWIG_fail;
    }
}

%typemap(in) QString { $1 = calls::textFromPython($input); }
%typemap(in) const QString& (QString text) {
    text = calls::textFromPython($input);
    $1 = &text;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_UNISTRING) QString, const QString& { $1 = calls::isText($input); }
%typemap(out) QString { $result = calls::textToPython($1); }

// A view is also given by its number.
%typemap(in) View (void* given = nullptr) {
    if (PyInt_Check($input)) {
        $1 = View(static_cast<int>(PyInt_AS_LONG($input)));
    } else {
        const int outcome = SWIG_ConvertPtr($input, &given, $descriptor(View*), 0);
        if (!SWIG_IsOK(outcome) || !given)
            SWIG_exception_fail(SWIG_ArgError(outcome), "a View is expected");
        $1 = *static_cast<View*>(given);
    }
}

%typemap(in) const QVector<BezierControlPointData>& (QVector<BezierControlPointData> records) {
    PyObject* const sequence = PySequence_Fast($input, "a sequence of points is expected");
    if (!sequence)
        SWIG_fail;
    records.reserve(static_cast<int>(PySequence_Fast_GET_SIZE(sequence)));
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(sequence); ++i) {
        void* item = nullptr;
        const int outcome = SWIG_ConvertPtr(PySequence_Fast_GET_ITEM(sequence, i), &item,
                                            $descriptor(BezierControlPointData*), 0);
        if (!SWIG_IsOK(outcome) || !item) {
            Py_DECREF(sequence);
            SWIG_exception_fail(SWIG_ArgError(outcome), "a BezierControlPointData is expected");
        }
        records.append(*static_cast<BezierControlPointData*>(item));
    }
    Py_DECREF(sequence);
    $1 = &records;
}

// The form in which an attribute that is a value comes.
%typemap(out) QVector<Layer>* {
    $result = PyList_New($1->size());
    for (int i = 0; i < $1->size(); ++i)
        PyList_SET_ITEM($result, i, SWIG_NewPointerObj(new Layer($1->at(i)), $descriptor(Layer*), SWIG_POINTER_OWN));
    delete $1;
}

// For all at once, operators would be given keywords too.
%feature("kwargs") Clip::add_stream;
%feature("kwargs") Layer::add_bezier_contour;
%feature("kwargs") ViewInfo::ViewInfo;
%feature("kwargs") BezierControlPointData::BezierControlPointData;

%feature("python:slot", "nb_nonzero", functype = "inquiry") Layer::__bool__;
%feature("python:slot", "tp_hash", functype = "hashfunc") View::__hash__;

%include <attribute.i>
%attribute(View, unsigned int, id, get_id);
%attributestring(ViewInfo, QString, name, get_name, set_name);
%attribute(Clip, float, frame_rate, get_frame_rate, set_frame_rate);
%attribute(Layer, int, z_order, get_z_order);
%attributeval(Project, QVector<Layer>, layers, get_layers);

%nodefaultctor;

struct View
{
    View(int id);
    unsigned int get_id() const;
    bool operator==(const View& other) const;
    bool operator<(const View& other) const;
    %extend {
        long __hash__() { return qHash(*$self); }
    }
};

struct ViewInfo
{
    %extend {
        ViewInfo(const QString& name, const QString& abbr, float red = 0, float green = 0, float blue = 0)
        {
            return new ViewInfo(name, abbr, Fundo::Colour3<float>(red, green, blue));
        }
    }
    QString get_name() const;
    void set_name(const QString& name);
};

struct BezierControlPointData
{
    %extend {
        BezierControlPointData(float x = 0, float y = 0, float edge_width = 0, float edge_angle_ratio = 0)
        {
            return new BezierControlPointData(boost::none, boost::none, x, y, edge_width, edge_angle_ratio);
        }
    }
};

struct Clip
{
    %extend {
        Clip(const QString& location) { return new Clip(location, "NewClip", false, 0, 0, 0, nullptr); }
    }
    void add_stream(const QString& location, View view, unsigned int start_frame, unsigned int end_frame,
                    bool validate = false);
    void assign_project_view(View clip_view, View project_view);
    float get_frame_rate() const;
    void set_frame_rate(float rate);
};

class BezierContour
{};

struct Layer
{
    bool isNull() const;
    int get_z_order() const;
    BezierContour add_bezier_contour(float time, const QVector<BezierControlPointData>& points, View view = View());
    %extend {
        bool __bool__() { return !$self->isNull(); }
    }
};

struct Project
{
    %extend {
        Project(const QString& file) { return new Project(file, nullptr); }
    }
    QVector<Layer> get_layers();
};
