#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QWidget>
#include <optional>

#include "actions/action_catalog.h"
#include "actions/action_host.h"
#include "actions/action_ref.h"

namespace ostrelle::app {

class AppPicker;
class ShortcutRecorder;

// Picks what a gesture does: a search field over the action catalog's groups and options as this
// desktop shows them. The "custom shortcut" option asks for its keys with a shortcut recorder,
// the "open an app" option for an installed application. Options this desktop can't carry out
// are listed but disabled, their note saying why.
class ActionPicker final : public QWidget {
    Q_OBJECT

  public:
    static constexpr const char* searchPlaceholder = "Search actions";
    static constexpr const char* listName = "Actions";
    static constexpr const char* noMatchText = "No action matches.";

    // The host must outlive this.
    explicit ActionPicker(const ActionHost& host, QWidget* parent = nullptr);

    // The action as picked; nothing while no option is chosen, or the chosen one still lacks its
    // shortcut or application.
    std::optional<ActionRef> action() const;
    void setAction(const std::optional<ActionRef>& action);
    QLineEdit& searchField() { return *search_; }

  signals:
    // What `action()` returns may have changed.
    void changed();
    // Enter or a double click on a complete option: the user is done choosing.
    void picked();
    // The custom-shortcut recorder started or stopped recording: the toggle key must rest meanwhile.
    void recordingChanged(bool recording);

  private:
    void rebuild();
    void chooseCurrent();
    void showDetails();
    const std::vector<AppActions>& shownCatalog() const;
    // The option as this desktop shows it.
    const ActionOption* option(const ActionRef& ref) const;
    std::optional<std::string> unavailable(const ActionOption& option, const std::string& appID) const;

    const ActionHost& host_;
    QLineEdit* search_;
    QTreeWidget* list_;
    QLabel* note_;
    ShortcutRecorder* recorder_;
    AppPicker* apps_ = nullptr;        // made when first needed: scanning applications takes a moment
    std::optional<ActionRef> chosen_;  // group and option; its shortcut and app live in the editors
};

}  // namespace ostrelle::app
