#pragma once

#include <functional>
#include <QString>
#include <QVector>

/// One line of the report: a figure of the program beside the least it could cost, measured in
/// the same run on the same machine.
struct Figure
{
    QString what;
    double value;
    double floor; ///< below zero: the figure has no floor
    QString unit;
    QString aim; ///< in words
};

using Report = std::function<void(const Figure&)>;

/// The middle of the values; 0 for none.
double median(QVector<double> values);

/// How long the work takes.
double milliseconds(const std::function<void()>& work);

/// Times `subject` and `floor` in turn, `rounds` times each, so that both see the same weather;
/// returns the medians in milliseconds. One untimed round of each comes first.
struct Pair
{
    double subject;
    double floor;
};
Pair interleaved(int rounds, const std::function<void()>& subject,
                 const std::function<void()>& floor);

// The chapters of the report; the history of the log and its page stand beside the log.
void benchConnect(const Report& report);
void benchCustomer(const Report& report);
void benchDispatch(const Report& report);
void benchLog(const Report& report);
void benchHistory(const Report& report);
void benchLogPage(const Report& report);
void benchFilter(const Report& report);
