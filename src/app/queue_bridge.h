#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include "platform/linux/epoll_main_queue.h"

namespace ostrelle::app {

// Runs the platform's main queue inside Qt's event loop: its descriptor wakes Qt when a device,
// socket or posted task needs the main thread, and one precise timer stands for the earliest
// scheduled task. With nothing due and nothing readable, nothing wakes.
class QueueBridge final : public QObject {
  public:
    explicit QueueBridge(EpollMainQueue& queue, QObject* parent = nullptr);

  private:
    void runReady();

    EpollMainQueue& queue_;
    QSocketNotifier notifier_;
    QTimer timer_;
};

}  // namespace ostrelle::app
