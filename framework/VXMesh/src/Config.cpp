#include "ApplicationName.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/Config.h>
#include <VXMesh/Json.h>
#include <VXMesh/Logger.h>
#include <VXMesh/MappedFile.h>
#include <VXMesh/UserFolders.h>

#include <json/writer.h>
#include <spdlog/logger.h>

#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::filesystem::path configFile()
{
    return getUserConfigDir() / "config.json";
}

void warn(const std::string& text)
{
    if (!text.empty())
        Logger::instance().getSpdLogger()->warn(text);
}

/// Renames a file that cannot be understood to the first free name of "….damaged", "….damaged.1" and so on.
std::string setAside(const std::filesystem::path& file)
{
    const std::string base = file.filename().string() + ".damaged";
    std::string name = base;
    std::error_code error;
    for (int i = 1; std::filesystem::exists(file.parent_path() / name, error); ++i)
        name = base + '.' + std::to_string(i);
    std::filesystem::rename(file, file.parent_path() / name, error);
    if (error)
        return "The settings file is damaged; the default settings are used";
    return "The settings file is damaged and was renamed to \"" + name + "\"; the default settings are used";
}

} // namespace

Config& Config::instance()
{
    static Config config;
    return config;
}

Config::Config()
    : file_(configFile())
    , document_(Json::objectValue)
{
}

Config::~Config()
{
    const MutexLock lock(mutex_);
    // At the end of the process there may be no log any more to warn in.
    if (unsaved_)
        static_cast<void>(save_());
}

void Config::reset(const std::string& applicationName)
{
    setApplicationName(applicationName);
    std::filesystem::path file = configFile();
    std::string warning;
    {
        const MutexLock lock(mutex_);
        if (unsaved_)
            warning = save_();
        file_ = std::move(file);
        document_ = Json::objectValue;
        loaded_ = unsaved_ = warnedOfWriting_ = unreadable_ = false;
        problem_ = Problem::None;
    }
    Logger::instance().closeFile();
    warn(warning);
}

bool Config::getBool(const std::string& key, bool defaultValue)
{
    const Json::Value value = getJson(key, defaultValue);
    return value.isBool() ? value.asBool() : defaultValue;
}

void Config::setBool(const std::string& key, bool value)
{
    setJson(key, value);
}

Json::Value Config::getJson(const std::string& key, const Json::Value& defaultValue)
{
    std::string warning;
    Json::Value value;
    {
        const MutexLock lock(mutex_);
        warning = loadOnce_();
        value = document_.get(key, defaultValue);
    }
    warn(warning);
    return value;
}

void Config::setJson(const std::string& key, const Json::Value& value)
{
    std::string loadWarning;
    std::string saveWarning;
    {
        const MutexLock lock(mutex_);
        loadWarning = loadOnce_();
        // Another instance of the program may have changed other keys since.
        bool fileIsCurrent = false;
        if (!unsaved_)
            if (auto now = deserializeJsonValue(file_); now && now->isObject())
            {
                document_ = std::move(*now);
                fileIsCurrent = true;
            }
        if (!fileIsCurrent || !document_.isMember(key) || document_[key] != value)
        {
            document_[key] = value;
            unsaved_ = true;
            saveWarning = save_();
        }
    }
    warn(loadWarning);
    warn(saveWarning);
}

void Config::setDocument(const Json::Value& document)
{
    std::string warning;
    {
        const MutexLock lock(mutex_);
        // What is there is read first, so that a damaged file is set aside before the next save takes its place.
        warning = loadOnce_();
        document_ = document.isObject() ? document : Json::Value(Json::objectValue);
        unsaved_ = true;
    }
    warn(warning);
}

std::string Config::loadOnce_()
{
    if (loaded_)
        return {};
    loaded_ = true;
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::symlink_status(file_, error)))
        return {};
    return read_();
}

std::string Config::read_()
{
    const auto file = MappedFile::open(file_);
    if (!file)
    {
        unreadable_ = true;
        problem_ = Problem::Unreadable;
        return "The settings file cannot be read; the default settings are used, and changes last until the program "
               "ends";
    }
    auto document = deserializeJsonValue(std::string(file->text()));
    if (!document || !document->isObject())
    {
        problem_ = Problem::Damaged;
        return setAside(file_);
    }
    document_ = std::move(*document);
    return {};
}

Config::Problem Config::takeProblem()
{
    const MutexLock lock(mutex_);
    return std::exchange(problem_, Problem::None);
}

std::string Config::save_()
{
    // What cannot be read is not replaced.
    unsaved_ = unreadable_ || !createUserFolder(file_.parent_path()) ||
               !writeFileAtomically(file_, document_.toStyledString());
    if (!unsaved_ || unreadable_ || warnedOfWriting_)
        return {};
    warnedOfWriting_ = true;
    problem_ = Problem::Unwritable;
    return "The settings cannot be saved; changes last until the program ends";
}

} // namespace VX
