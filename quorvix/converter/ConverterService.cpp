#include <quorvix/async/StateMachineExecutor.h>
#include <quorvix/converter/AsyncLoader.h>
#include <quorvix/converter/BlockingLoader.h>
#include <quorvix/converter/ConverterService.h>

#include <utility>

namespace VX::ConverterService
{

tl::expected<LoadedObjects, std::string> fromStep(const std::filesystem::path& path,
                                                  const std::function<bool(float)>& progress)
{
    try
    {
        return BlockingLoader(path, progress).run();
    }
    catch (...)
    {
        return tl::unexpected(currentExceptionText());
    }
}

void fromStep(const std::filesystem::path& path, std::function<void(tl::expected<LoadedObjects, std::string>)> callback,
              const std::function<bool(float)>& progress)
{
    const auto loader = std::make_shared<AsyncLoader>(path, std::move(callback), progress);
    StateMachineExecutor::addStateMachine(AsyncLoader::makeStateMachine(loader));
}

} // namespace VX::ConverterService
