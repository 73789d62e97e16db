#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace Gui {

// A spinner of nine grey capsules around the centre, the brightest leading clockwise, one 45°
// step every 90 ms for as long as the widget exists.
class WaitingIndicator : public QWidget {
    Q_OBJECT

public:
    // The capsules' measures for a widget size, in pixels.
    struct Geometry {
        int outerRadius = 0;
        int innerRadius = 0;
        int capsuleLength = 0;
        int capsuleWidth = 0;
        int cornerRadius = 0;
    };

    static constexpr int tickMilliseconds = 90;
    static constexpr int angleStep = 45;
    static constexpr int capsuleCount = 9;

    explicit WaitingIndicator(QWidget* parent = nullptr);
    ~WaitingIndicator() override;

    // Sizes below 3 pixels give all-zero measures (nothing visible, nothing fails).
    static Geometry geometryFor(const QSize& size);

    // Rotation of the leading capsule in degrees, 0..315.
    int angle() const { return m_angle; }
    // One animation step (what every timer tick does).
    void advance();

protected:
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QBasicTimer m_timer;
    int m_angle = 0;
};

} // namespace Gui
