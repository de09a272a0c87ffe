#include "tlabelclickable.h"

TLabelClickable::TLabelClickable(QWidget *parent, Qt::WindowFlags flags)
    : QLabel(parent, flags)
{ }

void TLabelClickable::mousePressEvent(QMouseEvent *)
{
    emit clicked();
}
