#pragma once

#include <QDialog>
#include <QString>
#include <QTimer>

// A short confirmation in a modal sheet that closes by itself. Only exec() starts the clock: a
// dialog shown with show() stays until the user closes it.
class TDialogNachricht : public QDialog
{
    Q_OBJECT

public:
    // msec is the display time in milliseconds.
    TDialogNachricht(QString text, int msec, QWidget *parent = nullptr);

    // Starts the timer, then runs the dialog modally; Accepted once the time is up.
    int exec() override;

private:
    QTimer timer;
};
