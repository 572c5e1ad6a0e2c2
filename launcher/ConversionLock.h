#pragma once

#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// The right to convert inputs of one file stem: their conversions share the names of the files in the output
/// directory. While one object lives, no other has the right, in this process or another, of this user or another.
///
/// A lock file in the output directory stands for the right. It is locked as long as its owner lives, also where that
/// one crashes, and removed at the end by whom it belongs to.
class ConversionLock
{
public:
    /// Waits until the conversion of `input` may begin. The output directory is created where it is missing.
    /// @param progress  asked ten times a second, with the fraction 0, while it waits
    /// @return the right; "errno N" where the lock file cannot be used; or "Operation was canceled"
    /// @threads any
    [[nodiscard]] static tl::expected<ConversionLock, std::string> acquire(const std::filesystem::path& input,
                                                                           const ProgressCallback& progress);

    ConversionLock(ConversionLock&& other) noexcept;
    ConversionLock& operator=(ConversionLock&& other) noexcept;
    ~ConversionLock();

private:
    ConversionLock(std::filesystem::path file, int descriptor);
    void release_() noexcept;

    std::filesystem::path file_;
    int descriptor_; ///< -1 where the right has been moved on
};

} // namespace VX
