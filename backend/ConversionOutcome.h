#pragma once

#include "ServerConfig.h"

#include <string>

namespace VX
{

struct ProcessEnd;

/// What came of running the converter once.
struct ConversionOutcome
{
    enum class Kind
    {
        Finished,
        Failed, ///< another try would end the same way
        Died    ///< another try may do better
    };

    Kind kind = Kind::Finished;
    std::string message; ///< for the user, unless finished
};

/// Reads how the converter ended: 0 is success, 1 a failure whose sentence is the last line of its standard error; a
/// limit that it hit is a failure too, and everything else an accident.
[[nodiscard]] ConversionOutcome readProcessEnd(const ProcessEnd& end, const ConversionLimits& limits);

/// The outcome of a conversion that was stopped because its time was over.
[[nodiscard]] ConversionOutcome timeLimitOutcome(const ConversionLimits& limits);

/// The outcome of a converter that ended well without having written its file, or unexpectedly.
[[nodiscard]] ConversionOutcome accidentOutcome();

} // namespace VX
