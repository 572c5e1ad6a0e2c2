#pragma once

#include <benchmark/benchmark.h>

namespace VX
{

/// For `Apply`: counts the processor time of all threads and the time on the clock, and shows them in milliseconds.
inline void withProcessTime(benchmark::internal::Benchmark* bench)
{
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

} // namespace VX
