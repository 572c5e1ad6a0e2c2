#include "ConversionOutcome.h"

#include "ChildProcess.h"

#include <fmt/format.h>

#include <csignal>
#include <string_view>

namespace VX
{

namespace
{

/// Longer sentences are not for a message box.
constexpr std::size_t longestSentence = 1000;

/// The last line that is not empty, without blanks around it.
std::string lastLine(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto end = text.find_last_not_of(blanks);
    if (end == std::string_view::npos)
        return {};
    text = text.substr(0, end + 1);
    const auto lineEnd = text.find_last_of('\n');
    text = text.substr(lineEnd == std::string_view::npos ? 0 : lineEnd + 1);
    text.remove_prefix(text.find_first_not_of(blanks));
    return std::string(text.substr(0, longestSentence));
}

/// An allocation that failed ends a C++ program with this text; a process that the system killed while it held much
/// memory was most likely killed for that.
bool ranOutOfMemory(const ProcessEnd& end, const ConversionLimits& limits)
{
    return end.errorOutput.find("bad_alloc") != std::string::npos ||
           (end.signal == SIGKILL && limits.memory > 0 && end.peakMemory > limits.memory / 2);
}

} // namespace

ConversionOutcome readProcessEnd(const ProcessEnd& end, const ConversionLimits& limits)
{
    using Kind = ConversionOutcome::Kind;
    if (end.signal == 0 && end.exitCode == 0)
        return {};
    if (end.signal == 0 && end.exitCode == 1)
        if (std::string sentence = lastLine(end.errorOutput); !sentence.empty())
            return {Kind::Failed, std::move(sentence)};
    if (end.signal == 0 && end.exitCode == ChildProcess::cannotRun)
        return {Kind::Failed, "The converter could not be started. Install the program again."};
    if (end.cpuTimeOver)
        return timeLimitOutcome(limits);
    if (ranOutOfMemory(end, limits))
        return {Kind::Failed,
                "The conversion ran out of memory. Close other programs, or split the file into smaller ones."};
    return accidentOutcome();
}

ConversionOutcome timeLimitOutcome(const ConversionLimits& limits)
{
    return {ConversionOutcome::Kind::Failed,
            fmt::format("The conversion took longer than {} seconds and was stopped. Split the file into smaller ones.",
                        limits.time.count())};
}

ConversionOutcome accidentOutcome()
{
    return {ConversionOutcome::Kind::Died, "The converter stopped unexpectedly. The file may be damaged: export it "
                                           "again from the program that wrote it."};
}

} // namespace VX
