// The texts of refused values, shared by the errors that scripts and readers of files get.
#include <QDir>
#include <cmath>
#include <engine/knob/fields.h>

namespace Knob {

Problem Problem::within(const char* name) const
{
    return *this ? Problem(m_kind, QString::fromLatin1(name) + QLatin1String(": ") + m_text) : Problem();
}

Problem notFromTo(double value, double least, double most)
{
    const auto shown = [](double number) { return QString::number(number, 'g', 12); };
    return {Problem::Range,
            QString::fromLatin1("%1 is not from %2 to %3").arg(shown(value), shown(least), shown(most))};
}

Problem checkText(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool paired = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (paired)
            ++i;
        else if (text[i].isHighSurrogate() || text[i].isLowSurrogate())
            return {Problem::Argument, QString::fromLatin1("half a character (0x%1) at place %2")
                                           .arg(QString::number(text[i].unicode(), 16))
                                           .arg(i)};
    }
    return {};
}

Problem checkPath(const QString& path)
{
    const int nul = path.indexOf(QChar(0));
    if (nul >= 0)
        return {Problem::Argument, QString::fromLatin1("a path must not hold a NUL, as at place %1").arg(nul)};
    return checkText(path);
}

Problem checkFolder(const QString& folder)
{
    if (const Problem problem = checkPath(folder))
        return problem;
    return QDir::isAbsolutePath(folder) && QDir::cleanPath(folder) == folder
               ? Problem()
               : Problem(Problem::Argument, QString::fromLatin1("'%1' is not an absolute, clean path").arg(folder));
}

Problem checkName(const QString& name)
{
    if (name.isEmpty())
        return {Problem::Argument, QString::fromLatin1("a name must not be empty")};
    if (name.size() > longestName)
        return {Problem::Argument,
                QString::fromLatin1("a name of %1 characters is longer than %2").arg(name.size()).arg(longestName)};
    return checkText(name);
}

Problem checkFinite(const double& value)
{
    return std::isfinite(value)
               ? Problem()
               : Problem(Problem::Argument, QString::fromLatin1("%1 is not a finite number").arg(value));
}

Problem checkColor(const Fundo::Colour3<float>& color)
{
    for (const float component : {color.red, color.green, color.blue}) {
        if (const Problem problem = checkFinite(component))
            return problem;
        if (component < 0 || component > 1)
            return {Problem::Range, QString::fromLatin1("the component %1 is not from 0 to 1").arg(component)};
    }
    return {};
}

Problem checkRate(const float& rate)
{
    return rate > 0 && std::isfinite(rate)
               ? Problem()
               : Problem(Problem::Argument, QString::fromLatin1("%1 is not greater than 0 and finite").arg(rate));
}

} // namespace Knob
