#pragma once

#include <VXMesh/Object.h>

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VX
{

/// How long each stage of a conversion took, in order.
using StageTimes = std::vector<std::pair<std::string, std::chrono::duration<double, std::milli>>>;

/// Reads the STEP file `path`: its assembly tree with names, colours and shared instances, lengths in millimetres.
/// @return an Object without a name above the file's root products; or one sentence for the user, those of
///   `scanStepFile`, `StepReader::read` and `buildScene`, and
///   `Cannot open "NAME": REASON.`
///   "The STEP file holds no shape that can be shown."
/// @threads one conversion in a process at a time; uses the TBB pool
[[nodiscard]] tl::expected<std::shared_ptr<Object>, std::string> readStepFile(const std::filesystem::path& path,
                                                                              StageTimes* times = nullptr);

/// Reads the STEP file `input` and writes it to `output` as a scene file, whatever the ending of its name. `output` is
/// complete or, when the conversion fails, not there or as before.
/// @return one sentence for the user, those of `readStepFile` and `Cannot save "NAME": REASON.`
/// @threads as `readStepFile`
[[nodiscard]] tl::expected<void, std::string>
convertStepFile(const std::filesystem::path& input, const std::filesystem::path& output, StageTimes* times = nullptr);

} // namespace VX
