#include "tdialogabout.h"
#include "ui_tdialogabout.h"

#include <QCoreApplication>

TDialogAbout::TDialogAbout(const QString &host, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::TAboutDialog)
{
    ui->setupUi(this);
    const QString name = QCoreApplication::applicationName();
    setWindowTitle(QStringLiteral("About ") + name);
    ui->scrollWidget->setText({
        QStringLiteral("#") + name + QStringLiteral(" Version ")
            + QCoreApplication::applicationVersion(),
        QStringLiteral("© 2026 The Kelvaro developers"),
        QString(),
        QStringLiteral("Sie finden die jeweils aktuelle Version unter"),
        QStringLiteral("https://") + host,
        QString(),
        QStringLiteral("Für Fragen und Anregungen kontaktieren Sie"),
        QStringLiteral("mich gerne unter:"),
        QStringLiteral("mailto:info@") + host,
        QString(),
        QStringLiteral("powered by Qt"),
        QStringLiteral("Style: QDarkStyle (MIT), images CC-BY-4.0"),
    });
    ui->scrollWidget->setActive(true);
}

TDialogAbout::~TDialogAbout()
{
    delete ui;
}
