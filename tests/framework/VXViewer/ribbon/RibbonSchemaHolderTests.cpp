#include "RibbonFixture.h"

#include <gmock/gmock.h>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RibbonSchemaHolderTests : public testing::Test
{
protected:
    RibbonSchemaHolderTests() { RibbonSchemaHolder::reset(); }

    ~RibbonSchemaHolderTests() override { RibbonSchemaHolder::reset(); }

    [[nodiscard]] std::string errorOf_(const std::string& text) const
    {
        const auto added = RibbonSchemaHolder::addFile(folder_.write("layout.json", text));
        return added ? std::string() : added.error();
    }

    VX::Test::TempDir folder_;
};

TEST_F(RibbonSchemaHolderTests, GivesAnItemItsLookWhicheverComesFirst)
{
    RibbonSchemaHolder::addItem(std::make_shared<VX::Test::CountingItem>("Before"));
    EXPECT_EQ(errorOf_(R"({"items": [{"name": "Before", "caption": "A"}, {"name": "After", "icon": "b"}]})"), "");
    RibbonSchemaHolder::addItem(std::make_shared<VX::Test::CountingItem>("After"));
    ASSERT_NE(RibbonSchemaHolder::find("Before"), nullptr);
    EXPECT_EQ(RibbonSchemaHolder::find("Before")->caption, "A");
    ASSERT_NE(RibbonSchemaHolder::find("After"), nullptr);
    EXPECT_EQ(RibbonSchemaHolder::find("After")->icon, "b");
}

TEST_F(RibbonSchemaHolderTests, DoesNotFindAnItemThatOnlyAFileNames)
{
    EXPECT_EQ(errorOf_(R"({"items": [{"name": "Described"}]})"), "");
    EXPECT_EQ(RibbonSchemaHolder::find("Described"), nullptr);
}

TEST_F(RibbonSchemaHolderTests, PutsTabsAndGroupsOfSeveralFilesTogether)
{
    EXPECT_EQ(errorOf_(R"({"tabs": [{"name": "T", "groups": [{"name": "G", "items": ["a"]}]}], "toolbar": ["a"]})"),
              "");
    EXPECT_EQ(errorOf_(R"({"tabs": [{"name": "T", "groups": [{"name": "G", "items": ["b"]},
                                                             {"name": "H", "items": ["c"]}]}],
                           "toolbar": ["b"], "toolbarVersion": 4})"),
              "");
    const RibbonSchema& schema = RibbonSchemaHolder::schema();
    ASSERT_EQ(schema.tabs.size(), 1U);
    ASSERT_EQ(schema.tabs[0].groups.size(), 2U);
    EXPECT_EQ(schema.tabs[0].groups[0].entries.size(), 2U);
    EXPECT_THAT(schema.toolbar, ElementsAre("a", "b"));
    EXPECT_EQ(schema.toolbarVersion, 4);
}

TEST_F(RibbonSchemaHolderTests, SaysInOneSentenceWhatIsWrongWithAFile)
{
    EXPECT_EQ(errorOf_("[]"), "The ribbon file \"layout.json\" is damaged: it is no object.");
    EXPECT_EQ(errorOf_(R"({"items": [{}]})"),
              "The ribbon file \"layout.json\" is damaged: an item without a \"name\".");
    EXPECT_EQ(errorOf_(R"({"tabs": [{"name": "T"}]})"),
              "The ribbon file \"layout.json\" is damaged: a tab without a \"name\" or \"groups\".");
    EXPECT_EQ(errorOf_(R"({"tabs": [{"name": "T", "groups": [{"name": "G", "items": [7]}]}]})"),
              "The ribbon file \"layout.json\" is damaged: an entry of the group \"G\" that is neither an item nor a "
              "drop-down.");
    EXPECT_EQ(errorOf_(R"({"tabs": [{"name": "T", "groups": [{"name": "G", "items": [{"name": "a", "size": 1}]}]}]})"),
              "The ribbon file \"layout.json\" is damaged: a \"size\" that is neither \"large\" nor \"small\".");
    EXPECT_EQ(errorOf_(R"({"toolbarVersion": 0})"),
              "The ribbon file \"layout.json\" is damaged: a \"toolbarVersion\" that is no number from 1 up.");
    EXPECT_THAT(errorOf_("{"), HasSubstr("Cannot read \"layout.json\": line 1"));
}

TEST_F(RibbonSchemaHolderTests, AddsNothingOfADamagedFile)
{
    EXPECT_NE(errorOf_(R"({"items": [{"name": "a"}], "tabs": [7], "toolbar": ["a"]})"), "");
    EXPECT_THAT(RibbonSchemaHolder::schema().items, IsEmpty());
    EXPECT_THAT(RibbonSchemaHolder::schema().toolbar, IsEmpty());
}

TEST_F(RibbonSchemaHolderTests, ReadsTheInstalledLayout)
{
    const auto added = RibbonSchemaHolder::addInstalledFiles();
    EXPECT_TRUE(added) << added.error();
    EXPECT_FALSE(RibbonSchemaHolder::schema().tabs.empty());
}

} // namespace VX
