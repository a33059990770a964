#pragma once

#include <QAbstractItemView>
#include <QLineEdit>
#include <QObject>

namespace ostrelle::app {

// Lets a search field lead into the list it filters, as a launcher does: Down or Up moves into the
// list onto the first (or last) row that can be picked, Enter picks the current row, or the first
// match when none is current. Owned by the field.
class ListNavigation final : public QObject {
    Q_OBJECT

  public:
    ListNavigation(QLineEdit& field, QAbstractItemView& view);

    // The first row that can be picked, counting children of expanded rows; invalid when none.
    static QModelIndex firstPickable(const QAbstractItemView& view, bool fromEnd = false);

  signals:
    // Enter in the field, on this row.
    void picked(const QModelIndex& index);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QLineEdit& field_;
    QAbstractItemView& view_;
};

}  // namespace ostrelle::app
