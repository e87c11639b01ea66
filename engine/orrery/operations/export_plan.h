// What an export of a clip or of shapes writes, and under which names: its arguments, checked.
#pragma once

#include <QString>
#include <cassert>
#include <engine/pixels/pixels.h>
#include <engine/sequences/name.h>
#include <vector>

namespace orrery {

struct ExportArguments
{
    QString path;
    QString prefix;
    QString suffix;
    QString viewFormat; // before the prefix where each view has a stream of its own; %v is the view's abbreviation
    unsigned int first;
    unsigned int last; // unknownFrame: the last that there is
    unsigned int indexWidth;
    bool separateStreams;
    int firstNumber = 0; // that the file of frame 0 has
};

struct ExportedView
{
    int id;
    QString abbreviation;
    SequenceName name; // set by the plan
};

// Numbers every frame of every view that is written.
struct ExportPlan
{
    // STRM_BadArgument and STRM_OutOfRange name the argument, STRM_BadFile what stands in the way of a file.
    // `frameCount` is that of what is exported; `views` are all that were asked for.
    ExportPlan(const ExportArguments& arguments, unsigned int frameCount, std::vector<ExportedView> views);

    QString folder; // absolute
    int first;
    int last;
    int firstNumber;
    std::vector<ExportedView> views;

    int frameCount() const { return last - first + 1; }
    int count() const { return frameCount() * static_cast<int>(views.size()); }
    // Number n of count(): all views of a frame before the next.
    const ExportedView& view(int n) const
    {
        assert(n >= 0 && n < count());
        return views[static_cast<std::size_t>(n) % views.size()];
    }
    int frame(int n) const { return first + n / static_cast<int>(views.size()); }
    QString fileName(int n) const { return view(n).name.fileName(static_cast<unsigned int>(firstNumber + frame(n))); }
    StreamInfo info(const ExportedView& view) const;

private:
    void nameViews(const ExportArguments& arguments);
};

// STRM_OutOfRange when the files of frames cannot have these numbers.
void requireNumbers(int first, int last, int firstNumber);

// Limits the frames and views of one operation, whose snapshot is held in memory. STRM_OutOfRange.
void requireBearable(unsigned int first, unsigned int last, std::size_t views = 1);

// The depth that suits a format best for what is exported.
pixels::Depth depthFor(const QString& suffix, pixels::Depth wanted);

} // namespace orrery
