// What the tests of the engine share: folders and files, and expected exceptions.
#pragma once

#include <QDir>
#include <QStringList>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <fundo/qt_version.h>
#include <gtest/gtest.h>
#include <iterator>
#include <listener.h>
#include <ostream>
#include <stdexcept>

inline std::string toStdString(const QString& text) { return Fundo::qt::toStdString(text.toUtf8()); }

inline void PrintTo(const QString& text, std::ostream* stream) { *stream << '"' << toStdString(text) << '"'; }

// A folder that is removed with its contents at the end of the test.
class Folder
{
public:
    Folder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "engine-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error(pattern);
        m_path = QString::fromUtf8(pattern.c_str());
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(toStdString(m_path), ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const QString& path() const { return m_path; }
    QString operator/(const QString& name) const { return m_path + QLatin1Char('/') + name; }
    QString operator/(const char* name) const { return *this / QString::fromUtf8(name); }
    // What it holds, hidden ones too, by name.
    QStringList files() const
    {
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        return QDir(m_path).entryList(all, QDir::Name);
    }

private:
    QString m_path;
};

inline std::string readBytes(const QString& file)
{
    std::ifstream stream(toStdString(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeBytes(const QString& file, const std::string& bytes)
{
    std::ofstream(toStdString(file), std::ios::binary) << bytes;
}

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
