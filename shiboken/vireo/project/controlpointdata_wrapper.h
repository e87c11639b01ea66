// What the records of the two kinds of control points have in common: one table of fields for both, from which their
// properties and the parameters of their constructors follow.
#ifndef VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H
#define VIREO_PROJECT_CONTROLPOINTDATA_WRAPPER_H

#include "defaults.h"

namespace vireo {

// A field: `Unset` is its default where a record is made.
template <class Unset, class Rows>
struct Field
{
    const char* name;
    Rows property;
};

template <class Unset, std::size_t size, class Getter, class Setter>
constexpr auto field(const char (&name)[size], Getter getter, Setter setter)
{
    const auto rows = binding::property(name, getter, setter);
    return std::tuple(Field<Unset, decltype(binding::property(name, getter, setter))>{name, rows});
}

// The fields of either kind, in their order: those in the middle and at the end are what tells the kinds apart.
template <class Data, class Middle, class End>
constexpr auto recordFields(Middle middle, End end)
{
    using binding::operation;
    using namespace defaults;
    return std::tuple_cat(
        field<UnsetBool>("active", operation<&Data::get_active>, operation<&Data::set_active>),
        field<UnsetBool>("corner", operation<&Data::get_corner>, operation<&Data::set_corner>),
        field<UnsetFloat>("x", operation<&Data::get_x>, operation<&Data::set_x>),
        field<UnsetFloat>("y", operation<&Data::get_y>, operation<&Data::set_y>), middle,
        field<UnsetFloat>("edge_width", operation<&Data::get_edge_width>, operation<&Data::set_edge_width>),
        field<UnsetFloat>("edge_angle_ratio", operation<&Data::get_edge_angle_ratio>,
                          operation<&Data::set_edge_angle_ratio>),
        end);
}

template <class Data, class TWrapper, class... Unset, class... Rows>
constexpr auto recordMaking(const std::tuple<Field<Unset, Rows>...>& fields)
{
    using namespace binding;
    return std::apply(
        [](const auto&... field) {
            return constructors(
                Form::AtMost,
                signature(constructs<TWrapper, decltype(Unset::value())...>, optional<Unset>(field.name)...),
                testedFirst(signature(constructs<TWrapper, const Data&>)));
        },
        fields);
}

template <class Data, class TWrapper, const auto& fields>
binding::ClassTable recordTable()
{
    static constexpr auto making = recordMaking<Data, TWrapper>(fields);
    static constexpr auto members =
        std::apply([](const auto&... field) { return binding::memberTable(field.property...); }, fields);
    binding::ClassTable record = binding::valueClass<Data, TWrapper, making, members>();
    record.compare = &binding::ComparisonOf<Data, binding::Equal>::compare;
    return record;
}

} // namespace vireo

#endif
