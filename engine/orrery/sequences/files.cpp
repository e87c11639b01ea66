// Sequences on disk: which ones a folder holds, and which of their frames exist.

#include <QMap>
#include <algorithm>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/sequences/name.h>
#include <vector>

namespace orrery {
namespace {

// The number in a file's name when the file is one of the sequence's; `width` is that of its digits, and `padded` tells
// whether they begin with a zero that a shorter number does not have.
struct Numbered
{
    unsigned int frame = 0;
    unsigned int width = 0;
    bool padded = false;
};

bool parseNumber(const QString& digits, Numbered& result)
{
    if (digits.isEmpty() || digits.size() > 32)
        return false;
    for (const QChar c : digits)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    bool fits = false;
    result.frame = digits.toUInt(&fits);
    result.width = static_cast<unsigned int>(digits.size());
    result.padded = digits.size() > 1 && digits.at(0) == QLatin1Char('0');
    return fits && result.frame != unknownFrame;
}

bool numberOf(const QString& file, const SequenceName& name, Numbered& result)
{
    return file.size() > name.prefix.size() + name.suffix.size() && file.startsWith(name.prefix) &&
           file.endsWith(name.suffix) &&
           parseNumber(file.mid(name.prefix.size(), file.size() - name.prefix.size() - name.suffix.size()), result);
}

unsigned int commonWidth(const std::vector<Numbered>& files)
{
    unsigned int shortest = 0;
    for (const Numbered& file : files) {
        if (file.padded)
            return file.width;
        shortest = shortest ? std::min(shortest, file.width) : file.width;
    }
    return shortest;
}

// A number with more digits than the width stands for itself; one with fewer, or with zeros beyond the width, is in no
// file of this sequence.
bool hasWidth(const Numbered& file, unsigned int width)
{
    return file.width == width || (file.width > width && !file.padded);
}

// Folders hold notes and movies too: only what the pixel library reads makes a sequence there.
bool isImageName(const QString& file)
{
    static const char* const suffixes[] = {".png", ".exr", ".jpg", ".jpeg", ".tif", ".tiff", ".dpx"};
    return std::any_of(std::begin(suffixes), std::end(suffixes), [&file](const char* suffix) {
        return file.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
    });
}

} // namespace

QVector<SequenceName> sequencesIn(const QString& folder, bool required)
{
    QMap<QString, std::vector<Numbered>> files; // by prefix and suffix, with what no file name holds between them
    const QChar between(QLatin1Char('/'));
    for (const QString& file : filesIn(folder, required)) {
        NumberedFile parts;
        Numbered number;
        if (!file.startsWith(QLatin1Char('.')) && isImageName(file) && splitFileName(file, parts) &&
            parseNumber(parts.digits, number))
            files[parts.prefix + between + parts.suffix].push_back(number);
    }
    QVector<SequenceName> sequences;
    for (auto it = files.constBegin(); it != files.constEnd(); ++it)
        sequences.append(
            {folder, it.key().section(between, 0, 0), it.key().section(between, 1, 1), commonWidth(it.value())});
    return sequences;
}

QVector<unsigned int> framesOnDisk(SequenceName& name, bool required)
{
    std::vector<Numbered> files;
    for (const QString& file : filesIn(name.folder, required)) {
        Numbered number;
        if (numberOf(file, name, number))
            files.push_back(number);
    }
    if (name.indexWidth == 0)
        name.indexWidth = commonWidth(files);
    QVector<unsigned int> frames;
    for (const Numbered& file : files)
        if (hasWidth(file, std::max(1U, name.indexWidth)))
            frames.append(file.frame);
    std::sort(frames.begin(), frames.end());
    return frames;
}

StreamInfo foundOnDisk(const StreamInfo& info)
{
    StreamInfo found = info;
    if (info.get_start_frame() != unknownFrame && info.get_end_frame() != unknownFrame && info.get_index_width() != 0)
        return found;
    SequenceName name = nameOf(info);
    const QVector<unsigned int> frames = framesOnDisk(name);
    found.set_index_width(name.indexWidth);
    if (frames.isEmpty())
        return found;
    if (info.get_start_frame() == unknownFrame)
        found.set_start_frame(frames.front());
    if (info.get_end_frame() == unknownFrame)
        found.set_end_frame(frames.back());
    return found;
}

void requireFrames(const StreamInfo& info)
{
    SequenceName name = nameOf(info);
    const QVector<unsigned int> frames = framesOnDisk(name, true);
    const unsigned int first = info.get_start_frame(), last = info.get_end_frame();
    if (frames.isEmpty() || first == unknownFrame || last == unknownFrame)
        raise<STRM_BadFile>(text("%1: there is no frame of the sequence", name.pattern()));
    const auto begin = std::lower_bound(frames.begin(), frames.end(), first);
    const auto end = std::upper_bound(begin, frames.end(), last);
    const unsigned int present = static_cast<unsigned int>(end - begin), wanted = last - first + 1;
    if (present == wanted)
        return;
    unsigned int missing = first;
    for (auto frame = begin; frame != end && *frame == missing; ++frame)
        ++missing;
    raise<STRM_BadFile>(
        text("%1: frame %2 is missing (%3 of %4 frames are)", name.path(missing), missing, wanted - present, wanted));
}

} // namespace orrery
