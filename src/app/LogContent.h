#pragma once

#include <QMetaType>
#include <QString>

/// Kinds of rows of the activity log; the values are fixed.
enum LOG_TYPE {
    ITEM_INFO_WITH_DOT = 0,   ///< information message
    ITEM_NOTICE_WITH_DOT = 1, ///< notice message
    ITEM_ERROR_WITH_DOT = 2,  ///< error message
    ITEM_WARN_WITH_DOT = 3,   ///< warning message
    ITEM_TIME = 4,            ///< the time line under a message
    ITEM_TITLE = 5            ///< a date heading
};

/// One row of the activity log.
struct LogContent
{
    QString text;                       ///< what the row shows
    LOG_TYPE type = ITEM_INFO_WITH_DOT; ///< how it is drawn
};

inline bool operator==(const LogContent& a, const LogContent& b)
{
    return a.type == b.type && a.text == b.text;
}

Q_DECLARE_METATYPE(LogContent)
Q_DECLARE_TYPEINFO(LogContent, Q_MOVABLE_TYPE);
