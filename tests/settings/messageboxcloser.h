#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

// Answers every modal message box that appears while it lives by clicking its OK button, and
// remembers what each box said. Lets a test walk through code that calls QMessageBox::critical
// without waiting for a person.
class MessageBoxCloser : public QObject
{
    Q_OBJECT

public:
    struct Box
    {
        QString title;
        QString text;
        int icon = 0; // QMessageBox::Icon
        QObject *parent = nullptr;
        int buttons = 0; // QMessageBox::StandardButtons
    };

    MessageBoxCloser();

    QList<Box> boxes;

private:
    void closeActiveBox();

    QTimer timer;
};
