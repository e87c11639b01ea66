// Parsing of sequence names. The disk is asked only whether a location is a folder or a file.

#include <QFileInfo>
#include <algorithm>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/sequences/name.h>

namespace orrery {
namespace {

// The part of a file name that holds the frame number.
struct NumberField
{
    int start = -1;
    int length = 0;
    unsigned int width = 0;

    bool found() const { return start >= 0; }
};

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

// The last run of #, one per digit.
NumberField hashField(const QString& name)
{
    const int last = name.lastIndexOf(QLatin1Char('#'));
    if (last < 0)
        return {};
    int start = last;
    while (start > 0 && name.at(start - 1) == QLatin1Char('#'))
        --start;
    return {start, last - start + 1, static_cast<unsigned int>(last - start + 1)};
}

// %d, %4d or %04d.
NumberField printfField(const QString& name)
{
    for (int start = name.lastIndexOf(QLatin1Char('%')); start >= 0;
         start = start ? name.lastIndexOf(QLatin1Char('%'), start - 1) : -1) {
        int end = start + 1;
        while (end < name.size() && isDigit(name.at(end)))
            ++end;
        if (end < name.size() && end - start <= 3 && name.at(end) == QLatin1Char('d'))
            return {start, end - start + 1, std::max(1U, name.mid(start + 1, end - start - 1).toUInt())};
    }
    return {};
}

NumberField patternField(const QString& name)
{
    const NumberField field = printfField(name);
    return field.found() ? field : hashField(name);
}

NumberField digitField(const QString& name)
{
    int end = name.lastIndexOf(QLatin1Char('.'));
    const bool numberLast =
        end >= 0 && end + 1 < name.size() && std::all_of(name.begin() + end + 1, name.end(), isDigit);
    if (end <= 0 || numberLast)
        end = name.size();
    NumberField last;
    for (int i = end - 1; i >= 0; --i) {
        if (!isDigit(name.at(i)))
            continue;
        int start = i;
        while (start > 0 && isDigit(name.at(start - 1)))
            --start;
        const NumberField field{start, i - start + 1, 0};
        const bool free = (start == 0 || !name.at(start - 1).isLetterOrNumber()) &&
                          (i + 1 == name.size() || !name.at(i + 1).isLetterOrNumber());
        if (free)
            return field;
        if (!last.found())
            last = field;
        i = start;
    }
    return last;
}

SequenceName split(const QString& folder, const QString& name, const NumberField& field)
{
    return {folder, name.left(field.start), name.mid(field.start + field.length), field.width};
}

SequenceName onlySequenceIn(const QString& folder, bool required)
{
    const QVector<SequenceName> sequences = sequencesIn(folder, required);
    if (sequences.size() == 1)
        return sequences.front();
    if (!required)
        return {folder, QString(), QString(), 0};
    if (sequences.isEmpty())
        raise<STRM_BadFile>(text("%1: the folder holds no image sequence", folder));
    QStringList names;
    for (int i = 0; i < std::min(sequences.size(), 3); ++i)
        names << sequences.at(i).fileName(unknownFrame);
    raise<STRM_BadFile>(text("%1: the folder holds %2 image sequences (%3%4): name one", folder, sequences.size(),
                             names.join(QLatin1String(", ")), sequences.size() > 3 ? ", ..." : ""));
}

// The width that all files of the sequence agree with: with leading zeros their length, else that of the shortest.
SequenceName sequenceOfFile(const QString& folder, const QString& name, const NumberField& field)
{
    SequenceName sequence = split(folder, name, field);
    if (framesOnDisk(sequence).isEmpty())
        sequence.indexWidth = static_cast<unsigned int>(field.length);
    return sequence;
}

} // namespace

Knob::Problem checkNamePart(const QString& part)
{
    if (part.contains(QLatin1Char('/')))
        return {Knob::Problem::Argument, text("%1 is no part of a file name", quoted(part))};
    return Knob::checkPath(part);
}

Knob::Problem checkIndexWidth(const unsigned int& width) { return Knob::checkRange<0, 32>(width); }

QString SequenceName::fileName(unsigned int frame) const
{
    const QString number = frame == unknownFrame
                               ? QString(static_cast<int>(std::max(1U, indexWidth)), QLatin1Char('#'))
                               : QString::number(frame).rightJustified(static_cast<int>(indexWidth), QLatin1Char('0'));
    return prefix + number + suffix;
}

QString SequenceName::path(unsigned int frame) const
{
    return (folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/')) + fileName(frame);
}

QString SequenceName::pattern() const { return path(unknownFrame); }

bool splitFileName(const QString& fileName, NumberedFile& parts)
{
    const NumberField field = digitField(fileName);
    if (!field.found())
        return false;
    parts = {fileName.left(field.start), fileName.mid(field.start, field.length),
             fileName.mid(field.start + field.length)};
    return true;
}

SequenceName nameOf(const StreamInfo& info)
{
    return {info.get_path(), info.get_prefix(), info.get_suffix(), info.get_index_width()};
}

StreamInfo describe(const SequenceName& name, unsigned int start, unsigned int end)
{
    return StreamInfo(name.folder, name.prefix, name.suffix, start, end, name.indexWidth);
}

SequenceName parseLocation(const QString& location, bool required)
{
    const QString path = absolutePath("location", location);
    const Standing found = standing(path);
    if (found == Standing::Folder)
        return onlySequenceIn(path, required);
    if (found == Standing::Other)
        raise<STRM_BadFile>(text("%1: is neither a file nor a folder", path));
    const QString name = QFileInfo(path).fileName();
    const QString folder = QFileInfo(path).absolutePath();
    const bool present = found == Standing::File;
    if (const NumberField field = patternField(name); field.found() && !present)
        return split(folder, name, field);
    if (required && !present)
        raise<STRM_BadFile>(text("%1: %2", path, whyNothing(path)));
    const NumberField field = digitField(name);
    if (field.found() && (present || name.contains(QLatin1Char('.'))))
        return sequenceOfFile(folder, name, field);
    if (present)
        raise<STRM_BadFile>(text("%1: the file's name has no frame number", path));
    return {path, QString(), QString(), 0};
}

} // namespace orrery
