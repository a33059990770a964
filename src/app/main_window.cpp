#include "app/main_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace ostrelle::app {
namespace {

constexpr int sidebarWidth = 360;
constexpr const char* newGestureText = "&New Gesture";
constexpr const char* settingsText = "&Settings";
constexpr const char* undoText = "&Undo";
constexpr const char* deletedText = "Deleted “%1”.";
constexpr const char* emptyText = "Choose a gesture on the left, or make a new one.";
constexpr const char* keepRunningQuestion = "Keep Ostrelle running in the background?";
constexpr const char* keepRunningDetail =
    "Your gestures keep working while the window is closed. Open Ostrelle again to change them.";
constexpr const char* keepRunningText = "Keep Running";
constexpr const char* quitText = "Quit Ostrelle";

}  // namespace

MainWindow::MainWindow(AppContext& context, QWidget* parent) : QMainWindow(parent), context_(context) {
    setWindowTitle(QString::fromUtf8(title));
    setObjectName(QString::fromUtf8(identifier));
    resize(defaultWidth, defaultHeight);

    auto* splitter = new QSplitter(this);
    splitter->addWidget(makeSidebar());
    auto* right = new QWidget(splitter);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(makeUndoBar());
    pages_ = new QStackedWidget(right);
    emptyPage_ = new QLabel(QString::fromUtf8(emptyText), pages_);
    static_cast<QLabel*>(emptyPage_)->setAlignment(Qt::AlignCenter);
    static_cast<QLabel*>(emptyPage_)->setWordWrap(true);
    pages_->addWidget(emptyPage_);
    settings_ = new SettingsPane(context_, pages_);
    pages_->addWidget(settings_);
    guide_ = new PermissionGuide(context_.engine, pages_);
    pages_->addWidget(guide_);
    connect(guide_, &PermissionGuide::granted, this, [this] {
        if (showsPermissionGuide()) showEmpty();
    });
    rightLayout->addWidget(pages_, 1);
    splitter->addWidget(right);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({sidebarWidth, defaultWidth - sidebarWidth});
    setCentralWidget(splitter);

    auto* close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    // As in the tray's menu.
    auto* quit = new QShortcut(QKeySequence::Quit, this);
    connect(quit, &QShortcut::activated, this, &MainWindow::quitRequested);
    auto* undo = new QShortcut(QKeySequence::Undo, this);
    connect(undo, &QShortcut::activated, this, &MainWindow::undoDelete);
    engineUpdates_ = context_.engine.observers.add([this] { updateGuide(); });
    showEmpty();
    updateGuide();
}

MainWindow::~MainWindow() {
    context_.engine.observers.remove(engineUpdates_);
}

QWidget* MainWindow::makeSidebar() {
    auto* sidebar = new QWidget(this);
    auto* layout = new QVBoxLayout(sidebar);
    list_ = new BindingList(context_, sidebar);
    layout->addWidget(list_, 1);
    auto* buttons = new QHBoxLayout;
    auto* add = new QPushButton(QString::fromUtf8(newGestureText), sidebar);
    add->setAccessibleName(QStringLiteral("New Gesture"));
    auto* settings = new QPushButton(QString::fromUtf8(settingsText), sidebar);
    settings->setAccessibleName(QStringLiteral("Settings"));
    buttons->addWidget(add);
    connect(add, &QPushButton::clicked, this, [this] { showEditor(std::nullopt); });
    connect(list_, &BindingList::chosen, this, [this](const QString& id) { showEditor(id.toStdString()); });
    buttons->addStretch(1);
    buttons->addWidget(settings);
    connect(settings, &QPushButton::clicked, this, &MainWindow::showSettings);
    layout->addLayout(buttons);
    return sidebar;
}

QWidget* MainWindow::makeUndoBar() {
    undoBar_ = new QWidget(this);
    auto* layout = new QHBoxLayout(undoBar_);
    undoText_ = new QLabel(undoBar_);
    auto* button = new QPushButton(QString::fromUtf8(undoText), undoBar_);
    button->setAccessibleName(QStringLiteral("Undo delete"));
    connect(button, &QPushButton::clicked, this, &MainWindow::undoDelete);
    layout->addWidget(undoText_, 1);
    layout->addWidget(button);
    undoBar_->setAutoFillBackground(true);
    undoBar_->setBackgroundRole(QPalette::AlternateBase);
    undoBar_->hide();
    return undoBar_;
}

void MainWindow::showEmpty() {
    pages_->setCurrentWidget(emptyPage_);
    dropEditor();
}

void MainWindow::dropEditor() {
    if (!editor_) return;
    // Later: the editor may be the one asking to go.
    editor_->hide();
    editor_->deleteLater();
    editor_ = nullptr;
}

void MainWindow::showEditor(const std::optional<std::string>& id) {
    std::optional<GestureBinding> binding;
    if (id) {
        const GestureBinding* saved = context_.store.bindingWithID(*id);
        if (!saved) return;
        binding = *saved;
    }
    if (!id) list_->choose(std::nullopt);
    dropEditor();
    editor_ = new BindingEditor(context_, binding, pages_);
    connect(editor_, &BindingEditor::saved, this, [this](const QString& saved) {
        list_->choose(saved.toStdString());
        showEditor(saved.toStdString());
    });
    connect(editor_, &BindingEditor::deleteRequested, this,
            [this](const QString& deleted) { deleteBinding(deleted.toStdString()); });
    connect(editor_, &BindingEditor::closed, this, [this] {
        list_->choose(std::nullopt);
        showEmpty();
    });
    pages_->addWidget(editor_);
    pages_->setCurrentWidget(editor_);
}

void MainWindow::showSettings() {
    list_->choose(std::nullopt);
    pages_->setCurrentWidget(settings_);
    dropEditor();
}

void MainWindow::deleteBinding(const std::string& id) {
    const GestureBinding* doomed = context_.store.bindingWithID(id);
    if (!doomed) return;
    deleted_ = *doomed;
    context_.store.remove(id);
    undoText_->setText(
        QString::fromUtf8(deletedText).arg(QString::fromStdString(deleted_->gesture.displayName())));
    undoBar_->show();
    showEmpty();
}

void MainWindow::undoDelete() {
    if (!deleted_) return;
    // Refused when the gesture was bound again meanwhile; the bar then stays to say nothing came back.
    if (!context_.store.save(*deleted_)) return;
    list_->choose(deleted_->id);
    deleted_.reset();
    undoBar_->hide();
}

bool MainWindow::showsPermissionGuide() const {
    return pages_->currentWidget() == guide_;
}

void MainWindow::updateGuide() {
    const auto& error = context_.engine.sourceError();
    if (error && error != guidedError_) pages_->setCurrentWidget(guide_);
    guidedError_ = error;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!asksBeforeClosing_) {
        event->accept();
        return;
    }
    QMessageBox question(QMessageBox::Question, QString::fromUtf8(title),
                         QString::fromUtf8(keepRunningQuestion), QMessageBox::NoButton, this);
    question.setInformativeText(QString::fromUtf8(keepRunningDetail));
    QPushButton* keep = question.addButton(QString::fromUtf8(keepRunningText), QMessageBox::AcceptRole);
    question.addButton(QString::fromUtf8(quitText), QMessageBox::DestructiveRole);
    question.addButton(QMessageBox::Cancel);
    question.setDefaultButton(keep);
    question.exec();
    if (question.clickedButton() == keep) {
        event->accept();
    } else if (question.buttonRole(question.clickedButton()) == QMessageBox::DestructiveRole) {
        event->accept();
        emit quitRequested();
    } else {
        event->ignore();
    }
}

}  // namespace ostrelle::app
