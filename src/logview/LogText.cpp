#include "logview/LogText.h"

#include "app/LogModel.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(LogView)
};

bool isMessage(const LogContent& content)
{
    return content.type != ITEM_TIME && content.type != ITEM_TITLE;
}

QString dateAbove(const QAbstractItemModel& model, int row)
{
    for (; row >= 0; --row) {
        const LogContent content = logtext::rowOf(model, row);
        if (content.type == ITEM_TITLE)
            return content.text;
    }
    return {};
}

} // namespace

namespace logtext {

LogContent rowOf(const QAbstractItemModel& model, int row)
{
    return model.index(row, 0).data(LogModel::ContentRole).value<LogContent>();
}

QString spoken(const LogContent& content)
{
    switch (content.type) {
    case ITEM_ERROR_WITH_DOT:
        return Texts::tr("Error: %1").arg(content.text);
    case ITEM_WARN_WITH_DOT:
        return Texts::tr("Warning: %1").arg(content.text);
    case ITEM_NOTICE_WITH_DOT:
        return Texts::tr("Notice: %1").arg(content.text);
    default:
        return content.text;
    }
}

QString copied(const QAbstractItemModel& model, int first, int last)
{
    QStringList messages;
    QStringList others;
    QString date = dateAbove(model, first);
    for (int row = first; row <= last; ++row) {
        const LogContent content = rowOf(model, row);
        if (content.type == ITEM_TITLE)
            date = content.text;
        if (!isMessage(content)) {
            others += content.text;
            continue;
        }
        const LogContent below = rowOf(model, row + 1);
        const QString time = below.type == ITEM_TIME ? below.text : QString();
        messages += QStringList{date, time, content.text}.join(QLatin1Char(' '));
    }
    return (messages.isEmpty() ? others : messages).join(QLatin1Char('\n'));
}

} // namespace logtext
