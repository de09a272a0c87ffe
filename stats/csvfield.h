#pragma once

#include <QString>

class QAbstractItemModel;

// One field of a ";"-separated line: as it is, or in double quotes (inner ones doubled) where it
// holds a separator, a quote or a line break.
QString csvField(QString field);

// A table as ";"-separated lines: the column headers, then every row; each line ends with "\n".
QString csvTable(const QAbstractItemModel &model);
