#include "platform/linux/x11_connection.h"

#include <X11/Xlib.h>

#include <string>

namespace ostrelle {
namespace {

// The live traps, innermost last, and the handler that was installed before the first of them.
std::vector<X11ErrorTrap*>& liveTraps() {
    static std::vector<X11ErrorTrap*> traps;
    return traps;
}
XErrorHandler previousHandler = nullptr;

int recordTrappedError(Display* display, XErrorEvent* error) {
    if (X11ErrorTrap::claim(display, error->serial, error->error_code)) return 0;
    return previousHandler != nullptr ? previousHandler(display, error) : 0;
}

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open(std::string_view displayName) {
    // An empty name would make Xlib fall back on DISPLAY, which is the caller's business.
    if (displayName.empty()) return nullptr;
    Display* display = XOpenDisplay(std::string(displayName).c_str());
    if (display == nullptr) return nullptr;
    return std::unique_ptr<X11Connection>(new X11Connection(display));
}

Window X11Connection::root() const {
    return XDefaultRootWindow(display_);
}

X11Connection::~X11Connection() {
    if (queue_ != nullptr) queue_->unwatch(XConnectionNumber(display_));
    XCloseDisplay(display_);
}

bool X11Connection::watch(EpollMainQueue& queue) {
    if (queue_ != nullptr) return true;
    if (!queue.watch(XConnectionNumber(display_), [this] { dispatchPending(); })) return false;
    queue_ = &queue;
    // Events read before the watch began would otherwise wait for the next one to arrive.
    dispatchSoon();
    return true;
}

X11Connection::ListenerId X11Connection::addListener(Listener listener) {
    listeners_.emplace_back(nextListener_, std::move(listener));
    return nextListener_++;
}

void X11Connection::removeListener(ListenerId id) {
    std::erase_if(listeners_, [id](const auto& entry) { return entry.first == id; });
}

void X11Connection::dispatchPending() {
    while (XPending(display_) > 0) {
        XEvent event{};
        XNextEvent(display_, &event);
        // A copy: a listener may add or remove listeners while it runs.
        const auto listeners = listeners_;
        for (const auto& [id, listener] : listeners) listener(event);
    }
}

void X11Connection::dispatchSoon() {
    if (queue_ == nullptr || XQLength(display_) == 0) return;
    queue_->post([weak = std::weak_ptr<X11Connection*>(self_)] {
        if (const auto self = weak.lock()) (*self)->dispatchPending();
    });
}

bool X11ErrorTrap::claim(Display* display, unsigned long serial, int errorCode) {
    const auto& traps = liveTraps();
    for (auto trap = traps.rbegin(); trap != traps.rend(); ++trap) {
        if ((*trap)->display_ != display || serial < (*trap)->firstSerial_) continue;
        if ((*trap)->error_ == Success) (*trap)->error_ = errorCode;
        return true;
    }
    return false;
}

X11ErrorTrap::X11ErrorTrap(X11Connection& connection)
    : connection_(connection), display_(connection.display()), firstSerial_(XNextRequest(display_)) {
    if (liveTraps().empty()) previousHandler = XSetErrorHandler(recordTrappedError);
    liveTraps().push_back(this);
}

X11ErrorTrap::~X11ErrorTrap() {
    // Errors of this trap's requests still on their way would otherwise reach the handler before.
    XSync(display_, False);
    std::erase(liveTraps(), this);
    if (liveTraps().empty()) XSetErrorHandler(previousHandler);
    connection_.dispatchSoon();
}

int X11ErrorTrap::sync() {
    XSync(display_, False);
    return error_;
}

}  // namespace ostrelle
