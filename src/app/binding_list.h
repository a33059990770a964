#pragma once

#include <QTreeWidget>
#include <optional>
#include <string>

#include "app/app_context.h"

namespace ostrelle::app {

// The saved gestures grouped by finger count ("3 fingers", ...), as the editor's list of gestures is, each
// row with the gesture's icon and name, the action's pill and, where the desktop uses the gesture itself, a
// warning. Follows the store; keeps the chosen binding chosen across changes while it exists.
class BindingList final : public QTreeWidget {
    Q_OBJECT

  public:
    explicit BindingList(AppContext& context, QWidget* parent = nullptr);
    ~BindingList() override;
    BindingList(const BindingList&) = delete;
    BindingList& operator=(const BindingList&) = delete;

    std::optional<std::string> chosenID() const;
    void choose(const std::optional<std::string>& id);
    // Builds the rows again from the store.
    void reload();

  signals:
    // A binding was chosen by click or keyboard; nothing when the choice went away.
    void chosen(const QString& id);

  private:
    AppContext& context_;
    ObserverList::Token storeUpdates_ = 0;
};

}  // namespace ostrelle::app
