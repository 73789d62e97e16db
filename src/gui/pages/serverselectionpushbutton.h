#pragma once

#include <QPixmap>
#include <QPushButton>
#include <QSize>

// The wide change-server button of the status page, painted in full: a white capsule with a thin
// outline, the current server's small flag in a grey frame, the server name (elided before the
// chevron) and a chevron at the right. Its height follows its font: font height + 36.
class ServerSelectionPushButton : public QPushButton {
    Q_OBJECT

public:
    explicit ServerSelectionPushButton(QWidget* parent = nullptr);
    ~ServerSelectionPushButton() override;

    // Shows the picture in the flag box (scaled into it) and clears the hidden state.
    void setPixmap(const QPixmap& pixmap);
    // Blanks the flag box: the grey frame stays, no picture is drawn, so the flag of another
    // country never lingers beside this server's name.
    void hidePixmap();
    bool isPixmapHidden() const { return m_pixmapHidden; }
    const QPixmap& pixmap() const { return m_pixmap; }

    void setServerText(const QString& text);
    const QString& serverText() const { return m_serverText; }

    // The flag box (28 × 22) and the chevron box (15 × 10) the painting is laid out with.
    static QSize pixmapSize() { return {28, 22}; }
    static QSize shevronSize() { return {15, 10}; }

    // Left edge of the server text and the width it may take at the button's current width.
    static int textLeft();
    int availableTextWidth() const;
    // The server text as painted: elided at the right to availableTextWidth().
    QString elidedServerText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fitHeightToFont();

    QPixmap m_pixmap;
    QString m_serverText;
    bool m_pixmapHidden = false;
};
