#include "StepTextBuilder.h"

#include <gmock/gmock.h>

#include <backend/convert/StepExcerpt.h>
#include <backend/convert/StepScanner.h>

#include <string>

namespace VX
{

namespace
{

using testing::HasSubstr;
using testing::SizeIs;

/// An excerpt for instance `id` of a file, with the context #1 where that is one.
StepExcerpt excerptOf(const std::string& data, StepId id)
{
    const std::string text = Test::stepFileText(data);
    const StepFile file = scanStepFile(text).value_or(StepFile());
    const std::vector<StepItem> items{{file.find(id), noStepInstance, file.find(1)}};
    return makeStepExcerpt(file, items);
}

TEST(StepExcerpt, KeepsWhatAnItemReachesAndNothingElse)
{
    const StepExcerpt excerpt = excerptOf("#5=CLOSED_SHELL('',(#6));#6=ADVANCED_FACE('f',(#7),#8,.T.);"
                                          "#7=FACE_BOUND('',$,.T.);#8=PLANE('',#9);#9=AXIS2_PLACEMENT_3D('',$,$,$);"
                                          "#20=STYLED_ITEM('',(#21),#6);#21=PRESENTATION_STYLE_ASSIGNMENT(());"
                                          "#22=DATUM_TARGET('',#6);#23=TESSELLATED_ANNOTATION_OCCURRENCE('',(),#5);",
                                          5);
    EXPECT_EQ(excerpt.text, "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                            "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\n"
                            "DATA;\n#2=SHAPE_REPRESENTATION('',(#1),$);\n#1=CLOSED_SHELL('',(#3));\n"
                            "#3=ADVANCED_FACE('',(#4),#5,.T.);\n#5=PLANE('',#6);\n"
                            "#6=AXIS2_PLACEMENT_3D('',$,$,$);\n#4=FACE_BOUND('',$,.T.);\n"
                            "ENDSEC;\nEND-ISO-10303-21;\n");
    ASSERT_THAT(excerpt.items, SizeIs(1));
    EXPECT_EQ(excerpt.items[0].representation, 2);
    EXPECT_EQ(excerpt.items[0].item, 1);
    EXPECT_EQ(excerpt.size, 6);
}

TEST(StepExcerpt, KeepsTheLabelsOfContexts)
{
    const StepExcerpt excerpt =
        excerptOf("#1=(GLOBAL_UNCERTAINTY_ASSIGNED_CONTEXT((#2))GLOBAL_UNIT_ASSIGNED_CONTEXT(()));"
                  "#2=UNCERTAINTY_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.01),$,'distance_accuracy_value','it''s');"
                  "#3=CLOSED_SHELL('a name',());",
                  3);
    EXPECT_THAT(excerpt.text, HasSubstr("'distance_accuracy_value','it''s'"));
    EXPECT_THAT(excerpt.text, HasSubstr("CLOSED_SHELL('',())"));
    EXPECT_THAT(excerpt.text, HasSubstr("=SHAPE_REPRESENTATION('',(#3),#1);"));
}

TEST(StepExcerpt, GivesHugeNumbersSmallOnes)
{
    const StepExcerpt excerpt =
        excerptOf("#18446744073709551615=CLOSED_SHELL('',(#4294967297));#4294967297=A();", 18446744073709551615U);
    EXPECT_THAT(excerpt.text, HasSubstr("#1=CLOSED_SHELL('',(#3));\n#3=A();\n"));
}

TEST(StepExcerpt, LeavesOutTheMembersOfASetThatAreMissingOrDamaged)
{
    const StepExcerpt excerpt =
        excerptOf("#5=CLOSED_SHELL('',(#6,#7,#8,#99,#9));#6=A(1;#7=B(,);#8=C(1.);#9=D(#10);#10=E(#99);", 5);
    EXPECT_THAT(excerpt.text, HasSubstr("=CLOSED_SHELL('',(#3));\n#3=C(1.);\nENDSEC"));
}

TEST(StepExcerpt, LeavesOutTheMembersOfASetThatAreOfAnotherKind)
{
    const StepExcerpt excerpt = excerptOf("#5=CLOSED_SHELL('',(#6,#7));#6=DIRECTION('',(1.,0.,0.));#7=A();", 5);
    EXPECT_THAT(excerpt.text, HasSubstr("=CLOSED_SHELL('',(#3));\n#3=A();\nENDSEC"));
}

TEST(StepExcerpt, KeepsTheRestOfAContextThatIsDamaged)
{
    const StepExcerpt excerpt = excerptOf("#1=(GLOBAL_UNIT_ASSIGNED_CONTEXT((#2,#99)));#2=A();#3=B();", 3);
    EXPECT_THAT(excerpt.text, HasSubstr("=(GLOBAL_UNIT_ASSIGNED_CONTEXT((#2,$)));"));
}

TEST(StepExcerpt, IsEmptyWhenNoItemCanBeWritten)
{
    const StepExcerpt excerpt = excerptOf("#5=CLOSED_SHELL('',(;", 5);
    EXPECT_EQ(excerpt.text, "");
    ASSERT_THAT(excerpt.items, SizeIs(1));
    EXPECT_EQ(excerpt.items[0].item, 0);
}

TEST(StepExcerpt, WritesSharedInstancesOnce)
{
    const StepExcerpt excerpt = excerptOf("#5=A(#6,#6,#7);#6=B(#7);#7=C();", 5);
    EXPECT_THAT(excerpt.text, HasSubstr("#1=A(#3,#3,#4);\n#4=C();\n#3=B(#4);\n"));
}

TEST(StepExcerpt, CanBeScanned)
{
    const StepExcerpt excerpt = excerptOf("#1=(A(1)B('x'));#5=D(.T.,\"0F\",*,-1.E5,('a;b',(#1)));", 5);
    const auto file = scanStepFile(excerpt.text);
    ASSERT_TRUE(file);
    EXPECT_EQ((*file)[file->find(1)].text, "D(.T.,\"0F\",*,-1.E5,('',(#3)))");
    EXPECT_EQ((*file)[file->find(3)].text, "(A(1)B(''))");
}

} // namespace

} // namespace VX
