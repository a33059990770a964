#include "platform/linux/evdev_touch_source.h"

#include "platform/linux/touchpad_reader.h"

namespace ostrelle {

EvdevTouchSource::EvdevTouchSource(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

EvdevTouchSource::~EvdevTouchSource() {
    stop();
}

void EvdevTouchSource::setOwnWindowCheck(std::function<bool()> check) {
    ownWindowCheck_ = std::move(check);
    if (delivery_) delivery_->ownWindowCheck = ownWindowCheck_;
}

std::optional<TouchSourceError> EvdevTouchSource::start(FrameHandler onFrame, ClickHandler onClick) {
    stop();
    {
        const std::lock_guard lock(counts_->mutex);
        counts_->counts = {};
    }
    auto delivery =
        std::make_shared<Delivery>(Delivery{std::move(onFrame), std::move(onClick), ownWindowCheck_});
    MainQueue& queue = mainQueue_;
    // Runs on the reader's thread: the frame was built there, so the main thread only calls the
    // handlers.
    auto publish = [&queue, delivery](TouchpadReader::Delivery report) {
        queue.post([delivery, report = std::move(report)] {
            if (!delivery->active) return;
            if (report.frame && delivery->onFrame) delivery->onFrame(*report.frame, report.time);
            for (int click = 0; click < report.clicks && delivery->active; ++click) {
                const bool onOwnUI = delivery->ownWindowCheck && delivery->ownWindowCheck();
                if (delivery->onClick) delivery->onClick(onOwnUI);
            }
        });
    };
    auto count = [counts = counts_](bool touched) {
        const std::lock_guard lock(counts->mutex);
        ++counts->counts.all;
        if (touched) ++counts->counts.touched;
    };
    auto reader = std::make_unique<TouchpadReader>(std::move(publish), std::move(count));
    if (const auto failure = reader->start()) {
        return TouchSourceError{std::string(failure->permissionDenied ? noPermissionText : noTouchpadText)};
    }
    reader_ = std::move(reader);
    delivery_ = std::move(delivery);
    return std::nullopt;
}

void EvdevTouchSource::stop() {
    reader_.reset();
    if (delivery_) delivery_->active = false;
    delivery_.reset();
}

int EvdevTouchSource::openTouchpads() const {
    return reader_ ? reader_->openCount() : 0;
}

TouchSource::EventCounts EvdevTouchSource::eventCounts() const {
    const std::lock_guard lock(counts_->mutex);
    return counts_->counts;
}

void EvdevTouchSource::holdReaderForTesting(bool hold) {
    if (reader_) reader_->holdForTesting(hold);
}

}  // namespace ostrelle
