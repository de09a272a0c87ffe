#pragma once

#include <QObject>
#include <QTimer>

// Answers the main window's quit question with OK from inside the event loop that shows it, so
// that closing the window goes through closeEvent() and writes the settings without a person.
// Other dialogs are left alone. It gives up after about twenty seconds.
class QuitAnswer : public QObject
{
public:
    QuitAnswer();
    bool answered() const { return done; }

private:
    void poll();

    QTimer timer;
    bool done = false;
    int polls = 0;
};
