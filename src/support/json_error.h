#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace ostrelle {

// A JSON value that does not have the expected form. The message starts with the JSON path of
// the offending value ("gesture.custom.path[3]: expected a point [x, y]") so that a user can find it.
class JSONError : public std::runtime_error {
  public:
    JSONError(const std::string& path, const std::string& problem)
        : std::runtime_error(path + ": " + problem), path_(path), problem_(problem) {}

    const std::string& path() const { return path_; }
    const std::string& problem() const { return problem_; }

  private:
    std::string path_;
    std::string problem_;
};

}  // namespace ostrelle
