#include "app/binding_editor.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QTimer>
#include <QVBoxLayout>

#include "actions/action_catalog.h"
#include "app/action_picker.h"
#include "app/gesture_icon.h"
#include "app/palette_tones.h"
#include "app/qt_text.h"
#include "app/trackpad_preview.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::app {
namespace {

constexpr int gestureRole = Qt::UserRole;
constexpr int customRole = Qt::UserRole + 1;
constexpr int detectedIconLines = 3;  // the detected gesture's picture, in lines of text
constexpr double titleScale = 1.4;
// Room for both lists side by side without eliding their labels, in lines of text.
constexpr int hintWidthLines = 48;
constexpr int hintLines = 32;

QLabel* heading(const char* title, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text(title), parent);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    label->setBuddy(buddy);
    return label;
}

}  // namespace

BindingEditor::BindingEditor(AppContext& context, std::optional<GestureBinding> binding, QWidget* parent)
    : QWidget(parent),
      context_(context),
      binding_(std::move(binding)),
      record_(new QPushButton(this)),
      prompt_(new QLabel(text(recordingPrompt), this)),
      preview_(new TrackpadPreview(context.engine.liveTrace(), this)),
      detectedIcon_(new QLabel(this)),
      detected_(new QLabel(this)),
      nameRow_(new QWidget(this)),
      name_(new QLineEdit(nameRow_)),
      triggers_(new QTreeWidget(this)),
      picker_(new ActionPicker(context.host, this)),
      message_(new QLabel(this)) {
    if (binding_ && binding_->gesture.custom) custom_ = binding_->gesture;

    auto* title = new QLabel(text(binding_ ? editTitle : newTitle), this);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * titleScale);
    large.setBold(true);
    title->setFont(large);
    setWindowTitle(title->text());

    auto* columns = new QHBoxLayout;
    columns->addWidget(buildGestureColumn(), 1);
    auto* actionColumn = new QVBoxLayout;
    actionColumn->addWidget(heading(actionHeading, &picker_->searchField(), this));
    actionColumn->addWidget(picker_, 1);
    columns->addLayout(actionColumn, 1);

    message_->setWordWrap(true);
    message_->hide();
    QPalette tones = message_->palette();
    tones.setColor(QPalette::WindowText, errorTone(palette()));
    message_->setPalette(tones);

    auto* remove = new QPushButton(text(deleteText), this);
    auto* cancel = new QPushButton(text(cancelText), this);
    auto* save = new QPushButton(text(saveText), this);
    cancel->setShortcut(QKeySequence::Cancel);
    save->setDefault(true);
    remove->setVisible(binding_.has_value());
    for (QPushButton* button : {remove, cancel, save}) button->setAccessibleName(button->text().remove('&'));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(remove);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(save);

    auto* page = new QVBoxLayout(this);
    page->addWidget(title);
    page->addLayout(columns, 1);
    page->addWidget(message_);
    page->addLayout(buttons);

    connect(record_, &QPushButton::clicked, this, [this] { setRecording(!recording_); });
    connect(triggers_, &QTreeWidget::currentItemChanged, this, [this] { triggerChanged(); });
    connect(picker_, &ActionPicker::changed, this, [this] { showMessage({}); });
    connect(picker_, &ActionPicker::picked, save, [save] { save->setFocus(Qt::OtherFocusReason); });
    connect(picker_, &ActionPicker::recordingChanged, this,
            [this](bool recording) { context_.engine.suspendToggleShortcut(recording); });
    connect(save, &QPushButton::clicked, this, [this] { this->save(); });
    connect(cancel, &QPushButton::clicked, this, [this] {
        setRecording(false);
        emit closed();
    });
    connect(remove, &QPushButton::clicked, this, [this] {
        setRecording(false);
        if (binding_) emit deleteRequested(QString::fromStdString(binding_->id));
    });
    engineToken_ = context_.engine.observers.add([this] { engineChanged(); });

    fillTriggers();
    if (binding_) {
        selectGesture(binding_->gesture);
        picker_->setAction(binding_->action);
    }
    setTabOrder(record_, name_);
    setTabOrder(name_, triggers_);
    setTabOrder(triggers_, &picker_->searchField());
}

BindingEditor::~BindingEditor() {
    context_.engine.observers.remove(engineToken_);
    if (recording_) context_.engine.setCapturing(false);
}

QSize BindingEditor::sizeHint() const {
    const QSize least = QWidget::sizeHint();
    return {std::max(least.width(), fontMetrics().height() * hintWidthLines),
            std::max(least.height(), fontMetrics().height() * hintLines)};
}

QWidget* BindingEditor::buildGestureColumn() {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(heading(gestureHeading, triggers_, column));

    record_->setText(text(recordText));
    record_->setCheckable(true);
    record_->setAccessibleName(text(recordText).remove('&'));
    record_->setIcon(QIcon::fromTheme(QStringLiteral("media-record")));
    auto* recordRow = new QHBoxLayout;
    recordRow->addWidget(record_);
    recordRow->addWidget(prompt_, 1);
    recordRow->addStretch();  // keeps the button its own size while the prompt is hidden
    layout->addLayout(recordRow);
    prompt_->setWordWrap(true);
    // Wrapping labels would otherwise take a share of the column's spare height from the list.
    prompt_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    detected_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    prompt_->hide();
    layout->addWidget(preview_);
    preview_->hide();

    const int iconSide = fontMetrics().height() * detectedIconLines;
    detectedIcon_->setFixedSize(iconSide, iconSide);
    detectedIcon_->hide();
    detected_->setWordWrap(true);
    detected_->hide();
    auto* detectedRow = new QHBoxLayout;
    detectedRow->addWidget(detectedIcon_);
    detectedRow->addWidget(detected_, 1);
    layout->addLayout(detectedRow);

    auto* nameLayout = new QHBoxLayout(nameRow_);
    nameLayout->setContentsMargins(0, 0, 0, 0);
    auto* nameTitle = new QLabel(text(nameLabel), nameRow_);
    nameTitle->setBuddy(name_);
    name_->setAccessibleName(text(nameLabel).remove('&'));
    name_->setPlaceholderText(QString::fromStdString(context_.store.nextCustomName()));
    if (custom_) name_->setText(QString::fromStdString(custom_->custom->name));
    nameLayout->addWidget(nameTitle);
    nameLayout->addWidget(name_, 1);
    nameRow_->hide();
    layout->addWidget(nameRow_);

    triggers_->setHeaderHidden(true);
    triggers_->setRootIsDecorated(false);
    triggers_->setItemsExpandable(false);
    triggers_->setAccessibleName(text(gestureListName));
    const int iconSize = fontMetrics().height() * 2;
    triggers_->setIconSize({iconSize, iconSize});
    layout->addWidget(triggers_, 1);
    return column;
}

void BindingEditor::fillTriggers() {
    const QSignalBlocker quiet(triggers_);
    triggers_->clear();
    const auto addGroup = [this](const QString& name) {
        auto* group = new QTreeWidgetItem(triggers_, {name});
        group->setFlags(Qt::ItemIsEnabled);
        QFont bold = group->font(0);
        bold.setBold(true);
        group->setFont(0, bold);
        return group;
    };
    const auto addGesture = [](QTreeWidgetItem* group, const Gesture& gesture) {
        auto* item = new QTreeWidgetItem(group, {QString::fromStdString(gesture.displayName())});
        item->setIcon(0, gestureIcon(gesture));
        item->setData(0, gestureRole, QString::fromStdString(gesture.id));
        item->setToolTip(0, QString::fromStdString(gesture.hint()));
        return item;
    };
    if (custom_) addGesture(addGroup(text(customGroupName)), *custom_)->setData(0, customRole, true);
    for (const GestureGroup& group : GestureCatalog::groups()) {
        QTreeWidgetItem* header = addGroup(QString::fromStdString(group.name));
        for (const GestureDef& def : group.gestures) addGesture(header, Gesture(def.id));
    }
    triggers_->expandAll();
}

void BindingEditor::selectGesture(const Gesture& gesture) {
    const QString id = QString::fromStdString(gesture.id);
    for (QTreeWidgetItemIterator it(triggers_); *it; ++it) {
        if ((*it)->data(0, gestureRole).toString() != id) continue;
        triggers_->setCurrentItem(*it);
        // Once the layout has settled after the preview closes, so the row is really in view.
        QTimer::singleShot(0, triggers_, [this] {
            if (triggers_->currentItem())
                triggers_->scrollToItem(triggers_->currentItem(), QAbstractItemView::PositionAtCenter);
        });
        return;
    }
}

std::optional<Gesture> BindingEditor::gesture() const {
    const QTreeWidgetItem* item = triggers_->currentItem();
    if (!item || !item->data(0, gestureRole).isValid()) return std::nullopt;
    if (!item->data(0, customRole).toBool() || !custom_)
        return Gesture(item->data(0, gestureRole).toString().toStdString());
    Gesture shape = *custom_;
    const QString typed = name_->text().trimmed();
    shape.custom->name = typed.isEmpty() ? context_.store.nextCustomName() : typed.toStdString();
    return shape;
}

void BindingEditor::setRecording(bool recording) {
    if (recording == recording_) return;
    recording_ = recording;
    if (recording) {
        // Only a gesture made from now on counts, not one the engine reported before.
        const auto& last = context_.engine.lastDetection();
        seenDetection_ = last ? std::optional(last->id) : std::nullopt;
        showMessage({});
    }
    record_->setChecked(recording);
    record_->setText(text(recording ? stopText : recordText));
    prompt_->setVisible(recording);
    preview_->setVisible(recording);
    context_.engine.setCapturing(recording);
}

void BindingEditor::engineChanged() {
    if (!recording_) return;
    const auto& last = context_.engine.lastDetection();
    if (!last || last->id == seenDetection_) return;
    seenDetection_ = last->id;
    const Gesture detected = last->gesture;
    if (detected.custom) {
        custom_ = detected;
        name_->setText(QString::fromStdString(context_.store.nextCustomName()));
        fillTriggers();
    }
    selectGesture(detected);
    const QString name =
        QString::fromStdString(detected.custom ? name_->text().toStdString() : detected.displayName());
    detected_->setText(text(detectedPrefix) + name);
    detected_->setVisible(true);
    const int side = detectedIcon_->width();
    detectedIcon_->setPixmap(gestureIcon(detected).pixmap(QSize(side, side), devicePixelRatioF()));
    detectedIcon_->setVisible(true);
    setRecording(false);
    if (detected.custom) name_->setFocus(Qt::OtherFocusReason);
}

void BindingEditor::triggerChanged() {
    const QTreeWidgetItem* item = triggers_->currentItem();
    nameRow_->setVisible(item && item->data(0, customRole).toBool());
    showMessage({});
}

void BindingEditor::showMessage(const QString& message) {
    message_->setText(message);
    message_->setVisible(!message.isEmpty());
}

QString BindingEditor::inUseMessage(const Gesture& gesture) const {
    const GestureBinding* holder =
        context_.store.holderOf(gesture, binding_ ? std::optional(binding_->id) : std::nullopt);
    if (!holder) return {};
    return text(inUseText).arg(text(gesture.displayName()),
                               text(ActionCatalog::pill(holder->action, context_.host)));
}

bool BindingEditor::save() {
    setRecording(false);
    const std::optional<Gesture> chosen = gesture();
    if (!chosen) {
        showMessage(text(noGestureError));
        return false;
    }
    const std::optional<ActionRef> action = picker_->action();
    if (!action) {
        showMessage(text(noActionError));
        return false;
    }
    if (context_.store.isInUse(*chosen, binding_ ? std::optional(binding_->id) : std::nullopt)) {
        showMessage(inUseMessage(*chosen));
        return false;
    }
    const GestureBinding saving =
        binding_ ? GestureBinding{binding_->id, *chosen, *action, binding_->createdAt}
                 : GestureBinding::make(*chosen, *action, referenceDateSeconds(systemWallClock()()));
    if (!context_.store.save(saving)) {
        showMessage(text(notSavedError));
        return false;
    }
    binding_ = saving;
    emit saved(QString::fromStdString(saving.id));
    return true;
}

void BindingEditor::hideEvent(QHideEvent* event) {
    setRecording(false);
    QWidget::hideEvent(event);
}

}  // namespace ostrelle::app
