// What a frame costs, from the call until the graphics are done with it; the same triangles drawn without anything
// around them are the machine's limit.
#include "LargeScene.h"
#include "ProcessTime.h"

#include <benchmark/benchmark.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace VX
{

namespace
{

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Draws pictures with stand-ins, once they are there.
class StandInRenderer
{
public:
    explicit StandInRenderer(LargeScene& scene)
        : scene_(scene)
    {
        renderer.draw(scene.frame);
    }

    /// Until those of all `parts` are made.
    void prepare(std::uint32_t parts)
    {
        renderer.prepareStandIns();
        while (ready_ < parts)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    SceneRenderer renderer{[this] { ++ready_; }};

private:
    LargeScene& scene_;
    std::atomic<std::uint32_t> ready_ = 0;
};

void drawFrames(benchmark::State& state, SceneRenderer& renderer, LargeScene& scene)
{
    renderer.draw(scene.frame);
    double worst = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const auto start = Clock::now();
        scene.turn();
        renderer.draw(scene.frame);
        glFinish();
        worst = std::max(worst, secondsSince(start));
    }
    state.counters["worst_ms"] = worst * 1000;
    state.counters["drawn"] = static_cast<double>(renderer.statistics().triangles);
}

GLuint compileProgram()
{
    const GLuint program = glCreateProgram();
    const auto attach = [&](GLenum kind, const char* source)
    {
        const GLuint shader = glCreateShader(kind);
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
        glDeleteShader(shader);
    };
    attach(GL_VERTEX_SHADER, "#version 330 core\nlayout(location = 0) in vec3 position; uniform mat4 toClip;\n"
                             "void main() { gl_Position = toClip * vec4(position, 1.0); }");
    attach(GL_FRAGMENT_SHADER, "#version 330 core\nout vec4 result; void main() { result = vec4(1.0); }");
    glLinkProgram(program);
    return program;
}

/// One call for all triangles with the least of shaders.
void rawDrawElements(benchmark::State& state)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)));
    const Mesh& mesh = *static_cast<const ObjectMesh&>(*scene.root->children().front()).mesh();
    SceneRenderer renderer; // for its framebuffer
    SceneFrame empty = scene.frame;
    empty.root = nullptr;
    renderer.draw(empty);

    GLuint array = 0;
    GLuint buffers[2] = {0, 0};
    glGenVertexArrays(1, &array);
    glGenBuffers(2, buffers);
    glBindVertexArray(array);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.points.size() * sizeof(Vector3f)), mesh.points.data(),
                 GL_STATIC_DRAW);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.triangles.size() * sizeof(Triangle)),
                 mesh.triangles.data(), GL_STATIC_DRAW);
    const GLuint program = compileProgram();
    glUseProgram(program);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    for ([[maybe_unused]] auto _ : state)
    {
        scene.turn();
        const Camera& camera = scene.frame.camera;
        const ClipRange range = camera.clipRange(SceneRenderer::visibleBox(*scene.root));
        const Eigen::Matrix4f toClip =
            (camera.projectionMatrix(scene.frame.size, range) * camera.viewMatrix()).cast<float>();
        glUniformMatrix4fv(glGetUniformLocation(program, "toClip"), 1, GL_FALSE, toClip.data());
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(mesh.triangles.size() * 3), GL_UNSIGNED_INT, nullptr);
        glFinish();
    }
    glDeleteProgram(program);
    glDeleteBuffers(2, buffers);
    glDeleteVertexArrays(1, &array);
}

/// From a mesh in memory to the first picture.
void firstFrame(benchmark::State& state)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state)
    {
        SceneRenderer renderer;
        renderer.draw(scene.frame);
        glFinish();
    }
}

void frameAtRest(benchmark::State& state)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), static_cast<std::uint32_t>(state.range(1)));
    SceneRenderer renderer;
    drawFrames(state, renderer, scene);
}

void closeUpAtRest(benchmark::State& state)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), static_cast<std::uint32_t>(state.range(1)));
    scene.comeClose();
    SceneRenderer renderer;
    drawFrames(state, renderer, scene);
}

/// The first frames of a drag, while the stand-ins are not there yet.
void movingWithoutStandIns(benchmark::State& state)
{
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), static_cast<std::uint32_t>(state.range(1)));
    for ([[maybe_unused]] auto _ : state)
    {
        SceneRenderer renderer;
        scene.frame.interactive = false;
        renderer.draw(scene.frame);
        glFinish();
        scene.turn();
        scene.frame.interactive = true;
        const auto start = Clock::now();
        renderer.draw(scene.frame);
        glFinish();
        state.SetIterationTime(secondsSince(start));
        state.counters["drawn"] = static_cast<double>(renderer.statistics().triangles);
    }
}

void makeStandIns(benchmark::State& state)
{
    const auto parts = static_cast<std::uint32_t>(state.range(1));
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), parts);
    for ([[maybe_unused]] auto _ : state)
    {
        StandInRenderer drawing(scene);
        const auto start = Clock::now();
        drawing.prepare(parts);
        state.SetIterationTime(secondsSince(start));
    }
}

void moving(benchmark::State& state)
{
    const auto parts = static_cast<std::uint32_t>(state.range(1));
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), parts);
    StandInRenderer drawing(scene);
    drawing.prepare(parts);
    scene.frame.interactive = true;
    drawFrames(state, drawing.renderer, scene);
}

void closeUpMoving(benchmark::State& state)
{
    const auto parts = static_cast<std::uint32_t>(state.range(1));
    LargeScene scene(static_cast<std::uint32_t>(state.range(0)), parts);
    StandInRenderer drawing(scene);
    drawing.prepare(parts);
    scene.comeClose();
    scene.frame.interactive = true;
    drawFrames(state, drawing.renderer, scene);
}

void readPicture(benchmark::State& state)
{
    LargeScene scene(1000);
    SceneRenderer renderer;
    renderer.draw(scene.frame);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(renderer.readPixels());
}

constexpr std::int64_t million = 1'000'000;

void oneMesh(benchmark::internal::Benchmark* bench)
{
    bench->Args({million, 1})->Args({4 * million, 1})->Unit(benchmark::kMillisecond);
}

void oneMeshAndManyParts(benchmark::internal::Benchmark* bench)
{
    oneMesh(bench);
    bench->Args({4 * million, 400});
}

BENCHMARK(rawDrawElements)->Apply(oneMesh)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(firstFrame)->Apply(oneMesh)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(frameAtRest)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(closeUpAtRest)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(movingWithoutStandIns)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseManualTime()->Iterations(3);
BENCHMARK(makeStandIns)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseManualTime()->Iterations(3);
BENCHMARK(moving)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(closeUpMoving)->Apply(oneMeshAndManyParts)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(readPicture)->Apply(withProcessTime);

} // namespace

} // namespace VX
