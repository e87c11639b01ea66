// Texts as a script writes them.
#include <engine/errors/literal.h>

namespace orrery {

namespace {

QString escaped(QChar character)
{
    const ushort code = character.unicode();
    if (code == '\\' || code == '\'')
        return QString(QLatin1Char('\\')) + character;
    if (code == '\n')
        return QString::fromLatin1("\\n");
    if (code >= ' ' && code < 0x7f)
        return QString(character);
    const int digits = code < 0x100 ? 2 : 4;
    return QString::fromLatin1(digits == 2 ? "\\x%1" : "\\u%1").arg(code, digits, 16, QLatin1Char('0'));
}

} // namespace

QString literal(const QString& text)
{
    QString result;
    bool isAscii = true;
    for (int i = 0; i < text.size(); ++i) {
        result += escaped(text[i]);
        isAscii = isAscii && text[i].unicode() < 0x80;
    }
    return QLatin1String(isAscii ? "'" : "u'") + result + QLatin1Char('\'');
}

} // namespace orrery
