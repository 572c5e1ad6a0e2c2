#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <spdlog/common.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// Collects what is logged, of every level from debug on, until the end of the scope.
/// @threads any
class LogCapture
{
public:
    struct Line
    {
        spdlog::level::level_enum level;
        std::string text;

        friend bool operator==(const Line&, const Line&) = default;
    };

    LogCapture();
    ~LogCapture();

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// In the order in which they came.
    [[nodiscard]] std::vector<Line> lines() const;

    /// The texts of one level.
    [[nodiscard]] std::vector<std::string> texts(spdlog::level::level_enum level) const;

    /// Whether a line of any level has `part` in it.
    [[nodiscard]] bool contains(std::string_view part) const;

    void clear();

private:
    class Sink;

    std::shared_ptr<Sink> sink_;
};

/// For GoogleTest's messages: "warning: The settings …".
void PrintTo(const LogCapture::Line& line, std::ostream* stream);

} // namespace VX::Test
