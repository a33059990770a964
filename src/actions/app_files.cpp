#include "actions/app_files.h"

#include <utility>

namespace ostrelle {
namespace {

std::shared_ptr<const AppFiles>& currentFiles() {
    static std::shared_ptr<const AppFiles> files;
    return files;
}

}  // namespace

void AppFiles::setCurrent(std::shared_ptr<const AppFiles> files) {
    currentFiles() = std::move(files);
}

std::shared_ptr<const AppFiles> AppFiles::current() {
    return currentFiles();
}

}  // namespace ostrelle
