#pragma once

// Xlib's types, declared as Xlib declares them, so that headers need not include Xlib: it defines
// Status, Bool, True and None as macros, which break every header read after it that uses those
// names (HotKeyRegistrar::Status among them). Source files include Xlib after their own headers.
struct _XDisplay;
union _XEvent;
typedef struct _XDisplay Display;  // NOLINT(modernize-use-using): must match Xlib's declaration
typedef union _XEvent XEvent;      // NOLINT(modernize-use-using)
typedef unsigned long XID;         // NOLINT(modernize-use-using)
typedef XID Window;                // NOLINT(modernize-use-using)
typedef unsigned long Atom;        // NOLINT(modernize-use-using)
