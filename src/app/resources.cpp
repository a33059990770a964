#include "app/resources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE names a function outside every namespace.
static void registerResources() {
    Q_INIT_RESOURCE(resources);
}

namespace ostrelle::app {

void loadResources() {
    static const bool loaded = [] {
        registerResources();
        return true;
    }();
    (void)loaded;
}

}  // namespace ostrelle::app
