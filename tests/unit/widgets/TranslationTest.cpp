#include "support/Rows.h"
#include "unit/Files.h"

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
    Message message;
    for (QXmlStreamReader xml(&file); !xml.atEnd(); xml.readNext()) {
        if (!xml.isStartElement())
            continue;
        if (xml.name() == "name") {
            message.context = xml.readElementText();
        } else if (xml.name() == "source") {
            message.source = xml.readElementText();
        } else if (xml.name() == "translation") {
            message.state = xml.attributes().value("type").toString();
            message.translation = xml.readElementText();
            messages.append(message);
        }
    }
    return messages;
}

const QString kCommitted = VELTARO_SOURCES "/res/zh_CN.ts";

/// What lupdate passes over in silence: a call of something named tr with anything but a literal,
/// and entries of the user's log that are plain texts.
QVector<Message> passedOver(const QString& folder)
{
    static const QRegularExpression calls(
        "\\btr\\(\\s*[^\"\\s)].*|\\blogDisplay(?!Debug)\\w+\\(\\s*QStringLiteral.*");
    QVector<Message> found;
    QDirIterator files(folder, {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        for (auto matches = calls.globalMatch(readFile(files.next())); matches.hasNext();)
            found.append({files.fileName(), matches.next().captured(), {}, "is not seen"});
    }
    return found;
}

/// The committed translation brought up to date with the sources in `folder`, in a copy. An empty
/// list when a source could not be understood, since its texts would go unnoticed.
QVector<Message> upToDate(const QString& folder)
{
    QTemporaryDir scratch;
    const QString copy = scratch.filePath("zh_CN.ts");
    if (!QFile::copy(kCommitted, copy))
        return {};
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    QProcess lupdate;
    lupdate.start(VELTARO_LUPDATE, {"-I", folder, "-silent", folder, "-ts", copy});
    if (!lupdate.waitForFinished() || lupdate.exitCode() != 0)
        return {};
    static const QRegularExpression serious(
        "Unterminated C\\+\\+ string|Unbalanced|lacks Q_OBJECT|without context");
    const QString complaints = QString::fromLocal8Bit(lupdate.readAllStandardError());
    if (complaints.contains(serious)) {
        qWarning().noquote() << complaints;
        return {};
    }
    return readMessages(copy) + passedOver(folder);
}

/// What is wrong with a translation, or "".
QString fault(const Message& message)
{
    const auto parts = [](const QString& text, const char* pattern) {
        QStringList found;
        for (auto matches = QRegularExpression(pattern).globalMatch(text); matches.hasNext();)
            found.append(matches.next().captured());
        found.sort();
        return found;
    };
    const QPair<const char*, const char*> kept[] = {
        {"%\\d", "place-holders"}, {"^ +", "spaces in front"},
        {" +$", "spaces behind"},  {"<[^>]*>", "mark-up"},
        {"\n", "line ends"},       {"^(60\\d\\d|NOTICE)\\b", "a code or marker"}};
    for (const auto& [pattern, what] : kept) {
        if (parts(message.source, pattern) != parts(message.translation, pattern))
            return QString("has other ") + what;
    }
    if (message.translation.contains(QRegularExpression(
            R"([\x{4e00}-\x{9fff}][\w,.:;!?()]|[\w,.:;!?()][\x{4e00}-\x{9fff}])")))
        return "lacks a space or has half-width punctuation";
    return parts(message.translation, "\\p{Han}").isEmpty() ? "is not Chinese" : "";
}

/// Prints each fault on a line of its own: a failure's text would be cut short.
bool noFaults(const QVector<Message>& messages, QString (*faultOf)(const Message&))
{
    bool none = true;
    for (const Message& message : messages) {
        const QString what = faultOf(message);
        none = none && what.isEmpty();
        if (!what.isEmpty())
            qWarning().noquote() << message.context << message.source << what;
    }
    return none;
}

} // namespace

/// Holds the Chinese translation against the texts in the sources: it must be complete, and keep
/// what a text carries besides words.
class TranslationTest : public QObject
{
    Q_OBJECT

private slots:
    // The check below is worth its name only if a text that nobody translated turns up.
    void unknownTextIsNoticed()
    {
        for (const char* call :
             {R"(tr("A text nobody knows"))", R"(QT_TRANSLATE_NOOP("C", "A text nobody knows"))",
              R"(tr(QT_TRANSLATE_NOOP("C", "A text nobody knows")))",
              R"(logDisplayInfo(QStringLiteral("A text nobody knows")))"}) {
            QTemporaryDir folder;
            QVERIFY(
                writeFile(folder.filePath("Probe.cpp"),
                          QByteArray("QString Probe::text()\n{\n    return ") + call + ";\n}\n"));
            bool noticed = false;
            for (const Message& message : upToDate(folder.path())) {
                noticed = noticed || (message.source.contains("A text nobody knows") &&
                                      !message.state.isEmpty());
            }
            QVERIFY2(noticed, call);
        }
    }

    void isComplete()
    {
        const QVector<Message> messages = upToDate(VELTARO_SOURCES);
        QVERIFY2(!messages.isEmpty(), "the sources could not be read for their texts");
        QVERIFY(noFaults(messages, [](const Message& message) {
            return message.translation.isEmpty() && message.state.isEmpty() ? "is empty"
                                                                            : message.state;
        }));
    }

    void translationsFit() { QVERIFY(noFaults(readMessages(kCommitted), &fault)); }
};

QTEST_GUILESS_MAIN(TranslationTest)
#include "TranslationTest.moc"
