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
#include <knob/context.h>
#include <orrery/clip.h>
#include <orrery/layer_group.h>
#include <orrery/project.h>
#include <type_traits>

namespace recording {

template <class T, class = void>
struct Plain;

template <class T>
Value plain(const T& value)
{
    return Plain<std::decay_t<T>>::from(value);
}

// Without an answer: what the type starts with, a null handle, no object.
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

// A null string is noted as None: the empty texts of the interfaces are not null.
template <>
struct Plain<QString>
{
    static Value from(const QString& value) { return value.isNull() ? Value() : Value{value.toStdString()}; }
    static QString to(const Value& value)
    {
        const auto* text = value.as<std::string>();
        return text ? QString::fromStdString(*text) : QString();
    }
};

template <>
struct Plain<QByteArray>
{
    static Value from(const QByteArray& bytes) { return {bytes.toStdString()}; }
    static QByteArray to(const Value& value)
    {
        const auto* text = value.as<std::string>();
        return text ? QByteArray::fromStdString(*text) : QByteArray();
    }
};

template <>
struct Plain<const char*>
{
    static Value from(const char* value) { return value ? Value{std::string(value)} : Value(); }
};

template <class Container>
struct PlainSequence
{
    static Value from(const Container& values)
    {
        List items;
        for (const auto& value : values)
            items.push_back(plain(value));
        return {items};
    }
    static Container to(const Value& value)
    {
        Container values;
        for (const Value& item : list(value))
            values.append(made<typename Container::value_type>(item));
        return values;
    }
};

template <class T>
struct Plain<QVector<T>> : PlainSequence<QVector<T>>
{};

template <class T>
struct Plain<QList<T>> : PlainSequence<QList<T>>
{};

template <>
struct Plain<QStringList> : PlainSequence<QStringList>
{};

// A table is a list of its entries, in its own order.
template <class Container>
struct PlainTable
{
    static Value from(const Container& entries)
    {
        List items;
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            items.push_back({List{plain(entry.key()), plain(entry.value())}});
        return {items};
    }
    static Container to(const Value& value)
    {
        Container entries;
        for (const Value& item : list(value))
            entries.insert(made<typename Container::key_type>(list(item).at(0)),
                           made<typename Container::mapped_type>(list(item).at(1)));
        return entries;
    }
};

template <class K, class V>
struct Plain<QHash<K, V>> : PlainTable<QHash<K, V>>
{};

template <class K, class V>
struct Plain<QMap<K, V>> : PlainTable<QMap<K, V>>
{};

template <class A, class B>
struct Plain<QPair<A, B>>
{
    static Value from(const QPair<A, B>& pair) { return {List{plain(pair.first), plain(pair.second)}}; }
    static QPair<A, B> to(const Value& value)
    {
        const List& items = list(value);
        return items.empty() ? QPair<A, B>() : QPair<A, B>(made<A>(items.at(0)), made<B>(items.at(1)));
    }
};

template <class T>
struct Plain<boost::optional<T>>
{
    static Value from(const boost::optional<T>& value) { return value ? Value{List{plain(*value)}} : Value(); }
    static boost::optional<T> to(const Value& value)
    {
        return value.isNone() ? boost::optional<T>() : made<T>(list(value).at(0));
    }
};

// Noted with the name of its type; answered by a plain value, or by (the name of a registered type, an integer).
template <>
struct Plain<QVariant>
{
    static Value from(const QVariant& variant)
    {
        return {List{plain<const char*>(variant.typeName()), content(variant)}};
    }
    static QVariant to(const Value& value);

private:
    static Value content(const QVariant& variant);
};

template <>
struct Plain<QPointF>
{
    static Value from(const QPointF& point) { return {List{plain(point.x()), plain(point.y())}}; }
    static QPointF to(const Value& value) { return {number(list(value).at(0)), number(list(value).at(1))}; }
};

template <>
struct Plain<Fundo::Colour3<float>>
{
    static Value from(const Fundo::Colour3<float>& c) { return {List{plain(c.red), plain(c.green), plain(c.blue)}}; }
    static Fundo::Colour3<float> to(const Value& value)
    {
        const auto parts = made<QVector<float>>(value);
        return parts.isEmpty() ? Fundo::Colour3<float>(0, 0, 0) : Fundo::Colour3<float>(parts[0], parts[1], parts[2]);
    }
};

template <>
struct Plain<Lum_Matrix33>
{
    static Value from(const Lum_Matrix33& matrix)
    {
        List items;
        for (const double value : matrix.values)
            items.push_back(plain(value));
        return {items};
    }
    static Lum_Matrix33 to(const Value& value)
    {
        Lum_Matrix33 matrix = Lum_Matrix33::identity();
        const auto values = made<QVector<double>>(value);
        std::copy(values.begin(), values.end(), matrix.values);
        return matrix;
    }
};

template <>
struct Plain<Knob::Context>
{
    static Value from(const Knob::Context& context)
    {
        return {List{plain(context.time), plain(context.viewId), plain(context.flags)}};
    }
    static Knob::Context to(const Value& value)
    {
        return {number(list(value).at(0)), made<int>(list(value).at(1)), made<int>(list(value).at(2))};
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
struct Plain<ViewInfo>
{
    static Value from(const ViewInfo& info);
    static ViewInfo to(const Value& value);
};

template <>
struct Plain<StreamInfo>
{
    static Value from(const StreamInfo& info);
    static StreamInfo to(const Value& value);
};

template <>
struct Plain<BezierControlPointData>
{
    static Value from(const BezierControlPointData& data);
    static BezierControlPointData to(const Value& value);
};

template <>
struct Plain<XControlPointData>
{
    static Value from(const XControlPointData& data);
    static XControlPointData to(const Value& value);
};

template <>
struct Plain<UndoGroup>
{
    static UndoGroup to(const Value& value);
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
inline boost::shared_ptr<Knob::ParameterSet> behind(const Parameter*, int number) { return engineParameter(number); }
inline boost::shared_ptr<Knob::ParameterSet> behind(const ParameterSet*, int number) { return engineParameter(number); }

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

template <>
struct Plain<boost::shared_ptr<Stratum::Contour>>
{
    static Value from(const boost::shared_ptr<Stratum::Contour>& contour) { return plain(numberOf(*contour)); }
    static boost::shared_ptr<Stratum::Contour> to(const Value& value) { return engineContour(made<int>(value), 1); }
};

template <class T>
struct Plain<T*, std::enable_if_t<std::is_base_of_v<QObject, T>>>
{
    static Value from(const T* object)
    {
        if (const long number = numberOf(object))
            return plain(number);
        return object ? plain(object->objectName()) : Value();
    }
    static T* to(const Value& value) { return static_cast<T*>(objectOf(made<long>(value))); }
};

template <>
struct Plain<RenderOperation*>
{
    static Value from(const RenderOperation* operation) { return operation ? plain(numberOf(operation)) : Value(); }
};

template <>
struct Plain<LayerGroup*>
{
    static Value from(const LayerGroup* group) { return group ? plain(*group) : Value(); }
};

} // namespace recording
