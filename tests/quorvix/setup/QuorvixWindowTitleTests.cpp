#include "tests/support/ui/ViewerSession.h"
#include <quorvix/setup/QuorvixWindowTitle.h>

#include <VXMesh/SystemFacts.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <memory>

namespace VX
{

namespace
{

class CountingTitle : public QuorvixWindowTitle
{
public:
    std::string compose() override
    {
        ++composed;
        return QuorvixWindowTitle::compose();
    }

    int composed = 0;
};

class QuorvixWindowTitleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SystemFacts facts;
        facts.version = "1.2.3.4";
        overrideSystemFacts(facts);
        viewer_.setWindowTitle(title_);
    }

    void TearDown() override { overrideSystemFacts({}); }

    const VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
    const std::shared_ptr<CountingTitle> title_ = std::make_shared<CountingTitle>();
};

TEST_F(QuorvixWindowTitleTest, isTheFrameworksWhileNobodyIsSignedIn)
{
    viewer_.setApplicationName("Quorvix");
    EXPECT_EQ(session_.window().title(), "Quorvix 1.2.3.4");
}

TEST_F(QuorvixWindowTitleTest, endsWithTheAddress)
{
    viewer_.setApplicationName("Quorvix");
    viewer_.setSceneName("part.step");
    title_->setEmail("ann@example.com");
    EXPECT_EQ(session_.window().title(), "part.step - Quorvix 1.2.3.4 ann@example.com");
}

TEST_F(QuorvixWindowTitleTest, isTheAddressAloneWhereTheFrameworkHasNone)
{
    title_->setEmail("ann@example.com");
    EXPECT_EQ(session_.window().title(), "ann@example.com");
}

TEST_F(QuorvixWindowTitleTest, losesTheAddressAgain)
{
    viewer_.setApplicationName("Quorvix");
    title_->setEmail("ann@example.com");
    title_->setEmail("");
    EXPECT_EQ(session_.window().title(), "Quorvix 1.2.3.4");
}

TEST_F(QuorvixWindowTitleTest, isNotComposedAgainForTheSameAddress)
{
    title_->setEmail("ann@example.com");
    const int before = title_->composed;
    title_->setEmail("ann@example.com");
    EXPECT_EQ(title_->composed, before);
    title_->setEmail("bob@example.com");
    EXPECT_EQ(title_->composed, before + 1);
}

} // namespace

} // namespace VX
