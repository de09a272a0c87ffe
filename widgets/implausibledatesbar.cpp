#include "implausibledatesbar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

ImplausibleDatesBar::ImplausibleDatesBar(QWidget *parent)
    : QWidget(parent)
    , label(new QLabel(this))
    , button(new QPushButton(this))
{
    setObjectName(QStringLiteral("implausibleDatesBar"));
    label->setObjectName(QStringLiteral("labelImplausibleDates"));
    button->setObjectName(QStringLiteral("buttonImplausibleDates"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(label, 1);
    layout->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this] { emit hidingRequested(!hidden); });
    // One line: the chart above keeps the tab's height.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setVisible(false);
}

void ImplausibleDatesBar::setState(qint64 photos, bool hidden)
{
    this->hidden = hidden;
    const QString count = photos == 1 ? tr("1 photo") : tr("%1 photos").arg(photos);
    if (hidden) {
        label->setText(count
                       + (photos == 1 ? tr(" dated before 1990 or after today is hidden from the "
                                           "chart.")
                                      : tr(" dated before 1990 or after today are hidden from the "
                                           "chart.")));
        button->setText(tr("Show them"));
    } else {
        label->setText(count
                       + (photos == 1 ? tr(" is dated before 1990 or after today.")
                                      : tr(" are dated before 1990 or after today.")));
        button->setText(tr("Hide them from the chart"));
    }
    setVisible(photos > 0);
}

QString ImplausibleDatesBar::text() const
{
    return label->text();
}

QString ImplausibleDatesBar::buttonText() const
{
    return button->text();
}
