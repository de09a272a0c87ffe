#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// A line below a statistic whose values differ only in blanks or case ("3 makers differ only in
// blanks or case"), with the one click that counts them together. Invisible without a hint.
class NameMergeHintBar : public QWidget
{
    Q_OBJECT

public:
    explicit NameMergeHintBar(QWidget *parent = nullptr);

    // An empty text hides the line.
    void setHint(const QString &text);
    QString hint() const;

signals:
    void mergeRequested();

private:
    QLabel *label;
    QPushButton *button;
};
