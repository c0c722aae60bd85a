#pragma once

#include <QtTest> // with all of QtCore, for the tests' own sake

#include <tuple>

/// The rows of a data-driven test without ceremony: the columns once, then a row a line.
///
///     const auto row = columns<QString, int>("typed", "code");
///     row("empty", "", 6037);
///     row("a name", "acme", 0);
template <class... Values, class... Names>
auto columns(Names... names)
{
    static_assert(sizeof...(Values) == sizeof...(Names), "a name for every column");
    (QTest::addColumn<Values>(names), ...);
    return [](const char* name, const Values&... values) {
        QTestData& row = QTest::newRow(name);
        (void)(row << ... << values);
    };
}

/// Rows of what needs no scene of its own: each is checked where it stands, up to the first that
/// fails.
///
///     const auto row = checked([](const QString& typed, int code) {
///         QCOMPARE(read(typed), code);
///     });
///     row("empty", "", 6037);
template <class Check>
auto checked(Check check)
{
    return [check](const char* name, const auto&... values) {
        if (QTest::currentTestFailed())
            return;
        check(values...);
        if (QTest::currentTestFailed())
            qWarning("in the row \"%s\"", name);
    };
}

/// JSON written with ' in place of ".
inline QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

/// What the row that runs holds in one column.
template <class Value>
Value cell(const char* name)
{
    return *static_cast<Value*>(QTest::qData(name, qMetaTypeId<Value>()));
}

/// What it holds in several.
///
///     const auto [typed, code] = fetched<QString, int>("typed", "code");
template <class... Values, class... Names>
std::tuple<Values...> fetched(Names... names)
{
    return {cell<Values>(names)...};
}
