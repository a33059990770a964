#include "app/list_navigation.h"

#include <QKeyEvent>
#include <QListView>
#include <QTreeView>

namespace ostrelle::app {
namespace {

// Rows a filter hid are skipped as if they were not there.
bool isHidden(const QAbstractItemView& view, const QModelIndex& index) {
    if (const auto* list = qobject_cast<const QListView*>(&view)) return list->isRowHidden(index.row());
    if (const auto* tree = qobject_cast<const QTreeView*>(&view))
        return tree->isRowHidden(index.row(), index.parent());
    return false;
}

bool pickable(const QAbstractItemView& view, const QModelIndex& index) {
    const Qt::ItemFlags flags = index.flags();
    return flags.testFlag(Qt::ItemIsSelectable) && flags.testFlag(Qt::ItemIsEnabled) &&
           !isHidden(view, index);
}

// Depth first over the model: headers are followed by their rows.
QModelIndex search(const QAbstractItemView& view, const QModelIndex& parent, bool fromEnd) {
    const QAbstractItemModel& model = *view.model();
    const int rows = model.rowCount(parent);
    for (int step = 0; step < rows; ++step) {
        const QModelIndex index = model.index(fromEnd ? rows - 1 - step : step, 0, parent);
        if (isHidden(view, index)) continue;
        if (!fromEnd && pickable(view, index)) return index;
        if (QModelIndex inner = search(view, index, fromEnd); inner.isValid()) return inner;
        if (fromEnd && pickable(view, index)) return index;
    }
    return {};
}

}  // namespace

ListNavigation::ListNavigation(QLineEdit& field, QAbstractItemView& view)
    : QObject(&field), field_(field), view_(view) {
    field_.installEventFilter(this);
}

QModelIndex ListNavigation::firstPickable(const QAbstractItemView& view, bool fromEnd) {
    return view.model() ? search(view, view.rootIndex(), fromEnd) : QModelIndex();
}

bool ListNavigation::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &field_ || event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
        case Qt::Key_Down:
        case Qt::Key_Up: {
            const QModelIndex current = view_.currentIndex();
            const QModelIndex target = current.isValid() && pickable(view_, current)
                                           ? current
                                           : firstPickable(view_, key->key() == Qt::Key_Up);
            if (!target.isValid()) return true;
            view_.setCurrentIndex(target);
            view_.setFocus(Qt::TabFocusReason);
            return true;
        }
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            const QModelIndex current = view_.currentIndex();
            const QModelIndex target =
                current.isValid() && pickable(view_, current) ? current : firstPickable(view_);
            if (target.isValid()) {
                view_.setCurrentIndex(target);
                emit picked(target);
            }
            return true;
        }
        default:
            return QObject::eventFilter(watched, event);
    }
}

}  // namespace ostrelle::app
