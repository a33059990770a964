#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QWidget>
#include <optional>

#include "actions/action_host.h"
#include "support/url.h"

namespace ostrelle::app {

// The installed applications with their icons and names, narrowed by a search field, for the
// "open an app" action. The choice is the application's desktop entry file.
class AppPicker final : public QWidget {
    Q_OBJECT

  public:
    static constexpr const char* searchPlaceholder = "Search applications";
    static constexpr const char* listName = "Applications";
    static constexpr const char* noneFoundText = "No applications found.";

    // Scans the host's application folders once; without them the list stays empty.
    explicit AppPicker(const ActionHost& host, QWidget* parent = nullptr);

    std::optional<URL> app() const;
    // Selects the application, when listed.
    void setApp(const std::optional<URL>& app);

  signals:
    // The selection changed.
    void changed();
    // Enter or a double click on an application.
    void activated();

  private:
    void applyFilter(const QString& text);

    QLineEdit* search_;
    QListWidget* list_;
};

}  // namespace ostrelle::app
