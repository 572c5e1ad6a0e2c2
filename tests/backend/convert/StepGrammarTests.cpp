#include <gmock/gmock.h>

#include <backend/convert/StepGrammar.h>

#include <string>
#include <vector>

namespace VX
{

namespace
{

TEST(StepGrammar, KnowsWellFormedInstances)
{
    for (const char* good : {"A()", "A(1)", "A((),())", "A(B(1.))", "A(B(),C((#1)))", "(A()B(1,2))", "A(((1)),$,*)",
                             "A (/* c */ 'x' , .F. ) "})
        EXPECT_TRUE(isWellFormedStepInstance(good)) << good;
}

TEST(StepGrammar, KnowsMalformedInstances)
{
    for (const char* bad : {"",       "()",   "A",       "A(",   "A(1",  "A(1))",     "A(,)",   "A(1,)",
                            "A(1 2)", "A(B)", "A()B()",  "(A()", "(A)",  "A(1.2.3)",  "A('x)",  "A(;)",
                            "A(=)",   "!A()", "A(!B())", "1",    "A(#)", "A(1.E999)", "A(\x80)"})
        EXPECT_FALSE(isWellFormedStepInstance(bad)) << bad;
}

TEST(StepGrammar, TakesNoListsNestedBeyondAllReason)
{
    EXPECT_FALSE(isWellFormedStepInstance("A" + std::string(1000, '(') + std::string(1000, ')')));
}

TEST(StepGrammar, ListsReferencesInOrder)
{
    std::vector<StepId> references;
    EXPECT_TRUE(isWellFormedStepInstance("(A(#7,'#8')B((#9,(#7)),C(#10)))", &references));
    EXPECT_THAT(references, testing::ElementsAre(7, 9, 7, 10));
}

} // namespace

} // namespace VX
