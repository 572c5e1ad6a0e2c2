#include "StepTextBuilder.h"

#include <gmock/gmock.h>

#include <backend/convert/StepScanner.h>

#include <string>

namespace VX
{

namespace
{

using Test::stepFileText;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Scans a file with this data section; the views of the result point into `text`.
struct Scanned
{
    explicit Scanned(std::string_view data)
        : text(stepFileText(data))
        , file(scanStepFile(text).value_or(StepFile()))
    {
    }

    [[nodiscard]] std::string_view instance(StepId id) const { return file[file.find(id)].text; }

    std::string text;
    StepFile file;
};

std::string errorOf(const std::string& text)
{
    const auto file = scanStepFile(text);
    return file ? "" : file.error();
}

TEST(StepScanner, FindsInstancesByNumberAndType)
{
    const Scanned scanned("#3=POINT('a',(1.));\n#1 = LINE ( #3 ) ;\n#7=POINT('b',());");
    EXPECT_EQ(scanned.file.size(), 3U);
    EXPECT_EQ(scanned.instance(1), "LINE ( #3 ) ");
    EXPECT_EQ(scanned.file.find(2), noStepInstance);
    EXPECT_THAT(scanned.file.all("POINT"_step), ElementsAre(0, 2));
    EXPECT_EQ(scanned.file.reference("#3"), 0U);
    EXPECT_THAT(scanned.file.references("(#7,#99,(#3))"), ElementsAre(2, 0));
}

TEST(StepScanner, EndsStatementsOnlyOutsideStringsAndComments)
{
    const Scanned scanned("#1=A('x;'';#2=B();',#3);/* #4=C(); ' */#5=D(/* ; */);");
    EXPECT_EQ(scanned.file.size(), 2U);
    EXPECT_EQ(scanned.instance(1), "A('x;'';#2=B();',#3)");
    EXPECT_EQ(scanned.instance(5), "D(/* ; */)");
}

TEST(StepScanner, ReadsPartsOfComplexInstances)
{
    const Scanned scanned("#1=( LENGTH_UNIT() NAMED_UNIT(*) SI_UNIT(.MILLI.,.METRE.) );");
    EXPECT_EQ(scanned.file.type(0), complexStepType);
    EXPECT_TRUE(scanned.file.is(0, "LENGTH_UNIT"_step));
    EXPECT_FALSE(scanned.file.is(0, "SOLID_ANGLE_UNIT"_step));
    const auto unit = scanned.file.record(0, "SI_UNIT"_step);
    ASSERT_TRUE(unit);
    EXPECT_EQ((*unit)[1], ".METRE.");
    EXPECT_EQ(scanned.file.record(0).size(), 0U);
}

TEST(StepScanner, TakesTheFirstOfTwoInstancesWithOneNumber)
{
    EXPECT_EQ(Scanned("#1=A();#1=B();").instance(1), "A()");
    EXPECT_EQ(Scanned("#1=A();#99999999999=B();#1=C();").instance(1), "A()");
}

TEST(StepScanner, FindsHugeNumbers)
{
    const Scanned scanned("#18446744073709551615=A();#5=B();#99999999999999999999=C();");
    EXPECT_EQ(scanned.file.size(), 2U);
    EXPECT_EQ(scanned.instance(18446744073709551615U), "A()");
    EXPECT_EQ(scanned.instance(5), "B()");
}

TEST(StepScanner, PassesOverWhatIsNoInstance)
{
    const Scanned scanned("garbage;#1;#2=;=A();#3=B();\x80\xff;#=C();");
    EXPECT_EQ(scanned.file.size(), 1U);
    EXPECT_EQ(scanned.instance(3), "B()");
}

TEST(StepScanner, ReadsSeveralDataSectionsAndSkipsOthers)
{
    const std::string text = "ISO-10303-21;HEADER;ENDSEC;ANCHOR;<a>=#1;ENDSEC;DATA('one',('S'));#1=A();ENDSEC;"
                             "DATA('two',('S'));#2=B();ENDSEC;END-ISO-10303-21;SIGNATURE;#3=C();";
    const auto file = scanStepFile(text);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 2U);
    EXPECT_NE(file->find(2), noStepInstance);
}

TEST(StepScanner, AcceptsAByteOrderMarkBlanksAndCommentsInFront)
{
    EXPECT_EQ(errorOf("\xEF\xBB\xBF\n/* made by hand */ " + stepFileText("#1=A();")), "");
}

TEST(StepScanner, AcceptsAFileWithoutItsLastLine)
{
    EXPECT_EQ(errorOf("ISO-10303-21;DATA;#1=A();ENDSEC;"), "");
}

TEST(StepScanner, ManyInstancesKeepTheirOrder)
{
    std::string data;
    for (int id = 1; id <= 20000; ++id)
        data += "#" + std::to_string(20001 - id) + "=A(" + std::to_string(id) + ");\n";
    const Scanned scanned(data);
    ASSERT_EQ(scanned.file.size(), 20000U);
    for (StepIndex index = 0; index < 20000; ++index)
        ASSERT_EQ(scanned.file[index].id, 20000U - index);
    EXPECT_EQ(scanned.instance(20000), "A(1)");
}

TEST(StepScanner, SaysThatAFileIsEmpty)
{
    EXPECT_EQ(errorOf(""), "The file is empty.");
    EXPECT_EQ(errorOf(" \r\n"), "The file is empty.");
}

TEST(StepScanner, SaysThatAFileIsNoStepFile)
{
    const std::string text = "The file is not a STEP file: it does not begin with ISO-10303-21.";
    EXPECT_EQ(errorOf("solid cube\nfacet normal 0 0 1\n"), text);
    EXPECT_EQ(errorOf(std::string(5000, '\xff')), text);
    EXPECT_EQ(errorOf("PK\x03\x04"), text);
    EXPECT_EQ(errorOf("/* never closed"), text);
}

TEST(StepScanner, SaysThatAFileIsCutOff)
{
    const std::string whole = stepFileText("#1=A('b');\n#2=C();\n");
    EXPECT_EQ(errorOf(whole.substr(0, whole.find("DATA"))),
              "The STEP file is cut off: it ends before its data. Save or download it again.");
    const std::size_t end = whole.rfind("ENDSEC");
    for (std::size_t length = whole.find("DATA;") + 5; length < end + 7; ++length)
        ASSERT_EQ(errorOf(whole.substr(0, length)),
                  "The STEP file is cut off or damaged: its data has no end. Save or download it again.")
            << length;
}

TEST(StepScanner, SaysThatAQuoteIsMissing)
{
    EXPECT_THAT(errorOf(stepFileText("#1=A('b);\n#2=C('d');\n")), StartsWith("The STEP file is cut off or damaged"));
}

TEST(StepScanner, SaysThatThereIsNoData)
{
    EXPECT_EQ(errorOf(stepFileText("")), "The STEP file holds no data.");
    EXPECT_EQ(errorOf(stepFileText("nothing;of;use;")), "The STEP file holds no data.");
}

TEST(StepScanner, GivesNoArgumentsForInstancesWithoutEnd)
{
    const Scanned scanned("#1=A(1,2;#2=(A(1)B(;#3=(;#4=C;");
    for (StepIndex index = 0; index < scanned.file.size(); ++index)
        EXPECT_EQ(scanned.file.record(index).size(), 0U);
    EXPECT_FALSE(scanned.file.record(1, "B"_step));
    EXPECT_THAT(scanned.file.all("D"_step), IsEmpty());
}

} // namespace

} // namespace VX
