#include <VXViewer/ShortcutManager.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

class ShortcutManagerTests : public testing::Test
{
protected:
    void set_(int key, int mods, const std::string& name)
    {
        shortcuts_.set({{key, mods}, name, ShortcutCategory::Edit, [this, name] { last_ = name; }});
    }

    [[nodiscard]] bool press_(int key, int mods)
    {
        last_.clear();
        return shortcuts_.process({key, 0, KeyEvent::Action::Press, mods});
    }

    ShortcutManager shortcuts_;
    std::string last_;
};

TEST_F(ShortcutManagerTests, RunsTheActionOfTheKeyWithItsModifiers)
{
    set_(GLFW_KEY_Z, GLFW_MOD_CONTROL, "Undo");
    set_(GLFW_KEY_Z, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT, "Redo");
    EXPECT_TRUE(press_(GLFW_KEY_Z, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT));
    EXPECT_EQ(last_, "Redo");
    EXPECT_TRUE(press_(GLFW_KEY_Z, GLFW_MOD_CONTROL));
    EXPECT_EQ(last_, "Undo");
    EXPECT_FALSE(press_(GLFW_KEY_Z, 0));
    EXPECT_EQ(last_, "");
}

TEST_F(ShortcutManagerTests, IgnoresLockedKeys)
{
    set_(GLFW_KEY_Z, GLFW_MOD_CONTROL, "Undo");
    EXPECT_TRUE(press_(GLFW_KEY_Z, GLFW_MOD_CONTROL | GLFW_MOD_CAPS_LOCK | GLFW_MOD_NUM_LOCK));
}

TEST_F(ShortcutManagerTests, RunsOncePerPress)
{
    set_(GLFW_KEY_Z, 0, "Once");
    EXPECT_TRUE(shortcuts_.process({GLFW_KEY_Z, 0, KeyEvent::Action::Repeat, 0}));
    EXPECT_FALSE(shortcuts_.process({GLFW_KEY_Z, 0, KeyEvent::Action::Release, 0}));
    EXPECT_EQ(last_, "");
}

TEST_F(ShortcutManagerTests, ReplacesTheShortcutOfTheSameKey)
{
    set_(GLFW_KEY_Z, 0, "Old");
    set_(GLFW_KEY_Z, 0, "New");
    ASSERT_EQ(shortcuts_.list().size(), 1U);
    EXPECT_EQ(shortcuts_.list().front().name, "New");
}

TEST_F(ShortcutManagerTests, TellsKeysInWords)
{
    set_(GLFW_KEY_DELETE, 0, "Delete");
    set_(GLFW_KEY_S, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT, "Save");
    EXPECT_EQ(shortcuts_.keyOf("Delete"), "Del");
    EXPECT_EQ(shortcuts_.keyOf("Save"), "Ctrl+Shift+S");
    EXPECT_EQ(shortcuts_.keyOf("Nothing"), "");
    EXPECT_EQ(ShortcutManager::keyText({GLFW_KEY_F5, GLFW_MOD_ALT}), "Alt+F5");
}

} // namespace VX
