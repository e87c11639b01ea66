// The measured operations bound by pybind11.
#include "conversions.h"

#include <orrery/clip.h>
#include <orrery/project.h>
#include <pybind11/operators.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

namespace pybind11 {
namespace detail {

template <>
struct type_caster<QString>
{
    PYBIND11_TYPE_CASTER(QString, _("unicode"));

    bool load(handle source, bool)
    {
        if (!calls::isText(source.ptr()))
            return false;
        value = calls::textFromPython(source.ptr());
        return true;
    }
    static handle cast(const QString& text, return_value_policy, handle) { return calls::textToPython(text); }
};

template <class T>
struct type_caster<QVector<T>> : list_caster<QVector<T>, T>
{};

} // namespace detail
} // namespace pybind11

namespace py = pybind11;
using unlocked = py::call_guard<py::gil_scoped_release>;

namespace {

// Properties and constructors run their library call through here: a guard around them would cover conversions too.
template <class F>
auto released(F call)
{
    const py::gil_scoped_release release;
    return call();
}

void bindValues(py::module_& module)
{
    py::class_<View>(module, "View")
        .def(py::init<int>(), unlocked())
        .def_property_readonly("id", [](const View& view) { return released([&] { return view.get_id(); }); })
        .def(py::self == py::self)
        .def(py::self < py::self)
        .def("__hash__", [](const View& view) { return qHash(view); });
    py::implicitly_convertible<int, View>();

    py::class_<ViewInfo>(module, "ViewInfo")
        .def(py::init([](const QString& name, const QString& abbr, float red, float green, float blue) {
                 return released([&] { return new ViewInfo(name, abbr, Fundo::Colour3<float>(red, green, blue)); });
             }),
             py::arg("name"), py::arg("abbr"), py::arg("red") = 0.f, py::arg("green") = 0.f, py::arg("blue") = 0.f)
        .def_property(
            "name", [](const ViewInfo& info) { return released([&] { return info.get_name(); }); },
            [](ViewInfo& info, const QString& name) { released([&] { info.set_name(name); }); });

    py::class_<BezierControlPointData>(module, "BezierControlPointData")
        .def(py::init([](float x, float y, float width, float ratio) {
                 return released(
                     [&] { return new BezierControlPointData(boost::none, boost::none, x, y, width, ratio); });
             }),
             py::arg("x") = 0.f, py::arg("y") = 0.f, py::arg("edge_width") = 0.f, py::arg("edge_angle_ratio") = 0.f);
}

void bindModel(py::module_& module)
{
    py::class_<Clip>(module, "Clip")
        .def(py::init([](const QString& location) {
            return released([&] { return new Clip(location, "NewClip", false, 0, 0, 0, nullptr); });
        }))
        .def("add_stream", &Clip::add_stream, unlocked(), py::arg("location"), py::arg("view"), py::arg("start_frame"),
             py::arg("end_frame"), py::arg("validate") = false)
        .def("assign_project_view", &Clip::assign_project_view, unlocked())
        .def_property(
            "frame_rate", [](const Clip& clip) { return released([&] { return clip.get_frame_rate(); }); },
            [](Clip& clip, float rate) { released([&] { clip.set_frame_rate(rate); }); });

    py::class_<BezierContour>(module, "BezierContour");
    py::class_<Layer>(module, "Layer")
        .def("isNull", &Layer::isNull, unlocked())
        .def("__nonzero__", [](const Layer& layer) { return released([&] { return !layer.isNull(); }); })
        .def_property_readonly("z_order",
                               [](const Layer& layer) { return released([&] { return layer.get_z_order(); }); })
        .def("add_bezier_contour", &Layer::add_bezier_contour, unlocked(), py::arg("time"), py::arg("points"),
             py::arg("view") = View());

    py::class_<Project>(module, "Project")
        .def(py::init([](const QString& file) { return released([&] { return new Project(file, nullptr); }); }))
        .def_property_readonly("layers",
                               [](Project& project) { return released([&] { return project.get_layers(); }); });
}

void translate(std::exception_ptr caught)
{
    try {
        std::rethrow_exception(caught);
    } catch (const py::builtin_exception&) {
        throw;
    } catch (const py::error_already_set&) {
        throw;
    } catch (const std::exception&) {
        calls::raiseCaughtException();
    }
}

} // namespace

PYBIND11_MODULE(with_pybind11, module)
{
    bindValues(module);
    bindModel(module);
    py::register_exception_translator(&translate);
}
