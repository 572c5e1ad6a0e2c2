#pragma once

#include "BackgroundTasks.h"

#include <VXMesh/FaceSet.h>
#include <VXMesh/Geometry.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace VX
{

/// Grows regions of faces on a worker; which faces meet along which edges is found out once a mesh.
/// @threads the UI thread
class RegionFinder
{
public:
    using Callback = std::function<void(const FaceSet&)>;

    RegionFinder();

    /// Callbacks not delivered yet never come.
    ~RegionFinder();

    RegionFinder(const RegionFinder&) = delete;
    RegionFinder& operator=(const RegionFinder&) = delete;

    /// Finds the region around a face (`growRegion`). `done` comes on the UI thread, unless a newer call replaced this
    /// one before.
    void find(std::shared_ptr<const Mesh> mesh, std::uint32_t face, double angleToleranceDegrees, Callback done);

    /// True while a callback is to come.
    [[nodiscard]] bool isBusy() const;

    /// Frees what is known of the mesh; the callback to come never does.
    void clear();

private:
    struct State;
    std::shared_ptr<State> state_;
    BackgroundTasks worker_;
};

} // namespace VX
