// Checks of export arguments.

#include "export_plan.h"

#include <QSet>
#include <algorithm>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/handles/access.h>
#include <fundo/fs_percent_escaped_string.h>

namespace orrery {
namespace {

constexpr unsigned int mostDigits = 32;
constexpr unsigned int mostFrames = 1000000; // more than eleven hours
constexpr unsigned int lastNumber = 0x7fffffff;

void requireNamePart(const char* argument, const QString& part) { require(argument, checkNamePart(part)); }

void requireFormat(const QString& suffix)
{
    requireNamePart("suffix", suffix);
    for (const char* known : {".png", ".exr", ".jpg", ".jpeg", ".tif", ".tiff", ".dpx"})
        if (suffix.endsWith(QLatin1String(known), Qt::CaseInsensitive))
            return;
    raise<STRM_BadArgument>(
        text("suffix: %1 names no format that can be written: .png, .exr, .jpg, .tif or .dpx", quoted(suffix)));
}

// A view may have any name, so it is escaped.
QString fileNamePart(const QString& abbreviation)
{
    return Fundo::FSPercentEscapedString(abbreviation, Fundo::FSPercentEscapedString::ThisSystem);
}

} // namespace

ExportPlan::ExportPlan(const ExportArguments& arguments, unsigned int frameCount, std::vector<ExportedView> asked)
    : folder(absolutePath("path", arguments.path)), firstNumber(arguments.firstNumber), views(std::move(asked))
{
    requireFolderOrNothing(folder);
    requireNamePart("prefix", arguments.prefix);
    requireFormat(arguments.suffix);
    if (arguments.indexWidth > mostDigits)
        raise<STRM_OutOfRange>(text("index_width: %1 digits are more than %2", arguments.indexWidth, mostDigits));
    if (frameCount == 0)
        raise<STRM_BadState>(text("There are no frames to export"));
    const unsigned int end = arguments.last == unknownFrame ? frameCount - 1 : arguments.last;
    if (arguments.first > end)
        raise<STRM_BadArgument>(text("first: the frame %1 comes after the last, %2", arguments.first, end));
    if (end >= frameCount)
        raise<STRM_OutOfRange>(text("last: there is no frame %1, there are %2 frames", end, frameCount));
    if (views.empty())
        raise<STRM_BadState>(text("There is no view to export"));
    if (arguments.separateStreams)
        requireNamePart("view_format", arguments.viewFormat);
    else if (views.size() > 1)
        raise<STRM_BadArgument>(
            text("separate_streams: %1 views cannot be written as one sequence: name one of them", views.size()));
    requireBearable(arguments.first, end, views.size());
    first = static_cast<int>(arguments.first);
    last = static_cast<int>(end);
    requireNumbers(first, last, firstNumber);
    nameViews(arguments);
    for (int n = 0; n < count(); ++n) // now rather than when the last frame is rendered
        requireReplaceable(toPath(folder + QLatin1Char('/') + fileName(n)));
}

void ExportPlan::nameViews(const ExportArguments& arguments)
{
    QSet<QString> prefixes;
    for (ExportedView& view : views) {
        QString prefix = arguments.prefix;
        if (arguments.separateStreams)
            prefix.prepend(QString(arguments.viewFormat).replace(QLatin1String("%v"), fileNamePart(view.abbreviation)));
        requireNamePart("view_format", prefix);
        if (prefixes.contains(prefix))
            raise<STRM_BadArgument>(
                text("view_format: %1 gives two views the same file names", quoted(arguments.viewFormat)));
        prefixes.insert(prefix);
        view.name = {folder, prefix, arguments.suffix, std::max(1U, arguments.indexWidth)};
    }
}

void requireBearable(unsigned int first, unsigned int last, std::size_t views)
{
    if (last > lastNumber || (last - first + 1) > mostFrames / views)
        raise<STRM_OutOfRange>(
            text("Frames %1 to %2 are more than the %3 that can be worked on at once", first, last, mostFrames));
}

void requireNumbers(int first, int last, int firstNumber)
{
    for (const int frame : {first, last})
        if (const std::int64_t number = std::int64_t(firstNumber) + frame; number < 0 || number > lastNumber)
            raise<STRM_OutOfRange>(text("Frame %1 is numbered %2 by the first frame offset, which no file can be",
                                        frame, static_cast<long long>(number)));
}

StreamInfo ExportPlan::info(const ExportedView& view) const
{
    return describe(view.name, static_cast<unsigned int>(firstNumber + first),
                    static_cast<unsigned int>(firstNumber + last));
}

pixels::Depth depthFor(const QString& suffix, pixels::Depth wanted)
{
    const bool floating = suffix.endsWith(QLatin1String(".exr"), Qt::CaseInsensitive);
    if (floating)
        return wanted == pixels::Depth::Float ? wanted : pixels::Depth::Half;
    const bool whole = wanted == pixels::Depth::EightBit || wanted == pixels::Depth::SixteenBit;
    return whole ? wanted : pixels::Depth::SixteenBit;
}

} // namespace orrery
