// vireo-make-footage: writes a sequence of a textured surface that moves, turns and tilts, and a file that tells where
// its corners are in every frame.

#include "made_footage.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <pixels_loader.h>

namespace {

constexpr const char* usage = R"(Usage: vireo-make-footage [options] FOLDER

Writes FOLDER/plate.0001.png and on, and FOLDER/truth.json with the corners of the surface in every frame
(clockwise from its top left, in pixels from the top left corner of the image).

  --size WIDTHxHEIGHT   of a frame (960x540)
  --frames NUMBER       (100)
  --noise NUMBER        standard deviation of the grain, for values from 0 to 1 (0.01)
  --blur NUMBER         of the lens, in pixels (0.7)
  --brightness NUMBER   the part of the light that is added up to the last frame (0.2)
  --motion NUMBER       1: as usual; 0: none (1)
  --leaving NUMBER      the part of the surface that leaves the view on the way (0)
  --occluder            a bar passes in front of the surface
  --seed NUMBER         another number, another picture (1)
  --suffix NAME         png, exr, jpg, tif or dpx (png)
  --first NUMBER        the first frame's number (1)
)";

struct Request
{
    pixels::FootageOptions footage;
    std::string suffix = "png";
    int first = 1;
    std::filesystem::path folder;
};

[[noreturn]] void refuse(const std::string& problem) { throw std::invalid_argument(problem); }

double number(const std::string& option, const std::string& text)
{
    std::size_t used = 0;
    double value = 0;
    try {
        value = std::stod(text, &used);
    } catch (const std::logic_error&) {
    }
    if (used == 0 || used != text.size())
        refuse(option + " wants a number, not '" + text + "'");
    return value;
}

pixels::Size size(const std::string& text)
{
    pixels::Size size;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%dx%d%c", &size.width, &size.height, &rest) != 2)
        refuse("--size wants WIDTHxHEIGHT, not '" + text + "'");
    return size;
}

Request parse(int count, char** words)
{
    Request request;
    pixels::FootageOptions& footage = request.footage;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word.rfind("--", 0) != 0) {
            if (!request.folder.empty())
                refuse("one folder only, not also '" + word + "'");
            request.folder = word;
            continue;
        }
        if (word == "--occluder") {
            footage.occluder = true;
            continue;
        }
        if (i + 1 == count)
            refuse(word + " wants a value");
        const std::string value = words[++i];
        if (word == "--size")
            footage.size = size(value);
        else if (word == "--frames")
            footage.frames = int(number(word, value));
        else if (word == "--noise")
            footage.noise = number(word, value);
        else if (word == "--blur")
            footage.blur = number(word, value);
        else if (word == "--brightness")
            footage.brightness = number(word, value);
        else if (word == "--motion")
            footage.motion = number(word, value);
        else if (word == "--leaving")
            footage.leaving = number(word, value);
        else if (word == "--seed")
            footage.seed = unsigned(number(word, value));
        else if (word == "--suffix")
            request.suffix = value;
        else if (word == "--first")
            request.first = int(number(word, value));
        else
            refuse("no such option: " + word);
    }
    if (request.folder.empty())
        refuse("no folder given");
    if (request.first < 0)
        refuse("--first must not be below 0");
    return request;
}

void writeTruth(const Request& request, const pixels::MadeFootage& footage)
{
    nlohmann::json frames = nlohmann::json::array();
    for (int i = 0; i < request.footage.frames; ++i) {
        nlohmann::json corners = nlohmann::json::array();
        for (const pixels::Point corner : footage.corners(i))
            corners.push_back({corner.x, corner.y});
        frames.push_back({{"frame", request.first + i}, {"corners", corners}});
    }
    const nlohmann::json truth = {{"width", request.footage.size.width},
                                  {"height", request.footage.size.height},
                                  {"first", request.first},
                                  {"last", request.first + request.footage.frames - 1},
                                  {"frames", frames}};
    const auto path = request.folder / "truth.json";
    std::ofstream file(path);
    file << truth.dump(1) << '\n';
    if (!file.flush())
        throw pixels::FileError(path.string(), "cannot be written");
}

void make(const Request& request)
{
    const pixels::MadeFootage footage(request.footage);
    std::filesystem::create_directories(request.folder);
    for (int i = 0; i < request.footage.frames; ++i) {
        char name[64];
        std::snprintf(name, sizeof name, "plate.%04d.", request.first + i);
        pixels::library().writeFrame((request.folder / (name + request.suffix)).string(), footage.frame(i));
    }
    writeTruth(request, footage);
}

} // namespace

int main(int count, char** words)
{
    if (count == 2 && std::string(words[1]) == "--help") {
        std::cout << usage;
        return 0;
    }
    try {
        make(parse(count, words));
        return 0;
    } catch (const std::invalid_argument& error) {
        std::cerr << "vireo-make-footage: " << error.what() << '\n' << usage;
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "vireo-make-footage: " << error.what() << '\n';
        return 1;
    }
}
