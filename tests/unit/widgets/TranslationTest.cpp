#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

/// Holds the Chinese translation against the texts in the sources: it must be complete, and keep
/// what a text carries besides words.
class TranslationTest : public QObject
{
    Q_OBJECT

private slots:
    void unknownTextIsNoticed();
    void isComplete();
    void translationsFit();
};

namespace {

struct Message
{
    QString context;
    QString source;
    QString translation;
    QString state; ///< "" when finished
};

QVector<Message> readMessages(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QVector<Message> messages;
    QString context;
    Message message;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::EndElement &&
            xml.name() == QLatin1String("message"))
            messages.append(message);
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            message = {context, {}, {}, {}};
        } else if (xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.state = xml.attributes().value(QLatin1String("type")).toString();
            message.translation = xml.readElementText();
        }
    }
    return messages;
}

QString committedFile()
{
    return QStringLiteral(VELTARO_SOURCES "/res/zh_CN.ts");
}

/// The committed translation brought up to date with the sources in `folder`, in a copy. An empty
/// list when a source could not be understood, since its texts would go unnoticed.
QVector<Message> upToDate(const QString& folder)
{
    QTemporaryDir scratch;
    const QString copy = scratch.filePath(QStringLiteral("zh_CN.ts"));
    if (!QFile::copy(committedFile(), copy))
        return {};
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    QProcess lupdate;
    lupdate.start(QStringLiteral(VELTARO_LUPDATE),
                  {QStringLiteral("-I"), folder, QStringLiteral("-silent"), folder,
                   QStringLiteral("-ts"), copy});
    if (!lupdate.waitForFinished() || lupdate.exitCode() != 0)
        return {};
    const QString complaints = QString::fromLocal8Bit(lupdate.readAllStandardError());
    for (const QString& line : complaints.split(QLatin1Char('\n'))) {
        if (line.contains(QLatin1String("Unterminated C++ string")) ||
            line.contains(QLatin1String("Unbalanced")) ||
            line.contains(QLatin1String("lacks Q_OBJECT")) ||
            line.contains(QLatin1String("without context"))) {
            qWarning().noquote() << line;
            return {};
        }
    }
    return readMessages(copy);
}

/// What is wrong with a translation, or "".
QString fault(const Message& message)
{
    const auto parts = [](const QString& text, const QString& pattern) {
        QStringList found;
        auto matches = QRegularExpression(pattern).globalMatch(text);
        while (matches.hasNext())
            found.append(matches.next().captured());
        found.sort();
        return found;
    };
    const auto differs = [&](const QString& pattern) {
        return parts(message.source, pattern) != parts(message.translation, pattern);
    };
    if (differs(QStringLiteral("%\\d")))
        return QStringLiteral("place-holders differ");
    if (differs(QStringLiteral("<[^>]*>")))
        return QStringLiteral("mark-up differs");
    if (differs(QStringLiteral("^(60\\d\\d|NOTICE)\\b")))
        return QStringLiteral("code or marker differs");
    if (differs(QStringLiteral("\n")))
        return QStringLiteral("lines differ");
    if (!message.translation.contains(QRegularExpression(QStringLiteral("\\p{Han}"))))
        return QStringLiteral("not Chinese");
    return {};
}

QString describe(const Message& message, const QString& what)
{
    return message.context + QStringLiteral(": \"") + message.source + QStringLiteral("\" ") + what;
}

/// Prints each fault on a line of its own: a failure's text would be cut short.
bool noFaults(const QStringList& faults)
{
    for (const QString& found : faults)
        qWarning().noquote() << found;
    return faults.isEmpty();
}

} // namespace

// The check below is worth its name only if a text that nobody translated turns up.
void TranslationTest::unknownTextIsNoticed()
{
    QTemporaryDir folder;
    QFile source(folder.filePath(QStringLiteral("Probe.cpp")));
    QVERIFY(source.open(QIODevice::WriteOnly));
    source.write("QString Probe::text()\n{\n    return tr(\"A text nobody knows\");\n}\n");
    source.close();
    bool noticed = false;
    for (const Message& message : upToDate(folder.path())) {
        noticed = noticed || (message.context == QLatin1String("Probe") &&
                              message.source == QLatin1String("A text nobody knows") &&
                              message.state == QLatin1String("unfinished"));
    }
    QVERIFY(noticed);
}

void TranslationTest::isComplete()
{
    QStringList faults;
    const QVector<Message> messages = upToDate(QStringLiteral(VELTARO_SOURCES));
    QVERIFY2(!messages.isEmpty(), "the sources could not be read for their texts");
    for (const Message& message : messages) {
        if (!message.state.isEmpty())
            faults.append(describe(message, message.state));
        else if (message.translation.isEmpty())
            faults.append(describe(message, QStringLiteral("is empty")));
    }
    QVERIFY(noFaults(faults));
}

void TranslationTest::translationsFit()
{
    QStringList faults;
    for (const Message& message : readMessages(committedFile())) {
        const QString what = fault(message);
        if (!what.isEmpty())
            faults.append(describe(message, what));
    }
    QVERIFY(noFaults(faults));
}

QTEST_GUILESS_MAIN(TranslationTest)
#include "TranslationTest.moc"
