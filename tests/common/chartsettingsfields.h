#pragma once

#include "tchartsettings.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

namespace testutils {

// Every field of the record with its value, named as its key suffix in the settings store, in
// declaration order: two records compare field by field, and a failure names the field.
QList<QPair<QString, QVariant>> fieldsOf(const TChartSettings &s);

// The value of the field of that name; an unknown name stops the test program.
QVariant fieldValue(const TChartSettings &s, const QString &name);

} // namespace testutils
