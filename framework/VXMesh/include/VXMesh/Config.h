#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <filesystem>
#include <string>

namespace VX
{

/// The settings of the user: one JSON object by key, kept in getUserConfigDir()/config.json. Usable before there is a
/// viewer. The file is read at first use and written, complete or not at all, by every `set…`. A file that cannot be
/// understood is set aside as "config.json.damaged"; one that cannot be read stays as it is, and so do settings that
/// cannot be written in memory. Each gives one warning in the log, and is told by `takeProblem`.
/// @threads any
class VXMESH_API Config
{
public:
    static Config& instance();

    /// Saves what is not saved yet.
    ~Config();

    /// What keeps the settings of the user from being as they were, or from staying as they are.
    enum class Problem
    {
        None,
        Damaged,    ///< the file was not understood; a new one is begun
        Unreadable, ///< the file is there and cannot be read; nothing is saved
        Unwritable  ///< nothing can be saved
    };

    /// The latest of them; each is told once.
    [[nodiscard]] Problem takeProblem();

    Config(const Config&) = delete;
    Config& operator=(const Config&) = delete;

    /// Starts again for another application name, which is "Quorvix" at first: changes the user's folders
    /// (UserFolders.h), reads its settings, and lets the log go on in its folder.
    void reset(const std::string& applicationName);

    /// The value of `key`; `defaultValue` where there is none or it is not a boolean.
    [[nodiscard]] bool getBool(const std::string& key, bool defaultValue);

    void setBool(const std::string& key, bool value);

    /// The value of `key`, of whatever type; `defaultValue` where there is none.
    [[nodiscard]] Json::Value getJson(const std::string& key, const Json::Value& defaultValue);

    void setJson(const std::string& key, const Json::Value& value);

    /// Replaces all settings by `document`, an object (anything else counts as an empty one), in memory; the next
    /// `set…`, `reset` or the end of the process saves them.
    void setDocument(const Json::Value& document);

private:
    Config();

    // Each returns a warning, which is logged once the lock is released, or nothing.
    std::string loadOnce_() VX_REQUIRES(mutex_);
    std::string save_() VX_REQUIRES(mutex_);
    std::string read_() VX_REQUIRES(mutex_);

    Mutex mutex_;
    std::filesystem::path file_ VX_GUARDED_BY(mutex_);
    Json::Value document_ VX_GUARDED_BY(mutex_);
    bool loaded_ VX_GUARDED_BY(mutex_) = false;
    /// What is in memory has not reached the file.
    bool unsaved_ VX_GUARDED_BY(mutex_) = false;
    bool warnedOfWriting_ VX_GUARDED_BY(mutex_) = false;
    bool unreadable_ VX_GUARDED_BY(mutex_) = false;
    Problem problem_ VX_GUARDED_BY(mutex_) = Problem::None;
};

} // namespace VX
