#include "app/queue_bridge.h"

#include <cmath>

namespace ostrelle::app {

QueueBridge::QueueBridge(EpollMainQueue& queue, QObject* parent)
    : QObject(parent), queue_(queue), notifier_(queue.descriptor(), QSocketNotifier::Read) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&notifier_, &QSocketNotifier::activated, this, &QueueBridge::runReady);
    connect(&timer_, &QTimer::timeout, this, &QueueBridge::runReady);
    // Whatever was posted before the bridge existed.
    QTimer::singleShot(0, this, &QueueBridge::runReady);
}

void QueueBridge::runReady() {
    const auto due = queue_.runReady();
    if (!due) {
        timer_.stop();
        return;
    }
    // Qt's timers count whole milliseconds; rounding up keeps a task from running early.
    timer_.start(static_cast<int>(std::ceil(*due * 1000)));
}

}  // namespace ostrelle::app
