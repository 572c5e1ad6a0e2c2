#include "tests/support/TempDir.h"

#include <VXMesh/Zip.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <zip.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Test::modeOf;
using Test::readFile;
using Test::TempDir;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Files = std::map<std::string, std::string>;

// Everything below a folder by its relative name; a folder has no content and a name that ends in "/".
Files filesBelow(const std::filesystem::path& folder)
{
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        const std::string name = entry.path().lexically_relative(folder);
        files[entry.is_directory() ? name + '/' : name] = entry.is_directory() ? "" : readFile(entry.path());
    }
    return files;
}

std::string textOf(const tl::expected<void, std::string>& result)
{
    return result ? "no error" : result.error();
}

struct Entry
{
    std::string name;
    std::string content;
    /// What Unix keeps of a file's type; 0 for none.
    zip_uint32_t mode = 0;
};

// An archive as anybody could send one.
std::filesystem::path makeZip(const TempDir& temp, const std::vector<Entry>& entries)
{
    const auto path = temp.path() / "made.zip";
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const Entry& entry : entries)
    {
        zip_source_t* source = zip_source_buffer(zip, entry.content.data(), entry.content.size(), 0);
        const zip_int64_t index = zip_file_add(zip, entry.name.c_str(), source, ZIP_FL_ENC_GUESS);
        EXPECT_GE(index, 0) << zip_strerror(zip);
        if (entry.mode != 0)
            zip_file_set_external_attributes(zip, static_cast<zip_uint64_t>(index), 0, ZIP_OPSYS_UNIX,
                                             entry.mode << 16U);
    }
    EXPECT_EQ(zip_close(zip), 0);
    return path;
}

void replaceAll(std::string& bytes, std::string_view from, std::string_view to)
{
    for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + to.size()))
        bytes.replace(at, from.size(), to);
}

std::string zeros(std::size_t size)
{
    return std::string(size, '\0');
}

std::string noise(std::size_t size)
{
    std::mt19937 random(1);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}

} // namespace

TEST(CompressZip, KeepsAllFilesAndFoldersUnderTheirRelativeNames)
{
    const TempDir temp;
    temp.write("in/input", "ISO-10303-21;");
    temp.write("in/a/b/deep", noise(100'000));
    temp.write("in/empty", "");
    temp.write("in/Größe 部品", "name");
    std::filesystem::create_directories(temp.path() / "in/folder");
    ASSERT_EQ(textOf(compressZip(temp.path() / "x.zip", temp.path() / "in", {})), "no error");
    ASSERT_EQ(textOf(decompressZip(temp.path() / "x.zip", temp.path() / "out", {})), "no error");
    EXPECT_EQ(filesBelow(temp.path() / "out"), filesBelow(temp.path() / "in"));
}

TEST(CompressZip, NamesAnEntryWithoutTheFolder)
{
    const TempDir temp;
    temp.write("in/input", "content");
    ASSERT_TRUE(compressZip(temp.path() / "x.zip", temp.path() / "in", {}));
    zip_t* zip = zip_open((temp.path() / "x.zip").c_str(), ZIP_RDONLY, nullptr);
    ASSERT_NE(zip, nullptr);
    EXPECT_EQ(zip_get_num_entries(zip, 0), 1);
    EXPECT_STREQ(zip_get_name(zip, 0, 0), "input");
    zip_discard(zip);
}

TEST(CompressZip, OrdersEntriesByNameWhateverTheOrderOnDisk)
{
    const TempDir temp;
    std::vector<std::string> names;
    for (int i = 0; i < 50; ++i)
        names.push_back("file" + std::to_string(i * 37 % 50 + 10));
    for (const auto& name : names)
        temp.write("in/" + name, "content");
    std::sort(names.begin(), names.end());
    ASSERT_TRUE(compressZip(temp.path() / "x.zip", temp.path() / "in", {}));
    zip_t* zip = zip_open((temp.path() / "x.zip").c_str(), ZIP_RDONLY, nullptr);
    ASSERT_NE(zip, nullptr);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(zip_get_name(zip, i, 0), names[i]);
    zip_discard(zip);
}

TEST(CompressZip, MakesTextSmallerAndAHigherLevelMakesItSmallest)
{
    const TempDir temp;
    std::string text;
    for (int i = 0; i < 20'000; ++i)
        text += "#" + std::to_string(i) + "=CARTESIAN_POINT('',(" + std::to_string(i * 7 % 1000) + ".,0.,0.));\n";
    temp.write("in/input", text);
    CompressZipSettings small;
    small.compressionLevel = 9;
    ASSERT_TRUE(compressZip(temp.path() / "fast.zip", temp.path() / "in", {}));
    ASSERT_TRUE(compressZip(temp.path() / "small.zip", temp.path() / "in", small));
    EXPECT_LT(std::filesystem::file_size(temp.path() / "fast.zip"), text.size() / 3);
    EXPECT_LT(std::filesystem::file_size(temp.path() / "small.zip"),
              std::filesystem::file_size(temp.path() / "fast.zip"));
}

TEST(CompressZip, MakesAFileForItsOwnerAloneInPlaceOfAnOldOneOrALink)
{
    const TempDir temp;
    temp.write("in/input", "content");
    const auto target = temp.write("target", "old");
    std::filesystem::create_symlink(target, temp.path() / "x.zip");
    ASSERT_TRUE(compressZip(temp.path() / "x.zip", temp.path() / "in", {}));
    EXPECT_EQ(modeOf(temp.path() / "x.zip"), 0600U);
    EXPECT_EQ(readFile(target), "old");
}

TEST(CompressZip, NamesWhatItCannotRead)
{
    const TempDir temp;
    std::filesystem::create_directories(temp.path() / "in");
    EXPECT_EQ(textOf(compressZip(temp.path() / "x.zip", temp.path() / "missing", {})),
              "Cannot compress \"missing\": no such file or directory.");
    EXPECT_EQ(textOf(compressZip(temp.path() / "x.zip", temp.path() / "in", {})),
              "Cannot compress \"in\": the folder is empty.");
    std::filesystem::create_symlink("nowhere", temp.path() / "in/link");
    EXPECT_THAT(textOf(compressZip(temp.path() / "x.zip", temp.path() / "in", {})),
                HasSubstr("Cannot compress \"link\": "));
    EXPECT_THAT(filesBelow(temp.path()), ElementsAre(testing::Key("in/"), testing::Key("in/link")));
}

TEST(CompressZip, NamesTheArchiveThatItCannotWrite)
{
    const TempDir temp;
    temp.write("in/input", "content");
    EXPECT_EQ(textOf(compressZip(temp.path() / "missing/x.zip", temp.path() / "in", {})),
              "Cannot write \"x.zip\": no such file or directory.");
}

TEST(CompressZip, ReportsProgressAndACancelLeavesTheOldArchive)
{
    const TempDir temp;
    temp.write("in/input", noise(3'000'000));
    const auto zip = temp.write("x.zip", "old");
    std::vector<float> reports;
    CompressZipSettings settings;
    settings.progress = [&reports](float fraction) { return reports.push_back(fraction), fraction < 0.5F; };
    EXPECT_EQ(textOf(compressZip(zip, temp.path() / "in", settings)), operationCanceledText());
    EXPECT_EQ(readFile(zip), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp.path()), {}), 2);

    reports.clear();
    settings.progress = [&reports](float fraction) { return reports.push_back(fraction), true; };
    EXPECT_EQ(textOf(compressZip(zip, temp.path() / "in", settings)), "no error");
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(reports.back(), 1.0F);
}

TEST(DecompressZip, RefusesNamesThatLeadElsewhere)
{
    for (const char* name : {"../evil", "/evil", "a/../../evil", "a/./b", "a//b", "..", ".", "a\\..\\b", "a\nb"})
    {
        const TempDir temp;
        const auto zip = makeZip(temp, {{"good", "content"}, {name, "evil"}});
        EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", {})),
                  "Cannot unpack \"made.zip\": it has an entry whose name is not allowed.")
            << name;
        EXPECT_FALSE(std::filesystem::exists(temp.path() / "out")) << name;
    }
}

TEST(DecompressZip, RefusesLinksAndOtherSpecialFiles)
{
    for (const zip_uint32_t type : {0120777U, 0010644U, 0020644U, 0060644U, 0140777U})
    {
        const TempDir temp;
        const auto zip = makeZip(temp, {{"link", "/etc/passwd", type}});
        EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", {})),
                  "Cannot unpack \"made.zip\": it has a symbolic link or another special file.");
    }
}

TEST(DecompressZip, AcceptsTheTypesOfFilesAndFolders)
{
    const TempDir temp;
    const auto zip = makeZip(temp, {{"folder/", "", 0040755}, {"folder/file", "content", 0100644}});
    ASSERT_EQ(textOf(decompressZip(zip, temp.path() / "out", {})), "no error");
    EXPECT_EQ(filesBelow(temp.path() / "out"), (Files{{"folder/", ""}, {"folder/file", "content"}}));
}

TEST(DecompressZip, FollowsNoLinkThatIsThereAlready)
{
    const TempDir temp;
    std::filesystem::create_directories(temp.path() / "out");
    std::filesystem::create_directories(temp.path() / "elsewhere");
    std::filesystem::create_directory_symlink("../elsewhere", temp.path() / "out/folder");
    const auto zip = makeZip(temp, {{"folder/file", "evil"}});
    EXPECT_THAT(textOf(decompressZip(zip, temp.path() / "out", {})),
                HasSubstr("Cannot create \"folder\": file exists."));
    EXPECT_THAT(filesBelow(temp.path() / "elsewhere"), IsEmpty());
}

TEST(DecompressZip, OverwritesNothingAndRemovesOnlyItsOwn)
{
    const TempDir temp;
    temp.write("out/old", "old");
    const auto zip = makeZip(temp, {{"a/new", "new"}, {"old", "evil"}});
    EXPECT_THAT(textOf(decompressZip(zip, temp.path() / "out", {})), HasSubstr("Cannot write \"old\": file exists."));
    EXPECT_EQ(filesBelow(temp.path() / "out"), (Files{{"old", "old"}}));
}

TEST(DecompressZip, RefusesMoreEntriesThanAllowed)
{
    const TempDir temp;
    const auto zip = makeZip(temp, {{"a", ""}, {"b", ""}});
    DecompressZipSettings settings;
    settings.maxEntries = 1;
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)),
              "Cannot unpack \"made.zip\": it has more than the 1 entries allowed.");
    settings.maxEntries = 2;
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)), "no error");
}

TEST(DecompressZip, RefusesMoreBytesThanAllowedOfAllEntriesTogether)
{
    const TempDir temp;
    const auto zip = makeZip(temp, {{"a", std::string(60, 'a')}, {"b", std::string(60, 'b')}});
    DecompressZipSettings settings;
    settings.maxBytes = 119;
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)),
              "Cannot unpack \"made.zip\": it unpacks to more than the 119 bytes allowed.");
    settings.maxBytes = 120;
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)), "no error");
}

TEST(DecompressZip, RefusesAnArchiveThatGrowsTooMuch)
{
    const TempDir temp;
    const auto zip = makeZip(temp, {{"bomb", zeros(20'000'000)}});
    EXPECT_THAT(textOf(decompressZip(zip, temp.path() / "out", {})), HasSubstr("it unpacks to more than the "));
    DecompressZipSettings settings;
    settings.maxRatio = 2'000;
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)), "no error");
}

TEST(DecompressZip, CountsRealBytesAndNotWhatTheArchiveSays)
{
    const TempDir temp;
    constexpr std::uint32_t realSize = 100'000;
    const auto path = makeZip(temp, {{"bomb", zeros(realSize)}});
    std::string bytes = readFile(path);
    const auto littleEndian = [](std::uint32_t value)
    {
        return std::string{static_cast<char>(value & 255U), static_cast<char>(value >> 8U & 255U),
                           static_cast<char>(value >> 16U & 255U), '\0'};
    };
    replaceAll(bytes, littleEndian(realSize), littleEndian(10));
    DecompressZipSettings settings;
    settings.maxBytes = 1'000;
    EXPECT_NE(textOf(decompressZip(temp.write("liar.zip", bytes), temp.path() / "out", settings)), "no error");
    EXPECT_FALSE(std::filesystem::exists(temp.path() / "out"));
}

TEST(DecompressZip, RemovesWhatItWroteWhereALaterEntryIsDamaged)
{
    const TempDir temp;
    std::string content = noise(50'000);
    const auto path = makeZip(temp, {{"folder/good", "content"}, {"damaged", content}});
    std::string bytes = readFile(path);
    bytes[bytes.size() / 2] ^= 1;
    EXPECT_THAT(textOf(decompressZip(temp.write("bad.zip", bytes), temp.path() / "out", {})),
                HasSubstr("Cannot unpack \"bad.zip\": "));
    EXPECT_FALSE(std::filesystem::exists(temp.path() / "out"));
}

TEST(DecompressZip, SaysWhatIsNoArchive)
{
    const TempDir temp;
    EXPECT_EQ(textOf(decompressZip(temp.path() / "missing.zip", temp.path() / "out", {})),
              "Cannot unpack \"missing.zip\": no such file or directory.");
    EXPECT_EQ(textOf(decompressZip(temp.write("text.zip", "some text"), temp.path() / "out", {})),
              "Cannot unpack \"text.zip\": not a zip archive.");
    EXPECT_EQ(textOf(decompressZip(temp.write("empty.zip", ""), temp.path() / "out", {})),
              "Cannot unpack \"empty.zip\": not a zip archive.");
}

TEST(DecompressZip, ReportsProgressAndACancelLeavesNothing)
{
    const TempDir temp;
    const auto zip = makeZip(temp, {{"a/b", noise(500'000)}, {"c", noise(500'000)}});
    std::vector<float> reports;
    DecompressZipSettings settings;
    settings.progress = [&reports](float fraction) { return reports.push_back(fraction), fraction < 0.7F; };
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)), operationCanceledText());
    EXPECT_FALSE(std::filesystem::exists(temp.path() / "out"));

    reports.clear();
    settings.progress = [&reports](float fraction) { return reports.push_back(fraction), true; };
    EXPECT_EQ(textOf(decompressZip(zip, temp.path() / "out", settings)), "no error");
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(reports.back(), 1.0F);
}

} // namespace VX
