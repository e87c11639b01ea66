// vireo-contact-sheet: lays frames of footage, their mattes and both over each other side by side in one picture.
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <pixels_loader.h>

namespace {

using pixels::Image;
using pixels::Point;
using pixels::Size;

constexpr const char* usage = R"(Usage: vireo-contact-sheet DESCRIPTION.json SHEET.png

DESCRIPTION.json: {"width": W, "title": "...", "columns": ["...", ...], "rows": [{"label": "...", "cells": [...]}, ...]}
A cell is {"image": FILE} with, if wanted, "matte": FILE and "color": [r, g, b], laid over it, and
"outline": [[x, y], ...], in pixels of the image. W is the width of a cell in pixels. With "plain": true the cells lie side
by side, without texts and gaps.
)";

// What lies between and around the cells, in pixels.
struct Room
{
    int gap = 8;
    int text = 14;
    int head = 2 * (14 + 8) + 8;
};
constexpr Room plainRoom = {0, 0, 0};
const pixels::Color paper = {0.10f, 0.10f, 0.11f};
const pixels::Color ink = {0.85f, 0.85f, 0.85f};
const pixels::Color line = {1.0f, 0.8f, 0.1f};

pixels::Color colorFrom(const nlohmann::json& json) { return {json.at(0), json.at(1), json.at(2)}; }

Image picture(const nlohmann::json& cell)
{
    pixels::Library& library = pixels::library();
    Image image = library.withChannels(*library.readFrame(cell.at("image").get<std::string>()), 3);
    if (cell.contains("matte")) {
        const Image matte = library.withChannels(*library.readFrame(cell.at("matte").get<std::string>()), 1);
        library.insert(image, matte, colorFrom(cell.at("color")), 0.45f);
    }
    if (cell.contains("outline")) {
        std::vector<Point> points;
        for (const nlohmann::json& point : cell.at("outline"))
            points.push_back({point.at(0), point.at(1)});
        library.drawOutline(image, points, line, 2.5);
    }
    return image;
}

Image emptySheet(Size size)
{
    Image sheet(size, 3);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            sheet.at(x, y)[0] = paper.red;
            sheet.at(x, y)[1] = paper.green;
            sheet.at(x, y)[2] = paper.blue;
        }
    return sheet;
}

void label(Image& sheet, const nlohmann::json& description, const Room& room, int rowHeight)
{
    pixels::Library& library = pixels::library();
    const nlohmann::json& rows = description.at("rows");
    const nlohmann::json& columns = description.at("columns");
    const double left = room.gap;
    for (std::size_t row = 0; row < rows.size(); ++row)
        library.drawText(sheet, rows[row].at("label"),
                         {left, double(room.head + int(row + 1) * rowHeight - 2 * room.gap + 2)}, room.text - 3, ink);
    library.drawText(sheet, description.at("title"), {left, left + room.text}, room.text, ink);
    const int pitch = (sheet.size.width - room.gap) / int(columns.size());
    for (std::size_t column = 0; column < columns.size(); ++column)
        library.drawText(sheet, columns[column], {left + int(column) * pitch, double(room.head - room.gap)},
                         room.text - 3, ink);
}

void make(const nlohmann::json& description, const std::string& output)
{
    pixels::Library& library = pixels::library();
    const nlohmann::json& rows = description.at("rows");
    const nlohmann::json& columns = description.at("columns");
    const int width = description.at("width");
    const bool isPlain = description.value("plain", false);
    const Room room = isPlain ? plainRoom : Room();
    Image sheet;
    int rowHeight = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const nlohmann::json& cells = rows[row].at("cells");
        for (std::size_t column = 0; column < cells.size(); ++column) {
            const Image image = picture(cells[column]);
            const Size size = {width, image.size.height * width / image.size.width};
            if (sheet.empty()) {
                rowHeight = size.height + room.text + 2 * room.gap;
                sheet = emptySheet(
                    {room.gap + int(columns.size()) * (width + room.gap), room.head + int(rows.size()) * rowHeight});
            }
            library.place(sheet, library.resize(image, size), room.gap + int(column) * (width + room.gap),
                          room.head + int(row) * rowHeight);
        }
    }
    if (!isPlain)
        label(sheet, description, room, rowHeight);
    library.writeFrame(output, sheet);
}

} // namespace

int main(int count, char** words)
{
    if (count != 3) {
        std::cerr << usage;
        return 2;
    }
    try {
        std::ifstream file(words[1]);
        if (!file)
            throw pixels::FileError(words[1], "cannot be read");
        make(nlohmann::json::parse(file), words[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "vireo-contact-sheet: " << error.what() << '\n';
        return 1;
    }
}
