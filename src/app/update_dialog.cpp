#include "app/update_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/qt_text.h"

namespace ostrelle::app {
namespace {

constexpr const char* windowTitleText = "Software Update";
constexpr const char* checkingText = "Checking for updates…";
constexpr const char* availableHeadingText = "Ostrelle %1 is available";
constexpr const char* availableMessageText = "You have version %1.";
constexpr const char* upToDateHeadingText = "Ostrelle is up to date";
constexpr const char* upToDateMessageText = "Version %1 is the newest version available.";
constexpr const char* failedHeadingText = "Couldn't check for updates";
constexpr const char* packagesNoteText =
    "Ostrelle doesn't download or install updates by itself on Linux: install the new version "
    "through your distribution's packages, or get it from the download page.";
constexpr const char* releaseNotesText = "&Release Notes";
constexpr const char* downloadText = "&Open Download Page";
constexpr const char* closeText = "Close";
constexpr const char* laterText = "&Later";
constexpr const char* cancelText = "Cancel";
constexpr const char* busyAccessibleName = "Checking for updates";
constexpr int minimumWidthInCharacters = 60;

QPushButton* button(const char* label, QWidget* parent) {
    auto* result = new QPushButton(text(label), parent);
    result->setAccessibleName(text(label).remove(QLatin1Char('&')));
    return result;
}

}  // namespace

UpdateDialog::UpdateDialog(UrlOpener openUrl, QWidget* parent)
    : QDialog(parent),
      openUrl_(std::move(openUrl)),
      heading_(new QLabel(this)),
      message_(new QLabel(this)),
      packagesNote_(new QLabel(text(packagesNoteText), this)),
      busy_(new QProgressBar(this)),
      notesButton_(button(releaseNotesText, this)),
      downloadButton_(button(downloadText, this)),
      closeButton_(button(closeText, this)),
      cancelButton_(button(cancelText, this)) {
    setWindowTitle(text(windowTitleText));
    QFont headingFont = heading_->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading_->setFont(headingFont);
    for (QLabel* label : {heading_, message_, packagesNote_}) {
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    busy_->setRange(0, 0);  // no known end: the bar only shows that the check is under way
    busy_->setTextVisible(false);
    busy_->setAccessibleName(text(busyAccessibleName));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(notesButton_);
    buttons->addStretch(1);
    buttons->addWidget(cancelButton_);
    buttons->addWidget(closeButton_);
    buttons->addWidget(downloadButton_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading_);
    layout->addWidget(message_);
    layout->addWidget(busy_);
    layout->addWidget(packagesNote_);
    layout->addStretch(1);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    // The layout sets the window's minimum; a floor in characters keeps wrapped text readable.
    heading_->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('n')) * minimumWidthInCharacters);

    connect(notesButton_, &QPushButton::clicked, this, [this] { openUrl_(release_.releaseNotes); });
    connect(downloadButton_, &QPushButton::clicked, this, [this] {
        openUrl_(release_.downloadPage);
        accept();
    });
    connect(closeButton_, &QPushButton::clicked, this, &QDialog::reject);
    connect(cancelButton_, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, [this] {
        if (checking_) emit cancelled();
        checking_ = false;
    });
}

void UpdateDialog::showChecking() {
    checking_ = true;
    heading_->setText(text(checkingText));
    message_->hide();
    busy_->show();
    packagesNote_->hide();
    notesButton_->hide();
    downloadButton_->hide();
    closeButton_->hide();
    cancelButton_->show();
    cancelButton_->setDefault(true);
    cancelButton_->setFocus();
}

void UpdateDialog::showAvailable(const Release& release, const QString& runningVersion) {
    release_ = release;
    heading_->setText(text(availableHeadingText).arg(release.shortVersion));
    message_->setText(text(availableMessageText).arg(runningVersion));
    setButtons(true);
}

void UpdateDialog::showUpToDate(const QString& runningVersion) {
    heading_->setText(text(upToDateHeadingText));
    message_->setText(text(upToDateMessageText).arg(runningVersion));
    setButtons(false);
}

void UpdateDialog::showFailed(const QString& error) {
    heading_->setText(text(failedHeadingText));
    message_->setText(error);
    setButtons(false);
}

void UpdateDialog::setButtons(bool available) {
    checking_ = false;
    message_->show();
    busy_->hide();
    cancelButton_->hide();
    packagesNote_->setVisible(available);
    notesButton_->setVisible(available && !release_.releaseNotes.isEmpty());
    downloadButton_->setVisible(available && !release_.downloadPage.isEmpty());
    closeButton_->setText(text(available ? laterText : closeText));
    closeButton_->setAccessibleName(closeButton_->text().remove(QLatin1Char('&')));
    closeButton_->show();
    QPushButton* main = downloadButton_->isVisible() ? downloadButton_ : closeButton_;
    main->setDefault(true);
    main->setFocus();
}

}  // namespace ostrelle::app
