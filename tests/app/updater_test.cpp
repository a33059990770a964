#include "app/updater.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "app/release_version.h"
#include "app/update_schedule.h"

namespace ostrelle::app {
namespace {

TEST(ReleaseVersion, ComparesPartByPartAsNumbers) {
    struct Row {
        const char* name;
        const char* left;
        const char* right;
        std::strong_ordering expected;
    };
    const Row rows[] = {
        {"numbers, not text", "1.10", "1.9", std::strong_ordering::greater},
        {"missing parts are zero", "1.2", "1.2.0", std::strong_ordering::equal},
        {"a further part counts", "1.2.0.1", "1.2", std::strong_ordering::greater},
        {"leading zeros", "1.02", "1.2", std::strong_ordering::equal},
        {"longer than any integer", "1.123456789012345678901234567890", "1.99",
         std::strong_ordering::greater},
        {"beta below its release", "2.0b1", "2.0", std::strong_ordering::less},
        {"beta below its release with a zero between", "2.0.0b1", "2.0", std::strong_ordering::less},
        {"beta above the release before", "2.0b1", "1.9", std::strong_ordering::greater},
        {"beta below release candidate", "2.0b2", "2.0rc1", std::strong_ordering::less},
        {"beta numbers", "2.0b10", "2.0b9", std::strong_ordering::greater},
        {"patch above pre-release", "2.0.1", "2.0b1", std::strong_ordering::greater},
        {"tags ignore case", "2.0RC1", "2.0rc1", std::strong_ordering::equal},
        {"leading v", "v1.3", "1.2.9", std::strong_ordering::greater},
        {"separators only separate", "1-3", "1.3", std::strong_ordering::equal},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(compareVersions(row.left, row.right), row.expected) << row.name;
        EXPECT_EQ(compareVersions(row.right, row.left), 0 <=> row.expected) << row.name << ", swapped";
    }
}

TEST(UpdateSchedule, NextCheckAtMostOnceADay) {
    constexpr double now = 1.7e9;
    constexpr double day = updateCheckInterval;
    struct Row {
        const char* name;
        bool allowed;
        std::optional<double> lastCheck;
        std::optional<double> expected;
    };
    const Row rows[] = {
        {"not allowed", false, now - 2 * day, std::nullopt},
        {"never checked", true, std::nullopt, 0.0},
        {"checked an hour ago", true, now - 3600, day - 3600},
        {"a second before a day has passed", true, now - day + 1, 1.0},
        {"exactly a day ago", true, now - day, 0.0},
        {"a week ago", true, now - 7 * day, 0.0},
        {"clock set back since", true, now + 3600, 0.0},
    };
    for (const Row& row : rows)
        EXPECT_EQ(secondsUntilNextCheck(row.allowed, row.lastCheck, now), row.expected) << row.name;

    EXPECT_EQ(parseCheckTime(formatCheckTime(now)), now);
    EXPECT_EQ(parseCheckTime(std::string("yesterday")), std::nullopt);
    EXPECT_EQ(parseCheckTime(std::string("1700000000x")), std::nullopt);
}

constexpr const char* feedHead = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel><title>Ostrelle</title>)";

QByteArray feedOf(const char* items) {
    return QByteArray(feedHead) + items + "</channel></rss>";
}

// Item 1.10 by enclosure attribute, 1.9 by element (with a display version) and one without a version.
constexpr const char* threeItems = R"(
<item><title>Ostrelle 1.9</title><sparkle:version>1.9</sparkle:version>
  <sparkle:shortVersionString>1.9 "Swift"</sparkle:shortVersionString>
  <enclosure url="https://example.org/1.9.tar.gz"/></item>
<item><title>Ostrelle 1.10</title><link>https://example.org/download</link>
  <sparkle:releaseNotesLink>https://example.org/notes/1.10</sparkle:releaseNotesLink>
  <enclosure url="https://example.org/1.10.tar.gz" sparkle:version="1.10" type="application/gzip"/></item>
<item><title>No version</title><enclosure url="https://example.org/x"/></item>)";

TEST(Appcast, ReadsItemsAndPicksTheNewestAboveTheRunningVersion) {
    const auto parsed = parseAppcast(feedOf(threeItems));
    ASSERT_TRUE(std::holds_alternative<std::vector<Release>>(parsed));
    const auto& releases = std::get<std::vector<Release>>(parsed);
    ASSERT_EQ(releases.size(), 2u);
    EXPECT_EQ(releases[0].shortVersion, QStringLiteral("1.9 \"Swift\""));
    EXPECT_EQ(releases[0].downloadPage, QUrl("https://example.org/1.9.tar.gz"));

    const auto newest = newestAbove(releases, "1.9.5");
    ASSERT_TRUE(newest);
    EXPECT_EQ(*newest, (Release{"1.10", "1.10", "Ostrelle 1.10", QUrl("https://example.org/notes/1.10"),
                                QUrl("https://example.org/download")}));
    EXPECT_FALSE(newestAbove(releases, "1.10.0"));

    for (const char* broken : {"<html><body>Not found</body></html>", "<rss><channel><item><title>cut off",
                               "<rss version=\"2.0\"></rss>", ""}) {
        const auto result = parseAppcast(broken);
        ASSERT_TRUE(std::holds_alternative<FeedError>(result)) << broken;
        EXPECT_FALSE(std::get<FeedError>(result).description.isEmpty());
    }
}

// Answers every request on 127.0.0.1 with one fixed HTTP/1.1 response.
class FeedServer final {
  public:
    FeedServer(QByteArray status, QByteArray body) {
        QObject::connect(&server_, &QTcpServer::newConnection, [this, status, body] {
            while (QTcpSocket* socket = server_.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, status, body] {
                    if (!socket->peek(64 * 1024).contains("\r\n\r\n")) return;
                    socket->readAll();
                    socket->write("HTTP/1.1 " + status +
                                  "\r\nContent-Type: application/rss+xml\r\nContent-Length: " +
                                  QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                    socket->disconnectFromHost();
                });
                QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
        EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    }
    QUrl url() const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(server_.serverPort()));
    }
    QTcpServer server_;
};

// A port nothing listens on: taken and given back.
QUrl unreachableUrl() {
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    return QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(port));
}

struct Rig {
    explicit Rig(QUrl feed) {
        options.feed = std::move(feed);
        options.runningVersion = QStringLiteral("1.9.5");
        options.clock = [] { return 1.7e9; };
        options.openUrl = [this](const QUrl& url) {
            opened.push_back(url);
            return true;
        };
    }
    // Runs a check to its end; the dialog's heading, or "" when none is shown.
    QString check(bool onDemand) {
        Updater updater(settings, options);
        QSignalSpy finished(&updater, &Updater::checkFinished);
        if (onDemand) {
            updater.checkForUpdates();
            const UpdateDialog* busy = updater.dialog();
            EXPECT_TRUE(busy && busy->isVisible()) << "busy while checking";
        } else {
            QTest::qWait(0);  // nothing due yet: the first check waits for its start delay
            EXPECT_FALSE(updater.isChecking());
            updater.setAutomaticChecks(false);
            updater.setAutomaticChecks(true);  // due at once: never checked before
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return finished.size() == 1; }, 10'000));
        const UpdateDialog* dialog = updater.dialog();
        if (!dialog || !dialog->isVisible()) return {};
        const auto labels = dialog->findChildren<QLabel*>();
        QString shown;
        for (QLabel* label : labels) {
            if (label->isVisible()) shown += label->text() + "\n";
        }
        // The default button: the download page when there is one.
        for (QPushButton* button : updater.dialog()->findChildren<QPushButton*>()) {
            if (button->isVisible() && button->isDefault()) button->click();
        }
        return shown;
    }
    InMemorySettings settings;
    Updater::Options options;
    std::vector<QUrl> opened;
};

TEST(Updater, TellsWhatTheFeedHolds) {
    struct Row {
        const char* name;
        QByteArray status;
        QByteArray body;
        bool unreachable;
        bool onDemand;
        const char* shown;  // a line of the dialog; "" for no dialog
        const char* opened;
    };
    const Row rows[] = {
        {"newer available on demand", "200 OK", feedOf(threeItems), false, true, "Ostrelle 1.10 is available",
         "https://example.org/download"},
        {"newer available, automatic", "200 OK", feedOf(threeItems), false, false, "distribution's packages",
         "https://example.org/download"},
        {"up to date", "200 OK", feedOf("<item><sparkle:version>1.9.5</sparkle:version></item>"), false, true,
         "Ostrelle is up to date", ""},
        {"up to date, automatic: quiet", "200 OK", feedOf(""), false, false, "", ""},
        {"broken feed", "200 OK", "<rss><channel><item>", false, true, "could not be read", ""},
        {"server error", "404 Not Found", "gone", false, true, "HTTP 404", ""},
        {"unreachable", "", "", true, true, "could not be reached", ""},
        {"unreachable, automatic: quiet", "", "", true, false, "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FeedServer server(row.status, row.body);
        Rig rig(row.unreachable ? unreachableUrl() : server.url());
        const QString shown = rig.check(row.onDemand);
        if (*row.shown == '\0') {
            EXPECT_TRUE(shown.isEmpty()) << shown.toStdString();
        } else {
            EXPECT_TRUE(shown.contains(QString::fromUtf8(row.shown))) << shown.toStdString();
        }
        EXPECT_EQ(rig.opened.empty() ? QString() : rig.opened.front().toString(),
                  QString::fromUtf8(row.opened));
        EXPECT_EQ(rig.settings.dataValue(update_settings::lastCheck), "1700000000")
            << "every check is recorded";
    }
}

TEST(Updater, TimesOutAServerThatNeverAnswers) {
    QTcpServer silent;  // accepts and then says nothing
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    Rig rig(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort())));
    rig.options.timeout = std::chrono::milliseconds(200);
    EXPECT_TRUE(rig.check(true).contains("did not answer in time"));
}

}  // namespace
}  // namespace ostrelle::app
