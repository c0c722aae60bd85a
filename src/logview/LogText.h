#pragma once

#include "app/LogContent.h"

#include <QString>

class QAbstractItemModel;

/// Rows of the activity log as text. A model holds a LogContent under LogModel::ContentRole in
/// every row, newest first: a date heading, then each message with its time under it.
namespace logtext {

/// One row; empty when the model has none of that number.
LogContent rowOf(const QAbstractItemModel& model, int row);

/// What a screen reader says of a row: its text, with the severity in front of a message that is
/// more than information.
QString spoken(const LogContent& content);

/// Rows `first` to `last` for the clipboard, a line each in the order shown: a message with the
/// date and time that it stands under, also when those rows are not among them. Headings and times
/// are left out, unless nothing else is there. Linear in the rows.
QString copied(const QAbstractItemModel& model, int first, int last);

} // namespace logtext
