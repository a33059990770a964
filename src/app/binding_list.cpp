#include "app/binding_list.h"

#include <QHeaderView>
#include <QStyle>

#include "actions/action_catalog.h"
#include "app/gesture_icon.h"
#include "app/qt_text.h"

namespace ostrelle::app {
namespace {

constexpr int idRole = Qt::UserRole;
constexpr int iconSide = 28;  // at 100 %; Qt scales it with the screen
constexpr const char* listName = "Saved gestures";
constexpr const char* gestureColumnTitle = "Gesture";
constexpr const char* actionColumnTitle = "Action";

}  // namespace

BindingList::BindingList(AppContext& context, QWidget* parent) : QTreeWidget(parent), context_(context) {
    setAccessibleName(QString::fromUtf8(listName));
    setColumnCount(2);
    setHeaderLabels({QString::fromUtf8(gestureColumnTitle), QString::fromUtf8(actionColumnTitle)});
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    setRootIsDecorated(false);
    setIconSize(QSize(iconSide, iconSide));
    setTextElideMode(Qt::ElideMiddle);
    setAlternatingRowColors(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item && item->data(0, idRole).isValid()) emit chosen(item->data(0, idRole).toString());
    });
    storeUpdates_ = context_.store.observers.add([this] { reload(); });
    reload();
}

BindingList::~BindingList() {
    context_.store.observers.remove(storeUpdates_);
}

std::optional<std::string> BindingList::chosenID() const {
    const QTreeWidgetItem* item = currentItem();
    if (!item || !item->data(0, idRole).isValid()) return std::nullopt;
    return item->data(0, idRole).toString().toStdString();
}

void BindingList::choose(const std::optional<std::string>& id) {
    for (QTreeWidgetItemIterator it(this); *it; ++it) {
        if (id && (*it)->data(0, idRole).toString().toStdString() == *id) {
            setCurrentItem(*it);
            return;
        }
    }
    setCurrentItem(nullptr);
}

void BindingList::reload() {
    const auto chosenBefore = chosenID();
    const QSignalBlocker quiet(this);
    clear();
    const QIcon warning = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (const auto& group : context_.store.groupedByFingers()) {
        auto* heading = new QTreeWidgetItem(this, {text(Gesture::fingersLabel(group.fingers))});
        heading->setFlags(Qt::ItemIsEnabled);
        heading->setFirstColumnSpanned(true);
        QFont bold = heading->font(0);
        bold.setBold(true);
        heading->setFont(0, bold);
        for (const auto& binding : group.bindings) {
            const QString name = text(binding.gesture.displayName());
            const QString pill = text(ActionCatalog::pill(binding.action, context_.host));
            auto* row = new QTreeWidgetItem(heading, {name, pill});
            row->setData(0, idRole, text(binding.id));
            row->setIcon(0, gestureIcon(binding.gesture));
            row->setToolTip(0, name);
            row->setToolTip(1, text(ActionCatalog::summary(binding.action, context_.host)));
            QString spoken = name + QStringLiteral(", ") + pill;
            if (const auto conflict = context_.conflict(binding.gesture)) {
                row->setIcon(1, warning);
                row->setToolTip(0, name + QStringLiteral("\n") + text(conflict->text));
                row->setToolTip(1, text(conflict->text));
                spoken += QStringLiteral(". ") + text(conflict->text);
            }
            row->setData(0, Qt::AccessibleTextRole, spoken);
        }
    }
    expandAll();
    choose(chosenBefore);
}

}  // namespace ostrelle::app
