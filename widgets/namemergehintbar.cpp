#include "namemergehintbar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

NameMergeHintBar::NameMergeHintBar(QWidget *parent)
    : QWidget(parent)
    , label(new QLabel(this))
    , button(new QPushButton(tr("Merge them"), this))
{
    label->setObjectName(QStringLiteral("labelNameMergeHint"));
    button->setObjectName(QStringLiteral("buttonMergeNames"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(label, 1);
    layout->addWidget(button);
    connect(button, &QPushButton::clicked, this, &NameMergeHintBar::mergeRequested);
    // One line: the table and chart above keep the page's height.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setVisible(false);
}

void NameMergeHintBar::setHint(const QString &text)
{
    label->setText(text);
    setVisible(!text.isEmpty());
}

QString NameMergeHintBar::hint() const
{
    return label->text();
}
