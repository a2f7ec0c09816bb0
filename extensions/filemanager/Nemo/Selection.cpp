#include "Nemo/Selection.h"

#include "Gtk3/Windows.h"
#include "Shared/GLib.h"
#include "Shared/Report.h"

#include <atk/atk.h>
#include <libnemo-extension/nemo-file-info.h>

#include <iterator>
#include <memory>
#include <unordered_map>
#include <utility>

namespace marrowick::companion {

namespace {

constexpr char const* listType = "NemoListView";
constexpr char const* iconsType = "NemoIconContainer";

/// A view as a list: the first column of its model holds the file.
std::vector<std::string> selectedRows(GtkTreeView* view)
{
    std::vector<std::string> uris;
    GtkTreeModel* model = nullptr;
    GList* const rows = gtk_tree_selection_get_selected_rows(gtk_tree_view_get_selection(view), &model);
    bool const holdsFiles = model && g_type_is_a(gtk_tree_model_get_column_type(model, 0), G_TYPE_OBJECT);
    if (model && !holdsFiles)
        reportUnreadable("Nemo", "files in its lists");
    for (GList* link = holdsFiles ? rows : nullptr; link; link = link->next) {
        GtkTreeIter row;
        GObject* file = nullptr;
        if (gtk_tree_model_get_iter(model, &row, static_cast<GtkTreePath*>(link->data)))
            gtk_tree_model_get(model, &row, 0, &file, -1);
        if (file && NEMO_IS_FILE_INFO(file))
            uris.push_back(taken(nemo_file_info_get_uri(NEMO_FILE_INFO(file))));
        g_clear_object(&file);
    }
    g_list_free_full(rows, [](void* path) { gtk_tree_path_free(static_cast<GtkTreePath*>(path)); });
    return uris;
}

std::string labelOf(NemoFileInfo* file)
{
    return taken(nemo_file_info_get_string_attribute(file, "name"));
}

/// Finds the files of a folder by what is shown as their names.
class Labels {
public:
    explicit Labels(std::string const& folder)
        : folder_(g_file_new_for_uri(folder.c_str()))
    {
    }

    /// Empty where there is none, and where there are several: nothing tells them apart.
    std::string uriOf(std::string const& label)
    {
        // Nearly always it is the name.
        if (auto const file = fileNamed(label); file && labelOf(file.get()) == label)
            return taken(nemo_file_info_get_uri(file.get()));
        if (!isRead_)
            read();
        auto const others = others_.equal_range(label);
        bool const isOnlyOne = others.first != others.second && std::next(others.first) == others.second;
        return isOnlyOne ? others.first->second : std::string {};
    }

private:
    ObjectOwner<NemoFileInfo> fileNamed(std::string const& name) const
    {
        ObjectOwner<GFile> const location(g_file_get_child(folder_.get(), name.c_str()));
        return ObjectOwner<NemoFileInfo>(nemo_file_info_lookup(location.get()));
    }

    /// Launchers are shown by a name that they choose, and names that are no text by a text.
    void read()
    {
        isRead_ = true;
        std::unique_ptr<GDir, decltype(&g_dir_close)> const folder(
            g_dir_open(taken(g_file_get_path(folder_.get())).c_str(), 0, nullptr), g_dir_close);
        while (char const* const name = folder ? g_dir_read_name(folder.get()) : nullptr) {
            auto const file = fileNamed(name);
            if (auto label = file ? labelOf(file.get()) : name; label != name)
                others_.emplace(std::move(label), taken(nemo_file_info_get_uri(file.get())));
        }
    }

    ObjectOwner<GFile> folder_;
    bool isRead_ = false;
    std::unordered_multimap<std::string, std::string> others_;
};

/// A view as icons tells what is selected to accessibility clients only, by their labels.
std::vector<std::string> selectedIcons(GtkWidget* view, std::string const& folder)
{
    std::vector<std::string> uris;
    auto* const accessible = gtk_widget_get_accessible(view);
    if (!accessible || !ATK_IS_SELECTION(accessible)) {
        reportUnreadable("Nemo", "accessible selection of icons");
        return uris;
    }
    Labels labels(folder);
    int const count = atk_selection_get_selection_count(ATK_SELECTION(accessible));
    for (int index = 0; index < count; ++index) {
        ObjectOwner<AtkObject> const icon(atk_selection_ref_selection(ATK_SELECTION(accessible), index));
        char const* const label = icon ? atk_object_get_name(icon.get()) : nullptr;
        if (auto uri = label ? labels.uriOf(label) : std::string {}; !uri.empty())
            uris.push_back(std::move(uri));
    }
    return uris;
}

}

std::vector<std::string> selectionIn(GtkWidget* slot, std::string const& folder)
{
    if (g_type_from_name(listType) == 0 && g_type_from_name(iconsType) == 0)
        reportUnreadable("Nemo", "NemoListView and no NemoIconContainer");
    if (auto* const list = mappedDescendant(slot, listType)) {
        auto* const rows = mappedDescendant(list, "GtkTreeView");
        return rows ? selectedRows(GTK_TREE_VIEW(rows)) : std::vector<std::string> {};
    }
    auto* const icons = mappedDescendant(slot, iconsType);
    return icons ? selectedIcons(icons, folder) : std::vector<std::string> {};
}

}
