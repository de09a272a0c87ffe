#ifndef TAGCATALOGUE_TEST_H
#define TAGCATALOGUE_TEST_H

#include <QObject>

// Tests of the tag catalogue and the one-line entry descriptions built while a directory is walked.
class tst_TagCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void entryDescription_data();
    void entryDescription();
    void entryDescriptionSpellsLaengeWithUmlaut();
    void gpsEntryDescription_data();
    void gpsEntryDescription();

    void exifTagName_data();
    void exifTagName();
    void gpsTagName_data();
    void gpsTagName();
    void tiffTypeName_data();
    void tiffTypeName();

    void catalogueHoldsExactlyTheKnownNames();
    void catalogueNamesCarryTheExifPrefix();
    void catalogueTagNumbersAreAscendingWithoutRepeats();
    void everyCatalogueEntryIsFoundByItsNumber();
    void numbersBetweenCatalogueEntriesAreUnknown();
};

#endif // TAGCATALOGUE_TEST_H
