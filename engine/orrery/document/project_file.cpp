// A project's file: opening and saving.
#include <engine/document/document.h>
#include <engine/errors/arguments.h>
#include <engine/files/paths.h>
#include <engine/files/whole_files.h>
#include <engine/handles/announcement.h>

using namespace orrery;

Project::Project(QString file, QObject* parent)
    : QObject(parent), m_data(std::make_unique<Data>(*this, STRM_ProjectManager::create()))
{
    if (!file.isEmpty())
        readProject(*m_data, file);
}

void Project::save()
{
    const QString file = get_project_file();
    if (file.isEmpty())
        raise<STRM_BadState>(QString::fromLatin1("save: the project has no file yet"));
    save_as(file);
}

void Project::save_as(const QString& file)
{
    const QString path = absolutePath("file", file);
    bool renamed = false;
    {
        const std::lock_guard<std::mutex> one(m_data->saving);
        replaceFile(path, writeProject(*m_data, path));
        const Stratum::Exclusive lock(*m_data->manager);
        renamed = m_data->file != path;
        m_data->file = path;
    }
    const Announcement announcement(*this);
    if (renamed)
        announcement([this] { emit settingChanged(QString::fromLatin1("project_file")); });
    announcement([this, &path] { emit saved(path); });
}
