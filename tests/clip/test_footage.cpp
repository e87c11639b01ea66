// Made sequences and projects over them.

#include "test_footage.h"

#include <cmath>
#include <pixels_loader.h>

void makeEmptyFiles(const Folder& folder, const QStringList& names)
{
    for (const QString& name : names)
        writeBytes(folder / name, "");
}

pixels::FootageOptions smallOptions()
{
    pixels::FootageOptions options;
    options.size = {64, 48};
    options.frames = 12;
    options.noise = 0.003;
    options.blur = 0.5;
    return options;
}

void writeImage(const QString& file, const pixels::Image& image)
{
    pixels::library().writeFrame(toStdString(file), image);
}

pixels::SharedImage readImage(const QString& file) { return pixels::library().readFrame(toStdString(file)); }

QString writeFootage(const Folder& folder, const pixels::MadeFootage& footage)
{
    for (int i = 0; i < footage.options().frames; ++i)
        writeImage(folder.path() + QString::fromLatin1("/plate.%1.png").arg(i + 1, 4, 10, QLatin1Char('0')),
                   footage.frame(i));
    return folder / "plate.####.png";
}

std::vector<pixels::Point> square(double left, double top, double right, double bottom)
{
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

std::unique_ptr<Project> projectOver(const QString& pattern, const Folder& output)
{
    Clip clip(pattern, QString::fromLatin1("Plate"), false, 0, 0, 0, nullptr);
    auto project = std::make_unique<Project>(&clip, NotInterlaced, nullptr);
    project->set_output_dir(output.path(), true);
    return project;
}

Layer addPolygon(Project& project, const QString& name, const std::vector<pixels::Point>& corners, int frame,
                 double edgeWidth)
{
    Layer layer = project.add_layer(nullptr, name, static_cast<unsigned int>(frame), 0);
    QVector<BezierControlPointData> points;
    for (const pixels::Point& corner : corners)
        points.append(BezierControlPointData(true, true, static_cast<float>(corner.x), static_cast<float>(corner.y),
                                             static_cast<float>(edgeWidth)));
    layer.add_bezier_contour(static_cast<float>(frame), points, View(0));
    return layer;
}

std::vector<pixels::Point> cornersOf(const pixels::MadeFootage& footage, int frame)
{
    const auto corners = footage.corners(frame);
    return {corners.begin(), corners.end()};
}

double meanDifference(const pixels::Image& a, const pixels::Image& b)
{
    if (a.values.size() != b.values.size())
        return INFINITY;
    double sum = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        sum += std::abs(a.values[i] - b.values[i]);
    return sum / static_cast<double>(a.values.size());
}
