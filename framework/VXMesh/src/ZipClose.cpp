#include "ZipClose.h"

#include <VXMesh/FileError.h>

namespace VX
{

namespace
{

// What libzip's callbacks share while it writes.
struct Reporter
{
    const ProgressCallback& progress;
    bool isCanceled = false;

    static void report(zip_t*, double fraction, void* self)
    {
        auto& reporter = *static_cast<Reporter*>(self);
        if (!reportProgress(reporter.progress, static_cast<float>(fraction)))
            reporter.isCanceled = true;
    }

    static int isToStop(zip_t*, void* self) { return static_cast<Reporter*>(self)->isCanceled ? 1 : 0; }
};

} // namespace

tl::expected<void, std::string> closeZip(ZipHandle zip, const std::filesystem::path& shownPath,
                                         const ProgressCallback& progress)
{
    Reporter reporter{progress};
    if (progress)
    {
        constexpr double precision = 0.01;
        zip_register_progress_callback_with_state(zip.get(), precision, Reporter::report, nullptr, &reporter);
        zip_register_cancel_callback_with_state(zip.get(), Reporter::isToStop, nullptr, &reporter);
    }
    const bool closed = zip_close(zip.get()) == 0;
    if (closed) [[maybe_unused]]
        zip_t* const freed = zip.release();
    if (reporter.isCanceled)
        return tl::unexpected(operationCanceledText());
    if (!closed)
        return tl::unexpected(fileErrorText("write", shownPath, zipErrorText(zip.get())));
    return {};
}

} // namespace VX
