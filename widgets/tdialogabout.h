#pragma once

#include <QDialog>

namespace Ui {
class TAboutDialog;
}

// The About box: the program's name and version, where to find it and whom to ask, as scrolling
// credits whose web and mail lines can be clicked.
class TDialogAbout : public QDialog
{
    Q_OBJECT

public:
    explicit TDialogAbout(QWidget *parent = nullptr);
    ~TDialogAbout() override;

private:
    Ui::TAboutDialog *ui;
};
