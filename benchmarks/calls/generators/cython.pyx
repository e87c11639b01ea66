# cython: language_level=2
# distutils: language=c++
"""The measured operations bound by Cython."""

from cpython.object cimport PyObject, Py_EQ, Py_LT
from libcpp cimport bool as cbool


cdef extern from "conversions.h" namespace "calls":
    cbool isText(object)
    QString textFromPython(object)
    object textToPython(const QString&)
    void raiseCaughtException()

cdef extern from "<QString>" nogil:
    cppclass QString:
        pass

cdef extern from "<QVector>" nogil:
    cppclass QVector[T]:
        void reserve(int)
        void append(const T&)
        int size()
        T& operator[](int)

cdef extern from "<orrery/view_info.h>" nogil:
    cppclass CColour "Fundo::Colour3<float>":
        CColour(float, float, float)
    cppclass CViewInfo "ViewInfo":
        CViewInfo(const QString&, const QString&, const CColour&) except +raiseCaughtException
        QString get_name() except +raiseCaughtException
        void set_name(const QString&) except +raiseCaughtException

cdef extern from "<orrery/view.h>" nogil:
    cppclass CView "View":
        CView()
        CView(int)
        unsigned int get_id() except +raiseCaughtException
        cbool operator==(const CView&)
        cbool operator<(const CView&)
    unsigned int qHash(const CView&)

cdef extern from "<orrery/control_point_data.h>" nogil:
    cppclass OptionalBool "boost::optional<bool>":
        OptionalBool()
    cppclass OptionalFloat "boost::optional<float>":
        OptionalFloat()
        OptionalFloat(float)
    cppclass CRecord "BezierControlPointData":
        CRecord()
        CRecord(OptionalBool, OptionalBool, OptionalFloat, OptionalFloat, OptionalFloat, OptionalFloat) except +raiseCaughtException

cdef extern from "<orrery/project.h>" nogil:
    cppclass QObject:
        pass
    cppclass CContour "BezierContour":
        CContour()
        CContour(const CContour&)
    cppclass CLayer "Layer":
        CLayer(const CLayer&)
        cbool isNull() except +raiseCaughtException
        int get_z_order() except +raiseCaughtException
        CContour add_bezier_contour(float, const QVector[CRecord]&, CView) except +raiseCaughtException
    cppclass CProject "Project":
        CProject(QString, QObject*) except +raiseCaughtException
        QVector[CLayer] get_layers() except +raiseCaughtException

cdef extern from "<orrery/clip.h>" nogil:
    cppclass CClip "Clip":
        CClip(const QString&, const QString&, cbool, unsigned int, unsigned int, unsigned int, QObject*) except +raiseCaughtException
        void add_stream(const QString&, CView, unsigned int, unsigned int, cbool) except +raiseCaughtException
        void assign_project_view(CView, CView) except +raiseCaughtException
        float get_frame_rate() except +raiseCaughtException
        void set_frame_rate(float) except +raiseCaughtException


cdef QString text(object given) except *:
    if not isText(given):
        raise TypeError("a text is expected, not %r" % given)
    return textFromPython(given)


cdef class View:
    cdef CView* own

    def __cinit__(self, int id):
        with nogil:
            self.own = new CView(id)

    def __dealloc__(self):
        del self.own

    @property
    def id(self):
        cdef unsigned int id
        with nogil:
            id = self.own.get_id()
        return id

    def __richcmp__(View self, View other not None, int operation):
        if operation == Py_EQ:
            return self.own[0] == other.own[0]
        if operation == Py_LT:
            return self.own[0] < other.own[0]
        raise NotImplementedError("operator not implemented.")

    def __hash__(self):
        return qHash(self.own[0])


cdef CView view_of(object given) except *:
    if isinstance(given, View):
        return (<View>given).own[0]
    if isinstance(given, int):
        return CView(<int>given)
    raise TypeError("a view is expected, not %r" % given)


cdef class ViewInfo:
    cdef CViewInfo* own

    def __cinit__(self, name, abbr, float red=0, float green=0, float blue=0):
        cdef QString its_name = text(name)
        cdef QString its_abbr = text(abbr)
        with nogil:
            self.own = new CViewInfo(its_name, its_abbr, CColour(red, green, blue))

    def __dealloc__(self):
        del self.own

    @property
    def name(self):
        cdef QString name
        with nogil:
            name = self.own.get_name()
        return textToPython(name)

    @name.setter
    def name(self, given):
        cdef QString name = text(given)
        with nogil:
            self.own.set_name(name)


cdef class BezierControlPointData:
    cdef CRecord* own

    def __cinit__(self, float x=0, float y=0, float edge_width=0, float edge_angle_ratio=0):
        with nogil:
            self.own = new CRecord(OptionalBool(), OptionalBool(), OptionalFloat(x), OptionalFloat(y),
                                   OptionalFloat(edge_width), OptionalFloat(edge_angle_ratio))

    def __dealloc__(self):
        del self.own


cdef class Clip:
    cdef CClip* own

    def __cinit__(self, location):
        cdef QString place = text(location)
        cdef QString name = text("NewClip")
        with nogil:
            self.own = new CClip(place, name, False, 0, 0, 0, NULL)

    def __dealloc__(self):
        del self.own

    def add_stream(self, location, view, unsigned int start_frame, unsigned int end_frame, cbool validate=False):
        cdef QString place = text(location)
        cdef CView stream = view_of(view)
        with nogil:
            self.own.add_stream(place, stream, start_frame, end_frame, validate)

    def assign_project_view(self, clip_view, project_view):
        cdef CView clip = view_of(clip_view)
        cdef CView project = view_of(project_view)
        with nogil:
            self.own.assign_project_view(clip, project)

    @property
    def frame_rate(self):
        cdef float rate
        with nogil:
            rate = self.own.get_frame_rate()
        return rate

    @frame_rate.setter
    def frame_rate(self, float rate):
        with nogil:
            self.own.set_frame_rate(rate)


cdef class BezierContour:
    cdef CContour* own

    def __dealloc__(self):
        del self.own


cdef class Layer:
    cdef CLayer* own

    def __dealloc__(self):
        del self.own

    def isNull(self):
        cdef cbool null
        with nogil:
            null = self.own.isNull()
        return null

    def __nonzero__(self):
        cdef cbool null
        with nogil:
            null = self.own.isNull()
        return not null

    @property
    def z_order(self):
        cdef int order
        with nogil:
            order = self.own.get_z_order()
        return order

    def add_bezier_contour(self, float time, points, view=None):
        cdef CView its_view
        if view is not None:
            its_view = view_of(view)
        cdef QVector[CRecord] records
        records.reserve(len(points))
        cdef BezierControlPointData point
        for point in points:
            records.append(point.own[0])
        cdef CContour* contour
        with nogil:
            contour = new CContour(self.own.add_bezier_contour(time, records, its_view))
        cdef BezierContour result = BezierContour.__new__(BezierContour)
        result.own = contour
        return result


cdef class Project:
    cdef CProject* own

    def __cinit__(self, file):
        cdef QString its_file = text(file)
        with nogil:
            self.own = new CProject(its_file, NULL)

    def __dealloc__(self):
        del self.own

    @property
    def layers(self):
        cdef QVector[CLayer] layers
        with nogil:
            layers = self.own.get_layers()
        cdef list result = []
        cdef Layer layer
        cdef int i
        for i in range(layers.size()):
            layer = Layer.__new__(Layer)
            layer.own = new CLayer(layers[i])
            result.append(layer)
        return result
