// Shows the system's file dialog and prints what was chosen, each path with a NUL behind it.
//   quorvix-dialog open|save [--title=TEXT] [--folder=PATH] [--name=TEXT] [--parent=X11-WINDOW]
//                  [--filter=NAME|.ext|.ext…]…
// Exit code: 0 chosen, 1 cancelled, 2 no display, 3 unusable arguments.
//
// Or holds a picture on the clipboard, until another program puts something there; the file is taken away.
//   quorvix-dialog clipboard PNG-FILE

#include <gtk/gtk.h>
#ifdef GDK_WINDOWING_X11
#include <gdk/gdkx.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr int exitChosen = 0;
constexpr int exitCanceled = 1;
constexpr int exitNoDisplay = 2;
constexpr int exitUsage = 3;

struct Filter
{
    std::string name;
    std::vector<std::string> extensions; ///< with their dots; none: every file
};

struct Options
{
    bool save = false;
    std::string title;
    std::string folder;
    std::string name;
    unsigned long parent = 0;
    std::vector<Filter> filters;
};

struct FreeText
{
    void operator()(char* text) const { g_free(text); }
};

using Text = std::unique_ptr<char, FreeText>;

Filter parseFilter(std::string_view text)
{
    Filter filter;
    std::size_t end = text.find('|');
    filter.name = text.substr(0, end);
    while (end != std::string_view::npos)
    {
        const std::size_t begin = end + 1;
        end = text.find('|', begin);
        filter.extensions.emplace_back(text.substr(begin, end == std::string_view::npos ? end : end - begin));
    }
    return filter;
}

bool parse(int argc, char** argv, Options& options)
{
    if (argc < 2)
        return false;
    const std::string_view mode = argv[1];
    options.save = mode == "save";
    if (!options.save && mode != "open")
        return false;
    for (int i = 2; i < argc; ++i)
    {
        const std::string_view argument = argv[i];
        const std::size_t equals = argument.find('=');
        const std::string_view key = argument.substr(0, equals);
        const std::string_view value = equals == std::string_view::npos ? "" : argument.substr(equals + 1);
        if (key == "--title")
            options.title = value;
        else if (key == "--folder")
            options.folder = value;
        else if (key == "--name")
            options.name = value;
        else if (key == "--parent")
            options.parent = std::strtoul(std::string(value).c_str(), nullptr, 10);
        else if (key == "--filter")
            options.filters.push_back(parseFilter(value));
        else
            return false;
    }
    return true;
}

std::string lowerCase(std::string_view text)
{
    const Text lower(g_ascii_strdown(text.data(), static_cast<gssize>(text.size())));
    return lower.get();
}

bool hasExtension(std::string_view path, const Filter& filter)
{
    const std::string lower = lowerCase(path);
    for (const std::string& extension : filter.extensions)
    {
        if (lower.ends_with(extension))
            return true;
    }
    return filter.extensions.empty();
}

/// Letter case does not matter in the endings of file names.
gboolean matches(const GtkFileFilterInfo* info, gpointer filter)
{
    return info->display_name && hasExtension(info->display_name, *static_cast<const Filter*>(filter));
}

void addFilters(GtkFileChooser* chooser, std::vector<Filter>& filters)
{
    for (Filter& filter : filters)
    {
        GtkFileFilter* gtkFilter = gtk_file_filter_new();
        gtk_file_filter_set_name(gtkFilter, filter.name.c_str());
        gtk_file_filter_add_custom(gtkFilter, GTK_FILE_FILTER_DISPLAY_NAME, matches, &filter, nullptr);
        gtk_file_chooser_add_filter(chooser, gtkFilter);
    }
}

/// Keeps the dialog in front of the window that it belongs to.
void attachToParent([[maybe_unused]] GtkWidget* dialog, [[maybe_unused]] unsigned long parent)
{
#ifdef GDK_WINDOWING_X11
    GdkDisplay* display = gdk_display_get_default();
    if (parent == 0 || !GDK_IS_X11_DISPLAY(display))
        return;
    gtk_widget_realize(dialog);
    GdkWindow* foreign = gdk_x11_window_foreign_new_for_display(display, parent);
    if (foreign)
        gdk_window_set_transient_for(gtk_widget_get_window(dialog), foreign);
#endif
}

/// The filter that is chosen in the dialog.
const Filter* currentFilter(GtkFileChooser* chooser, const std::vector<Filter>& filters)
{
    GtkFileFilter* current = gtk_file_chooser_get_filter(chooser);
    if (!current)
        return nullptr;
    const std::string_view name = gtk_file_filter_get_name(current);
    for (const Filter& filter : filters)
    {
        if (filter.name == name)
            return &filter;
    }
    return nullptr;
}

/// The chosen file with an extension of the chosen filter; the dialog is told the longer name, so that it asks before
/// it replaces a file of that name.
bool completeName(GtkFileChooser* chooser, const std::vector<Filter>& filters)
{
    const Text path(gtk_file_chooser_get_filename(chooser));
    const Filter* filter = currentFilter(chooser, filters);
    if (!path || !filter || hasExtension(path.get(), *filter))
        return true;
    // A folder that was typed with the name is the one to save in.
    const Text folder(g_path_get_dirname(path.get()));
    gtk_file_chooser_set_current_folder(chooser, folder.get());
    const Text base(g_path_get_basename(path.get()));
    const Text shown(g_filename_display_name(base.get()));
    gtk_file_chooser_set_current_name(chooser, (shown.get() + filter->extensions.front()).c_str());
    return false;
}

void printPaths(GtkFileChooser* chooser)
{
    GSList* const names = gtk_file_chooser_get_filenames(chooser);
    for (const GSList* each = names; each; each = each->next)
    {
        const auto* const name = static_cast<const char*>(each->data);
        std::fwrite(name, 1, std::string_view(name).size() + 1, stdout);
    }
    g_slist_free_full(names, g_free);
    std::fflush(stdout);
}

void givePicture(GtkClipboard*, GtkSelectionData* data, guint, gpointer picture)
{
    gtk_selection_data_set_pixbuf(data, static_cast<GdkPixbuf*>(picture));
}

void endWithPicture(GtkClipboard*, gpointer)
{
    gtk_main_quit();
}

int holdOnClipboard(const char* file)
{
    GdkPixbuf* picture = gdk_pixbuf_new_from_file(file, nullptr);
    std::remove(file);
    if (!picture)
        return exitUsage;
    GtkTargetList* list = gtk_target_list_new(nullptr, 0);
    gtk_target_list_add_image_targets(list, 0, TRUE);
    int count = 0;
    GtkTargetEntry* targets = gtk_target_table_new_from_list(list, &count);
    GtkClipboard* clipboard = gtk_clipboard_get(GDK_SELECTION_CLIPBOARD);
    const gboolean held = gtk_clipboard_set_with_data(clipboard, targets, static_cast<guint>(count), givePicture,
                                                      endWithPicture, picture);
    if (held)
        gtk_main();
    gtk_target_table_free(targets, count);
    gtk_target_list_unref(list);
    g_object_unref(picture);
    return held ? exitChosen : exitCanceled;
}

} // namespace

int main(int argc, char** argv)
{
    constexpr int clipboardArguments = 3;
    const bool forClipboard = argc == clipboardArguments && std::string_view(argv[1]) == "clipboard";
    Options options;
    if (!forClipboard && !parse(argc, argv, options))
        return exitUsage;
    // Without a session bus the toolkit's settings service cannot run and would complain at every step.
    if (!g_getenv("DBUS_SESSION_BUS_ADDRESS"))
        g_setenv("GSETTINGS_BACKEND", "keyfile", FALSE);
    int noArguments = 0;
    if (!gtk_init_check(&noArguments, nullptr))
        return exitNoDisplay;
    if (forClipboard)
        return holdOnClipboard(argv[2]);

    GtkFileChooserAction action = options.save ? GTK_FILE_CHOOSER_ACTION_SAVE : GTK_FILE_CHOOSER_ACTION_OPEN;
    GtkWidget* dialog =
        gtk_file_chooser_dialog_new(options.title.c_str(), nullptr, action, "_Cancel", GTK_RESPONSE_CANCEL,
                                    options.save ? "_Save" : "_Open", GTK_RESPONSE_ACCEPT, nullptr);
    GtkFileChooser* chooser = GTK_FILE_CHOOSER(dialog);
    gtk_file_chooser_set_select_multiple(chooser, options.save ? FALSE : TRUE);
    gtk_file_chooser_set_do_overwrite_confirmation(chooser, TRUE);
    gtk_file_chooser_set_local_only(chooser, TRUE);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
    addFilters(chooser, options.filters);
    if (!options.folder.empty())
        gtk_file_chooser_set_current_folder(chooser, options.folder.c_str());
    if (options.save && !options.name.empty())
        gtk_file_chooser_set_current_name(chooser, options.name.c_str());
    attachToParent(dialog, options.parent);

    int response = gtk_dialog_run(GTK_DIALOG(dialog));
    while (options.save && response == GTK_RESPONSE_ACCEPT && !completeName(chooser, options.filters))
    {
        // Accepts the completed name as if the button were pressed again.
        g_idle_add(
            [](gpointer d) -> gboolean
            {
                gtk_dialog_response(static_cast<GtkDialog*>(d), GTK_RESPONSE_ACCEPT);
                return G_SOURCE_REMOVE;
            },
            dialog);
        response = gtk_dialog_run(GTK_DIALOG(dialog));
    }
    if (response == GTK_RESPONSE_ACCEPT)
        printPaths(chooser);
    gtk_widget_destroy(dialog);
    return response == GTK_RESPONSE_ACCEPT ? exitChosen : exitCanceled;
}
