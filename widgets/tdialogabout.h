#pragma once

#include <QDialog>

namespace Ui {
class TAboutDialog;
}

// The About box: the program's name and version, where to find it and whom to ask, as scrolling
// credits whose web and mail lines can be clicked. The web page and the mail address are on `host`,
// the site that also serves the update check.
class TDialogAbout : public QDialog
{
    Q_OBJECT

public:
    explicit TDialogAbout(const QString &host, QWidget *parent = nullptr);
    ~TDialogAbout() override;

private:
    Ui::TAboutDialog *ui;
};
