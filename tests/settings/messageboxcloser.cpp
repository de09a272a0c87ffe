#include "messageboxcloser.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

MessageBoxCloser::MessageBoxCloser()
{
    timer.setInterval(10);
    connect(&timer, &QTimer::timeout, this, &MessageBoxCloser::closeActiveBox);
    timer.start();
}

void MessageBoxCloser::closeActiveBox()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || !box->isVisible())
        return;
    Box seen;
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.icon = box->icon();
    seen.parent = box->parent();
    seen.buttons = box->standardButtons();
    boxes.append(seen);
    if (QAbstractButton *ok = box->button(QMessageBox::Ok))
        ok->click();
    else
        box->reject();
}
