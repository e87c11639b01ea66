// The recorded values: views, descriptions of views and streams, undo groups and the records of control points. They
// hold what they are given; reading a field is noted and can be answered otherwise.
#include "call.h"

#include <QMetaType>

using namespace recording;

struct UndoGroupData
{
    int number;
};

namespace recording {

namespace {

Value whole(const QVariant& variant) { return {static_cast<long long>(variant.toLongLong())}; }

Value text(const QVariant& variant) { return plain(variant.toString()); }

Value items(const QVariant& variant)
{
    List list;
    for (const QVariant& item : variant.toList())
        list.push_back(plain(item));
    return {list};
}

Value entries(const QVariant& variant)
{
    List list;
    const QVariantMap map = variant.toMap();
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        list.push_back({List{plain(entry.key()), plain(entry.value())}});
    return {list};
}

} // namespace

Value Plain<QVariant>::content(const QVariant& variant)
{
    switch (variant.userType()) {
    case QMetaType::Bool:
        return {variant.toBool()};
    case QMetaType::Int:
    case QMetaType::LongLong:
        return whole(variant);
    case QMetaType::Double:
        return {variant.toDouble()};
    case QMetaType::QString:
        return text(variant);
    case QMetaType::QStringList:
        return plain(variant.toStringList());
    case QMetaType::QVariantList:
        return items(variant);
    case QMetaType::QVariantMap:
        return entries(variant);
    default:
        return {};
    }
}

QVariant Plain<QVariant>::to(const Value& value)
{
    if (const auto* truth = value.as<bool>())
        return *truth;
    if (const auto* whole = value.as<long long>())
        return static_cast<int>(*whole);
    if (const auto* real = value.as<double>())
        return *real;
    if (const auto* text = value.as<std::string>())
        return QString::fromStdString(*text);
    const List& parts = list(value);
    if (parts.size() != 2)
        return {};
    const int number = made<int>(parts[1]);
    return QVariant(QMetaType::type(parts[0].as<std::string>()->c_str()), &number);
}

Value Plain<ViewInfo>::from(const ViewInfo& info)
{
    const Silence silence;
    return {List{plain(info.get_name()), plain(info.get_abbr()), plain(info.get_color())}};
}

ViewInfo Plain<ViewInfo>::to(const Value& value)
{
    if (value.isNone())
        return {};
    const List& fields = list(value);
    return {made<QString>(fields.at(0)), made<QString>(fields.at(1)), made<Fundo::Colour3<float>>(fields.at(2))};
}

Value Plain<StreamInfo>::from(const StreamInfo& info)
{
    const Silence silence;
    return {List{plain(info.get_path()), plain(info.get_prefix()), plain(info.get_suffix()),
                 plain(info.get_start_frame()), plain(info.get_end_frame()), plain(info.get_index_width())}};
}

StreamInfo Plain<StreamInfo>::to(const Value& value)
{
    if (value.isNone())
        return {QString(), QString(), QString(), 0, 0, 0};
    const List& fields = list(value);
    return {made<QString>(fields.at(0)),      made<QString>(fields.at(1)),      made<QString>(fields.at(2)),
            made<unsigned int>(fields.at(3)), made<unsigned int>(fields.at(4)), made<unsigned int>(fields.at(5))};
}

Value Plain<BezierControlPointData>::from(const BezierControlPointData& data)
{
    const Silence silence;
    return {List{plain(data.get_active()), plain(data.get_corner()), plain(data.get_x()), plain(data.get_y()),
                 plain(data.get_edge_width()), plain(data.get_edge_angle_ratio()),
                 plain(data.get_handle_offset_backward()), plain(data.get_handle_offset_forward())}};
}

BezierControlPointData Plain<BezierControlPointData>::to(const Value& value)
{
    if (value.isNone())
        return BezierControlPointData();
    const List& f = list(value);
    return BezierControlPointData(made<boost::optional<bool>>(f.at(0)), made<boost::optional<bool>>(f.at(1)),
                                  made<boost::optional<float>>(f.at(2)), made<boost::optional<float>>(f.at(3)),
                                  made<boost::optional<float>>(f.at(4)), made<boost::optional<float>>(f.at(5)),
                                  made<boost::optional<QPointF>>(f.at(6)), made<boost::optional<QPointF>>(f.at(7)));
}

Value Plain<XControlPointData>::from(const XControlPointData& data)
{
    const Silence silence;
    return {List{plain(data.get_active()), plain(data.get_corner()), plain(data.get_x()), plain(data.get_y()),
                 plain(data.get_weight()), plain(data.get_edge_width()), plain(data.get_edge_angle_ratio())}};
}

XControlPointData Plain<XControlPointData>::to(const Value& value)
{
    if (value.isNone())
        return XControlPointData();
    const List& f = list(value);
    return XControlPointData(made<boost::optional<bool>>(f.at(0)), made<boost::optional<bool>>(f.at(1)),
                             made<boost::optional<float>>(f.at(2)), made<boost::optional<float>>(f.at(3)),
                             made<boost::optional<float>>(f.at(4)), made<boost::optional<float>>(f.at(5)),
                             made<boost::optional<float>>(f.at(6)));
}

UndoGroup Plain<UndoGroup>::to(const Value& value)
{
    return UndoGroup(boost::make_shared<UndoGroupData>(UndoGroupData{made<int>(value)}));
}

} // namespace recording

View::~View() { destroyed("View"); }

unsigned int View::get_id() const { return answer(static_cast<unsigned int>(m_id), "View.get_id"); }

bool View::operator==(const View& other) const { return answer(m_id == other.m_id, "View.==", *this, other); }

bool View::operator<(const View& other) const { return answer(m_id < other.m_id, "View.<", *this, other); }

QString View::__repr__() const { return call("View.__repr__", *this); }

QString View::__str__() const { return call("View.__str__", *this); }

unsigned int qHash(const View& view)
{
    const unsigned int id = made<unsigned int>(plain(view));
    return answer(id, "View.qHash", view);
}

ViewInfo::ViewInfo() : m_color(0.25f, 0.5f, 0.75f)
{
    call("ViewInfo");
    begin(this, "ViewInfo");
}

ViewInfo::ViewInfo(const ViewInfo& other) : m_name(other.m_name), m_abbr(other.m_abbr), m_color(other.m_color)
{
    beginCopy(this, "ViewInfo");
}

ViewInfo::ViewInfo(const QString& name, const QString& abbr, const Fundo::Colour3<float>& color)
    : m_name(name), m_abbr(abbr), m_color(color)
{
    call("ViewInfo", name, abbr, color);
    begin(this, "ViewInfo");
}

ViewInfo::~ViewInfo() { end(this, "ViewInfo"); }

QString ViewInfo::get_name() const { return answer(m_name, "ViewInfo.get_name"); }

QString ViewInfo::get_abbr() const { return answer(m_abbr, "ViewInfo.get_abbr"); }

bool ViewInfo::operator==(const ViewInfo& other) const { return call("ViewInfo.==", *this, other); }

QString ViewInfo::__repr__() const { return call("ViewInfo.__repr__"); }

StreamInfo::StreamInfo(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
                       unsigned int end_frame, unsigned int index_width)
    : m_path(path), m_prefix(prefix), m_suffix(suffix), m_start_frame(start_frame), m_end_frame(end_frame),
      m_index_width(index_width)
{
    call("StreamInfo", path, prefix, suffix, start_frame, end_frame, index_width);
    begin(this, "StreamInfo");
}

StreamInfo::StreamInfo(const StreamInfo& other)
    : m_path(other.m_path), m_prefix(other.m_prefix), m_suffix(other.m_suffix), m_start_frame(other.m_start_frame),
      m_end_frame(other.m_end_frame), m_index_width(other.m_index_width)
{
    beginCopy(this, "StreamInfo");
}

StreamInfo& StreamInfo::operator=(const StreamInfo& other) = default;

StreamInfo::~StreamInfo() { end(this, "StreamInfo"); }

QString StreamInfo::get_path() const { return answer(m_path, "StreamInfo.get_path"); }

QString StreamInfo::get_prefix() const { return answer(m_prefix, "StreamInfo.get_prefix"); }

QString StreamInfo::get_suffix() const { return answer(m_suffix, "StreamInfo.get_suffix"); }

QString StreamInfo::__repr__() const { return call("StreamInfo.__repr__"); }

namespace {

int numberOf(const boost::shared_ptr<UndoGroupData>& data) { return data ? data->number : 0; }

} // namespace

UndoGroup::UndoGroup() { recording::begin(this, "UndoGroup"); }

UndoGroup::UndoGroup(const UndoGroup& other) : m_data(other.m_data) { beginCopy(this, "UndoGroup"); }

UndoGroup::UndoGroup(boost::shared_ptr<UndoGroupData> data) : m_data(data) { recording::begin(this, "UndoGroup"); }

UndoGroup& UndoGroup::operator=(const UndoGroup& other) = default;

UndoGroup::~UndoGroup() { end(this, "UndoGroup"); }

void UndoGroup::begin() { call("UndoGroup.begin", numberOf(m_data)); }

void UndoGroup::commit() { call("UndoGroup.commit", numberOf(m_data)); }

void UndoGroup::rollback() { call("UndoGroup.rollback", numberOf(m_data)); }

void UndoGroup::undo() { call("UndoGroup.undo", numberOf(m_data)); }

void UndoGroup::redo() { call("UndoGroup.redo", numberOf(m_data)); }
