#include "app/settings_pane.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include "app/updater.h"

namespace ostrelle::app {
namespace {

constexpr const char* headingText = "Settings";
constexpr double headingScale = 1.4;
constexpr const char* gesturesTitle = "Gestures";
constexpr const char* feedbackTitle = "Feedback";
constexpr const char* updatesTitle = "Updates";
constexpr const char* keysErrorPrefix = "Actions can't send keys: ";

QLabel* warningLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Link));
    label->setPalette(palette);
    return label;
}

}  // namespace

SettingsPane::SettingsPane(AppContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(QString::fromUtf8(headingText), this);
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * headingScale);
    large.setBold(true);
    heading->setFont(large);
    layout->addWidget(heading);

    auto* gestures = new QGroupBox(QString::fromUtf8(gesturesTitle), this);
    auto* gesturesLayout = new QFormLayout(gestures);
    active_ = new QCheckBox(QString::fromUtf8(activeText), gestures);
    active_->setAccessibleName(QStringLiteral("Recognize gestures"));
    connect(active_, &QCheckBox::toggled, this, [this](bool on) {
        if (on != context_.engine.isEnabled()) context_.engine.setEnabled(on);
    });
    gesturesLayout->addRow(active_);
    toggleShortcut_ = new ShortcutRecorder(context_.host, gestures);
    toggleShortcut_->setAccessibleName(QStringLiteral("Shortcut to turn gestures on or off"));
    connect(toggleShortcut_, &ShortcutRecorder::recordingChanged, this,
            [this](bool recording) { context_.engine.suspendToggleShortcut(recording); });
    connect(
        toggleShortcut_, &ShortcutRecorder::edited, this,
        [this](const std::optional<KeyShortcut>& shortcut) { context_.engine.setToggleShortcut(shortcut); });
    gesturesLayout->addRow(QString::fromUtf8(toggleShortcutText), toggleShortcut_);
    if (context_.keysError)
        gesturesLayout->addRow(warningLabel(
            QString::fromUtf8(keysErrorPrefix) + QString::fromStdString(*context_.keysError), gestures));
    layout->addWidget(gestures);

    // A setting with no effect on this machine is not offered at all.
    if (context_.hasHaptics) {
        auto* feedback = new QGroupBox(QString::fromUtf8(feedbackTitle), this);
        auto* feedbackLayout = new QVBoxLayout(feedback);
        haptic_ = new QCheckBox(QString::fromUtf8(hapticText), feedback);
        haptic_->setAccessibleName(QStringLiteral("Haptic feedback"));
        haptic_->setChecked(context_.settings.boolValue(settings_keys::hapticFeedback).value_or(false));
        connect(haptic_, &QCheckBox::toggled, this,
                [this](bool on) { context_.settings.setBool(settings_keys::hapticFeedback, on); });
        feedbackLayout->addWidget(haptic_);
        layout->addWidget(feedback);
    }

    auto* updates = new QGroupBox(QString::fromUtf8(updatesTitle), this);
    auto* updatesLayout = new QVBoxLayout(updates);
    automaticUpdates_ = new QCheckBox(QString::fromUtf8(automaticUpdatesText), updates);
    automaticUpdates_->setAccessibleName(QStringLiteral("Check for updates automatically"));
    checkUpdates_ = new QPushButton(QString::fromUtf8(checkUpdatesText), updates);
    checkUpdates_->setAccessibleName(QStringLiteral("Check for Updates"));
    if (context_.updater) {
        Updater& updater = context_.updater();
        automaticUpdates_->setChecked(updater.automaticChecks());
        connect(automaticUpdates_, &QCheckBox::toggled, &updater, &Updater::setAutomaticChecks);
        connect(&updater, &Updater::automaticChecksChanged, automaticUpdates_, &QCheckBox::setChecked);
        connect(checkUpdates_, &QPushButton::clicked, &updater, &Updater::checkForUpdates);
        connect(&updater, &Updater::checkingChanged, checkUpdates_, &QPushButton::setDisabled);
    } else {
        updates->setEnabled(false);
    }
    updatesLayout->addWidget(automaticUpdates_);
    updatesLayout->addWidget(checkUpdates_, 0, Qt::AlignLeft);
    layout->addWidget(updates);
    layout->addStretch(1);

    engineUpdates_ = context_.engine.observers.add([this] { showEngine(); });
    showEngine();
}

SettingsPane::~SettingsPane() {
    context_.engine.observers.remove(engineUpdates_);
}

void SettingsPane::showEngine() {
    active_->setChecked(context_.engine.isEnabled());
    if (!toggleShortcut_->isRecording()) toggleShortcut_->setShortcut(context_.engine.toggleShortcut());
    const auto& error = context_.engine.toggleShortcutError();
    toggleShortcut_->setError(error ? QString::fromStdString(*error) : QString());
}

}  // namespace ostrelle::app
