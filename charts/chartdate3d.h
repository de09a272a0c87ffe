#pragma once

#include "dayspan.h"
#include "photoselection.h"

#include <Q3DTheme>
#include <QDate>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSqlDatabase>
#include <QString>

class Q3DBars;
class QCategory3DAxis;
class QValue3DAxis;
class QVBoxLayout;
class QWidget;

// The "Date Original" tab: a 3-D bar chart of how many photos were taken per period. By the span
// of the capture dates it shows years by months, the months of one year by day, or one month by
// day. The graph lives in a window container inside the layout the main window hands over; the
// camera follows the user's mouse so that the next refresh (and the settings store) keeps it.
//
// Q3DBars needs OpenGL. Where there is none (the offscreen platform, a display without GL) the
// layout gets a short explanation instead, while the rows, labels and titles are still computed.
class ChartDate3D : public QObject
{
    Q_OBJECT

public:
    explicit ChartDate3D(QObject *parent = nullptr);
    // The chart counts the selected photos (every photo by default).
    ChartDate3D(QSqlDatabase &db, QVBoxLayout *layout, Q3DTheme::Theme theme, float cameraX,
                float cameraY, float cameraZoom, QObject *parent,
                const PhotoSelection &selection = PhotoSelection());
    // The same, drawing only the photos taken within `shownDays`.
    ChartDate3D(QSqlDatabase &db, QVBoxLayout *layout, Q3DTheme::Theme theme, float cameraX,
                float cameraY, float cameraZoom, const DaySpan &shownDays, QObject *parent,
                const PhotoSelection &selection = PhotoSelection());

    // Rebuilds the rows and the graph from the database, replacing what the layout held.
    void refreshChart();

    float cameraXRotation() const { return cameraX; }
    float cameraYRotation() const { return cameraY; }
    float cameraZoomFactor() const { return cameraZoom; }

    // What the last refresh computed; filled also when no graph could be made.
    Q3DBars *graph() const;
    QList<QString> rowLabels() const { return rowLabelList; }
    QList<QString> columnLabels() const { return columnLabelList; }
    QList<QList<float>> rowValues() const { return rowCounts; }
    QString rowAxisTitle() const;
    QString columnAxisTitle() const;

    // The graph drawn into an image of its current size with the given multisampling; a null
    // image when there is no graph.
    QImage renderToImage(int msaaSamples) const;

    // True when a Q3DBars can be made here: a real windowing platform and a working OpenGL
    // context. Q3DBars crashes without one.
    static bool openGLAvailable();

    // A stored date text ("2023:03:14 10:11:12") to its date, as Qt converts the field to a QDate;
    // an invalid date for texts that do not convert.
    static QDate parseExifDate(const QString &text);

    static const QString placeholderText;

public slots:
    void onCameraXRotationChanged(float rotation);
    void onCameraYRotationChanged(float rotation);
    void onCameraZoomFactorChanged(float zoom);

private:
    void extractDateTimeData();
    void createSeries();
    void showDateTimeChart();
    void setupConnections();
    void clearLayout();
    void replaceAxes();
    void showPlaceholder();

    QPointer<Q3DBars> barGraph;
    QSqlDatabase db;
    PhotoSelection selection;
    QPointer<QVBoxLayout> layout;
    Q3DTheme::Theme theme = Q3DTheme::ThemeQt;
    float cameraX = 0;
    float cameraY = 0;
    float cameraZoom = 100;
    QPointer<QWidget> container;
    DaySpan shownDays; // unbounded unless the caller hides some days
    QMap<QDate, int> photosPerDay; // valid capture dates, ascending, with their photo counts
    QList<QList<float>> rowCounts;
    QPointer<QValue3DAxis> valueAxis;
    QPointer<QCategory3DAxis> rowAxis;
    QPointer<QCategory3DAxis> columnAxis;
    QList<QString> rowLabelList;
    QList<QString> columnLabelList;
};
