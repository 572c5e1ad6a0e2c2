#include "StepTextBuilder.h"

#include <gtest/gtest.h>

#include <backend/convert/StepScanner.h>
#include <backend/convert/StepSoundness.h>

#include <string>

namespace VX
{

namespace
{

/// Whether instance #1 of a file is sound.
bool isSound(const std::string& data)
{
    const std::string text = Test::stepFileText(data);
    const StepFile file = scanStepFile(text).value_or(StepFile());
    return StepSoundness(file).isSound(file.find(1));
}

TEST(StepSoundness, TakesInstancesWhoseReferencesAreAllThere)
{
    EXPECT_TRUE(isSound("#1=A(#2,(#3));#2=B(#3,$);#3=C();"));
}

TEST(StepSoundness, RefusesWhatNeedsSomethingMissing)
{
    EXPECT_FALSE(isSound("#1=A(#2,(#3));#2=B();"));
    EXPECT_FALSE(isSound("#1=A(#2);#2=B(#3);#3=C(#99);"));
    EXPECT_FALSE(isSound("#1=(A(#2)B());"));
}

TEST(StepSoundness, RefusesWhatNeedsSomethingMalformed)
{
    EXPECT_FALSE(isSound("#1=A(#2);#2=B(1.2.3);"));
}

TEST(StepSoundness, RefusesCircles)
{
    EXPECT_FALSE(isSound("#1=A(#1);"));
    EXPECT_FALSE(isSound("#1=A(#2);#2=B(#3);#3=C(#2);"));
    EXPECT_FALSE(isSound("#1=CLOSED_SHELL('',(#1));"));
}

TEST(StepSoundness, RefusesReferencesToAnotherKind)
{
    EXPECT_TRUE(isSound("#1=VERTEX_POINT('',#2);#2=CARTESIAN_POINT('',(0.,0.,0.));"));
    EXPECT_FALSE(isSound("#1=VERTEX_POINT('',#2);#2=DIRECTION('',(0.,0.,1.));"));
    EXPECT_FALSE(isSound("#1=CLOSED_SHELL('',(#2));#2=CARTESIAN_POINT('',(0.,0.,0.));"));
}

TEST(StepSoundness, TakesSetsForTheirSoundMembers)
{
    EXPECT_TRUE(isSound("#1=CLOSED_SHELL('',(#2,#3));#2=A(#99);#3=B();"));
    EXPECT_TRUE(isSound("#1=CLOSED_SHELL('',());"));
    EXPECT_FALSE(isSound("#1=CLOSED_SHELL('',(#2,#99));#2=A(#99);"));
    EXPECT_TRUE(isSound("#1=S(#2);#2=OPEN_SHELL('',(#3,#99));#3=A();"));
}

TEST(StepSoundness, RefusesChainsBeyondAllReason)
{
    std::string chain;
    for (int k = 1; k < 100000; ++k)
        chain += "#" + std::to_string(k) + "=A(#" + std::to_string(k + 1) + ");";
    EXPECT_FALSE(isSound(chain + "#100000=B();"));
}

TEST(StepSoundness, KnowsNoInstanceThatIsNotThere)
{
    EXPECT_FALSE(isSound("#2=A();"));
}

} // namespace

} // namespace VX
