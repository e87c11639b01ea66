// Percent escapes for file names.
#include <QByteArray>
#include <cstring>
#include <fundo/fs_percent_escaped_string.h>

namespace Fundo {
namespace {

bool isRefusedAnywhere(unsigned char byte) { return byte < 0x20 || byte == 0x7f || std::strchr("\\/:*?\"<>|%", byte); }

bool mustEscape(const QByteArray& bytes, int index, FSPercentEscapedString::Safety safety)
{
    const unsigned char byte = static_cast<unsigned char>(bytes[index]);
    if (safety == FSPercentEscapedString::ThisSystem)
        return byte == '/' || byte == '%' || byte == 0;
    const bool atEnd = index == 0 || index == bytes.size() - 1;
    return isRefusedAnywhere(byte) || (atEnd && (byte == ' ' || byte == '.'));
}

QString escaped(const QString& text, FSPercentEscapedString::Safety safety)
{
    static const char digits[] = "0123456789ABCDEF";
    const QByteArray bytes = text.toUtf8();
    QByteArray result;
    result.reserve(bytes.size());
    for (int i = 0; i < bytes.size(); ++i) {
        const unsigned char byte = static_cast<unsigned char>(bytes[i]);
        if (mustEscape(bytes, i, safety))
            result.append('%').append(digits[byte >> 4]).append(digits[byte & 15]);
        else
            result.append(bytes[i]);
    }
    return QString::fromUtf8(result);
}

} // namespace

FSPercentEscapedString::FSPercentEscapedString() {}

FSPercentEscapedString::FSPercentEscapedString(const QString& text, const Safety& safety)
    : QString(escaped(text, safety))
{}

QString FSPercentEscapedString::unescaped() const
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(toUtf8()));
}

} // namespace Fundo
