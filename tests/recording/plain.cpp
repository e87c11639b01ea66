// Variants as plain data.
#include "plain.h"

#include <QMetaType>

namespace recording {

namespace {

Value content(const QVariant& variant)
{
    switch (variant.userType()) {
    case QMetaType::Bool:
        return plain(variant.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
        return plain(variant.toLongLong());
    case QMetaType::Double:
        return plain(variant.toDouble());
    case QMetaType::QString:
        return plain(variant.toString());
    case QMetaType::QStringList:
        return plain(variant.toStringList());
    case QMetaType::QVariantList:
        return plain(variant.toList());
    case QMetaType::QVariantMap:
        return plain(variant.toMap());
    default:
        return {};
    }
}

} // namespace

Value Plain<QVariant>::from(const QVariant& variant) { return {List{plain(variant.typeName()), content(variant)}}; }

QVariant Plain<QVariant>::to(const Value& value)
{
    if (const auto* truth = value.as<bool>())
        return *truth;
    if (const auto* whole = value.as<long long>())
        return static_cast<int>(*whole);
    if (const auto* real = value.as<double>())
        return *real;
    if (value.as<std::string>())
        return made<QString>(value);
    const List& parts = list(value);
    if (parts.size() != 2)
        return {};
    const int number = made<int>(parts[1]);
    return QVariant(QMetaType::type(made<std::string>(parts[0]).c_str()), &number);
}

} // namespace recording
