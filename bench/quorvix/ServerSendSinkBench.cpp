// What a line of the log costs the thread that writes it: the sink that ships lines beside one that drops them.

#include <quorvix/telemetry/ServerSendSink.h>

#include <benchmark/benchmark.h>
#include <spdlog/details/log_msg.h>
#include <spdlog/sinks/null_sink.h>

#include <cstdint>

namespace
{

const spdlog::details::log_msg line("", spdlog::level::info, "Opened a scene with 4 objects and 80000 triangles");

// As many as wait in the long run, so that memory is that of a running program.
constexpr int linesInABatch = 200;

void receiveLine(benchmark::State& state)
{
    VX::ServerSendSink sink({.url = "http://127.0.0.1:1/v1/logs"});
    int waiting = 0;
    for (auto _ : state)
    {
        sink.log(line);
        if (++waiting < linesInABatch)
            continue;
        state.PauseTiming();
        waiting = 0;
        sink.setLogLevel(spdlog::level::off);
        sink.setLogLevel(spdlog::level::info);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(receiveLine)->Repetitions(9)->ReportAggregatesOnly();

void dropLine(benchmark::State& state)
{
    spdlog::sinks::null_sink_mt sink;
    for (auto _ : state)
        sink.log(line);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(dropLine)->Repetitions(9)->ReportAggregatesOnly();

} // namespace
