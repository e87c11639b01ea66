// The interface of the pixel library: image files, coverage of outlines, planar tracking and the image operations of
// the render operations. It knows nothing of projects or layers, is made of plain values only, and is implemented by
// one shared object that is loaded at the first operation that touches pixels (loader/pixels_loader.h).
//
// Coordinates: x runs right, y runs down, the origin is the top left corner of the image; the centre of its first pixel
// is (0.5, 0.5). Every Matrix and Point below is in these coordinates. Paths are UTF-8.
//
// Threads: every function of Library may be called from any number of threads at once. A Tracker is used by one thread
// at a time; several trackers run side by side. The library starts no threads of its own, so the caller decides how
// many cores are used. No call takes longer than the work on one frame: a caller cancels between calls.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pixels {

struct Size
{
    int width = 0;
    int height = 0;

    bool operator==(const Size& other) const { return width == other.width && height == other.height; }
    bool operator!=(const Size& other) const { return !(*this == other); }
};

struct Point
{
    double x = 0;
    double y = 0;
};

struct Color
{
    float red = 0;
    float green = 0;
    float blue = 0;
};

// A projective transform of the plane, row by row; the identity unless something else is said. A point (x, y) goes to
// (X/W, Y/W), where (X, Y, W) is the product with the column (x, y, 1).
struct Matrix
{
    std::array<double, 9> values{1, 0, 0, 0, 1, 0, 0, 0, 1};

    static Matrix translation(double x, double y) { return {{1, 0, x, 0, 1, y, 0, 0, 1}}; }
    static Matrix scale(double x, double y) { return {{x, 0, 0, 0, y, 0, 0, 0, 1}}; }

    double operator()(int row, int column) const { return values[static_cast<std::size_t>(row * 3 + column)]; }
    double& operator()(int row, int column) { return values[static_cast<std::size_t>(row * 3 + column)]; }

    Point map(Point point) const
    {
        const auto& m = values;
        const double w = m[6] * point.x + m[7] * point.y + m[8];
        return {(m[0] * point.x + m[1] * point.y + m[2]) / w, (m[3] * point.x + m[4] * point.y + m[5]) / w};
    }

    // First `other`, then this.
    Matrix operator*(const Matrix& other) const
    {
        Matrix product;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                product(row, column) = (*this)(row, 0) * other(0, column) + (*this)(row, 1) * other(1, column) +
                                       (*this)(row, 2) * other(2, column);
        return product;
    }

    // Throws std::domain_error where there is none.
    Matrix inverse() const
    {
        const auto& m = values;
        const double a = m[4] * m[8] - m[5] * m[7], b = m[5] * m[6] - m[3] * m[8], c = m[3] * m[7] - m[4] * m[6];
        const double determinant = m[0] * a + m[1] * b + m[2] * c;
        if (!(determinant > 1e-300 || determinant < -1e-300))
            throw std::domain_error("the transform has no inverse");
        const double s = 1 / determinant;
        return {{a * s, (m[2] * m[7] - m[1] * m[8]) * s, (m[1] * m[5] - m[2] * m[4]) * s, b * s,
                 (m[0] * m[8] - m[2] * m[6]) * s, (m[2] * m[3] - m[0] * m[5]) * s, c * s,
                 (m[1] * m[6] - m[0] * m[7]) * s, (m[0] * m[4] - m[1] * m[3]) * s}};
    }
};

// Rows from top to bottom, pixels from left to right, the channels of a pixel side by side: grey (1), RGB (3) or RGBA
// (4). Values are 0 to 1 for what a file of whole numbers can hold and may lie outside for others. A mask or a matte is
// an image of one channel: 0 outside, 1 inside.
struct Image
{
    Size size;
    int channels = 0;
    std::vector<float> values;

    Image() = default;
    Image(Size size, int channels, float value = 0)
        : size(size), channels(channels),
          values(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) *
                     static_cast<std::size_t>(channels),
                 value)
    {}

    bool empty() const { return values.empty(); }
    float* row(int y)
    {
        return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width * channels);
    }
    const float* row(int y) const { return const_cast<Image*>(this)->row(y); }
    float* at(int x, int y) { return row(y) + x * channels; }
    const float* at(int x, int y) const { return row(y) + x * channels; }
};

using SharedImage = std::shared_ptr<const Image>;

// A file that cannot be read or written. The text names the file and says what is wrong with it; a caller that knows
// the frame's number adds it.
class FileError : public std::runtime_error
{
public:
    FileError(std::string path, const std::string& problem)
        : std::runtime_error(path + ": " + problem), m_path(std::move(path))
    {}
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// A region that cannot be tracked at all: it is empty, or has nothing in it to follow.
class RegionError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// ---- Files ----------------------------------------------------------------------------------------------------------

enum class Depth { EightBit, SixteenBit, Half, Float };

struct FrameInfo
{
    Size size;
    int channels = 0; // of the file; Library::readFrame gives 1, 3 or 4
    Depth depth = Depth::EightBit;
    std::string format; // as "png", "openexr", "jpeg", "tiff", "dpx"
};

enum class Colorspace { Linear, Log, Panalog };
enum class Conversion { None, Float, EightBit };

// How the values of a file are to be understood. With Conversion::None they are taken as they stand in the file,
// whatever the colour space; Float converts them to linear light; EightBit does the same and then rounds to the 256
// levels of an 8 bit image. The numbers matter to Colorspace::Log only; the reference points and the soft clip are in
// code values of a 10 bit scan (0 to 1023). The alpha channel is never converted.
struct Interpretation
{
    Colorspace colorspace = Colorspace::Linear;
    Conversion conversion = Conversion::None;
    float offset = 0; // added to the linear value
    float softclip = 0;
    float referenceWhite = 685;
    float referenceBlack = 0;
    float gamma = 1;

    bool operator==(const Interpretation& other) const
    {
        return colorspace == other.colorspace && conversion == other.conversion && offset == other.offset &&
               softclip == other.softclip && referenceWhite == other.referenceWhite &&
               referenceBlack == other.referenceBlack && gamma == other.gamma;
    }
};

struct WriteOptions
{
    Depth depth = Depth::EightBit; // where the format has it not, the nearest that it has
    int jpegQuality = 95;
    Interpretation interpretation{}; // under which the file is to be read as the image: its values are encoded for it
};

struct CacheStatistics
{
    std::size_t bytes = 0;
    std::size_t limit = 0;
    std::uint64_t decoded = 0; // files read since the library was loaded
    std::uint64_t reused = 0;  // readings answered from the cache
};

// ---- Coverage -------------------------------------------------------------------------------------------------------

// Where the edge width is w > 0, coverage falls linearly from 1 on the outline to 0 at the distance w outside of it;
// where it is negative, from 1 at the distance |w| inside to 0 on the outline. Between two vertices it changes
// linearly.
struct OutlineVertex
{
    double x = 0;
    double y = 0;
    double edgeWidth = 0;
};

using Outline = std::vector<OutlineVertex>; // closed: the last vertex is joined to the first

// EvenOdd: an outline inside another cuts a hole, whichever way either runs. NonZero: it does so only where it runs the
// other way round.
enum class FillRule { EvenOdd, NonZero };

// ---- Tracking -------------------------------------------------------------------------------------------------------

enum class MotionModel { Translation, Affine, Perspective };

// A frame made ready to be tracked in: made once per frame and shared by all trackers that look at it.
class TrackingFrame
{
public:
    virtual ~TrackingFrame() = default;
};

using SharedTrackingFrame = std::shared_ptr<const TrackingFrame>;

struct TrackResult
{
    bool aligned = false;
    std::string problem; // why not, as part of a sentence: "the region has left the view"
    Matrix transform;    // from the reference frame to this one; of the last aligned frame where this one is not
    double quality = 0;  // correlation of the region's visible pixels with the reference's, 0 to 1
    double visible = 0;  // the part of the region that is seen, 0 to 1: in view, and hidden by nothing
    // Of the frames just before, in place of what was said of them: where this one tells more. The latest is the last.
    std::vector<TrackResult> before;
};

// Follows one region through a run of frames, forward or backward, starting beside the reference frame. Every frame is
// aligned with the reference frame itself, so that errors do not add up. What hides a part of the region need not be
// known.
class Tracker
{
public:
    virtual ~Tracker() = default;

    // Aligns the next frame of the run. `excluded` is empty, or a mask of the frame's size of what hides the region in
    // this frame. A frame that cannot be aligned is a gap: the region is looked for again in the next one.
    virtual TrackResult advance(const SharedTrackingFrame& frame, const Image& excluded = {}) = 0;
};

// ---- Light and layers
// ------------------------------------------------------------------------------------------------

// How a colour becomes a grey: weighed as the eye does, by the mean, or by the largest channel.
enum class Luminance { Rec709, Average, Maximum };

// What brings the brightness of one image to that of another.
enum class LightModel { None, Gain, GainAndOffset };

// How a layer joins those below: laid over, taken away from them, or leaving only what it covers.
enum class Blend { Add, Subtract, Intersect };

// ---- The library ----------------------------------------------------------------------------------------------------

// A new operation is declared here and defined in the file of src/ that it belongs to; nothing else lists it. The
// members are virtual so that a caller refers to no symbol of a library that is loaded later.
//
// Arguments that cannot mean anything (an image whose values do not fit its size, a transform that is not finite) throw
// std::invalid_argument.
class Library
{
public:
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    virtual ~Library();

    // -- Files. All throw FileError.

    // Reads no pixels.
    virtual FrameInfo readHeader(const std::string& path);

    // The frame as grey, RGB or RGBA, from the shared cache where it is there; grey with alpha becomes RGBA. Threads
    // that ask for the same frame at the same time share one decoding. When `expected` is not empty, a frame of another
    // size is an error.
    virtual SharedImage readFrame(const std::string& path, const Interpretation& interpretation = {},
                                  Size expected = {});

    // Writes in the format of the path's suffix. What stands under `path` is always a whole file, either the old or the
    // new one: the frame is written beside and renamed; nothing is left beside when it fails.
    virtual void writeFrame(const std::string& path, const Image& image, const WriteOptions& options = {});

    virtual void setCacheLimit(std::size_t bytes); // 0: nothing is kept
    virtual CacheStatistics cacheStatistics();

    // -- Tracking.

    virtual SharedTrackingFrame prepare(const Image& frame);

    // `region` is a mask of the reference frame's size: what to follow, without what lies above it. Throws RegionError.
    virtual std::unique_ptr<Tracker> track(const SharedTrackingFrame& reference, const Image& region,
                                           MotionModel model = MotionModel::Perspective);

    // -- Mattes.

    // The part of each pixel that the outlines cover, each taken through `transform` first (edge widths are scaled
    // as lengths are at the vertex). Exact for hard edges that do not cross within the pixel.
    virtual Image coverage(const std::vector<Outline>& outlines, Size size, const Matrix& transform = {},
                           FillRule rule = FillRule::EvenOdd);

    // The larger of both in every pixel. An empty matte becomes the other one.
    virtual void unite(Image& matte, const Image& other);

    // Leaves of the matte what `hidden` (empty: nothing) does not cover.
    virtual void cutOut(Image& matte, const Image& hidden);

    // 1 in every pixel that the matte touches and beside it, falling to 0 at about `margin` pixels (1 or more) from it.
    virtual Image withMargin(const Image& matte, int margin);

    // Draws a layer into a picture whose values are weighed with coverage; `paint` has a value for each channel.
    virtual void blend(Image& picture, const Image& matte, const std::vector<float>& paint, float opacity, Blend mode);

    // -- Light.

    // One channel; a grey image stays as it is.
    virtual Image luminance(const Image& image, Luminance model);

    // Multiplies the colours, not the alpha channel, and adds to them.
    virtual void adjust(Image& image, float gain, float offset = 0);

    // Adjusts `source` so that it looks like `image` close to what `hidden` (a mask of the image) covers, moved by
    // `transform` (source to image) and as far as it lies in `valid` (a mask of the source).
    virtual void matchLight(Image& source, const Image& valid, const Matrix& transform, const Image& image,
                            const Image& hidden, LightModel model, Luminance luminance);

    // -- Operations.

    // Lays a colour over the image where the matte says so, mixed by matte times opacity. Of a grey image the colour's
    // luminance is used; the alpha channel is covered as well.
    virtual void insert(Image& image, const Image& matte, Color color, float opacity = 1);

    // Lays a picture of four channels, weighed with coverage as blend() makes it, over the image.
    virtual void layOver(Image& image, const Image& picture, float opacity = 1);

    // Fills what `missing` marks in `image` with what `source` shows there when moved by `transform` (source to image),
    // as far as it lies in `valid` (a mask of the source's size; empty: all of it). What was filled is taken out of
    // `missing`. Returns the part of the missing pixels that are still missing, 0 to 1.
    virtual double fill(Image& image, Image& missing, const Image& source, const Matrix& transform,
                        const Image& valid = {});

    // The same for the mean of several sources: adds what the source shows to `sum`, which has its channels, and counts
    // it in `count`, which has one. Whether it shows anything that is missing. `missing` stays; fillWithMean() ends it.
    virtual bool gather(Image& sum, Image& count, const Image& missing, const Image& source, const Matrix& transform,
                        const Image& valid = {});
    virtual void fillWithMean(Image& image, Image& missing, const Image& sum, const Image& count);

    // Fills what is still missing smoothly from its surroundings.
    virtual void fillFromSurroundings(Image& image, const Image& missing);

    // The image moved by the transform, sampled with a cubic; black (and transparent) where it shows nothing. `covered`
    // receives the mask of what it shows where it is given.
    virtual Image warp(const Image& image, const Matrix& transform, Size size, Image* covered = nullptr);

    // -- Drawing, for contact sheets.

    virtual Image resize(const Image& image, Size size);
    // Of one, three or four channels.
    virtual Image withChannels(const Image& image, int channels);
    // Lays `image` over `target` with its top left corner at (x, y); what hangs over is left out.
    virtual void place(Image& target, const Image& image, int x, int y);
    // Closed: the last point is joined to the first.
    virtual void drawOutline(Image& image, const std::vector<Point>& points, Color color, double width);
    virtual void drawText(Image& image, const std::string& text, Point baseline, double height, Color color);
};

// Changes whenever anything above does. The factory answers with null to any other.
constexpr unsigned interfaceVersion = 2;
constexpr const char* factoryName = "vireo_pixels_library";
using Factory = Library* (*)(unsigned version);

} // namespace pixels
