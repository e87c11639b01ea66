// What the tests of clips share: folders that go with the test, small sequences in them, and projects over these.
#pragma once

#include <QMetaType>
#include <QStringList>
#include <functional>
#include <gtest/gtest.h>
#include <made_footage.h>
#include <memory>
#include <orrery/clip.h>
#include <orrery/project.h>
#include <stratum/exception.h>

void PrintTo(const QString& text, std::ostream* stream);

class Folder
{
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const QString& path() const { return m_path; }
    QString operator/(const char* name) const { return m_path + QLatin1Char('/') + QString::fromUtf8(name); }
    // Hidden ones too, by name.
    QStringList files() const;
    void makeEmptyFiles(const QStringList& names) const;

private:
    QString m_path;
};

// Expects an exception of that class whose text holds the given part.
template <class Exception, class Function>
void expectThrow(Function function, const std::string& part)
{
    try {
        function();
        ADD_FAILURE() << "nothing was thrown where \"" << part << "\" was expected";
    } catch (const Exception& error) {
        EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "another exception than expected: " << error.what();
    }
}

// 64 x 48 pixels, a dozen frames.
pixels::FootageOptions smallOptions();

// Writes plate.0001.png and on; returns the pattern.
QString writeFootage(const Folder& folder, const pixels::MadeFootage& footage);
void writeImage(const QString& file, const pixels::Image& image);
pixels::SharedImage readImage(const QString& file);
std::string readBytes(const QString& file);
void writeBytes(const QString& file, const std::string& bytes);

std::vector<pixels::Point> square(double left, double top, double right, double bottom);

// A project of the clip's length over the footage, with its output folder beside.
std::unique_ptr<Project> projectOver(const QString& pattern, const Folder& output);
// A layer whose one contour has straight sides.
Layer addPolygon(Project& project, const QString& name, const std::vector<pixels::Point>& corners, int frame = 0,
                 double edgeWidth = 0);
std::vector<pixels::Point> cornersOf(const pixels::MadeFootage& footage, int frame);
double meanDifference(const pixels::Image& a, const pixels::Image& b);
