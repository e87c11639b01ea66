// Projects with something of everything in them, and all that can be read of a project as text.
#pragma once

#include <QPointF>
#include <QStringList>
#include <boost/optional/optional_io.hpp>
#include <iosfwd>
#include <memory>
#include <orrery/project.h>
#include <stratum/exception.h>
#include <testing.h>

// Every property that the public interface lets one read, the tree of parameters with its values at a number of times
// included; a line each.
QStringList describe(Project& project);

// The document that would be saved: equal for projects that are equal in everything.
std::string documentOf(Project& project);

// Layers in and out of groups, both kinds of contours, keyframes in two views, links between layers and points, a clip.
void fill(Project& project);

std::unique_ptr<Project> emptyProject();
std::unique_ptr<Project> sampleProject();

BezierControlPointData bezierPoint(float x, float y);
XControlPointData xPoint(float x, float y, float weight = 0);

std::ostream& operator<<(std::ostream& stream, const QPointF& point);
