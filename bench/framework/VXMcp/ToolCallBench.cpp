// How long one call of a tool that does nothing takes over a connection that is kept, and how many a second eight
// clients get.
#include "tests/support/RawSocket.h"

#include <VXMcp/Server.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Clock = std::chrono::steady_clock;

Mcp::Server& server()
{
    static Mcp::Server out;
    if (!out.isRunning())
    {
        Mcp::Tool tool{.name = "bench.nothing", .description = "Does nothing"};
        tool.run = [](const std::shared_ptr<Mcp::ToolCall>& call, const Mcp::Tool::Answer& answer)
        { answer(Mcp::ToolResult::of(call->arguments())); };
        out.addTool(std::move(tool));
        if (!out.start({.port = 0}))
            std::abort();
    }
    return out;
}

std::string modernCall()
{
    const std::string body =
        R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"bench.nothing","arguments":{"a":1},"_meta":{)"
        R"("io.modelcontextprotocol/protocolVersion":"2026-07-28","io.modelcontextprotocol/clientCapabilities":{}}}})";
    return "POST /mcp HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
           "Accept: application/json, text/event-stream\r\nMCP-Protocol-Version: 2026-07-28\r\n"
           "Mcp-Method: tools/call\r\nMcp-Name: bench.nothing\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string legacyCall()
{
    const std::string body =
        R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"bench.nothing","arguments":{"a":1}}})";
    return "POST /mcp HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
           "Accept: application/json, text/event-stream\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

void call(Test::RawSocket& socket, const std::string& request)
{
    socket.send(request);
    if (!socket.receiveAnswer().starts_with("HTTP/1.1 200"))
        std::abort();
}

void oneClient(benchmark::State& state, const std::string& request)
{
    auto socket = Test::RawSocket::connect(server().port());
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state)
    {
        const Clock::time_point start = Clock::now();
        call(socket, request);
        const std::chrono::duration<double> time = Clock::now() - start;
        state.SetIterationTime(time.count());
        times.push_back(time.count() * 1e6);
    }
    std::ranges::sort(times);
    state.counters["p50_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
}

void eightClients(benchmark::State& state)
{
    constexpr int clients = 8;
    constexpr int callsEach = 500;
    const std::string request = modernCall();
    for ([[maybe_unused]] auto _ : state)
    {
        std::vector<std::thread> threads;
        for (int i = 0; i < clients; ++i)
            threads.emplace_back(
                [&]
                {
                    auto socket = Test::RawSocket::connect(server().port());
                    for (int n = 0; n < callsEach; ++n)
                        call(socket, request);
                });
        for (auto& thread : threads)
            thread.join();
    }
    state.counters["calls_per_second"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * clients * callsEach, benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(oneClient, modern, modernCall())->UseManualTime()->Iterations(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(oneClient, legacy, legacyCall())->UseManualTime()->Iterations(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK(eightClients)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace VX
