// StreamInfo: a plain record, and its text.

#include <engine/errors/literal.h>
#include <orrery/stream_info.h>

StreamInfo::StreamInfo(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
                       unsigned int end_frame, unsigned int index_width)
    : m_path(path), m_prefix(prefix), m_suffix(suffix), m_start_frame(start_frame), m_end_frame(end_frame),
      m_index_width(index_width)
{}

StreamInfo::StreamInfo(const StreamInfo&) = default;
StreamInfo& StreamInfo::operator=(const StreamInfo&) = default;
StreamInfo::~StreamInfo() = default;

QString StreamInfo::get_path() const { return m_path; }

QString StreamInfo::get_prefix() const { return m_prefix; }

QString StreamInfo::get_suffix() const { return m_suffix; }

QString StreamInfo::__repr__() const
{
    using orrery::literal;
    return QString(QLatin1String("StreamInfo(") + literal(m_path) + QLatin1String(", ") + literal(m_prefix) +
                   QLatin1String(", ") + literal(m_suffix)) +
           QString::fromLatin1(", %1, %2, %3)").arg(m_start_frame).arg(m_end_frame).arg(m_index_width);
}
