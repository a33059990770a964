#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ostrelle {

// A URL kept as its absolute text, which is also how the bindings file stores it
// ("file:///Applications/Preview.app/"). Only what the actions need is read back from it.
class URL {
  public:
    // Any non-empty text is accepted; characters a URL may not hold are percent-encoded on the way in.
    static std::optional<URL> parse(std::string_view text);
    // The file URL of an absolute path; a directory's URL ends in a slash.
    static URL fileURL(std::string_view path, bool isDirectory);

    const std::string& absoluteString() const { return text_; }
    bool isFileURL() const;
    // The percent-decoded path, without a trailing slash unless it is the root.
    std::string path() const;
    std::string lastPathComponent() const;
    // The text after the last dot of the last path component; empty when there is none.
    std::string pathExtension() const;

    friend bool operator==(const URL&, const URL&) = default;

  private:
    explicit URL(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::URL> {
    std::size_t operator()(const ostrelle::URL& url) const noexcept {
        return std::hash<std::string>{}(url.absoluteString());
    }
};
