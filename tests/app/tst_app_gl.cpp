// The main window's commands that need a real OpenGL context (run under Xvfb): copying the date
// tab puts the 3-D graph's own rendering on the clipboard, not a grab of the screen.
#include "apptestsupport.h"
#include "chartdate3d.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "tdialognachricht.h"
#include "testrunner.h"
#include "testutils.h"

#include <Q3DBars>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QTabWidget>
#include <QTest>

#include <memory>

using namespace apptest;

class tst_AppGl : public QObject
{
    Q_OBJECT

private slots:
    void copyOnTheDateTabRendersTheGraph();
};

void tst_AppGl::copyOnTheDateTabRendersTheGraph()
{
    testutils::Sandbox sandbox;
    const QString photos = sandbox.makeDir("photos");
    QVERIFY(writePhotos(photos, 6, photoTags("Canon", "Canon EOS R5", "RF24-70mm F2.8 L IS USM")));
    writeStore({ { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });

    auto window = std::make_unique<MainWindow>(QStringList { photos });
    window->resize(1113, 755);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QVERIFY(waitForScanEnd(*window));
    MainWindowProbe probe(*window);
    window->findChild<QTabWidget *>("tabWidget")->setCurrentIndex(11);
    ChartDate3D *dateChart = probe.chartDate3D();
    QVERIFY(dateChart);
    if (!dateChart->graph())
        QSKIP("This display offers no OpenGL context, so there is no 3-D graph to render");
    QTRY_VERIFY(dateChart->graph()->isExposed());

    QImage marker(4, 4, QImage::Format_RGB32);
    marker.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(marker);
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionCopyChartToClipboard")->trigger();
    QVERIFY(nachricht.answered());

    const QImage copied = QGuiApplication::clipboard()->image();
    QVERIFY2(!copied.isNull(), "the date tab's copy holds an image");
    // The graph renders itself at its own size; a grab of the tab would include its frame.
    QCOMPARE(copied.size(), dateChart->graph()->size());
    int distinct = 0;
    QRgb previous = copied.pixel(0, 0);
    for (int y = 0; y < copied.height(); y += 7) {
        for (int x = 0; x < copied.width(); x += 7) {
            if (copied.pixel(x, y) != previous)
                ++distinct;
            previous = copied.pixel(x, y);
        }
    }
    QVERIFY2(distinct > 100, "the rendering shows bars and axes, not a flat fill");

    window.reset();
    releaseDatabase();
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    tst_AppGl test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_app_gl.moc"
