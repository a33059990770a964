#include "app/permission_guide.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/qt_text.h"

namespace ostrelle::app {
namespace {

constexpr const char* headingText = "Ostrelle can't read the touchpad";
constexpr const char* grantedText = "Access granted: Ostrelle reads the touchpad now.";
#if defined(__APPLE__)
constexpr bool offersAccessRule = false;
constexpr const char* stepsText =
    "Open System Settings → Privacy & Security → Accessibility and turn Ostrelle on. Ostrelle "
    "notices by itself once it may read the trackpad.";
#else
constexpr bool offersAccessRule = true;
constexpr const char* stepsText =
    "Touchpads are read through /dev/input, which the system keeps closed to programs. An access "
    "rule opens touchpads (and /dev/uinput, to send keys) to the person logged in at this "
    "computer, and no keyboard. Installing it asks for an administrator's password; Ostrelle "
    "notices by itself once it may read the touchpad.";
#endif
constexpr const char* installText = "&Install Access Rule";
constexpr const char* orCopyText = "Or run this &command in a terminal:";
constexpr const char* copyText = "C&opy";
constexpr const char* commandName = "Command that installs the access rule";
constexpr const char* statusName = "Access status";
constexpr const char* copiedText = "The command is on the clipboard.";
constexpr const char* waitingForPasswordText = "Waiting for the password…";
constexpr const char* installedText = "The access rule is installed. Waiting for the touchpad…";
// pkexec's own exit codes: the prompt was dismissed, or the password refused.
constexpr int promptDismissed = 126;
constexpr int notAuthorized = 127;
constexpr const char* cancelledText = "The password prompt was cancelled; nothing was installed.";
constexpr const char* refusedText = "The password was not accepted; nothing was installed.";
constexpr const char* failedText = "Installing the access rule failed (exit code %1). %2";
constexpr const char* crashedText = "Installing the access rule stopped unexpectedly.";
constexpr const char* notStartedText = "%1 could not be run. Run the command below in a terminal instead.";

constexpr int commandLines = 7;
constexpr int minimumWidthInCharacters = 64;

QLabel* wrappedLabel(const QString& content, QWidget* parent) {
    auto* label = new QLabel(content, parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

PermissionGuide::PermissionGuide(GestureEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      command_(shippedAccessRuleCommand()),
      error_(wrappedLabel({}, this)),
      status_(wrappedLabel({}, this)) {
    auto* heading = wrappedLabel(text(headingText), this);
    QFont headingFont = heading->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading->setFont(headingFont);
    error_->setAccessibleName(text(headingText));
    status_->setAccessibleName(text(statusName));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(error_);
    auto* steps = wrappedLabel(text(stepsText), this);
    // Wrapped text asks for the height its width needs; a floor in characters keeps the steps
    // from turning into a narrow column at any scale.
    steps->setMinimumWidth(steps->fontMetrics().horizontalAdvance(QLatin1Char('n')) *
                           minimumWidthInCharacters);
    layout->addWidget(steps);
    if (offersAccessRule) {
        installButton_ = new QPushButton(text(installText), this);
        installButton_->setAccessibleName(text(installText).remove(QLatin1Char('&')));
        installButton_->setDefault(true);
        auto* installRow = new QHBoxLayout;
        installRow->addWidget(installButton_);
        installRow->addStretch(1);
        layout->addLayout(installRow);

        auto* orCopy = new QLabel(text(orCopyText), this);
        commandText_ = new QPlainTextEdit(command_.text, this);
        commandText_->setReadOnly(true);
        commandText_->setTabChangesFocus(true);
        commandText_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        // Tall enough for the whole command at the guide's usual width, in lines of its own font.
        commandText_->setMinimumHeight(commandText_->fontMetrics().lineSpacing() * commandLines);
        commandText_->setAccessibleName(text(commandName));
        orCopy->setBuddy(commandText_);
        auto* copyButton = new QPushButton(text(copyText), this);
        copyButton->setAccessibleName(text(copyText).remove(QLatin1Char('&')));
        auto* copyRow = new QHBoxLayout;
        copyRow->addWidget(orCopy, 1);
        copyRow->addWidget(copyButton);
        layout->addLayout(copyRow);
        layout->addWidget(commandText_);

        connect(installButton_, &QPushButton::clicked, this, &PermissionGuide::install);
        connect(copyButton, &QPushButton::clicked, this, [this] {
            QGuiApplication::clipboard()->setText(command_.text);
            setStatus(text(copiedText));
        });
    }
    layout->addWidget(status_);
    layout->addStretch(1);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    status_->hide();

    observer_ = engine_.observers.add([this] { refresh(); });
    refresh();
}

PermissionGuide::~PermissionGuide() {
    engine_.observers.remove(observer_);
    if (process_) process_->disconnect(this);
}

void PermissionGuide::refresh() {
    const auto& error = engine_.sourceError();
    if (error) {
        error_->setText(QString::fromStdString(*error));
        waiting_ = true;
        if (installButton_ && !process_) installButton_->setEnabled(true);
        return;
    }
    if (!waiting_) return;
    waiting_ = false;
    setStatus(text(grantedText));
    if (installButton_) installButton_->setEnabled(false);
    emit granted();
    if (isWindow()) close();
}

void PermissionGuide::install() {
    if (process_) return;
    process_ = new QProcess(this);
    connect(process_, &QProcess::finished, this, &PermissionGuide::installFinished);
    connect(process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) installFailedToStart();
    });
    installButton_->setEnabled(false);
    setStatus(text(waitingForPasswordText));
    process_->start(command_.program, command_.arguments);
}

void PermissionGuide::installFinished(int exitCode, QProcess::ExitStatus status) {
    const QString errors = QString::fromLocal8Bit(process_->readAllStandardError()).trimmed();
    process_->deleteLater();
    process_ = nullptr;
    installButton_->setEnabled(true);
    if (status != QProcess::NormalExit) {
        setStatus(text(crashedText));
    } else if (exitCode == 0) {
        setStatus(text(installedText));
        // No need to wait for the engine's next attempt.
        engine_.retryIfFailed();
    } else if (exitCode == promptDismissed) {
        setStatus(text(cancelledText));
    } else if (exitCode == notAuthorized) {
        setStatus(text(refusedText));
    } else {
        setStatus(text(failedText).arg(exitCode).arg(errors.section(QLatin1Char('\n'), -1)));
    }
}

void PermissionGuide::installFailedToStart() {
    process_->deleteLater();
    process_ = nullptr;
    installButton_->setEnabled(true);
    setStatus(text(notStartedText).arg(command_.program));
    commandText_->setFocus();
    commandText_->selectAll();
}

void PermissionGuide::setStatus(const QString& content) {
    status_->setText(content);
    status_->show();
}

}  // namespace ostrelle::app
