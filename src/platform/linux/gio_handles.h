#pragma once

#include <glib-object.h>

#include <memory>
#include <string>

namespace ostrelle::gio {

// GLib objects and strings owned for one scope.
struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using ObjectPtr = std::unique_ptr<T, ObjectUnref>;

struct Free {
    void operator()(gpointer memory) const { g_free(memory); }
};
using StringPtr = std::unique_ptr<gchar, Free>;

// GLib answers no text with a null pointer.
inline std::string text(const char* maybe) {
    return maybe ? maybe : "";
}

}  // namespace ostrelle::gio
