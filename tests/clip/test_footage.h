// What the tests of clips share: folders that go with the test, small sequences in them, and projects over these.
#pragma once

#include <QMetaType>
#include <QStringList>
#include <functional>
#include <made_footage.h>
#include <memory>
#include <orrery/clip.h>
#include <orrery/project.h>
#include <stratum/exception.h>
#include <testing.h>

// 64 x 48 pixels, a dozen frames.
pixels::FootageOptions smallOptions();

// Writes plate.0001.png and on; returns the pattern.
QString writeFootage(const Folder& folder, const pixels::MadeFootage& footage);
void writeImage(const QString& file, const pixels::Image& image);
pixels::SharedImage readImage(const QString& file);
void makeEmptyFiles(const Folder& folder, const QStringList& names);

std::vector<pixels::Point> square(double left, double top, double right, double bottom);

// A project of the clip's length over the footage, with its output folder beside.
std::unique_ptr<Project> projectOver(const QString& pattern, const Folder& output);
// A layer whose one contour has straight sides.
Layer addPolygon(Project& project, const QString& name, const std::vector<pixels::Point>& corners, int frame = 0,
                 double edgeWidth = 0);
std::vector<pixels::Point> cornersOf(const pixels::MadeFootage& footage, int frame);
double meanDifference(const pixels::Image& a, const pixels::Image& b);
