#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QString>
#include <QWidget>

class QTimer;

// Credits that scroll upwards like film titles. A line starting with "#" is a bold heading; a line
// holding "https://" or "mailto:" is a link, drawn blue, red and underlined under the pointer, and
// opened when clicked.
class TWidgetScrollingText : public QWidget
{
    Q_OBJECT

public:
    explicit TWidgetScrollingText(QWidget *parent = nullptr);
    ~TWidgetScrollingText() override;

    void setText(const QList<QString> &lines);
    QList<QString> text() const;
    // Takes effect for the line height at the next setText() or showEvent().
    void setScrollFont(const QFont &font);
    QFont scrollFont() const;
    void setTextFarbe(const QColor &color);
    QColor textFarbe() const;
    void setHintergrundFarbe(const QColor &color);
    QColor hintergrundFarbe() const;
    // Scrolling and drawing of the lines; off shows only the background.
    void setActive(bool on);
    bool active() const;

    // Line height and text height from the font; the first line starts just below the bottom edge.
    void ermittleGesamthoehe();

    // Vertical offset of the first line from the widget's top, in pixels.
    int scrollPosition() const { return position; }
    // Index of the line under the mouse pointer as of the last move (-1 before any move).
    int hoveredLine() const { return hoverZeile; }

public slots:
    // One step of the scroll clock: one pixel up; once the whole text has left the top, it starts
    // again below the bottom edge.
    void onTimer();

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    int lineAt(int y) const;

    QColor m_textFarbe;
    QColor m_hintergrundFarbe;
    QList<QString> m_text;
    QFont m_scrollFont;
    bool m_active = false;
    int zeilenHoehe = 1;
    int gesamtHoehe = 0;
    int position = 0;
    int hoverZeile = -1;
    QTimer *timer;
};
