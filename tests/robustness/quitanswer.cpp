#include "quitanswer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

QuitAnswer::QuitAnswer()
{
    timer.setInterval(10);
    connect(&timer, &QTimer::timeout, this, &QuitAnswer::poll);
    timer.start();
}

void QuitAnswer::poll()
{
    if (++polls > 2000) {
        timer.stop();
        return;
    }
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || !box->isVisible()
        || box->text() != QLatin1String("Do you really want to quit the application?"))
        return;
    timer.stop();
    done = true;
    box->button(QMessageBox::Ok)->click();
}
