#include "namehints.h"

#include "namemergehintbar.h"
#include "namerules.h"
#include "statisticrows.h"

#include <QBoxLayout>
#include <QWidget>

namespace {

// The statistics whose values are names, with the word for many of them.
const QList<QPair<QString, QString>> nameStatistics {
    { QStringLiteral("maker"), QStringLiteral("makers") },
    { QStringLiteral("model"), QStringLiteral("models") },
    { QStringLiteral("lens"), QStringLiteral("lenses") },
};

QString pluralOf(const QString &statisticKey)
{
    for (const auto &[key, plural] : nameStatistics) {
        if (key == statisticKey)
            return plural;
    }
    return {};
}

} // namespace

NameHints::NameHints(const QList<StatisticTab> &tabs, QObject *parent)
    : QObject(parent)
{
    for (const StatisticTab &tab : tabs) {
        if (pluralOf(tab.statistic->key).isEmpty())
            continue;
        // Below the table and chart, so that the page keeps its splitter first. Some of the
        // form's pages hold the splitter in a horizontal box: with the hint it runs downwards.
        auto *box = qobject_cast<QBoxLayout *>(tab.page->layout());
        if (!box)
            continue;
        auto *bar = new NameMergeHintBar(tab.page);
        bar->setObjectName(QStringLiteral("nameMergeHint") + tab.statistic->widgetName);
        box->setDirection(QBoxLayout::TopToBottom);
        box->addWidget(bar);
        connect(bar, &NameMergeHintBar::mergeRequested, this, &NameHints::mergeRequested);
        hints.append({ tab.statistic, bar });
    }
}

QString NameHints::hintText(const QString &statisticKey, const QStringList &values)
{
    qsizetype differing = 0;
    for (const QStringList &group : nearDuplicateNames(values))
        differing += group.size();
    if (differing == 0)
        return {};
    return QStringLiteral("%1 %2 differ only in blanks or case")
        .arg(differing)
        .arg(pluralOf(statisticKey));
}

void NameHints::refresh(const QSqlDatabase &db, bool countedTogether)
{
    for (const Hint &hint : std::as_const(hints)) {
        QStringList values;
        if (!countedTogether) {
            QList<StatisticRow> rows;
            readStatisticRows(*hint.statistic, db, {}, rows);
            for (const StatisticRow &row : rows)
                values.append(row.value);
        }
        hint.bar->setHint(hintText(hint.statistic->key, values));
    }
}

NameMergeHintBar *NameHints::hintOf(const QString &statisticKey) const
{
    for (const Hint &hint : hints) {
        if (hint.statistic->key == statisticKey)
            return hint.bar;
    }
    return nullptr;
}
