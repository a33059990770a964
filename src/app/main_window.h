#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>
#include <optional>

#include "app/app_context.h"
#include "app/binding_editor.h"
#include "app/binding_list.h"
#include "app/permission_guide.h"
#include "app/settings_pane.h"

namespace ostrelle::app {

// The one window, "Ostrelle": the saved gestures on the left; on the right the editor of the
// chosen or a new gesture, the settings, or the permission guide while touches can't be read.
// Deleting a gesture can be undone until the next deletion.
class MainWindow final : public QMainWindow {
    Q_OBJECT

  public:
    static constexpr const char* title = "Ostrelle";
    static constexpr const char* identifier = "main";
    static constexpr int defaultWidth = 1000;
    static constexpr int defaultHeight = 700;

    explicit MainWindow(AppContext& context, QWidget* parent = nullptr);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Where the desktop has no tray, closing asks whether to keep running in the background.
    void setAsksBeforeClosing(bool asks) { asksBeforeClosing_ = asks; }

    BindingList& bindingList() { return *list_; }
    void showSettings();
    // The editor of a saved binding, or of a new one.
    void showEditor(const std::optional<std::string>& id);
    BindingEditor* editor() const { return editor_; }
    bool showsPermissionGuide() const;
    void deleteBinding(const std::string& id);
    void undoDelete();

  signals:
    void quitRequested();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QWidget* makeSidebar();
    QWidget* makeUndoBar();
    void showEmpty();
    void dropEditor();
    void updateGuide();

    AppContext& context_;
    BindingList* list_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QWidget* emptyPage_ = nullptr;
    SettingsPane* settings_ = nullptr;
    PermissionGuide* guide_ = nullptr;
    BindingEditor* editor_ = nullptr;  // the page of the binding being edited, if any
    // The touch source's error the guide was last shown for, so that it shows once per error.
    std::optional<std::string> guidedError_;
    QWidget* undoBar_ = nullptr;
    QLabel* undoText_ = nullptr;
    std::optional<GestureBinding> deleted_;
    bool asksBeforeClosing_ = false;
    ObserverList::Token engineUpdates_ = 0;
};

}  // namespace ostrelle::app
