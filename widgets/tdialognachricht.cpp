#include "tdialognachricht.h"

#include <QLabel>
#include <QVBoxLayout>

TDialogNachricht::TDialogNachricht(QString text, int msec, QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::Sheet);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(text, this));

    timer.setSingleShot(true);
    timer.setInterval(msec);
    connect(&timer, &QTimer::timeout, this, &QDialog::accept);
}

int TDialogNachricht::exec()
{
    timer.start();
    return QDialog::exec();
}
