#include "tst_filenamepatterns.h"

#include "filenamepatterns.h"

#include <QDir>
#include <QTest>

namespace {

const QStringList photoPatterns { "*.arw", "*.raf", "*.nef",  "*.cr2",  "*.cr3", "*.rw2", "*.jpg",
                                  "*.dng", "*.orf", "*.heic", "*.heif", "*.hif", "*.avif" };

const QStringList names { "IMG_0001.JPG",
                          "img_0001.jpg",
                          "photo.Jpg",
                          "photo.jpeg",
                          "photo.jpg.bak",
                          "photo.jp",
                          "jpg",
                          ".jpg",
                          "a.jpg ",
                          "DSC_0001.NEF",
                          "P1000001.RW2",
                          "IMG_0001.CR3",
                          "IMG_0001.CR2",
                          "x.cr",
                          "DSCF0001.RAF",
                          "P5010001.ORF",
                          "IMG.dng",
                          "IMG_0001.HEIC",
                          "img_0001.heic",
                          "photo.Heif",
                          "R5_0001.HIF",
                          "photo.avif",
                          "photo.AVIF",
                          "photo.heics",
                          "photo.hi",
                          "notes.txt",
                          "Ärger.JPG",
                          "ファイル.arw",
                          "a[1].jpg",
                          "a?.jpg",
                          "" };

} // namespace

void tst_FileNamePatterns::agreesWithQDir_data()
{
    QTest::addColumn<QStringList>("patterns");

    QTest::newRow("the ten photo types, HEIF with four patterns") << photoPatterns;
    QTest::newRow("only *.jpg") << QStringList { "*.jpg" };
    QTest::newRow("no pattern") << QStringList {};
    QTest::newRow("upper-case pattern") << QStringList { "*.JPG" };
    QTest::newRow("prefix wildcard") << QStringList { "IMG_*" };
    QTest::newRow("question mark") << QStringList { "*.?r?" };
    QTest::newRow("character class") << QStringList { "*.[cC]r[23]" };
    QTest::newRow("everything") << QStringList { "*" };
    QTest::newRow("exact name") << QStringList { "notes.txt" };
    QTest::newRow("bracket in a literal name") << QStringList { "a[1].jpg" };
    QTest::newRow("mixed") << QStringList { "*.dng", "IMG_????.*", "*.cr[23]" };
}

void tst_FileNamePatterns::agreesWithQDir()
{
    QFETCH(QStringList, patterns);

    const FileNamePatterns matcher(patterns);
    for (const QString &name : names) {
        const bool expected = QDir::match(patterns, name);
        if (matcher.matches(name) != expected)
            QFAIL(qPrintable(QStringLiteral("%1 against %2: QDir says %3")
                                 .arg(name, patterns.join(QLatin1Char(' ')))
                                 .arg(expected)));
    }
}

void tst_FileNamePatterns::suffixNeedsTheWholeExtension()
{
    const FileNamePatterns matcher(photoPatterns);
    QVERIFY(matcher.matches(QStringLiteral("IMG_0001.JpG")));
    QVERIFY(!matcher.matches(QStringLiteral("IMG_0001.jpeg")));
    QVERIFY(!matcher.matches(QStringLiteral("IMG_0001jpg")));
}
