#include "app/action_picker.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "actions/linux_actions.h"
#include "app/app_picker.h"
#include "app/list_navigation.h"
#include "app/shortcut_recorder.h"

namespace ostrelle::app {
namespace {

constexpr int appRole = Qt::UserRole;
constexpr int optionRole = Qt::UserRole + 1;

bool isKind(const ActionOption* option, auto kind) {
    return option && option->kind.is<decltype(kind)>();
}

}  // namespace

ActionPicker::ActionPicker(const ActionHost& host, QWidget* parent)
    : QWidget(parent),
      host_(host),
      search_(new QLineEdit(this)),
      list_(new QTreeWidget(this)),
      note_(new QLabel(this)),
      recorder_(new ShortcutRecorder(host, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(search_);
    column->addWidget(list_, 1);
    column->addWidget(note_);
    column->addWidget(recorder_);

    search_->setPlaceholderText(QString::fromUtf8(searchPlaceholder));
    search_->setAccessibleName(QString::fromUtf8(searchPlaceholder));
    search_->setClearButtonEnabled(true);
    list_->setAccessibleName(QString::fromUtf8(listName));
    list_->setColumnCount(2);
    list_->setHeaderHidden(true);
    list_->setRootIsDecorated(false);
    list_->setItemsExpandable(false);
    list_->setUniformRowHeights(true);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    note_->setWordWrap(true);
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->hide();
    recorder_->hide();
    setFocusProxy(search_);

    auto* navigation = new ListNavigation(*search_, *list_);
    connect(navigation, &ListNavigation::picked, this, [this] { chooseCurrent(); });
    connect(search_, &QLineEdit::textChanged, this, [this] { rebuild(); });
    connect(list_, &QTreeWidget::currentItemChanged, this, [this] { showDetails(); });
    connect(list_, &QTreeWidget::itemActivated, this, [this] { chooseCurrent(); });
    connect(recorder_, &ShortcutRecorder::edited, this, &ActionPicker::changed);
    connect(recorder_, &ShortcutRecorder::recordingChanged, this, &ActionPicker::recordingChanged);
    rebuild();
}

const std::vector<AppActions>& ActionPicker::shownCatalog() const {
    return host_.linuxActions ? host_.linuxActions->catalog() : ActionCatalog::apps();
}

const ActionOption* ActionPicker::option(const ActionRef& ref) const {
    if (host_.linuxActions) return host_.linuxActions->shownOption(ref);
    const auto entry = ActionCatalog::lookup(ref);
    return entry ? entry->option : nullptr;
}

std::optional<std::string> ActionPicker::unavailable(const ActionOption& shown,
                                                     const std::string& appID) const {
    if (!host_.linuxActions) return std::nullopt;
    const LinuxRendition* rendition = host_.linuxActions->rendition({appID, shown.id, {}, {}}, std::nullopt);
    if (!rendition || !rendition->unsupported) return std::nullopt;
    return shown.note ? shown.note : rendition->unsupported;
}

void ActionPicker::rebuild() {
    const QSignalBlocker quiet(list_);
    list_->clear();
    QTreeWidgetItem* current = nullptr;
    for (const AppActions& app : ActionCatalog::filtered(search_->text().toStdString(), shownCatalog())) {
        auto* group = new QTreeWidgetItem(list_, {QString::fromStdString(app.name)});
        group->setFlags(Qt::ItemIsEnabled);
        group->setFirstColumnSpanned(true);
        QFont bold = group->font(0);
        bold.setBold(true);
        group->setFont(0, bold);
        for (const ActionOption& shown : app.options) {
            auto* item = new QTreeWidgetItem(
                group, {QString::fromStdString(shown.label), QString::fromStdString(shown.keys)});
            item->setData(0, appRole, QString::fromStdString(app.id));
            item->setData(0, optionRole, QString::fromStdString(shown.id));
            item->setData(
                0, Qt::AccessibleTextRole,
                QString::fromStdString(shown.keys.empty() ? shown.label : shown.label + ", " + shown.keys));
            item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
            if (const auto why = unavailable(shown, app.id)) {
                item->setFlags(Qt::NoItemFlags);
                item->setToolTip(0, QString::fromStdString(*why));
            } else if (shown.note) {
                item->setToolTip(0, QString::fromStdString(*shown.note));
            }
            if (chosen_ && chosen_->appID == app.id && chosen_->optionID == shown.id) current = item;
        }
    }
    list_->expandAll();
    if (list_->topLevelItemCount() == 0) {
        auto* none = new QTreeWidgetItem(list_, {QString::fromUtf8(noMatchText)});
        none->setFlags(Qt::NoItemFlags);
    }
    if (current) list_->setCurrentItem(current);
}

void ActionPicker::showDetails() {
    const QTreeWidgetItem* item = list_->currentItem();
    if (item && item->data(0, optionRole).isValid()) {
        chosen_ = ActionRef{item->data(0, appRole).toString().toStdString(),
                            item->data(0, optionRole).toString().toStdString(),
                            {},
                            {}};
    }
    const ActionOption* shown = chosen_ ? option(*chosen_) : nullptr;
    note_->setText(shown && shown->note ? QString::fromStdString(*shown->note) : QString());
    note_->setVisible(!note_->text().isEmpty());
    recorder_->setVisible(isKind(shown, ActionKind::CustomShortcut{}));
    const bool needsApp = isKind(shown, ActionKind::ChooseApp{});
    if (needsApp && !apps_) {
        apps_ = new AppPicker(host_, this);
        layout()->addWidget(apps_);
        connect(apps_, &AppPicker::changed, this, &ActionPicker::changed);
        connect(apps_, &AppPicker::activated, this, [this] {
            if (action()) emit picked();
        });
    }
    if (apps_) apps_->setVisible(needsApp);
    emit changed();
}

void ActionPicker::chooseCurrent() {
    showDetails();
    const ActionOption* shown = chosen_ ? option(*chosen_) : nullptr;
    // An option that still needs its keys or application hands the keyboard on to that part.
    if (isKind(shown, ActionKind::CustomShortcut{}) && !recorder_->shortcut()) {
        recorder_->startRecording();
    } else if (isKind(shown, ActionKind::ChooseApp{}) && !apps_->app()) {
        apps_->setFocus(Qt::TabFocusReason);
    } else if (action()) {
        emit picked();
    }
}

std::optional<ActionRef> ActionPicker::action() const {
    if (!chosen_) return std::nullopt;
    const ActionOption* shown = option(*chosen_);
    ActionRef ref = *chosen_;
    if (isKind(shown, ActionKind::CustomShortcut{})) {
        ref.shortcut = recorder_->shortcut();
        if (!ref.shortcut) return std::nullopt;
    }
    if (isKind(shown, ActionKind::ChooseApp{})) {
        ref.app = apps_ ? apps_->app() : std::nullopt;
        if (!ref.app) return std::nullopt;
    }
    return ref;
}

void ActionPicker::setAction(const std::optional<ActionRef>& action) {
    chosen_ = action ? std::optional(ActionRef{action->appID, action->optionID, {}, {}}) : std::nullopt;
    recorder_->setShortcut(action ? action->shortcut : std::nullopt);
    search_->clear();
    rebuild();
    if (!chosen_) list_->setCurrentItem(nullptr);
    showDetails();
    if (apps_ && action) apps_->setApp(action->app);
}

}  // namespace ostrelle::app
