#include "tst_globalsettingsdialog.h"
#include "messageboxcloser.h"
#include "tdialogglobalsettings.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>

namespace {

const char headingStyle[] = "background-color: rgb(64,64, 64); color: white;";

template<typename T> T *child(QObject *parent, const QString &name)
{
    T *found = parent->findChild<T *>(name);
    if (!found)
        qWarning("no child %s", qPrintable(name));
    return found;
}

QList<QString> groupsOf(TDialogGlobalSettings &dialog, const QString &field)
{
    if (field == "leFocalLengthGroups")
        return dialog.focalLengthGroups();
    if (field == "leFocalLength35Groups")
        return dialog.focalLength35Groups();
    return dialog.isoGroups();
}

// Shows the dialog as the active window, so that focus moves as it does for a user.
bool showActive(QDialog &dialog)
{
    dialog.show();
    dialog.activateWindow();
    return QTest::qWaitForWindowActive(&dialog);
}

// After the error box has gone the window system makes the dialog active again (the offscreen
// platform leaves that to us); the field must then hold the focus.
bool refusedFieldHoldsFocus(QDialog &dialog, QLineEdit *field)
{
    if (dialog.focusWidget() != field)
        return false;
    return showActive(dialog) && field->hasFocus();
}

// Shows the page that holds the range groups, as the user does before typing into them.
bool showGroupsPage(TDialogGlobalSettings &dialog)
{
    auto *list = dialog.findChild<QListWidget *>("listWidget");
    if (!list)
        return false;
    list->setCurrentRow(1);
    return showActive(dialog);
}

// Replaces the field's text by typing, with the focus in the field.
void typeInto(QLineEdit *field, const QString &text)
{
    field->setFocus(Qt::OtherFocusReason);
    field->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Delete);
    else
        QTest::keyClicks(field, text);
}

// One line per widget of a page, in layout order, naming what the user sees.
// The widgets of a row laid out side by side, "|"-separated: "label:<text>", "spin:<name>:min-max".
QString describeRow(QLayout *row)
{
    QStringList parts;
    for (int i = 0; i < row->count(); ++i) {
        QWidget *w = row->itemAt(i)->widget();
        if (auto *label = qobject_cast<QLabel *>(w))
            parts << "label:" + label->text();
        else if (auto *button = qobject_cast<QPushButton *>(w))
            parts << "button:" + button->objectName() + ":" + button->text();
        else if (auto *spin = qobject_cast<QSpinBox *>(w))
            parts << QString("spin:%1:%2-%3")
                         .arg(spin->objectName())
                         .arg(spin->minimum())
                         .arg(spin->maximum());
        else if (w)
            parts << QString("other:") + w->metaObject()->className();
    }
    return "row:" + parts.join('|');
}

QStringList describePage(QWidget *page)
{
    QStringList lines;
    QLayout *layout = page->layout();
    for (int i = 0; layout && i < layout->count(); ++i) {
        if (QLayout *row = layout->itemAt(i)->layout()) {
            lines << describeRow(row);
            continue;
        }
        QWidget *w = layout->itemAt(i)->widget();
        if (!w)
            continue; // spacers
        if (auto *label = qobject_cast<QLabel *>(w)) {
            const bool heading =
                label->styleSheet() == headingStyle && label->minimumHeight() == 20;
            lines << QString(heading ? "heading:" : "hint:") + label->text();
        } else if (auto *check = qobject_cast<QCheckBox *>(w)) {
            lines << "check:" + check->objectName() + ":" + check->text();
        } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
            lines << "edit:" + edit->objectName();
        } else if (auto *text = qobject_cast<QPlainTextEdit *>(w)) {
            lines << "text:" + text->objectName();
        } else if (auto *frame = qobject_cast<QFrame *>(w)) {
            const bool sunkenLine =
                frame->frameShape() == QFrame::HLine && frame->frameShadow() == QFrame::Sunken;
            lines << (sunkenLine ? "line" : "frame");
        } else {
            lines << QString("other:") + w->metaObject()->className();
        }
    }
    return lines;
}

} // namespace

void tst_GlobalSettingsDialog::validateGroups_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");

    QTest::newRow("three increasing ranges") << "24-70;71-200;201-600" << true;
    QTest::newRow("empty text") << "" << true;
    QTest::newRow("trailing semicolon") << "24-70;" << true;
    QTest::newRow("empty part between ranges") << "24-70;;71-200" << true;
    QTest::newRow("leading semicolon") << ";24-70" << true;
    QTest::newRow("smallest possible range") << "1-2" << true;
    QTest::newRow("gap of one between ranges") << "1-2;3-4" << true;
    QTest::newRow("largest int as high bound") << "1-2147483647" << true;
    QTest::newRow("ranges touching") << "24-70;70-200" << false;
    QTest::newRow("ranges overlapping") << "24-70;50-100" << false;
    QTest::newRow("ranges out of order") << "71-200;24-70" << false;
    QTest::newRow("range reversed") << "70-24" << false;
    QTest::newRow("low and high equal") << "10-10" << false;
    QTest::newRow("first low bound zero") << "0-10" << false;
    QTest::newRow("three pieces") << "24-70-200" << false;
    QTest::newRow("one piece") << "24" << false;
    QTest::newRow("lone semicolon") << ";" << false;
    QTest::newRow("only semicolons") << ";;" << false;
    QTest::newRow("letters") << "a-b" << false;
    QTest::newRow("letters after a valid range") << "24-70;x-y" << false;
    QTest::newRow("negative low bound splits into three") << "-5-10" << false;
    QTest::newRow("missing low bound") << "-24" << false;
    QTest::newRow("missing high bound") << "24-" << false;
    QTest::newRow("lone hyphen") << "-" << false;
    QTest::newRow("bounds beyond int count as zero") << "2147483648-2147483649" << false;
    QTest::newRow("high bound beyond int counts as zero") << "1-2147483648" << false;
    QTest::newRow("decimal fraction") << "24.5-70" << false;
    QTest::newRow("comma as separator") << "24-70,71-200" << false;
}

void tst_GlobalSettingsDialog::validateGroups()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    TDialogGlobalSettings dialog;
    QVERIFY2(dialog.validateGroups(text) == valid,
             qPrintable(QString("\"%1\" should be %2").arg(text, valid ? "valid" : "invalid")));
}

void tst_GlobalSettingsDialog::formHasTitleSizeAndPages()
{
    TDialogGlobalSettings dialog;
    QCOMPARE(dialog.objectName(), QString("TSettingsDialog"));
    QCOMPARE(dialog.windowTitle(), QString("Settings"));
    QCOMPARE(dialog.size(), QSize(760, 343));

    auto *list = child<QListWidget>(&dialog, "listWidget");
    QVERIFY(list);
    QCOMPARE(list->maximumWidth(), 150);
    QCOMPARE(list->viewMode(), QListView::ListMode);
    QCOMPARE(list->iconSize(), QSize(24, 24));
    QCOMPARE(list->movement(), QListView::Static);
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->currentRow(), 0);

    auto *stack = child<QStackedWidget>(&dialog, "stackedWidget");
    QVERIFY(stack);
    QCOMPARE(stack->frameShape(), QFrame::Box);
    QCOMPARE(stack->count(), 3);
    QCOMPARE(stack->currentIndex(), 0);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(stack->widget(i)->objectName(), QString("seite_%1").arg(i + 1));

    auto *buttons = child<QDialogButtonBox>(&dialog, "buttonBox");
    QVERIFY(buttons);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
}

void tst_GlobalSettingsDialog::pageListEntries_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("iconPath");

    QTest::newRow("general page") << 0 << "General"
                                  << ":/ressourcen/Settings/Update.png";
    QTest::newRow("groups page") << 1 << "Groups"
                                 << ":/ressourcen/Settings/Ranges.png";
    QTest::newRow("exclude page") << 2 << "Exclude"
                                  << ":/ressourcen/Settings/Exclude.png";
}

void tst_GlobalSettingsDialog::pageListEntries()
{
    QFETCH(int, row);
    QFETCH(QString, text);
    QFETCH(QString, iconPath);

    TDialogGlobalSettings dialog;
    auto *list = child<QListWidget>(&dialog, "listWidget");
    QVERIFY(list);
    QListWidgetItem *item = list->item(row);
    QVERIFY(item);
    QCOMPARE(item->text(), text);
    QCOMPARE(item->textAlignment(), int(Qt::AlignLeft | Qt::AlignVCenter));
    QCOMPARE(item->flags(), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QCOMPARE(item->sizeHint(), QSize(0, 40));
    QVERIFY2(QFile::exists(iconPath), qPrintable(iconPath + " is not among the resources"));
    QVERIFY2(!item->icon().pixmap(24, 24).isNull(), qPrintable(text + " has no icon"));
    QCOMPARE(item->icon().pixmap(24, 24).toImage(), QIcon(iconPath).pixmap(24, 24).toImage());
}

void tst_GlobalSettingsDialog::pageContents_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QStringList>("contents");

    QTest::newRow("general: update switch, the files read at once, how names count, the photo "
                  "catalogue, then the pairs counted once")
        << "seite_1"
        << QStringList {
               "heading:Updates",
               "check:checkBoxUpdates:Check on application start",
               "heading:Reading",
               "row:label:Files read at once|spin:spinBoxReaderThreads:1-64",
               "heading:Names",
               "check:checkBoxMergeNames:Count names that differ only in blanks and "
               "case together",
               "check:checkBoxFriendlyMakers:Friendly maker names",
               "hint:Your own maker spellings, one per line as spelling = name:",
               "text:plainTextEditMakerAliases",
               "heading:Photo catalogue",
               "check:checkBoxRememberPhotos:Remember photos between runs",
               "row:label:Forget folders not scanned for|spin:spinBoxForgetUnseenDays:0-3650",
               "row:button:pushButtonForgetPhotos:Forget remembered photos|label:",
               "heading:Counting",
               "check:checkBoxPairsOnce:Count RAW+JPEG pairs once"
           };
    QTest::newRow("groups: focal length, ISO and 35 mm focal length fields with hints")
        << "seite_2"
        << QStringList { "heading:Define Focal-Length Groups",
                         "hint:Please enter semicolon separated ranges, e.g. 24-70;71-200;201-600",
                         "edit:leFocalLengthGroups",
                         "line",
                         "heading:Define ISO Groups",
                         "hint:Please enter semicolon separated ranges, "
                         "e.g.25-100;101-400;401-1600;1601-12800",
                         "edit:leISOGroups",
                         "line",
                         "heading:Define Focal-Length Groups (35 mm equivalent)",
                         "hint:Please enter semicolon separated ranges, "
                         "e.g. 1-23;24-34;35-70;71-135;136-300;301-99999",
                         "edit:leFocalLength35Groups" };
    QTest::newRow("exclude: maker and model lists")
        << "seite_3"
        << QStringList {
               "heading:Exclude Maker - Enter semicolon separated (e.g. "
               "Apple;Samsung;Huawei)",
               "edit:leMakerExcludes",
               "line",
               "heading:Exclude Model - Enter semicolon separated (e.g. SM-G930F;iPhone6)",
               "edit:leModelExcludes",
               "line"
           };
}

void tst_GlobalSettingsDialog::pageContents()
{
    QFETCH(QString, page);
    QFETCH(QStringList, contents);

    TDialogGlobalSettings dialog;
    auto *pageWidget = child<QWidget>(&dialog, page);
    QVERIFY(pageWidget);
    QCOMPARE(describePage(pageWidget), contents);
}

void tst_GlobalSettingsDialog::changePageFollowsTheList()
{
    TDialogGlobalSettings dialog;
    auto *list = child<QListWidget>(&dialog, "listWidget");
    auto *stack = child<QStackedWidget>(&dialog, "stackedWidget");
    QVERIFY(list && stack);

    list->setCurrentRow(2);
    QCOMPARE(stack->currentIndex(), 2);
    list->setCurrentRow(1);
    QCOMPARE(stack->currentIndex(), 1);

    dialog.changePage(list->item(0), list->item(1));
    QCOMPARE(stack->currentIndex(), 0);
    // Without a current item the page of the previous one is shown.
    dialog.changePage(nullptr, list->item(2));
    QCOMPARE(stack->currentIndex(), 2);
}

void tst_GlobalSettingsDialog::checkForUpdateRoundTrip_data()
{
    QTest::addColumn<bool>("check");
    QTest::newRow("update check on") << true;
    QTest::newRow("update check off") << false;
}

void tst_GlobalSettingsDialog::checkForUpdateRoundTrip()
{
    QFETCH(bool, check);
    TDialogGlobalSettings dialog;
    auto *box = child<QCheckBox>(&dialog, "checkBoxUpdates");
    QVERIFY(box);
    box->setChecked(!check);
    dialog.setCheckForUpdate(check);
    QCOMPARE(box->isChecked(), check);
    QCOMPARE(dialog.checkForUpdate(), check);
}

void tst_GlobalSettingsDialog::nameSettingsRoundTrip_data()
{
    QTest::addColumn<bool>("merge");
    QTest::addColumn<bool>("friendly");
    QTest::addColumn<QStringList>("aliases");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("readBack");

    QTest::newRow("off, no aliases") << false << false << QStringList {} << "" << QStringList {};
    QTest::newRow("both on, two aliases")
        << true << true << QStringList { "Grandpa Cam = Zenit", "A = B" }
        << "Grandpa Cam = Zenit\nA = B" << QStringList { "Grandpa Cam = Zenit", "A = B" };
    QTest::newRow("an alias added, one edited, one removed, blank lines dropped")
        << false << true << QStringList { "A = B", "C = D" } << "A = B2\n\n  E = F  \n"
        << QStringList { "A = B2", "E = F" };
}

void tst_GlobalSettingsDialog::nameSettingsRoundTrip()
{
    QFETCH(bool, merge);
    QFETCH(bool, friendly);
    QFETCH(QStringList, aliases);
    QFETCH(QString, typed);
    QFETCH(QStringList, readBack);

    TDialogGlobalSettings dialog;
    // Off by default.
    QVERIFY(!child<QCheckBox>(&dialog, "checkBoxMergeNames")->isChecked());
    QVERIFY(!child<QCheckBox>(&dialog, "checkBoxFriendlyMakers")->isChecked());
    dialog.setMergeNames(merge);
    dialog.setFriendlyMakers(friendly);
    dialog.setMakerAliases(aliases);
    QCOMPARE(child<QCheckBox>(&dialog, "checkBoxMergeNames")->isChecked(), merge);
    QCOMPARE(child<QCheckBox>(&dialog, "checkBoxFriendlyMakers")->isChecked(), friendly);
    auto *text = child<QPlainTextEdit>(&dialog, "plainTextEditMakerAliases");
    QCOMPARE(text->toPlainText(), aliases.join('\n'));
    QCOMPARE(dialog.mergeNames(), merge);
    QCOMPARE(dialog.friendlyMakers(), friendly);
    text->setPlainText(typed);
    QCOMPARE(dialog.makerAliases(), readBack);
}

void tst_GlobalSettingsDialog::catalogueSettingsRoundTrip_data()
{
    QTest::addColumn<bool>("remember");
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("daysBack");
    QTest::addColumn<QString>("daysShown");

    QTest::newRow("remembered, kept for good") << true << 0 << 0 << "never";
    QTest::newRow("remembered, a month") << true << 30 << 30 << "30 days";
    QTest::newRow("not remembered") << false << 365 << 365 << "365 days";
    QTest::newRow("more than ten years is ten years") << true << 100000 << 3650 << "3650 days";
}

void tst_GlobalSettingsDialog::catalogueSettingsRoundTrip()
{
    QFETCH(bool, remember);
    QFETCH(int, days);
    QFETCH(int, daysBack);
    QFETCH(QString, daysShown);

    TDialogGlobalSettings dialog;
    auto *box = child<QCheckBox>(&dialog, "checkBoxRememberPhotos");
    auto *spin = child<QSpinBox>(&dialog, "spinBoxForgetUnseenDays");
    QVERIFY(box && spin);
    box->setChecked(!remember);
    dialog.setRememberPhotos(remember);
    dialog.setForgetUnseenAfterDays(days);
    QCOMPARE(box->isChecked(), remember);
    QCOMPARE(dialog.rememberPhotos(), remember);
    QCOMPARE(dialog.forgetUnseenAfterDays(), daysBack);
    QCOMPARE(spin->text(), daysShown);
}

void tst_GlobalSettingsDialog::forgetButtonIsOnlyARequestUntilOk()
{
    TDialogGlobalSettings dialog;
    auto *button = child<QPushButton>(&dialog, "pushButtonForgetPhotos");
    auto *label = child<QLabel>(&dialog, "labelForgetPhotos");
    QVERIFY(button && label);
    QVERIFY(!dialog.forgetPhotosRequested());
    QVERIFY(button->isEnabled());
    QVERIFY(label->text().isEmpty());
    button->click();
    QVERIFY(dialog.forgetPhotosRequested());
    QVERIFY(!button->isEnabled());
    QCOMPARE(label->text(), QString("Forgotten when you press OK"));
    // A new dialog asks nothing.
    TDialogGlobalSettings next;
    QVERIFY(!next.forgetPhotosRequested());
}

void tst_GlobalSettingsDialog::readerThreadsRoundTrip_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("readBack");

    QTest::newRow("one reader") << 1 << 1;
    QTest::newRow("sixteen readers") << 16 << 16;
    QTest::newRow("the most, 64") << 64 << 64;
    QTest::newRow("0 is raised to 1") << 0 << 1;
    QTest::newRow("100 is lowered to 64") << 100 << 64;
}

void tst_GlobalSettingsDialog::readerThreadsRoundTrip()
{
    QFETCH(int, given);
    QFETCH(int, readBack);

    TDialogGlobalSettings dialog;
    auto *spin = child<QSpinBox>(&dialog, "spinBoxReaderThreads");
    QVERIFY(spin);
    dialog.setReaderThreads(given);
    QCOMPARE(spin->value(), readBack);
    QCOMPARE(dialog.readerThreads(), readBack);
}

void tst_GlobalSettingsDialog::pairsOnceRoundTrip_data()
{
    QTest::addColumn<bool>("once");

    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void tst_GlobalSettingsDialog::pairsOnceRoundTrip()
{
    QFETCH(bool, once);

    TDialogGlobalSettings dialog;
    auto *box = child<QCheckBox>(&dialog, "checkBoxPairsOnce");
    QVERIFY(box);
    QVERIFY(!box->isChecked());
    dialog.setPairsOnce(once);
    QCOMPARE(box->isChecked(), once);
    box->setChecked(!once);
    QCOMPARE(dialog.pairsOnce(), !once);
}

void tst_GlobalSettingsDialog::exclusionListsJoinAndSplit_data()
{
    QTest::addColumn<QStringList>("given");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("readBack");

    QTest::newRow("two entries, no semicolon after the last")
        << QStringList { "Apple", "Samsung" } << "Apple;Samsung"
        << "Apple;Samsung" << QStringList { "Apple", "Samsung" };
    QTest::newRow("one entry") << QStringList { "Apple" } << "Apple"
                               << "Apple" << QStringList { "Apple" };
    QTest::newRow("empty list") << QStringList {} << ""
                                << "" << QStringList {};
    QTest::newRow("empty parts dropped")
        << QStringList { "SM-G930F", "iPhone6" } << "SM-G930F;iPhone6"
        << ";SM-G930F;;iPhone6;" << QStringList { "SM-G930F", "iPhone6" };
    QTest::newRow("only semicolons") << QStringList {} << ""
                                     << ";;" << QStringList {};
    QTest::newRow("case and blanks kept") << QStringList { "apple", "APPLE" } << "apple;APPLE"
                                          << " Apple ;APPLE" << QStringList { " Apple ", "APPLE" };
}

void tst_GlobalSettingsDialog::exclusionListsJoinAndSplit()
{
    QFETCH(QStringList, given);
    QFETCH(QString, shown);
    QFETCH(QString, typed);
    QFETCH(QStringList, readBack);

    TDialogGlobalSettings dialog;
    auto *makers = child<QLineEdit>(&dialog, "leMakerExcludes");
    auto *models = child<QLineEdit>(&dialog, "leModelExcludes");
    QVERIFY(makers && models);

    QList<QString> makerList = given;
    QList<QString> modelList = given;
    dialog.setMakerExcludes(makerList);
    dialog.setModelExcludes(modelList);
    QCOMPARE(makers->text(), shown);
    QCOMPARE(models->text(), shown);
    QCOMPARE(dialog.makerExcludes(), given);
    QCOMPARE(dialog.modelExcludes(), given);

    makers->setText(typed);
    models->setText(typed);
    QCOMPARE(dialog.makerExcludes(), readBack);
    QCOMPARE(dialog.modelExcludes(), readBack);
}

void tst_GlobalSettingsDialog::groupGettersReturnTheAcceptedList()
{
    TDialogGlobalSettings dialog;
    auto *focal = child<QLineEdit>(&dialog, "leFocalLengthGroups");
    auto *iso = child<QLineEdit>(&dialog, "leISOGroups");
    QVERIFY(focal && iso);

    QList<QString> focalGroups { "24-70", "71-200" };
    QList<QString> isoGroups { "100-400", "401-1600", "1601-6400" };
    dialog.setFocalLengthGroups(focalGroups);
    dialog.setISOGroups(isoGroups);
    QCOMPARE(focal->text(), QString("24-70;71-200"));
    QCOMPARE(iso->text(), QString("100-400;401-1600;1601-6400"));
    QCOMPARE(dialog.focalLengthGroups(), focalGroups);
    QCOMPARE(dialog.isoGroups(), isoGroups);

    auto *focal35 = child<QLineEdit>(&dialog, "leFocalLength35Groups");
    QVERIFY(focal35);
    QList<QString> focal35Groups { "1-27", "28-300" };
    dialog.setFocalLength35Groups(focal35Groups);
    QCOMPARE(focal35->text(), QString("1-27;28-300"));
    QCOMPARE(dialog.focalLength35Groups(), focal35Groups);

    // Text that has not been left or confirmed does not reach the getters.
    focal->setText("1-2");
    iso->setText("junk");
    focal35->setText("3-4");
    QCOMPARE(dialog.focalLengthGroups(), focalGroups);
    QCOMPARE(dialog.isoGroups(), isoGroups);
    QCOMPARE(dialog.focalLength35Groups(), focal35Groups);
}

void tst_GlobalSettingsDialog::invalidGroupsRefusedWhenLeavingField_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("otherField");
    QTest::addColumn<QString>("invalidText");
    QTest::addColumn<QString>("validText");
    QTest::addColumn<QString>("message");

    QTest::newRow("focal length, touching ranges") << "leFocalLengthGroups"
                                                   << "leISOGroups"
                                                   << "24-70;70-200"
                                                   << "24-70;71-200"
                                                   << "Data in FocalLength Groups not valid";
    QTest::newRow("ISO, reversed range") << "leISOGroups"
                                         << "leFocalLengthGroups"
                                         << "400-100"
                                         << "100-400;401-1600"
                                         << "Data in ISO Groups not valid";
    QTest::newRow("35 mm focal length, overlapping ranges")
        << "leFocalLength35Groups"
        << "leISOGroups"
        << "1-35;30-70"
        << "1-23;24-34;35-70"
        << "Data in FocalLength 35mm Groups not valid";
}

void tst_GlobalSettingsDialog::invalidGroupsRefusedWhenLeavingField()
{
    QFETCH(QString, field);
    QFETCH(QString, otherField);
    QFETCH(QString, invalidText);
    QFETCH(QString, validText);
    QFETCH(QString, message);

    TDialogGlobalSettings dialog;
    QList<QString> focalGroups { "24-70" };
    QList<QString> isoGroups { "100-400" };
    dialog.setFocalLengthGroups(focalGroups);
    dialog.setISOGroups(isoGroups);
    auto *edit = child<QLineEdit>(&dialog, field);
    auto *other = child<QLineEdit>(&dialog, otherField);
    QVERIFY(edit && other);
    QVERIFY2(showGroupsPage(dialog), "the dialog never became the active window");
    QSignalSpy accepted(&dialog, &QDialog::accepted);

    MessageBoxCloser closer;
    typeInto(edit, invalidText);
    other->setFocus(Qt::TabFocusReason);

    QCOMPARE(closer.boxes.size(), 1);
    const MessageBoxCloser::Box box = closer.boxes.first();
    QCOMPARE(box.title, QString("Error"));
    QCOMPARE(box.text, message);
    QCOMPARE(box.icon, int(QMessageBox::Critical));
    QCOMPARE(box.parent, &dialog);
    QCOMPARE(box.buttons, int(QMessageBox::Ok));
    QVERIFY2(groupsOf(dialog, field).isEmpty(), "the refused field's list was kept");
    QVERIFY2(refusedFieldHoldsFocus(dialog, edit), "the focus did not come back to the field");
    QCOMPARE(edit->selectedText(), invalidText);

    // OK is refused without a further word.
    dialog.accept();
    QCOMPARE(accepted.count(), 0);
    QVERIFY(dialog.isVisible());
    QCOMPARE(closer.boxes.size(), 1);

    // Clicking OK leaves the unchanged field, which reports nothing new; the dialog stays.
    auto *buttons = child<QDialogButtonBox>(&dialog, "buttonBox");
    QVERIFY(buttons);
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(closer.boxes.size(), 1);
    QCOMPARE(accepted.count(), 0);
    QVERIFY(dialog.isVisible());

    // Valid text that has not yet been left still keeps the dialog open.
    typeInto(edit, validText);
    dialog.accept();
    QCOMPARE(accepted.count(), 0);
    QVERIFY(groupsOf(dialog, field).isEmpty());

    other->setFocus(Qt::TabFocusReason);
    QCOMPARE(closer.boxes.size(), 1);
    QCOMPARE(groupsOf(dialog, field), validText.split(';'));
    dialog.accept();
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_GlobalSettingsDialog::returnPressedDecidesWhetherOkCloses_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("invalidText");
    QTest::addColumn<QString>("validText");
    QTest::addColumn<QString>("message");

    QTest::newRow("focal length, first bound zero") << "leFocalLengthGroups"
                                                    << "0-10"
                                                    << "10-20;21-35"
                                                    << "Data in FocalLength Groups not valid";
    QTest::newRow("ISO, one piece") << "leISOGroups"
                                    << "400"
                                    << "100-400"
                                    << "Data in ISO Groups not valid";
    QTest::newRow("35 mm focal length, letters") << "leFocalLength35Groups"
                                                 << "wide-tele"
                                                 << "1-34;35-300"
                                                 << "Data in FocalLength 35mm Groups not valid";
}

void tst_GlobalSettingsDialog::returnPressedDecidesWhetherOkCloses()
{
    QFETCH(QString, field);
    QFETCH(QString, invalidText);
    QFETCH(QString, validText);
    QFETCH(QString, message);

    TDialogGlobalSettings dialog;
    auto *edit = child<QLineEdit>(&dialog, field);
    QVERIFY(edit);
    QVERIFY2(showGroupsPage(dialog), "the dialog never became the active window");
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    MessageBoxCloser closer;

    // Return confirms the field (error box) and presses the default button, which is refused.
    typeInto(edit, invalidText);
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(closer.boxes.size(), 1);
    QCOMPARE(closer.boxes.first().text, message);
    QCOMPARE(accepted.count(), 0);
    QVERIFY(dialog.isVisible());
    QVERIFY2(refusedFieldHoldsFocus(dialog, edit), "the focus did not come back to the field");
    QCOMPARE(edit->selectedText(), invalidText);

    // Valid text confirmed with Return closes the dialog through the default button.
    typeInto(edit, validText);
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(closer.boxes.size(), 1);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(groupsOf(dialog, field), validText.split(';'));
}

void tst_GlobalSettingsDialog::validGroupsLeftFieldAreSplit_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("otherField");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("groups");

    QTest::newRow("focal length with empty parts")
        << "leFocalLengthGroups"
        << "leISOGroups"
        << ";24-70;;71-200;" << QStringList { "24-70", "71-200" };
    QTest::newRow("focal length emptied") << "leFocalLengthGroups"
                                          << "leISOGroups"
                                          << "" << QStringList {};
    QTest::newRow("ISO three groups")
        << "leISOGroups"
        << "leFocalLengthGroups"
        << "100-400;401-1600;1601-12800" << QStringList { "100-400", "401-1600", "1601-12800" };
    QTest::newRow("35 mm focal length, the classes")
        << "leFocalLength35Groups"
        << "leISOGroups"
        << "1-23;24-34;35-70;71-135;136-300;301-99999"
        << QStringList { "1-23", "24-34", "35-70", "71-135", "136-300", "301-99999" };
}

void tst_GlobalSettingsDialog::validGroupsLeftFieldAreSplit()
{
    QFETCH(QString, field);
    QFETCH(QString, otherField);
    QFETCH(QString, text);
    QFETCH(QStringList, groups);

    TDialogGlobalSettings dialog;
    QList<QString> focalGroups { "1-2" };
    QList<QString> isoGroups { "1-2" };
    dialog.setFocalLengthGroups(focalGroups);
    dialog.setISOGroups(isoGroups);
    auto *edit = child<QLineEdit>(&dialog, field);
    auto *other = child<QLineEdit>(&dialog, otherField);
    QVERIFY(edit && other);
    QVERIFY2(showGroupsPage(dialog), "the dialog never became the active window");
    MessageBoxCloser closer;

    typeInto(edit, text);
    other->setFocus(Qt::TabFocusReason);
    QCOMPARE(closer.boxes.size(), 0);
    QCOMPARE(groupsOf(dialog, field), groups);
}

void tst_GlobalSettingsDialog::cancelClosesWhateverFieldsHold()
{
    TDialogGlobalSettings dialog;
    auto *focal = child<QLineEdit>(&dialog, "leFocalLengthGroups");
    auto *iso = child<QLineEdit>(&dialog, "leISOGroups");
    auto *buttons = child<QDialogButtonBox>(&dialog, "buttonBox");
    QVERIFY(focal && iso && buttons);
    QVERIFY2(showGroupsPage(dialog), "the dialog never became the active window");
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    MessageBoxCloser closer;

    typeInto(focal, "70-24");
    iso->setFocus(Qt::TabFocusReason);
    QCOMPARE(closer.boxes.size(), 1);

    // Cancel closes the dialog although the field is still refused.
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
}

void tst_GlobalSettingsDialog::okClosesWhenBothGroupsValid()
{
    TDialogGlobalSettings dialog;
    auto *buttons = child<QDialogButtonBox>(&dialog, "buttonBox");
    QVERIFY(buttons);
    QVERIFY2(showActive(dialog), "the dialog never became the active window");
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    MessageBoxCloser closer;

    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(closer.boxes.size(), 0);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
}
