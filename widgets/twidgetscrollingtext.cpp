#include "twidgetscrollingtext.h"

#include <QDesktopServices>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QUrl>

namespace {

const QString webPrefix = QStringLiteral("https://");
const QString mailPrefix = QStringLiteral("mailto:");

bool isLink(const QString &line)
{
    return line.contains(webPrefix) || line.contains(mailPrefix);
}

} // namespace

TWidgetScrollingText::TWidgetScrollingText(QWidget *parent)
    : QWidget(parent)
    , m_textFarbe(228, 228, 228)
    , m_hintergrundFarbe(51, 51, 51)
    , m_text({ QStringLiteral("Jorriks Superprogramm"), QStringLiteral("-----"),
               QStringLiteral("Version 1.0") })
    , m_scrollFont(QStringLiteral("Calibri Light"), 12)
    , timer(new QTimer)
{
    connect(timer, &QTimer::timeout, this, &TWidgetScrollingText::onTimer);
    setMouseTracking(true);
    ermittleGesamthoehe();
}

TWidgetScrollingText::~TWidgetScrollingText()
{
    delete timer;
}

void TWidgetScrollingText::setText(const QList<QString> &lines)
{
    m_text = lines;
    ermittleGesamthoehe();
}

QList<QString> TWidgetScrollingText::text() const
{
    return m_text;
}

void TWidgetScrollingText::setScrollFont(const QFont &font)
{
    m_scrollFont = font;
}

QFont TWidgetScrollingText::scrollFont() const
{
    return m_scrollFont;
}

void TWidgetScrollingText::setTextFarbe(const QColor &color)
{
    m_textFarbe = color;
}

QColor TWidgetScrollingText::textFarbe() const
{
    return m_textFarbe;
}

void TWidgetScrollingText::setHintergrundFarbe(const QColor &color)
{
    m_hintergrundFarbe = color;
}

QColor TWidgetScrollingText::hintergrundFarbe() const
{
    return m_hintergrundFarbe;
}

void TWidgetScrollingText::setActive(bool on)
{
    m_active = on;
    if (on)
        timer->start(60);
    else
        timer->stop();
}

bool TWidgetScrollingText::active() const
{
    return m_active;
}

void TWidgetScrollingText::ermittleGesamthoehe()
{
    // Guards the divisions in the mouse handlers against a font without height.
    zeilenHoehe = qMax(1, QFontMetrics(m_scrollFont).height());
    gesamtHoehe = zeilenHoehe * int(m_text.size());
    position = height();
}

void TWidgetScrollingText::onTimer()
{
    const int before = position;
    --position;
    if (before <= -gesamtHoehe)
        position = height();
    update();
}

void TWidgetScrollingText::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_hintergrundFarbe);
    if (!m_active || m_text.isEmpty())
        return;

    for (int i = 0; i < m_text.size(); ++i) {
        QString line = m_text.at(i);
        QFont font = m_scrollFont;
        QColor color = m_textFarbe;
        if (line.startsWith(QLatin1Char('#'))) {
            line.remove(0, 1);
            font.setWeight(QFont::Bold);
        } else {
            font.setWeight(QFont::Normal);
        }
        font.setUnderline(false);
        if (isLink(line)) {
            const bool hovered = i == hoverZeile;
            color = hovered ? QColor(Qt::red) : QColor(Qt::blue);
            font.setUnderline(hovered);
        }
        painter.setFont(font);
        painter.setPen(color);
        const QFontMetrics metrics = painter.fontMetrics();
        const int x = (width() - metrics.horizontalAdvance(line) + 1) / 2;
        // The baseline sits one ascent below the top of the line's band, so the glyphs and the
        // underline stay inside the band that the mouse handlers assign to the line.
        const int top = position + i * zeilenHoehe;
        painter.drawText(x, top + metrics.ascent(), line);
    }
}

void TWidgetScrollingText::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ermittleGesamthoehe();
}

void TWidgetScrollingText::mouseMoveEvent(QMouseEvent *event)
{
    // No repaint here: the next tick of the scroll clock shows the new state.
    hoverZeile = lineAt(event->position().toPoint().y());
}

void TWidgetScrollingText::mousePressEvent(QMouseEvent *event)
{
    const int line = lineAt(event->position().toPoint().y());
    if (line < 0 || line >= m_text.size())
        return;
    const QString &content = m_text.at(line);
    qsizetype start = content.indexOf(webPrefix);
    if (start < 0)
        start = content.indexOf(mailPrefix);
    if (start < 0)
        return;
    // Only the address itself is opened, from its prefix up to the next blank, so that text
    // around it on the same line does not spoil the URL.
    const qsizetype end = content.indexOf(QLatin1Char(' '), start);
    QDesktopServices::openUrl(QUrl(content.mid(start, end < 0 ? -1 : end - start)));
}

int TWidgetScrollingText::lineAt(int y) const
{
    return (y - position) / zeilenHoehe;
}
