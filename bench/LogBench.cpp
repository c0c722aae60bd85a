// The message handler, and the history of a long log file into the log page's model.
#include "Measure.h"

#include "app/Log.h"
#include "app/LogModel.h"
#include "app/Platform.h"
#include "logview/CustomDelegate.h"
#include "logview/LogView.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QKeyEvent>
#include <QListView>
#include <QMessageLogContext>
#include <QScrollBar>
#include <QTemporaryDir>

namespace {

constexpr int kLines = 2000;
constexpr int kLogRounds = 15;
constexpr int kHistoryRounds = 5;
constexpr int kPageRows = 600000;
constexpr int kPageRounds = 25;

void appendPlainly(const QByteArray& path, const QByteArray& line)
{
    const int file = ::open(path.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    const ssize_t written = ::write(file, line.constData(), static_cast<size_t>(line.size()));
    Q_UNUSED(written)
    ::close(file);
}

double linesPerSecond(double milliseconds)
{
    return kLines / milliseconds * 1000;
}

void writeHistory(const QString& path, int lines)
{
    const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toLatin1();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    for (int line = 0; line < lines; ++line) {
        const QByteArray time = QTime(0, 0).addSecs(line % 86400).toString().toLatin1();
        file.write(today + ' ' + time + " [INFO] Something worth a line happened, number " +
                   QByteArray::number(line) + '\n');
    }
}

int readAndSplit(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n').size() : 0;
}

std::deque<LogContent> manyRows()
{
    std::deque<LogContent> rows;
    for (int row = 0; row < kPageRows; row += 2) {
        rows.push_back({QStringLiteral("Something worth a line or two happened here, and this is "
                                       "what the program has to say about it, number %1")
                            .arg(row),
                        row % 7 ? ITEM_INFO_WITH_DOT : ITEM_ERROR_WITH_DOT});
        rows.push_back({QStringLiteral("10:11:12"), ITEM_TIME});
    }
    return rows;
}

/// Does it and waits until it can be seen.
template <class View>
std::function<void()> shown(View& view, const std::function<void()>& work)
{
    return [&view, work] {
        work();
        QCoreApplication::sendPostedEvents();
        view.viewport()->grab();
    };
}

template <class View>
void place(View& view, LogModel& model)
{
    view.setItemDelegate(new CustomDelegate);
    view.setModel(&model);
    view.resize(480, 296);
    view.show();
}

} // namespace

void benchLog(const Report& report)
{
    const QTemporaryDir folder;
    platform().programDir = [&] { return folder.path(); };
    const QByteArray plainFile = QFile::encodeName(folder.filePath(QStringLiteral("plain.log")));
    const QString text = QStringLiteral("Received DP data of the usual kind and length");
    const QString shown = QStringLiteral("<DISPLAY> ") + text;
    const QByteArray line = "2026-01-01 12:00:00 [INFO] " + text.toUtf8() + '\n';
    const auto plain = [&] {
        for (int i = 0; i < kLines; ++i)
            appendPlainly(plainFile, line);
    };
    const auto handler = [&](const QString& message) {
        return [message] {
            for (int i = 0; i < kLines; ++i)
                Log::messageOut(QtInfoMsg, QMessageLogContext(), message);
        };
    };
    const Pair unmarked = interleaved(kLogRounds, handler(text), plain);
    report({QStringLiteral("log handler, lines for the file"), linesPerSecond(unmarked.subject),
            linesPerSecond(unmarked.floor), QStringLiteral("lines/s"),
            QStringLiteral("at least x 0.5")});
    const Pair marked = interleaved(kLogRounds, handler(shown), plain);
    report({QStringLiteral("log handler, lines for file and page"), linesPerSecond(marked.subject),
            linesPerSecond(marked.floor), QStringLiteral("lines/s"),
            QStringLiteral("at least x 0.5")});
}

void benchHistory(const Report& report)
{
    const QTemporaryDir folder;
    platform().programDir = [&] { return folder.path(); };
    const QString path = folder.filePath(QStringLiteral("ui.log"));
    const int sizes[] = {100000, 200000, 400000};
    for (const int lines : sizes) {
        writeHistory(path, lines);
        LogModel model;
        Log::setLogModel(&model);
        int split = 0;
        const Pair times = interleaved(
            kHistoryRounds, [] { Log::getHisLog(); }, [&] { split = readAndSplit(path); });
        const int rows = model.rowCount();
        Log::setLogModel(nullptr);
        const bool whole = split == lines + 1 && rows == 2 * lines + 1;
        report({whole ? QStringLiteral("history of %1 lines into the model").arg(lines)
                      : QStringLiteral("history of %1 lines: ONLY %2 ROWS").arg(lines).arg(rows),
                times.subject, times.floor, QStringLiteral("ms"), QStringLiteral("within 6")});
    }
}

void benchLogPage(const Report& report)
{
    LogModel model;
    LogView view;
    QListView plain; // the least that a list of so many rows does: all are of one height
    plain.setUniformItemSizes(true);
    place(view, model);
    place(plain, model);
    const auto rows = manyRows();
    const auto figure = [&report](const QString& what, const Pair& times) {
        report({QStringLiteral("600,000 rows, ") + what, times.subject, times.floor,
                QStringLiteral("ms"), QStringLiteral("within 50 ms")});
    };
    const auto pair = [&](const std::function<void(QAbstractScrollArea&)>& work) {
        return interleaved(kPageRounds, shown(view, [&] { work(view); }),
                           shown(plain, [&] { work(plain); }));
    };
    model.setRows(rows);
    figure(QStringLiteral("first paint"), pair([](QAbstractScrollArea& page) {
               page.hide();
               page.show();
           }));
    figure(QStringLiteral("End and Home"), pair([](QAbstractScrollArea& page) {
               for (const int key : {Qt::Key_End, Qt::Key_Home}) {
                   QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
                   QCoreApplication::sendEvent(&page, &press);
               }
           }));
    figure(QStringLiteral("a turn of the wheel"), pair([](QAbstractScrollArea& page) {
               QScrollBar* const bar = page.verticalScrollBar();
               bar->setValue(bar->value() + 3 * bar->singleStep());
           }));
    figure(QStringLiteral("another width"), pair([](QAbstractScrollArea& page) {
               page.resize(page.width() == 480 ? 470 : 480, 296);
           }));
    QVector<double> added;
    for (int round = 0; round < kPageRounds; ++round)
        added.append(milliseconds(shown(view, [&] {
            model.insertContents(1, {rows[0], rows[1]});
        })));
    figure(QStringLiteral("a new message on top"), {median(added), -1});
}
