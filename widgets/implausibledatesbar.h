#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// A line above the date chart when some photos are dated before 1990 or after today (cameras
// with an unset clock write 1970, 2000 or 0000): it says how many and offers to hide them from
// the chart, or to show them again. Invisible while there are none.
class ImplausibleDatesBar : public QWidget
{
    Q_OBJECT

public:
    explicit ImplausibleDatesBar(QWidget *parent = nullptr);

    // The number of such photos and whether they are hidden now.
    void setState(qint64 photos, bool hidden);
    QString text() const;
    QString buttonText() const;

signals:
    // The user asked to hide (true) or to show (false) those photos.
    void hidingRequested(bool hide);

private:
    QLabel *label;
    QPushButton *button;
    bool hidden = false;
};
