#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/x11_types.h"

namespace ostrelle {

// One Xlib connection to the user's X server. Once watched on the service's queue, every event
// the server sends is read and handed, on the queue's thread, to each listener in the order they
// were added. Xlib is not thread-safe as used here: everything happens on that thread.
class X11Connection {
  public:
    using Listener = std::function<void(const XEvent& event)>;
    using ListenerId = std::size_t;

    // Nothing when the name is empty or the server can't be reached.
    static std::unique_ptr<X11Connection> open(std::string_view displayName);
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    Display* display() const { return display_; }
    Window root() const;

    // Starts reading events whenever the connection's descriptor turns readable; false when the
    // queue refuses it. Until then events wait in Xlib's queue.
    bool watch(EpollMainQueue& queue);
    ListenerId addListener(Listener listener);
    void removeListener(ListenerId id);
    // Hands every event Xlib holds to the listeners. Calls that wait for a reply (XSync, property
    // reads) may move events into Xlib's queue without the descriptor turning readable again, so
    // the queue also runs this after any of them through dispatchSoon().
    void dispatchPending();
    void dispatchSoon();

  private:
    explicit X11Connection(Display* display) : display_(display) {}

    Display* display_;
    EpollMainQueue* queue_ = nullptr;
    std::vector<std::pair<ListenerId, Listener>> listeners_;
    ListenerId nextListener_ = 1;
    // Outlives this connection in tasks posted by dispatchSoon(), which then do nothing.
    std::shared_ptr<X11Connection*> self_ = std::make_shared<X11Connection*>(this);
};

// Catches the X errors of one sequence of requests on one connection, for as long as it lives.
// Xlib's error handler is process-wide and by default ends the process; while traps exist the
// handler records the errors of the requests made during a trap's life and passes every other
// error on to the handler that was installed before. Traps nest; the queue's thread only. Events
// read while waiting for the server are dispatched soon after the trap ends.
class X11ErrorTrap {
  public:
    explicit X11ErrorTrap(X11Connection& connection);
    ~X11ErrorTrap();
    X11ErrorTrap(const X11ErrorTrap&) = delete;
    X11ErrorTrap& operator=(const X11ErrorTrap&) = delete;

    // Waits for the server to handle every request made so far; then the first error code
    // (BadAccess, BadWindow, ...) of a request made during this trap's life, or Success.
    int sync();

    // For the process's error handler: gives an error to the live trap whose requests include
    // `serial`; false when none does.
    static bool claim(Display* display, unsigned long serial, int errorCode);

  private:
    X11Connection& connection_;
    Display* display_;
    unsigned long firstSerial_;
    int error_ = 0;  // Success
};

}  // namespace ostrelle
