#include "framework/VXViewer/src/ui/CatalogTexts.h"

#include "tests/support/TempDir.h"

#include <VXMesh/SystemPath.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace VX
{

namespace
{

std::filesystem::path japaneseCatalog()
{
    return SystemPath::getExecutablePath()->parent_path().parent_path() / "locale/ja/LC_MESSAGES/VXViewer.mo";
}

} // namespace

TEST(CatalogTextsTests, AreTheTranslationsWithoutTheTextsTheyAreOf)
{
    const std::string texts = translationsIn(japaneseCatalog());
    EXPECT_THAT(texts, testing::HasSubstr("開く"));
    EXPECT_THAT(texts, testing::Not(testing::HasSubstr("Open Files")));
}

TEST(CatalogTextsTests, AreNoneInAFileThatIsNoCatalogue)
{
    const VX::Test::TempDir folder;
    std::ofstream(folder.path() / "text.mo") << "開く";
    EXPECT_EQ(translationsIn(folder.path() / "text.mo"), "");
    EXPECT_EQ(translationsIn(folder.path() / "missing.mo"), "");
}

TEST(CatalogTextsTests, AreFewerInAFileThatIsCut)
{
    std::ifstream file(japaneseCatalog(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    const std::size_t all = translationsIn(japaneseCatalog()).size();
    const VX::Test::TempDir folder;
    const std::filesystem::path cut = folder.path() / "cut.mo";
    for (std::size_t size = 0; size < bytes.size() - 100; size += bytes.size() / 97)
    {
        std::ofstream(cut, std::ios::binary | std::ios::trunc) << bytes.substr(0, size);
        EXPECT_LT(translationsIn(cut).size(), all) << size;
    }
}

} // namespace VX
