// How each kind of parameter is converted from and to a variant.
#include "parameter_values.h"

#include <QPoint>
#include <QPointF>
#include <engine/handles/access.h>
#include <fundo/qt_version.h>

namespace orrery {

namespace {

bool isInteger(const QVariant& variant)
{
    switch (variant.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

bool isNumber(const QVariant& variant)
{
    return isInteger(variant) || variant.userType() == QMetaType::Double || variant.userType() == QMetaType::Float;
}

bool isPair(const QVariant& variant)
{
    if (variant.userType() != QMetaType::QVariantList)
        return false;
    const QVariantList items = variant.toList();
    return items.size() == 2 && isNumber(items[0]) && isNumber(items[1]);
}

[[noreturn]] void refuse(const Knob::Description& description, const QVariant& variant, const char* wanted)
{
    const char* const type = variant.isValid() ? variant.typeName() : "nothing";
    raise<STRM_BadArgument>(
        QString::fromLatin1("%1 takes %2, not %3")
            .arg(QString::fromLatin1(description.name), QString::fromLatin1(wanted), QString::fromLatin1(type)));
}

} // namespace

QVariant toVariant(const Knob::Description& description, const Knob::Value& value)
{
    switch (description.kind) {
    case Knob::Kind::Flag:
        return QVariant(value.x != 0);
    case Knob::Kind::Point:
        return QVariant(QVariantList{value.x, value.y});
    case Knob::Kind::Enumeration: {
        const int number = static_cast<int>(value.x);
        return QVariant(Fundo::qt::registerIntegerMetaType(description.enumeration), &number);
    }
    case Knob::Kind::Number:
        break;
    }
    return QVariant(value.x);
}

Knob::Value fromVariant(const Knob::Description& description, const QVariant& variant)
{
    switch (description.kind) {
    case Knob::Kind::Flag:
        if (variant.userType() != QMetaType::Bool && !isInteger(variant))
            refuse(description, variant, "a bool");
        return {variant.userType() == QMetaType::Bool ? double(variant.toBool()) : variant.toDouble(), 0};
    case Knob::Kind::Point:
        if (isPair(variant))
            return {variant.toList().at(0).toDouble(), variant.toList().at(1).toDouble()};
        if (variant.userType() != QMetaType::QPointF && variant.userType() != QMetaType::QPoint)
            refuse(description, variant, "two numbers");
        return {variant.toPointF().x(), variant.toPointF().y()};
    case Knob::Kind::Enumeration:
        if (variant.userType() == Fundo::qt::registerIntegerMetaType(description.enumeration))
            return {double(*static_cast<const int*>(variant.constData())), 0};
        if (!isInteger(variant))
            refuse(description, variant, "an integer");
        return {variant.toDouble(), 0};
    case Knob::Kind::Number:
        break;
    }
    if (!isNumber(variant))
        refuse(description, variant, "a number");
    return {variant.toDouble(), 0};
}

} // namespace orrery
