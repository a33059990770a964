#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>
#include <variant>
#include <vector>

namespace ostrelle::app {

// The namespace of the appcast elements and attributes in a release feed.
inline constexpr const char* appcastNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";

// One item of a release feed.
struct Release {
    QString version;       // compared with the running version
    QString shortVersion;  // shown to the user; the version when the feed gives none
    QString title;
    QUrl releaseNotes;
    QUrl downloadPage;  // the item's link, else its enclosure's address
    friend bool operator==(const Release&, const Release&) = default;
};

// Why a feed could not be read, in words for the user.
struct FeedError {
    QString description;
};

// The releases of an RSS 2.0 channel in the appcast form. An item's version comes from its
// enclosure's version attribute or its own version element; items without one are left out.
std::variant<std::vector<Release>, FeedError> parseAppcast(const QByteArray& feed);

// The newest release above the running version, if any.
std::optional<Release> newestAbove(const std::vector<Release>& releases, const QString& running);

}  // namespace ostrelle::app
