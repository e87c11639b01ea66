// photographs_benchmark: tracks photographs that move over photographs, beside SIFT with RANSAC, KLT and ECC on the
// same frames, and prints how often each was right, lost, or wrong without saying so.

#include "../peers.h"
#include "sequence.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <opencv2/core.hpp>
#include <sstream>

using namespace pixels;

namespace {

constexpr const char* usage = R"(Usage: photographs_benchmark [options] FOLDER

Moves each photograph (PNG, JPEG, TIFF) of the folder over the next one by known homographies, tracks it with one shape
around it, and compares all four corners with the truth. "photographs/fetch FOLDER" unpacks some photographs.

  --motions NAMES       of scale,rotation,perspective,blur,bar,leaving,together (all)
  --trackers NAMES      of ours,sift,klt,ecc (all)
  --seed NUMBER         another number, other motions (1)
  --size WIDTHxHEIGHT   of a frame (960x540)
  --frames NUMBER       of a sequence (121)
  --bar NUMBER          the width of the bar, as a share of the object's (0.333)
  --worst               also print every frame of ours that is lost, or wrong by more than 5 pixels
  --write FOLDER        write the frames there, and track nothing
)";

constexpr double close = 1, right = 5; // pixels
// With less of the object in view, losing it is no fault; giving it a wrong place still is.
constexpr double leastInView = 0.25;

struct Request
{
    std::string folder, write;
    std::string motions, trackers;
    unsigned seed = 1;
    Size size{960, 540};
    int frames = 121;
    double barWidth = 1 / 3.0;
    bool worst = false;
};

bool isNamed(const std::string& list, const std::string& name)
{
    return list.empty() || ("," + list + ",").find("," + name + ",") != std::string::npos;
}

Image regionOf(const Sequence& sequence, Size size)
{
    Outline outline;
    for (const Point corner : sequence.corners(0))
        outline.push_back({corner.x, corner.y, 0});
    return library().coverage({outline}, size);
}

// What became of one motion, or of all, with one tracker.
struct Score
{
    std::vector<double> errors; // of the frames that were given
    int frames = 0, lost = 0, wrong = 0, longestWrong = 0;
    double seconds = 0;

    void add(const Score& other)
    {
        errors.insert(errors.end(), other.errors.begin(), other.errors.end());
        frames += other.frames;
        lost += other.lost;
        wrong += other.wrong;
        longestWrong = std::max(longestWrong, other.longestWrong);
        seconds += other.seconds;
    }
    double within(double distance) const
    {
        return double(std::count_if(errors.begin(), errors.end(), [&](double e) { return e <= distance; })) /
               std::max(frames, 1);
    }
    double quantile(double share) const
    {
        if (errors.empty())
            return 0;
        std::vector<double> sorted = errors;
        std::sort(sorted.begin(), sorted.end());
        return sorted[std::size_t(share * double(sorted.size() - 1))];
    }
};

using Track = std::vector<std::optional<Matrix>>; // by frame

double errorOf(const Sequence& sequence, int frame, const Matrix& transform)
{
    const auto start = sequence.corners(0), truth = sequence.corners(frame);
    double worst = 0;
    for (std::size_t i = 0; i < start.size(); ++i) {
        const Point found = transform.map(start[i]);
        const double apart = std::hypot(found.x - truth[i].x, found.y - truth[i].y);
        worst = std::isfinite(apart) ? std::max(worst, apart) : 1e9;
    }
    return worst;
}

Score scoreOf(const Sequence& sequence, const Track& track)
{
    Score score;
    int run = 0;
    for (int frame = 1; frame < sequence.frames(); ++frame) {
        const auto& found = track[std::size_t(frame)];
        if (!found && sequence.inView(frame) < leastInView) {
            run = 0;
            continue;
        }
        ++score.frames;
        const double error = found ? errorOf(sequence, frame, *found) : 0;
        if (found)
            score.errors.push_back(error);
        score.lost += !found;
        run = error > right ? run + 1 : 0;
        score.wrong += run > 0;
        score.longestWrong = std::max(score.longestWrong, run);
    }
    return score;
}

class Ours final : public Peer
{
public:
    Ours(const Image& reference, const Image& region) : m_tracker(library().track(library().prepare(reference), region))
    {}
    std::optional<Matrix> advance(const Image& frame) override
    {
        const TrackResult result = m_tracker->advance(library().prepare(frame));
        if (!result.aligned)
            return {};
        return result.transform;
    }

private:
    std::unique_ptr<Tracker> m_tracker;
};

std::unique_ptr<Peer> ours(const Image& reference, const Image& region)
{
    return std::make_unique<Ours>(reference, region);
}

struct Contestant
{
    const char* name;
    std::unique_ptr<Peer> (*make)(const Image& reference, const Image& region);
    std::array<Score, motionNames.size() + 1> scores; // by motion, and of all
};

void printWorst(const Sequence& sequence, const Track& track, const std::string& what)
{
    for (int frame = 1; frame < sequence.frames(); ++frame) {
        const auto& found = track[std::size_t(frame)];
        const double error = found ? errorOf(sequence, frame, *found) : 0;
        if (!found || error > right)
            std::printf("%s, frame %d (%.2f in view): %s %.1f\n", what.c_str(), frame, sequence.inView(frame),
                        found ? "wrong by" : "lost", error);
    }
}

void run(const Sequence& sequence, const Request& request, std::size_t motion, const std::string& what,
         std::vector<Contestant>& contestants)
{
    const Image first = sequence.frame(0), region = regionOf(sequence, request.size);
    std::vector<std::unique_ptr<Peer>> peers;
    std::vector<Track> tracks(contestants.size(), Track(std::size_t(sequence.frames())));
    std::vector<Watch> watches(contestants.size());
    for (const Contestant& contestant : contestants)
        peers.push_back(contestant.make(first, region));
    for (int frame = 1; frame < sequence.frames(); ++frame) {
        const Image image = sequence.frame(frame);
        for (std::size_t i = 0; i < peers.size(); ++i) {
            watches[i].start();
            tracks[i][std::size_t(frame)] = peers[i]->advance(image);
            watches[i].stop();
        }
    }
    for (std::size_t i = 0; i < peers.size(); ++i) {
        Score score = scoreOf(sequence, tracks[i]);
        score.seconds = watches[i].seconds() / (sequence.frames() - 1) * score.frames;
        contestants[i].scores[motion].add(score);
        contestants[i].scores.back().add(score);
        if (request.worst && std::strcmp(contestants[i].name, "ours") == 0)
            printWorst(sequence, tracks[i], what);
    }
}

void write(const Sequence& sequence, const std::string& folder)
{
    std::filesystem::create_directories(folder);
    for (int frame = 0; frame < sequence.frames(); ++frame) {
        char name[32];
        std::snprintf(name, sizeof name, "/plate.%04d.png", frame);
        library().writeFrame(folder + name, sequence.frame(frame));
    }
}

void print(const std::vector<Contestant>& contestants)
{
    std::printf(
        "| motion | tracker | within 1 px | within 5 px | lost | wrong | longest wrong | median px | 95 %% px | "
        "ms per frame |\n|---|---|--:|--:|--:|--:|--:|--:|--:|--:|\n");
    for (std::size_t motion = 0; motion <= motionNames.size(); ++motion)
        for (const Contestant& contestant : contestants) {
            const Score& score = contestant.scores[motion];
            if (score.frames == 0)
                continue;
            std::printf("| %s | %s | %.3f | %.3f | %.3f | %.4f | %d | %.2f | %.2f | %.1f |\n",
                        motion < motionNames.size() ? motionNames[motion] : "all", contestant.name, score.within(close),
                        score.within(right), double(score.lost) / score.frames, double(score.wrong) / score.frames,
                        score.longestWrong, score.quantile(0.5), score.quantile(0.95),
                        1000 * score.seconds / score.frames);
        }
}

std::vector<std::string> photographsOf(const std::string& folder)
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::string suffix = entry.path().extension().string();
        std::transform(suffix.begin(), suffix.end(), suffix.begin(), [](unsigned char c) { return std::tolower(c); });
        if (isNamed(".png,.jpg,.jpeg,.tif,.tiff", suffix))
            paths.push_back(entry.path().string());
    }
    if (paths.empty())
        throw std::runtime_error(folder + " holds no photographs");
    std::sort(paths.begin(), paths.end());
    return paths;
}

void compare(const Request& request)
{
    std::vector<Contestant> contestants;
    for (const Contestant& contestant : {Contestant{"ours", ours, {}}, Contestant{"sift", siftAlone, {}},
                                         Contestant{"klt", kltAlone, {}}, Contestant{"ecc", eccAlone, {}}})
        if (isNamed(request.trackers, contestant.name))
            contestants.push_back(contestant);
    cv::setNumThreads(1); // for all alike
    library().setCacheLimit(0);
    const std::vector<std::string> paths = photographsOf(request.folder);
    const auto path = [&](std::size_t i) { return paths[i % paths.size()]; };
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const Size view = Sequence::viewSize(request.size);
        const Photographs photographs = {readPhotograph(path(i), Sequence::objectSize(request.size)),
                                         readPhotograph(path(i + 1), view), readPhotograph(path(i + 2), view)};
        const std::string name = std::filesystem::path(path(i)).stem().string();
        for (std::size_t motion = 0; motion < motionNames.size(); ++motion) {
            if (!isNamed(request.motions, motionNames[motion]))
                continue;
            const Sequence sequence(photographs, Motion(motion), request.seed * 100 + unsigned(i), request.size,
                                    request.frames, request.barWidth);
            const std::string what = name + " " + motionNames[motion];
            std::fprintf(stderr, "%s\n", what.c_str());
            if (request.write.empty())
                run(sequence, request, motion, what, contestants);
            else
                write(sequence, request.write + "/" + name + "/" + motionNames[motion]);
        }
    }
    if (request.write.empty())
        print(contestants);
}

template <class Number>
void read(const std::string& option, const std::string& text, Number& number)
{
    std::istringstream in(text);
    if (!(in >> number) || !(in >> std::ws).eof() || !(number > 0))
        throw std::invalid_argument(option + " wants a number above 0, not '" + text + "'");
}

Request parse(int count, char** words)
{
    Request request;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--worst") {
            request.worst = true;
            continue;
        }
        if (word.rfind("--", 0) != 0) {
            request.folder = word;
            continue;
        }
        const std::string value = i + 1 < count ? words[++i] : "";
        char rest = 0;
        if (word == "--motions")
            request.motions = value;
        else if (word == "--trackers")
            request.trackers = value;
        else if (word == "--write")
            request.write = value;
        else if (word == "--seed")
            read(word, value, request.seed);
        else if (word == "--bar")
            read(word, value, request.barWidth);
        else if (word == "--frames")
            read(word, value, request.frames);
        else if (word != "--size")
            throw std::invalid_argument("no such option: " + word);
        else if (std::sscanf(value.c_str(), "%dx%d%c", &request.size.width, &request.size.height, &rest) != 2)
            throw std::invalid_argument("--size wants WIDTHxHEIGHT, not '" + value + "'");
    }
    if (request.folder.empty() || request.frames < 3 || std::min(request.size.width, request.size.height) < 64)
        throw std::invalid_argument("wants a folder, three frames or more, and 64 pixels or more each way");
    return request;
}

} // namespace

int main(int count, char** words)
{
    try {
        compare(parse(count, words));
        return 0;
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "photographs_benchmark: %s\n%s", error.what(), usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "photographs_benchmark: %s\n", error.what());
        return 1;
    }
}
