#pragma once

#include <QLabel>

// A label that reports mouse presses; the chart settings dialog uses it for its colour swatches.
class TLabelClickable : public QLabel
{
    Q_OBJECT

public:
    explicit TLabelClickable(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

signals:
    void clicked();

protected:
    // Any button emits clicked() once; the press is not handed on to QLabel.
    void mousePressEvent(QMouseEvent *event) override;
};
