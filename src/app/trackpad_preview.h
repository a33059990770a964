#pragma once

#include <QPointF>
#include <QWidget>
#include <vector>

#include "engine/live_trace.h"

namespace ostrelle::app {

// The trackpad as the editor shows it while recording: the pad, the fingers down now as dots and
// the strokes being drawn as lines. Every frame of the live trace asks for a repaint; Qt folds
// requests that come faster than the screen into one, and painting allocates nothing once warm.
class TrackpadPreview final : public QWidget {
    Q_OBJECT

  public:
    static constexpr const char* accessibleText = "Live trackpad";
    static constexpr double padAspect = 1.6;  // width over height of a laptop's pad

    // The trace must outlive this widget.
    explicit TrackpadPreview(LiveTrace& trace, QWidget* parent = nullptr);
    ~TrackpadPreview() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    // Paints since construction: how a test sees that a frame was drawn.
    long paintCount() const { return paints_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF padRect() const;

    LiveTrace& trace_;
    ObserverList::Token token_;
    std::vector<QPointF> line_;  // reused for every stroke
    long paints_ = 0;
};

}  // namespace ostrelle::app
