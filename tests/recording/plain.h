// Every type of the interfaces as plain data and back: numbers and texts as they are, containers as lists, records as
// lists of their fields, views by id, handles by the number of their engine object, objects by their own number.
#pragma once

#include "engine_objects.h"
#include "recorder.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QPointF>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <algorithm>
#include <boost/optional.hpp>
#include <fundo/colour.h>
#include <fundo/lum_matrix33.h>
#include <fundo/qt_version.h>
#include <iterator>
#include <knob/context.h>
#include <orrery/clip.h>
#include <orrery/color_parameters.h>
#include <orrery/layer_group.h>
#include <orrery/progress_watcher.h>
#include <orrery/project.h>
#include <orrery/render_operation.h>
#include <type_traits>

namespace recording {

template <class T, class = void>
struct Plain;

template <class T>
Value plain(const T& value)
{
    return Plain<std::decay_t<T>>::from(value);
}

// Without an answer: zero, nothing or empty, a null handle, no object.
template <class T>
T made(const Value& value)
{
    return Plain<T>::to(value);
}

inline double number(const Value& value)
{
    if (const auto* whole = value.as<long long>())
        return static_cast<double>(*whole);
    if (const auto* truth = value.as<bool>())
        return *truth;
    const auto* real = value.as<double>();
    return real ? *real : 0;
}

inline const List& list(const Value& value)
{
    static const List none;
    const auto* items = value.as<List>();
    return items ? *items : none;
}

inline Value item(const List& items, size_t place) { return place < items.size() ? items[place] : Value(); }

template <>
struct Plain<Value>
{
    static Value from(const Value& value) { return value; }
    static Value to(const Value& value) { return value; }
};

template <>
struct Plain<bool>
{
    static Value from(bool value) { return {value}; }
    static bool to(const Value& value) { return number(value) != 0; }
};

template <class T>
struct Plain<T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>>
{
    static Value from(T value) { return {static_cast<long long>(value)}; }
    static T to(const Value& value) { return static_cast<T>(static_cast<long long>(number(value))); }
};

template <class T>
struct Plain<T, std::enable_if_t<std::is_floating_point_v<T>>>
{
    static Value from(T value) { return {static_cast<double>(value)}; }
    static T to(const Value& value) { return static_cast<T>(number(value)); }
};

template <>
struct Plain<std::string>
{
    static Value from(const std::string& text) { return {text}; }
    static std::string to(const Value& value)
    {
        const auto* text = value.as<std::string>();
        return text ? *text : std::string();
    }
};

template <>
struct Plain<const char*>
{
    static Value from(const char* value) { return value ? Value{std::string(value)} : Value(); }
};

// A null string is noted as None: the empty texts of the interfaces are not null.
template <>
struct Plain<QString>
{
    static Value from(const QString& value)
    {
        return value.isNull() ? Value() : Value{Fundo::qt::toStdString(value.toUtf8())};
    }
    static QString to(const Value& value)
    {
        return value.isNone() ? QString() : QString::fromStdString(made<std::string>(value));
    }
};

template <>
struct Plain<QByteArray>
{
    static Value from(const QByteArray& bytes) { return {Fundo::qt::toStdString(bytes)}; }
    static QByteArray to(const Value& value) { return QByteArray::fromStdString(made<std::string>(value)); }
};

template <class C>
struct Plain<C, std::void_t<decltype(std::declval<C&>().push_back(std::declval<typename C::value_type>()))>>
{
    static Value from(const C& values)
    {
        List items;
        for (const auto& value : values)
            items.push_back(plain(value));
        return {items};
    }
    static C to(const Value& value)
    {
        C values;
        for (const Value& item : list(value))
            values.push_back(made<typename C::value_type>(item));
        return values;
    }
};

// A table is a list of its entries, in its own order.
template <class C>
struct Plain<C, std::void_t<typename C::key_type, typename C::mapped_type>>
{
    static Value from(const C& entries)
    {
        List items;
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            items.push_back({List{plain(entry.key()), plain(entry.value())}});
        return {items};
    }
    static C to(const Value& value)
    {
        C entries;
        for (const Value& entry : list(value))
            entries.insert(made<typename C::key_type>(item(list(entry), 0)),
                           made<typename C::mapped_type>(item(list(entry), 1)));
        return entries;
    }
};

// A record is a list of its fields, given as what reads each, in the order of its constructor.
template <class Record, auto... fields>
struct PlainRecord
{
    static Value from(const Record& record)
    {
        const Silence silence;
        return {List{plain(std::invoke(fields, record))...}};
    }
    static Record to(const Value& value)
    {
        size_t place = 0;
        const auto next = [&] { return item(list(value), place++); };
        return Record{made<std::decay_t<std::invoke_result_t<decltype(fields), const Record&>>>(next())...};
    }
};

template <class A, class B>
struct Plain<QPair<A, B>> : PlainRecord<QPair<A, B>, &QPair<A, B>::first, &QPair<A, B>::second>
{};

template <>
struct Plain<QPointF> : PlainRecord<QPointF, &QPointF::x, &QPointF::y>
{};

template <class T>
struct Plain<Fundo::Colour3<T>>
    : PlainRecord<Fundo::Colour3<T>, &Fundo::Colour3<T>::red, &Fundo::Colour3<T>::green, &Fundo::Colour3<T>::blue>
{};

template <>
struct Plain<Knob::Context>
    : PlainRecord<Knob::Context, &Knob::Context::time, &Knob::Context::viewId, &Knob::Context::flags>
{};

template <>
struct Plain<ViewInfo> : PlainRecord<ViewInfo, &ViewInfo::get_name, &ViewInfo::get_abbr, &ViewInfo::get_color>
{};

template <>
struct Plain<StreamInfo>
    : PlainRecord<StreamInfo, &StreamInfo::get_path, &StreamInfo::get_prefix, &StreamInfo::get_suffix,
                  &StreamInfo::get_start_frame, &StreamInfo::get_end_frame, &StreamInfo::get_index_width>
{};

template <>
struct Plain<BezierControlPointData>
    : PlainRecord<BezierControlPointData, &BezierControlPointData::get_active, &BezierControlPointData::get_corner,
                  &BezierControlPointData::get_x, &BezierControlPointData::get_y,
                  &BezierControlPointData::get_edge_width, &BezierControlPointData::get_edge_angle_ratio,
                  &BezierControlPointData::get_handle_offset_backward,
                  &BezierControlPointData::get_handle_offset_forward>
{};

template <>
struct Plain<XControlPointData>
    : PlainRecord<XControlPointData, &XControlPointData::get_active, &XControlPointData::get_corner,
                  &XControlPointData::get_x, &XControlPointData::get_y, &XControlPointData::get_weight,
                  &XControlPointData::get_edge_width, &XControlPointData::get_edge_angle_ratio>
{};

template <class T>
struct Plain<boost::optional<T>>
{
    static Value from(const boost::optional<T>& value) { return value ? Value{List{plain(*value)}} : Value(); }
    static boost::optional<T> to(const Value& value)
    {
        return value.isNone() ? boost::optional<T>() : made<T>(item(list(value), 0));
    }
};

// Noted with the name of its type; answered by a plain value, or by (the name of a registered type, an integer).
template <>
struct Plain<QVariant>
{
    static Value from(const QVariant& variant);
    static QVariant to(const Value& value);
};

template <>
struct Plain<Lum_Matrix33>
{
    static Value from(const Lum_Matrix33& matrix)
    {
        return plain(std::vector<double>(std::begin(matrix.values), std::end(matrix.values)));
    }
    static Lum_Matrix33 to(const Value& value)
    {
        Lum_Matrix33 matrix = Lum_Matrix33::identity();
        const auto values = made<std::vector<double>>(value);
        std::copy(values.begin(), values.end(), matrix.values);
        return matrix;
    }
};

template <>
struct Plain<View>
{
    static Value from(const View& view)
    {
        const Silence silence;
        return plain(static_cast<int>(view.get_id()));
    }
    static View to(const Value& value) { return View(made<int>(value)); }
};

template <>
struct Plain<UndoGroup>
{
    static UndoGroup to(const Value& value)
    {
        return UndoGroup(boost::make_shared<UndoGroupData>(UndoGroupData{made<int>(value)}));
    }
};

// All handles have the same project.
template <>
struct Plain<boost::weak_ptr<STRM_ProjectManager>>
{
    static boost::weak_ptr<STRM_ProjectManager> to(const Value&) { return manager(); }
};

template <>
struct Plain<STRM_ProjectManager*>
{
    static Value from(STRM_ProjectManager* one) { return {one && one == manager().lock().get()}; }
};

template <class T>
struct Plain<boost::shared_ptr<T>>
{
    static Value from(const boost::shared_ptr<T>& object) { return object ? plain(numberOf(*object)) : Value(); }
    static boost::shared_ptr<Stratum::Contour> to(const Value& value) { return engineContour(made<int>(value), 1); }
};

inline boost::shared_ptr<STRM_Layer> behind(const Layer*, int number) { return engineLayer(number); }
inline boost::shared_ptr<Stratum::LayerGroup> behind(const LayerGroup*, int number) { return engineGroup(number); }
inline boost::shared_ptr<Stratum::Contour> behind(const BezierContour*, int number) { return engineContour(number, 1); }
inline boost::shared_ptr<Stratum::Contour> behind(const XSplineContour*, int number)
{
    return engineContour(number, 0);
}
inline boost::shared_ptr<Stratum::ControlPoint> behind(const BezierControlPoint*, int number)
{
    return enginePoint(number, 101, 1);
}
inline boost::shared_ptr<Stratum::ControlPoint> behind(const XControlPoint*, int number)
{
    return enginePoint(number, 100, 0);
}
inline boost::shared_ptr<Knob::ParameterSet> behind(const PyHandle<Knob::ParameterSet>*, int number)
{
    return engineParameter(number);
}

// A null handle is 0.
template <class Handle>
struct Plain<Handle, std::void_t<decltype(std::declval<Handle>().handledObject())>>
{
    static Value from(const Handle& handle)
    {
        const Silence silence;
        const auto object = handle.handledObject();
        return plain(object ? numberOf(*object) : 0);
    }
    static Handle to(const Value& value)
    {
        const int number = made<int>(value);
        return number ? Handle(behind(static_cast<Handle*>(nullptr), number), manager()) : Handle();
    }
};

// An object that the library did not make is shown by its name.
template <class T>
struct Plain<T, std::enable_if_t<std::is_base_of_v<QObject, T>>>
{
    static Value from(const T& object)
    {
        const long number = numberOf(&object);
        return number ? plain(number) : plain(object.objectName());
    }
};

template <>
struct Plain<RenderOperation>
{
    static Value from(const RenderOperation& operation) { return plain(numberOf(&operation)); }
};

template <class T>
struct Plain<T*, std::enable_if_t<std::is_class_v<T>>>
{
    static Value from(const T* object) { return object ? plain(*object) : Value(); }
    static T* to(const Value& value) { return static_cast<T*>(objectOf(made<long>(value))); }
};

} // namespace recording
