#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/InputEvent.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// GLFW's bit of the modifier that shortcuts are made with: Control.
/// @threads any
[[nodiscard]] VXVIEWER_API int getGlfwModPrimaryCtrl();

/// A key with the modifiers that are held, in GLFW's numbers.
struct ShortcutKey
{
    int key = 0;
    int mods = 0;

    friend bool operator==(const ShortcutKey&, const ShortcutKey&) = default;
};

/// What a list of shortcuts is sorted by.
enum class ShortcutCategory
{
    Info = 0,
    Edit = 1,
    View = 2,
    Scene = 3,
    Objects = 4,
    Selection = 5
};

/// What a key does.
struct Shortcut
{
    ShortcutKey key;
    std::string name; ///< in English, as it is looked up; shown translated
    ShortcutCategory category = ShortcutCategory::Info;
    std::function<void()> action;
};

/// The keys of the interface.
/// @threads the UI thread
class VXVIEWER_API ShortcutManager
{
public:
    /// `shortcut` takes the place of another of the same key.
    void set(Shortcut shortcut);

    void clear() { shortcuts_.clear(); }

    /// In the order in which they were set.
    [[nodiscard]] const std::vector<Shortcut>& list() const { return shortcuts_; }

    /// The first key of the shortcut `name`, in words: "Ctrl+Shift+S"; empty where there is none.
    [[nodiscard]] std::string keyOf(const std::string& name) const;

    /// Runs the action of the key that was pressed with the modifiers held at that moment.
    /// @return true when there is one
    [[nodiscard]] bool process(const KeyEvent& event) const;

    /// "Ctrl+Shift+S", with the names that keys have in the user's language.
    [[nodiscard]] static std::string keyText(ShortcutKey key);

private:
    std::vector<Shortcut> shortcuts_;
};

} // namespace VX
