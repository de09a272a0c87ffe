#pragma once

#include <QDate>
#include <QString>

#include <optional>

// The original date of a photo as the statistics read it. A text is a usable date when Qt turns it
// into a valid QDate: "yyyy?MM?dd" with any punctuation for the two '?' and no digit after the day,
// so "2023:03:14 10:11:12", "2023-03-14" and "2023/03/14" all count, "0000:00:00" and
// "2023:02:30" do not.
namespace PhotoDate {

QDate date(const QString &text);

// The hour of a usable date whose time follows after one blank or a 'T' as two digits from 00 to
// 23 ("2023:03:14 07:..." gives 7); nothing otherwise.
std::optional<int> hour(const QString &text);

} // namespace PhotoDate
