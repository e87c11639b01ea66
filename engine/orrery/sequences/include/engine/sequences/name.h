// The names of image sequences: parsing the notations of a location ("plate.####.png", "plate.%04d.png", one of the
// files, a folder), and making the file name of a frame. Looks at the disk only where the text alone is ambiguous.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <engine/knob/fields.h>
#include <orrery/stream_info.h>

namespace orrery {

// A frame number that is not known, or stands for the last.
constexpr unsigned int unknownFrame = 4294967295U;

Knob::Problem checkNamePart(const QString& part); // of a file's name: neither a slash nor a NUL
Knob::Problem checkIndexWidth(const unsigned int& width);

// What a sequence's file names have in common. A width of 0: not known.
struct SequenceName
{
    QString folder;
    QString prefix;
    QString suffix;
    unsigned int indexWidth = 0;

    // Of a sequence that is still looked for, only the folder is known.
    bool isKnown() const { return !prefix.isEmpty() || !suffix.isEmpty() || indexWidth; }
    QString fileName(unsigned int frame) const;
    QString path(unsigned int frame) const;
    // "/shots/a/plate.####.png", for people.
    QString pattern() const;

    static constexpr auto fields()
    {
        return std::make_tuple(Knob::Field("path", &SequenceName::folder, Knob::checkFolder),
                               Knob::Field("prefix", &SequenceName::prefix, checkNamePart),
                               Knob::Field("suffix", &SequenceName::suffix, checkNamePart),
                               Knob::Field("index_width", &SequenceName::indexWidth, checkIndexWidth));
    }
};

SequenceName nameOf(const StreamInfo& info);

// The description with these frame numbers.
StreamInfo describe(const SequenceName& name, unsigned int start, unsigned int end);

// Splits the name of one file of a sequence. The frame number is the last run of digits before the extension that no
// letter touches ("plate_v2.0012.exr", "0012_v2.exr"), else the last run of all ("shot12.exr"). False where there is
// none.
struct NumberedFile
{
    QString prefix;
    QString digits;
    QString suffix;
};
bool splitFileName(const QString& fileName, NumberedFile& parts);

// Parses a location: a pattern, unless a file of that very name exists. STRM_BadArgument as of absolutePath();
// STRM_BadFile for a file without a frame number, for what is neither file nor folder and, with `required`, for a file
// or folder that is not there and for a folder that may not be listed or holds no sequence or several. Without it such
// a location is taken for the folder of a sequence whose name is not known yet.
SequenceName parseLocation(const QString& location, bool required);

// ---- On disk --------------------------------------------------------------------------------------------------------

// The sequences of a folder, by name. A name without a number is none. A folder that may not be listed holds none
// or, with `required`, is refused with STRM_BadFile; so below.
QVector<SequenceName> sequencesIn(const QString& folder, bool required = false);

// The frame numbers that are on disk, ascending; empty as well when there is no such folder. A width of 0 in `name`
// takes files of any width and is set to theirs.
QVector<unsigned int> framesOnDisk(SequenceName& name, bool required = false);

// The description with unknown frame numbers and an unknown width as they are on disk; what is not there stays unknown.
StreamInfo foundOnDisk(const StreamInfo& info);

// Throws STRM_BadFile naming the first frame's file that is missing between the first and the last, and how many are.
void requireFrames(const StreamInfo& info);

} // namespace orrery
