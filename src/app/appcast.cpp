#include "app/appcast.h"

#include <QXmlStreamReader>

#include "app/release_version.h"

namespace ostrelle::app {
namespace {

constexpr const char* notAFeedText = "The update feed is not an RSS feed.";
constexpr const char* unreadableFeedText = "The update feed could not be read (line %1: %2).";

bool isAppcast(const QXmlStreamReader& xml) {
    return xml.namespaceUri() == QLatin1String(appcastNamespace);
}

QStringView appcastAttribute(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(appcastNamespace), QLatin1String(name));
}

// Reads one <item>; the reader stands on its start element and ends on its end element.
Release readItem(QXmlStreamReader& xml) {
    Release release;
    QUrl enclosure;
    while (xml.readNextStartElement()) {
        const auto name = xml.name();
        if (name == u"enclosure" && xml.namespaceUri().isEmpty()) {
            const auto attributes = xml.attributes();
            enclosure = QUrl(attributes.value(QLatin1String("url")).toString().trimmed());
            if (release.version.isEmpty())
                release.version = appcastAttribute(attributes, "version").toString();
            if (release.shortVersion.isEmpty())
                release.shortVersion = appcastAttribute(attributes, "shortVersionString").toString();
            xml.skipCurrentElement();
        } else if (name == u"title" && xml.namespaceUri().isEmpty()) {
            release.title = xml.readElementText().trimmed();
        } else if (name == u"link" && xml.namespaceUri().isEmpty()) {
            release.downloadPage = QUrl(xml.readElementText().trimmed());
        } else if (name == u"version" && isAppcast(xml)) {
            // The item's own element wins over the enclosure's attribute.
            release.version = xml.readElementText().trimmed();
        } else if (name == u"shortVersionString" && isAppcast(xml)) {
            release.shortVersion = xml.readElementText().trimmed();
        } else if (name == u"releaseNotesLink" && isAppcast(xml)) {
            release.releaseNotes = QUrl(xml.readElementText().trimmed());
        } else {
            xml.skipCurrentElement();
        }
    }
    if (release.downloadPage.isEmpty()) release.downloadPage = enclosure;
    if (release.shortVersion.isEmpty()) release.shortVersion = release.version;
    return release;
}

}  // namespace

std::variant<std::vector<Release>, FeedError> parseAppcast(const QByteArray& feed) {
    QXmlStreamReader xml(feed);
    std::vector<Release> releases;
    bool sawChannel = false;
    if (!xml.readNextStartElement() || xml.name() != u"rss") {
        if (xml.hasError())
            return FeedError{
                QString::fromLatin1(unreadableFeedText).arg(xml.lineNumber()).arg(xml.errorString())};
        return FeedError{QString::fromLatin1(notAFeedText)};
    }
    while (xml.readNextStartElement()) {
        if (xml.name() != u"channel") {
            xml.skipCurrentElement();
            continue;
        }
        sawChannel = true;
        while (xml.readNextStartElement()) {
            if (xml.name() != u"item") {
                xml.skipCurrentElement();
                continue;
            }
            Release release = readItem(xml);
            if (!release.version.isEmpty()) releases.push_back(std::move(release));
        }
    }
    // Reading to the end catches a feed cut off after its last item.
    while (!xml.atEnd()) xml.readNext();
    if (xml.hasError())
        return FeedError{
            QString::fromLatin1(unreadableFeedText).arg(xml.lineNumber()).arg(xml.errorString())};
    if (!sawChannel) return FeedError{QString::fromLatin1(notAFeedText)};
    return releases;
}

std::optional<Release> newestAbove(const std::vector<Release>& releases, const QString& running) {
    const std::string current = running.toStdString();
    std::optional<Release> newest;
    for (const Release& release : releases) {
        const std::string version = release.version.toStdString();
        if (compareVersions(version, current) <= 0) continue;
        if (!newest || compareVersions(version, newest->version.toStdString()) > 0) newest = release;
    }
    return newest;
}

}  // namespace ostrelle::app
