#pragma once

#include <VXViewer/HistoryAction.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

class Object;
class Viewer;

/// What a scene is called and the file that it came from.
struct SceneOrigin
{
    std::string name;
    std::filesystem::path file;
};

/// The objects of files came into the scene. Files that were given together arrive one by one and are one step.
/// @threads the UI thread
class OpenFilesAction : public HistoryAction
{
public:
    /// @param viewer  its scene has the new objects; it outlives this
    /// @param childrenBefore  of the scene, without them
    /// @param originBefore  where the scene was named after the file; nothing where it kept its name
    OpenFilesAction(Viewer& viewer, std::vector<std::shared_ptr<Object>> childrenBefore,
                    std::optional<SceneOrigin> originBefore);

    /// More files arrived, with no other step between.
    void extend();

    void undo() override;
    void redo() override;

    [[nodiscard]] std::vector<std::shared_ptr<Object>> objects() const override;

    [[nodiscard]] std::size_t heapBytes() const override { return heapBytes_; }

private:
    void exchangeOrigin_();

    Viewer& viewer_;
    std::shared_ptr<Object> root_;
    std::vector<std::shared_ptr<Object>> before_;
    std::vector<std::shared_ptr<Object>> after_;
    std::optional<SceneOrigin> otherOrigin_; ///< that of the scene after the next undo or redo
    std::size_t heapBytes_ = 0;
};

} // namespace VX
