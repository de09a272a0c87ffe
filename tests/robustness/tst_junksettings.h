#pragma once

#include <QObject>

// The main window started on a settings store full of junk: text in number keys, broken fonts
// and colours, out-of-range indexes, a directory that is gone, junk patterns, bools like "maybe",
// non-finite camera values and damaged byte arrays. The window must come up with every value
// converted by QVariant's rules, draw its charts with the junk looks, and write on quitting a
// store that the next start reads back to the same values.
class tst_JunkSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void junkStoreStartsTheWindow();
    void tabIndexFromTheStore_data();
    void tabIndexFromTheStore();
    void dateThemeFromTheStore_data();
    void dateThemeFromTheStore();
    void junkChartLooksAreDrawn_data();
    void junkChartLooksAreDrawn();
};
