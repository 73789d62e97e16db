#pragma once

#include <QColor>
#include <QWidget>

class QPainter;

// The decorative band behind logos and buttons: a solid colour with a thin shadow along its
// bottom edge, or (with the gradient) a fade from #DCE2EF at the top to transparent at the bottom.
class LogoBackgroundWidget : public QWidget {
    Q_OBJECT

public:
    explicit LogoBackgroundWidget(QWidget* parent = nullptr);
    ~LogoBackgroundWidget() override;

    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    bool isGradient() const { return m_gradient; }
    // Switches to the fading gradient for good (there is no way back to the solid colour).
    void setGradient();

    // A shadow strip along the bottom `margin` pixels, fading from startColor at startPosition to
    // endColor at endPosition, then the inner rectangle (inset by margin on every side) in the
    // widget colour with the given corner radius. unusedPosition is ignored.
    void drawShadow(QPainter& painter, qint16 margin, double radius, const QColor& startColor,
                    const QColor& endColor, double startPosition, double endPosition,
                    double unusedPosition, double width, double height);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color = Qt::white;
    bool m_gradient = false;
};
