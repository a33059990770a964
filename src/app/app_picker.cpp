#include "app/app_picker.h"

#include <QFileInfo>
#include <QVBoxLayout>

#include "actions/installed_apps.h"
#include "app/list_navigation.h"

namespace ostrelle::app {
namespace {

constexpr int urlRole = Qt::UserRole;
const QString genericAppIcon = QStringLiteral("application-x-executable");

// A desktop entry names its icon by theme name or by absolute file path.
QIcon entryIcon(const std::string& icon) {
    const QString name = QString::fromStdString(icon);
    if (name.isEmpty()) return QIcon::fromTheme(genericAppIcon);
    if (QFileInfo(name).isAbsolute()) return QIcon(name);
    return QIcon::fromTheme(name, QIcon::fromTheme(genericAppIcon));
}

}  // namespace

AppPicker::AppPicker(const ActionHost& host, QWidget* parent)
    : QWidget(parent), search_(new QLineEdit(this)), list_(new QListWidget(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(search_);
    column->addWidget(list_, 1);

    search_->setPlaceholderText(QString::fromUtf8(searchPlaceholder));
    search_->setAccessibleName(QString::fromUtf8(searchPlaceholder));
    search_->setClearButtonEnabled(true);
    list_->setAccessibleName(QString::fromUtf8(listName));
    list_->setUniformItemSizes(true);

    if (host.appFiles) {
        for (const URL& url : InstalledApps::scanDesktopEntries(*host.appFiles)) {
            const auto entry = host.appFiles->desktopEntry(url.path());
            const QString name = QString::fromStdString(entry ? entry->name : url.lastPathComponent());
            auto* item = new QListWidgetItem(entry ? entryIcon(entry->icon) : QIcon(), name, list_);
            item->setData(urlRole, QString::fromStdString(url.absoluteString()));
            item->setData(Qt::AccessibleTextRole, name);
        }
    }
    if (list_->count() == 0) {
        auto* none = new QListWidgetItem(QString::fromUtf8(noneFoundText), list_);
        none->setFlags(Qt::NoItemFlags);
    }

    auto* navigation = new ListNavigation(*search_, *list_);
    connect(navigation, &ListNavigation::picked, this, &AppPicker::activated);
    connect(search_, &QLineEdit::textChanged, this, &AppPicker::applyFilter);
    connect(list_, &QListWidget::currentItemChanged, this, &AppPicker::changed);
    connect(list_, &QListWidget::itemActivated, this, &AppPicker::activated);
    setFocusProxy(search_);
}

std::optional<URL> AppPicker::app() const {
    const QListWidgetItem* item = list_->currentItem();
    if (!item || item->isHidden() || !item->data(urlRole).isValid()) return std::nullopt;
    return URL::parse(item->data(urlRole).toString().toStdString());
}

void AppPicker::setApp(const std::optional<URL>& app) {
    if (!app) {
        list_->setCurrentItem(nullptr);
        return;
    }
    const QString wanted = QString::fromStdString(app->absoluteString());
    for (int row = 0; row < list_->count(); ++row) {
        if (list_->item(row)->data(urlRole).toString() == wanted) list_->setCurrentRow(row);
    }
}

void AppPicker::applyFilter(const QString& text) {
    const QString needle = text.trimmed();
    for (int row = 0; row < list_->count(); ++row) {
        QListWidgetItem* item = list_->item(row);
        if (!item->data(urlRole).isValid()) continue;
        item->setHidden(!needle.isEmpty() && !item->text().contains(needle, Qt::CaseInsensitive));
    }
    if (list_->currentItem() && list_->currentItem()->isHidden()) list_->setCurrentItem(nullptr);
}

}  // namespace ostrelle::app
