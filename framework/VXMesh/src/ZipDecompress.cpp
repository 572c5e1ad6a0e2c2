#include "ZipHandle.h"

#include <VXMesh/FileError.h>
#include <VXMesh/Zip.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <set>
#include <string_view>
#include <vector>

namespace VX
{

namespace
{

using Result = tl::expected<void, std::string>;

struct CloseZipFile
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// "a/b/" without the slash at its end; empty where the name could lead out of the target or to something else than
// what it seems to be.
std::string safeName(std::string_view name)
{
    if (name.ends_with('/'))
        name.remove_suffix(1);
    std::string result(name);
    while (true)
    {
        const std::string_view part = name.substr(0, name.find('/'));
        const bool isPlain = std::none_of(part.begin(), part.end(),
                                          [](char c) { return c == '\\' || (c >= 0 && c < ' ') || c == '\x7f'; });
        if (part.empty() || part == "." || part == ".." || !isPlain)
            return {};
        if (part.size() == name.size())
            return result;
        name.remove_prefix(part.size() + 1);
    }
}

// Makers on Unix keep the type of a file in the high half of its attributes.
bool isSpecialFile(zip_t* zip, zip_uint64_t index)
{
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    if (zip_file_get_external_attributes(zip, index, 0, &system, &attributes) != 0 || system != ZIP_OPSYS_UNIX)
        return false;
    constexpr zip_uint32_t typeMask = 0170000;
    constexpr zip_uint32_t regularFile = 0100000;
    constexpr zip_uint32_t folder = 0040000;
    const zip_uint32_t type = (attributes >> 16U) & typeMask;
    return type != 0 && type != regularFile && type != folder;
}

// Unpacks one archive and, unless it came to its end, removes what it wrote.
class Unpacker
{
public:
    Unpacker(zip_t* zip, std::filesystem::path target, const DecompressZipSettings& settings, std::uint64_t archiveSize)
        : zip_(zip)
        , target_(std::move(target))
        , settings_(settings)
    {
        constexpr std::uint64_t alwaysAllowed = 1U << 20U;
        // The product must not overflow: an archive has less than 2^64 / maxRatio bytes or the limit plays no part.
        const std::uint64_t byRatio = settings.maxRatio != 0 && archiveSize > settings.maxBytes / settings.maxRatio
                                          ? settings.maxBytes
                                          : archiveSize * settings.maxRatio + alwaysAllowed;
        byteLimit_ = std::min(settings.maxBytes, byRatio);
    }

    ~Unpacker()
    {
        std::error_code ignored;
        for (auto path = created_.rbegin(); path != created_.rend(); ++path)
            std::filesystem::remove(*path, ignored);
    }

    Unpacker(const Unpacker&) = delete;
    Unpacker& operator=(const Unpacker&) = delete;

    // An error is a reason without the archive's name, except for a cancel.
    Result run()
    {
        if (auto entries = readEntries_(); !entries)
            return entries;
        if (auto made = makeFolder_(target_); !made)
            return made;
        for (std::size_t i = 0; i < names_.size(); ++i)
            if (auto unpacked = unpackEntry_(i); !unpacked)
                return unpacked;
        created_.clear();
        return {};
    }

private:
    [[nodiscard]] Result tooLarge_() const
    {
        return tl::unexpected(fmt::format("it unpacks to more than the {} bytes allowed.", byteLimit_));
    }

    // Refuses before the first byte is written whatever can be refused then.
    Result readEntries_()
    {
        const zip_int64_t count = zip_get_num_entries(zip_, 0);
        if (count < 0 || static_cast<std::uint64_t>(count) > settings_.maxEntries)
            return tl::unexpected(fmt::format("it has more than the {} entries allowed.", settings_.maxEntries));
        for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i)
        {
            zip_stat_t info;
            zip_stat_init(&info);
            if (zip_stat_index(zip_, i, 0, &info) != 0 || (info.valid & ZIP_STAT_NAME) == 0)
                return tl::unexpected(zipErrorText(zip_));
            if (safeName(info.name).empty())
                return tl::unexpected<std::string>("it has an entry whose name is not allowed.");
            if (isSpecialFile(zip_, i))
                return tl::unexpected<std::string>("it has a symbolic link or another special file.");
            if ((info.valid & ZIP_STAT_SIZE) != 0)
            {
                if (info.size > byteLimit_ - declaredBytes_)
                    return tooLarge_();
                declaredBytes_ += info.size;
            }
            names_.emplace_back(info.name);
        }
        return {};
    }

    Result makeFolder_(const std::filesystem::path& folder)
    {
        if (folders_.contains(folder))
            return {};
        std::error_code error;
        const auto status = std::filesystem::symlink_status(folder, error);
        if (!std::filesystem::exists(status))
        {
            if (!std::filesystem::create_directory(folder, error))
                return tl::unexpected(fileErrorText("create", folder, error));
            created_.push_back(folder);
        }
        // The target itself may be reached through a link; below it a link could lead anywhere.
        else if (folder != target_ && !std::filesystem::is_directory(status))
            return tl::unexpected(fileErrorText("create", folder, std::make_error_code(std::errc::file_exists)));
        folders_.insert(folder);
        return {};
    }

    Result unpackEntry_(std::size_t index)
    {
        const std::filesystem::path name = safeName(names_[index]);
        std::filesystem::path folder = target_;
        for (const auto& part : name.parent_path())
            if (auto made = makeFolder_(folder /= part); !made)
                return made;
        const std::filesystem::path path = target_ / name;
        return names_[index].ends_with('/') ? makeFolder_(path) : unpackFile_(index, path);
    }

    Result unpackFile_(std::size_t index, const std::filesystem::path& path)
    {
        const std::unique_ptr<zip_file_t, CloseZipFile> source(zip_fopen_index(zip_, index, 0));
        if (!source)
            return tl::unexpected(zipErrorText(zip_));
        // "x": never through a link, never over another entry.
        std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wbxe"));
        if (!file)
            return writeError_(path);
        created_.push_back(path);
        while (true)
        {
            const zip_int64_t size = zip_fread(source.get(), buffer_.data(), buffer_.size());
            if (size < 0)
                return tl::unexpected(startLower(zip_file_strerror(source.get())) + '.');
            if (size == 0)
                break;
            const auto bytes = static_cast<std::size_t>(size);
            writtenBytes_ += bytes;
            if (writtenBytes_ > byteLimit_)
                return tooLarge_();
            if (std::fwrite(buffer_.data(), 1, bytes, file.get()) != bytes)
                return writeError_(path);
            const double total = static_cast<double>(std::max(declaredBytes_, writtenBytes_));
            if (!reportProgress(settings_.progress, static_cast<float>(static_cast<double>(writtenBytes_) / total)))
                return tl::unexpected(operationCanceledText());
        }
        if (std::fclose(file.release()) != 0)
            return writeError_(path);
        return {};
    }

    static Result writeError_(const std::filesystem::path& path)
    {
        return tl::unexpected(fileErrorText("write", path, std::error_code(errno, std::generic_category())));
    }

    zip_t* zip_;
    std::filesystem::path target_;
    const DecompressZipSettings& settings_;
    std::uint64_t byteLimit_ = 0;
    std::uint64_t declaredBytes_ = 0;
    std::uint64_t writtenBytes_ = 0;
    std::vector<std::string> names_;
    std::vector<std::filesystem::path> created_;
    std::set<std::filesystem::path> folders_;
    std::array<char, 1U << 16U> buffer_ = {};
};

} // namespace

Result decompressZip(const std::filesystem::path& zipFile, const std::filesystem::path& targetFolder,
                     const DecompressZipSettings& settings)
{
    std::error_code error;
    const std::uintmax_t archiveSize = std::filesystem::file_size(zipFile, error);
    if (error)
        return tl::unexpected(fileErrorText("unpack", zipFile, error));
    int code = 0;
    const ZipHandle zip(zip_open(zipFile.c_str(), ZIP_RDONLY, &code));
    if (!zip)
        return tl::unexpected(fileErrorText("unpack", zipFile, zipErrorText(code)));
    return Unpacker(zip.get(), targetFolder, settings, archiveSize)
        .run()
        .map_error([&zipFile](const std::string& reason)
                   { return reason == operationCanceledText() ? reason : fileErrorText("unpack", zipFile, reason); });
}

} // namespace VX
